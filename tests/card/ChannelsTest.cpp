// The channels that watch or disturb the way to a card.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"
#include "tovi/card/CountingChannel.h"
#include "tovi/card/DelayingChannel.h"
#include "tovi/card/FaultyChannels.h"
#include "tovi/card/TraceChannel.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

const Blob read = octets("00B0000000");

std::string sent(ICardChannel& channel, const Blob& command = read) {
    return hexOf(channel.transmit(command));
}

/// A trace with a clock that goes 1.5 ms a reading.
struct Trace {
    explicit Trace(ICardChannel& inner)
        : channel(
              inner, [this](const std::string& line) { lines.push_back(line); },
              [this] { return now += std::chrono::microseconds(1500); }) {}

    std::chrono::nanoseconds now{};
    std::vector<std::string> lines;
    TraceChannel channel;
};

TEST(TraceChannel, WritesDirectionTimeOctetsAndStatusWord) {
    ScriptedChannel card({"01029000", "6A82"});
    Trace trace(card);
    EXPECT_EQ(sent(trace.channel), "01029000");
    EXPECT_EQ(sent(trace.channel), "6A82");
    EXPECT_THAT(trace.lines, ElementsAre("       1.500 ms > 00B0000000",  //
                                         "       3.000 ms < 0102 9000",   //
                                         "       4.500 ms > 00B0000000",  //
                                         "       6.000 ms < 6A82"));
}

TEST(TraceChannel, NeverShowsSecrets) {
    ScriptedChannel card({"9000"});
    Trace trace(card);
    for (const char* command :
         {"00200001 04 31323334", "10200001 04 31323334", "00210001 04 31323334",
          "00240001 04 31323334", "002C0001 04 31323334", "00200001 000004 31323334"})
        trace.channel.transmit(octets(command));
    for (std::size_t i = 0; i < trace.lines.size(); i += 2) {
        EXPECT_EQ(trace.lines[i].find("31323334"), std::string::npos) << trace.lines[i];
        EXPECT_NE(trace.lines[i].find("0001 (data hidden)"), std::string::npos) << trace.lines[i];
    }
    EXPECT_EQ(card.commands[0],
              "00200001"
              "0431323334");  // the card gets it all the same
    trace.lines.clear();
    trace.channel.transmit(octets("00200001"));
    EXPECT_EQ(trace.lines[0].substr(18), "00200001");
}

TEST(TraceChannel, WritesDownAnswersWithoutStatusWordAndFailures) {
    ScriptedChannel card({"90"});
    Trace trace(card);
    trace.channel.transmit(read);
    EXPECT_EQ(trace.lines[1].substr(16), "< 90 (incomplete)");
    FailingChannel gone(card, 0, FailingChannel::unreachable);
    Trace failing(gone);
    EXPECT_EQ(failureOf([&] { failing.channel.transmit(read); }).message, "card cannot be reached");
    EXPECT_EQ(failing.lines[1].substr(16), "! card cannot be reached");
}

TEST(TraceChannel, HasAClockOfItsOwn) {
    ScriptedChannel card({"9000"});
    std::vector<std::string> lines;
    TraceChannel channel(card, [&](const std::string& line) { lines.push_back(line); });
    channel.transmit(read);
    EXPECT_EQ(lines.size(), 2u);
}

TEST(CountingChannel, CountsCommandsAndOctetsEachWay) {
    ScriptedChannel card({"01029000", "6A82"});
    CountingChannel channel(card);
    sent(channel);
    sent(channel, octets("00A4000C"));
    EXPECT_EQ(channel.counts().commands, 2u);
    EXPECT_EQ(channel.counts().octetsToCard, 9u);
    EXPECT_EQ(channel.counts().octetsFromCard, 6u);
    EXPECT_THAT(channel.counts().byInstruction,
                ElementsAre(testing::Pair(0xA4, 1u), testing::Pair(0xB0, 1u)));
    channel.clear();
    EXPECT_EQ(channel.counts().commands, 0u);
}

TEST(CountingChannel, CountsCommandsThatFail) {
    ScriptedChannel card({"9000"});
    FailingChannel gone(card, 0, FailingChannel::unreachable);
    CountingChannel channel(gone);
    failureOf([&] { channel.transmit(read); });
    EXPECT_EQ(channel.counts().commands, 1u);
    EXPECT_EQ(channel.counts().octetsFromCard, 0u);
}

TEST(DelayingChannel, PassesEverythingOn) {
    ScriptedChannel card({"01029000"});
    DelayingChannel channel(card, {std::chrono::nanoseconds(1), std::chrono::nanoseconds(1)});
    EXPECT_EQ(sent(channel), "01029000");
    EXPECT_THAT(card.commands, ElementsAre("00B0000000"));
}

TEST(FailingChannel, FailsOneCommandThatTheCardNeverSees) {
    for (const std::size_t index : {std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
        ScriptedChannel card({"9000"});
        FailingChannel channel(card, index, 0x6F00);
        std::string answers;
        for (int i = 0; i < 3; ++i) answers += sent(channel);
        EXPECT_EQ(answers.find("6F00"), 4 * index);
        EXPECT_EQ(card.commands.size(), 2u);
        EXPECT_TRUE(channel.failed());
    }
}

TEST(FailingChannel, FailsCommandsOfAChoice) {
    ScriptedChannel card({"9000"});
    FailingChannel channel(
        card, [](const Blob& command) { return command[1] == 0xD6; }, 0x6581);
    EXPECT_EQ(sent(channel), "9000");
    EXPECT_FALSE(channel.failed());
    EXPECT_EQ(sent(channel, octets("00D6000001AA")), "6581");
    EXPECT_EQ(sent(channel, octets("00D6000001AA")), "6581");
    EXPECT_EQ(card.commands.size(), 1u);
}

TEST(FailingChannel, ThrowsAsIfTheCardCouldNotBeReached) {
    ScriptedChannel card({"9000"});
    FailingChannel channel(card, 0, FailingChannel::unreachable);
    EXPECT_EQ(failureOf([&] { channel.transmit(read); }),
              smartcardFailure("card cannot be reached", "FailingChannel::transmit"));
    EXPECT_EQ(sent(channel), "9000");
}

TEST(TearingChannel, PullsTheCardOutBeforeTheCommand) {
    ScriptedChannel card({"9000"});
    TearingChannel channel(card, 1, TearingChannel::Moment::beforeCommand);
    const Failure gone = smartcardFailure("card cannot be reached", "TearingChannel::transmit");
    EXPECT_EQ(sent(channel), "9000");
    EXPECT_FALSE(channel.torn());
    EXPECT_EQ(failureOf([&] { channel.transmit(read); }), gone);
    EXPECT_EQ(failureOf([&] { channel.transmit(read); }), gone);
    EXPECT_TRUE(channel.torn());
    EXPECT_EQ(card.commands.size(), 1u);
}

TEST(TearingChannel, PullsTheCardOutBeforeTheResponse) {
    ScriptedChannel card({"9000"});
    TearingChannel channel(card, 1, TearingChannel::Moment::beforeResponse);
    EXPECT_EQ(sent(channel), "9000");
    EXPECT_EQ(failureOf([&] { channel.transmit(read); }).id, smartcardId);
    EXPECT_EQ(failureOf([&] { channel.transmit(read); }).id, smartcardId);
    EXPECT_EQ(card.commands.size(), 2u);
}

}  // namespace
}  // namespace tovi::test
