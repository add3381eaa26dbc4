#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/platform/WrittenKind.h"
#include "tovi/card/CountingChannel.h"
#include "tovi/card/FaultyChannels.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/card/VirtualCard.h"

// Directory files on a whole card, pulled out before and after every command of an operation.
namespace tovi {
namespace {

using test::failureOf;
using test::record;
using test::times;
using test::operator+;
using Records = std::vector<Blob>;
using Operation = std::function<bool(ProfileDFHandler&, ISCardOS&)>;

const Blob application = {0x3F, 0x00, 0x50, 0x15};
const Blob path = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x01};

VirtualCard cardWith(const Blob& octets, std::size_t size) {
    VirtualCard card;
    card.addFolder(application);
    card.addTransparent(path, size, octets);
    return card;
}

void read(ProfileDFHandler& handler, ISCardOS& os) {
    handler.SetFilePath({0x44, 0x01}, nullptr);
    handler.ReadFile(&os, IGNORE_TAG, true);
}

Records recordsOn(VirtualCard& card, const CardCapabilities& capabilities) {
    VirtualCardChannel channel(card);
    ISO7816CardOS os(channel, capabilities);
    ProfileDFHandler handler({0x50, 0x15});
    read(handler, os);
    return handler.records();
}

Blob packed(const Records& records) {
    Blob octets;
    for (const Blob& record : records) octets.append(record);
    return octets;
}

struct Change {
    Operation operation;
    Records after;
};

std::vector<Change> changesOf(const Records& records) {
    const auto update = [&](std::size_t at, const Blob& edited) {
        Records after = records;
        after[at] = edited;
        return Change{[=](ProfileDFHandler& handler, ISCardOS& os) {
                          return handler.UpdateSequence(&os, static_cast<unsigned long>(at),
                                                        edited);
                      },
                      after};
    };
    Records oneMore = records;
    oneMore.push_back(record(200, 0x55));
    const auto write = [](ProfileDFHandler& handler, ISCardOS& os) {
        unsigned long index = 0;
        return handler.WriteSequence(&os, record(200, 0x55), index);
    };
    const auto remove = [](ProfileDFHandler& handler, ISCardOS& os) {
        return handler.DeleteSequence(&os, 0);
    };
    return {update(0, record(103, 0x55)),
            update(0, record(250, 0x55)),
            update(1, record(20, 0x55)),
            {write, oneMore},
            {remove, Records(records.begin() + 1, records.end())}};
}

/// Performs a change with the card pulled out at command `index`, and then again. False when the
/// operation was over before.
bool pullOut(const VirtualCard& original, const CardCapabilities& capabilities,
             const Records& before, const Change& change, std::size_t index,
             TearingChannel::Moment moment) {
    VirtualCard card = original;
    VirtualCardChannel channel(card);
    ISO7816CardOS os(channel, capabilities);
    ProfileDFHandler handler({0x50, 0x15});
    read(handler, os);

    TearingChannel tearing(channel, index, moment);
    ISO7816CardOS tearingOS(tearing, capabilities);
    bool isDone = false;
    failureOf([&] { isDone = change.operation(handler, tearingOS); });
    if (!tearing.torn()) return false;

    card.reset();
    const Records found = recordsOn(card, capabilities);
    EXPECT_TRUE(found == change.after || (found == before && !isDone));
    ISO7816CardOS again(channel, capabilities);
    EXPECT_TRUE(isDone || change.operation(handler, again));
    EXPECT_EQ(recordsOn(card, capabilities), change.after);
    if (!isDone) {
        const Blob expected = packed(change.after);
        EXPECT_EQ(
            card.files().find(path)->contents,
            expected + times(original.files().find(path)->contents.size() - expected.size(), 0x00));
    }
    return true;
}

void pullOutEverywhere(const CardCapabilities& capabilities) {
    Records records;
    for (std::uint8_t i = 0; i < 9; ++i) records.push_back(record(100 - i * 5u, 0x31 + i));
    const VirtualCard card = cardWith(packed(records), 1000);
    for (const Change& change : changesOf(records))
        for (const auto moment :
             {TearingChannel::Moment::beforeCommand, TearingChannel::Moment::beforeResponse}) {
            std::size_t index = 0;
            while (pullOut(card, capabilities, records, change, index, moment) &&
                   !::testing::Test::HasFailure())
                ++index;
            EXPECT_GE(index, 3u);
        }
}

TEST(WritingToCards, SurvivesTearsBetweenShortCommands) { pullOutEverywhere({}); }

TEST(WritingToCards, SurvivesTearsBetweenExtendedCommands) {
    pullOutEverywhere({.extendedLength = true});
}

TEST(WritingToCards, SurvivesTearsInsideAChain) {
    pullOutEverywhere({.commandChaining = true, .maxWrite = 700});
}

/// The commands that an operation costs after the file was read.
std::size_t costOf(const Operation& operation, VirtualCard card) {
    VirtualCardChannel channel(card);
    CountingChannel counting(channel);
    ISO7816CardOS os(counting, {});
    ProfileDFHandler handler({0x50, 0x15});
    read(handler, os);
    counting.clear();
    EXPECT_TRUE(operation(handler, os));
    return counting.counts().commands;
}

TEST(WritingToCards, CostsThreeCommandsInAUsualFile) {
    Records records(3, record(60, 0x31));
    const VirtualCard card = cardWith(packed(records), 256);
    for (const Change& change : changesOf(records))
        EXPECT_TRUE(packed(change.after).size() > 256 || costOf(change.operation, card) == 3);
}

TEST(WritingToCards, MovesAsManyRecordsWithACommandAsFit) {
    // SELECT, READ of 1000 octets, and 20 records of 50 octets, four of which and the gap are 250.
    Records records;
    for (std::uint8_t i = 0; i < 20; ++i) records.push_back(record(50, i));
    EXPECT_EQ(costOf([](ProfileDFHandler& handler,
                        ISCardOS& os) { return handler.DeleteSequence(&os, 0); },
                     cardWith(packed(records), 1000)),
              1u + 4u + 5u);
}

}  // namespace
}  // namespace tovi
