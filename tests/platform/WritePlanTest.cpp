#include "tovi/platform/WritePlan.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "tests/platform/FakeCard.h"
#include "tovi/platform/DirectoryFile.h"
#include "tovi/platform/GapMarks.h"
#include "tovi/platform/RecordScanner.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

using test::times;
using test::operator+;
using Kind = RecordChange::Kind;
using Records = std::vector<Blob>;

constexpr std::size_t markRoom = 5;

/// A record of `length` octets, at least 2; `name` makes it differ from others.
Blob record(std::size_t length, std::uint8_t name, std::uint8_t tag = 0x30) {
    Blob record = {tag};
    const std::size_t sizeOctets = length - 2 < 0x80 ? 0 : length - 3 <= 0xFF ? 1 : 2;
    const std::size_t contents = length - 2 - sizeOctets;
    if (sizeOctets == 1) record.push_back(0x81);
    if (sizeOctets == 2) {
        record.push_back(0x82);
        record.push_back(static_cast<std::uint8_t>(contents >> 8));
    }
    record.push_back(static_cast<std::uint8_t>(contents));
    for (std::size_t i = 0; i < contents; ++i)
        record.push_back(i == 0 ? std::uint8_t{0x30} : static_cast<std::uint8_t>(name + i * 7));
    return record;
}

Records recordsIn(ASN1::View file) {
    Records records;
    for (const FileEntry& entry : scanRecords(file))
        if (entry.kind == FileEntry::Kind::record || entry.kind == FileEntry::Kind::broken)
            records.emplace_back(file.subspan(entry.offset, entry.length));
    return records;
}

/// What reading finds that stops at long padding.
Records recordsRead(const Blob& file, std::size_t mostRead) {
    const Blob path = {0x3F, 0x00};
    test::FakeCard card;
    card.files[path] = test::transparentFile(file);
    card.mostRead = mostRead;
    const DirectoryFile read = readDirectoryFile(card, path, ReadExtent::records);
    Records records;
    for (const RecordPlace& place : read.places) records.emplace_back(read.octetsAt(place));
    return records;
}

/// Whether `octets` are a record with the tag of `record` that no type decodes.
bool isUnfinished(const Blob& octets, const Blob& record) {
    const TlvHeader header = readTlvHeader(octets);
    return octets[0] == record[0] && header.state == TlvHeader::State::complete &&
           header.total() == octets.size() && octets[header.size] == 0x00;
}

Records changed(Records records, const RecordChange& change) {
    const auto at = records.begin() + static_cast<std::ptrdiff_t>(change.place);
    if (change.kind == Kind::insert) records.insert(at, Blob(change.record));
    if (change.kind == Kind::replace) *at = change.record;
    if (change.kind == Kind::remove) records.erase(at);
    return records;
}

bool isLong(std::size_t length, std::size_t most) { return length + markRoom > most; }

/// Whether `found` are `expected`, but for one long record that may be unfinished: as it is in
/// `finally`, which has as many records or is of no interest.
bool areRecords(const Records& found, const Records& expected, const Records& finally,
                std::size_t most) {
    if (found.size() != expected.size()) return false;
    std::size_t unfinished = 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (found[i] == expected[i]) continue;
        const Blob& wanted = finally.size() == expected.size() ? finally[i] : expected[i];
        if (!isLong(wanted.size(), most) || !isUnfinished(found[i], wanted)) return false;
        ++unfinished;
    }
    return unfinished <= 1;
}

::testing::AssertionResult isCompact(const Blob& file, const Records& records) {
    Blob packed;
    for (const Blob& record : records) packed.append(record);
    if (packed.size() > file.size() || Blob(ASN1::View(file).first(packed.size())) != packed)
        return ::testing::AssertionFailure() << "records are not packed";
    for (std::size_t i = packed.size(); i < file.size(); ++i)
        if (!isPadding(file[i])) return ::testing::AssertionFailure() << "no padding at " << i;
    return ::testing::AssertionSuccess();
}

std::string hex(ASN1::View octets) {
    std::string text;
    char digits[4];
    for (const std::uint8_t octet : octets) {
        std::snprintf(digits, sizeof digits, "%02X ", octet);
        text += digits;
    }
    return text;
}

/// Performs a plan, and checks after each step what a card that is pulled out there would show.
class Performance {
public:
    Performance(Blob file, const RecordChange& change, std::size_t most)
        : file_(std::move(file)), change_(change), most_(most), before_(recordsIn(file_)) {
        after_ = changed(before_, change);
    }

    void run() {
        const Blob start = file_;
        const auto plan = planWriting(file_, change_, most_);
        ASSERT_TRUE(plan);
        commands = plan->steps.size();
        const bool readsAll = readsLike(before_);
        for (std::size_t i = 0; i < plan->steps.size(); ++i) {
            const WriteStep& step = plan->steps[i];
            ASSERT_FALSE(step.octets.empty());
            ASSERT_LE(step.octets.size(), most_);
            ASSERT_LE(step.offset + step.octets.size(), file_.size());
            std::copy(step.octets.begin(), step.octets.end(), file_.begin() + step.offset);
            const Records found = recordsIn(file_);
            const bool isDone = i + 1 >= plan->effective;
            ASSERT_TRUE(areRecords(found, isDone ? after_ : before_, after_, most_))
                << "step " << i << " of " << commands << "\n"
                << hex(start) << "\n"
                << hex(file_);
            ASSERT_TRUE(!readsAll || readsLike(found)) << hex(start) << "\n" << hex(file_);
        }
        EXPECT_LE(plan->effective, plan->steps.size());
        EXPECT_EQ(recordsIn(file_), after_);
        EXPECT_TRUE(!isPacked || isCompact(file_, after_)) << hex(start) << "\n" << hex(file_);
    }

    bool isPacked = true;  ///< expected at the end
    std::size_t commands = 0;

private:
    bool readsLike(const Records& records) const {
        for (const std::size_t mostRead : {70u, 97u, 256u})
            if (recordsRead(file_, mostRead) != records) return false;
        return true;
    }

    Blob file_;
    const RecordChange& change_;
    std::size_t most_;
    Records before_;
    Records after_;
};

/// Files of all kinds, as this and other software may have left them.
class FileMaker {
public:
    explicit FileMaker(unsigned seed) : random_(seed) {}

    std::size_t upTo(std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random_);
    }
    bool oneOf(std::size_t count) { return upTo(count - 1) == 0; }

    Blob anyRecord(std::size_t most) {
        const std::uint8_t tag = Blob{0x30, 0x30, 0xA0, 0xA8, 0x61}[upTo(4)];
        const std::size_t length = oneOf(6) ? most - 3 + upTo(60) : 2 + upTo(oneOf(2) ? 30 : most);
        return record(std::max<std::size_t>(length, 2), static_cast<std::uint8_t>(++names_), tag);
    }

    Blob anyGap(std::size_t most) {
        if (oneOf(2)) return {};
        const std::size_t length = 1 + upTo(oneOf(3) ? 2 * most : 20);
        switch (upTo(4)) {
            case 0: {
                Blob gap = record(std::max<std::size_t>(length, 4), 0x77);
                gap[0] = 0x00;
                return gap;
            }
            case 1:
                return times(length, 0x00);
            case 2:
                return times(length, 0xFF);
            case 3:
                return anyGap(most) + anyGap(most);
            default:
                return length == 1 ? Blob{0xFF} : Blob{0x00} + times(length - 1, 0xFF);
        }
    }

    Blob anyFile(std::size_t most) {
        const bool hasGaps = oneOf(3);
        Blob file;
        for (std::size_t left = upTo(8); left > 0; --left) {
            if (hasGaps) file = file + anyGap(most);
            file = file + anyRecord(most);
        }
        const std::uint8_t fill = oneOf(2) ? 0x00 : 0xFF;
        const Blob padding = oneOf(5) ? Blob() : times(upTo(3 * most), fill);
        if (!oneOf(4)) return file + padding;
        if (oneOf(2)) return file + padding + anyGap(most) + times(upTo(20), fill);
        if (oneOf(2)) return file + padding + Blob{0x80} + anyRecord(most) + anyRecord(most);
        return file + padding + Blob{0xFF, 0x30, 0x85} + anyRecord(most);
    }

private:
    std::mt19937 random_;
    unsigned names_ = 0;
};

bool endsBroken(const Blob& file) {
    const auto entries = scanRecords(file);
    return !entries.empty() && entries.back().kind == FileEntry::Kind::broken;
}

TEST(WritePlan, LeavesAReadableFileAfterEveryStepOfAnyChange) {
    std::size_t performed = 0;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE(seed);
        FileMaker maker(seed);
        const std::size_t most = std::vector<std::size_t>{16, 8, 32, 255, 70}[maker.upTo(4)];
        const Blob file = maker.anyFile(most);
        const std::size_t count = recordsIn(file).size();
        const bool walled = endsBroken(file);
        const Blob fresh = maker.anyRecord(most);
        for (const Kind kind : {Kind::none, Kind::insert, Kind::replace, Kind::remove}) {
            const bool isExisting = kind == Kind::replace || kind == Kind::remove;
            if (isExisting && count == 0) continue;
            RecordChange change{kind, 0, fresh};
            const std::size_t last = count - (isExisting || (walled && count > 0) ? 1 : 0);
            change.place = kind == Kind::insert && maker.oneOf(2) ? last : maker.upTo(last);
            if (!planWriting(file, change, most)) continue;
            Performance performance(file, change, most);
            performance.isPacked = !walled;
            ASSERT_NO_FATAL_FAILURE(performance.run());
            ++performed;
        }
    }
    EXPECT_GT(performed, 3000u);
}

/// Files of records that are easy to read: every octet of contents is the record's number.
Blob plain(std::size_t length, std::uint8_t name) {
    Blob record = {0x30};
    if (length > 129) record.push_back(0x81);
    record.push_back(static_cast<std::uint8_t>(length - record.size() - 1));
    return record + times(length - record.size(), name);
}

Blob gap(std::size_t length) { return Blob{0x00} + times(length - 1, 0xFF); }

/// What the file holds after every step of a plan.
std::vector<Blob> imagesOf(Blob file, const RecordChange& change, std::size_t most) {
    std::vector<Blob> images;
    const auto plan = planWriting(file, change, most);
    for (const WriteStep& step : plan->steps) {
        EXPECT_LE(step.octets.size(), most);
        std::copy(step.octets.begin(), step.octets.end(), file.begin() + step.offset);
        images.push_back(file);
    }
    return images;
}

using Images = std::vector<Blob>;

TEST(WritePlan, LetsTheGapOfARemovedRecordTravelToTheEnd) {
    const Blob file = plain(20, 1) + plain(20, 2) + plain(20, 3) + plain(20, 4) + times(20, 0x00);
    EXPECT_EQ(imagesOf(file, {Kind::remove, 0, {}}, 44),
              (Images{plain(20, 2) + gap(20) + plain(20, 3) + plain(20, 4) + times(20, 0x00),
                      plain(20, 2) + plain(20, 3) + gap(20) + plain(20, 4) + times(20, 0x00),
                      plain(20, 2) + plain(20, 3) + plain(20, 4) + times(40, 0x00)}));
    EXPECT_EQ(imagesOf(file, {Kind::remove, 0, {}}, 60),
              (Images{plain(20, 2) + plain(20, 3) + gap(20) + plain(20, 4) + times(20, 0x00),
                      plain(20, 2) + plain(20, 3) + plain(20, 4) + times(40, 0x00)}));
}

TEST(WritePlan, MarksAGapOfOneOctetWithFF) {
    const Blob file = plain(20, 1) + plain(20, 2) + plain(20, 3) + times(20, 0x00);
    EXPECT_EQ(imagesOf(file, {Kind::replace, 0, plain(19, 9)}, 40),
              (Images{plain(19, 9) + plain(20, 2) + Blob{0xFF} + plain(20, 3) + times(20, 0x00),
                      plain(19, 9) + plain(20, 2) + plain(20, 3) + times(21, 0x00)}));
}

TEST(WritePlan, LetsTheRoomForALongerRecordTravelFromTheEnd) {
    const Blob file = plain(20, 1) + plain(20, 2) + plain(20, 3) + plain(20, 4) + times(20, 0x00);
    EXPECT_EQ(
        imagesOf(file, {Kind::replace, 0, plain(25, 9)}, 47),
        (Images{
            plain(20, 1) + plain(20, 2) + gap(5) + plain(20, 3) + plain(20, 4) + times(15, 0x00),
            plain(25, 9) + plain(20, 2) + plain(20, 3) + plain(20, 4) + times(15, 0x00)}));
}

TEST(WritePlan, ErasesARecordThatIsTooLongForOneCommandByItsTag) {
    const Blob file = plain(10, 1) + plain(40, 2) + times(10, 0xFF);
    const auto plan = planWriting(file, {Kind::remove, 1, {}}, 30);
    EXPECT_EQ(plan->steps[0].offset, 10u);
    EXPECT_EQ(plan->steps[0].octets, Blob{0x00});
    EXPECT_EQ(plan->effective, 1u);
}

TEST(WritePlan, MovesRecordsOverOneThatIsTooLongAndErasesTheRest) {
    const Blob file = plain(40, 1) + plain(10, 2) + plain(25, 3) + times(10, 0xFF);
    const Images images = imagesOf(file, {Kind::remove, 0, {}}, 30);
    EXPECT_EQ(images[0], plain(10, 2) + erasedMark(40) + times(28, 1) + plain(10, 2) +
                             plain(25, 3) + times(10, 0xFF));
    EXPECT_EQ(images.back(), plain(10, 2) + plain(25, 3) + times(50, 0xFF));
}

TEST(WritePlan, MovesRecordsOverALongGapAsFastAsOverAShortOne) {
    Blob records;
    for (std::uint8_t i = 0; i < 40; ++i) records = records + plain(50, i);
    const Blob file = record(1000, 0x31) + records;
    const auto plan = planWriting(file, {Kind::remove, 0, {}}, 255);
    EXPECT_LE(plan->steps.size(), 8u + 4u + 1u) << "five records a command, and the end is cleared";
}

TEST(WritePlan, WritesTheTagOfALongNewRecordLast) {
    const Blob file = plain(10, 1) + times(60, 0xFF);
    const auto plan = planWriting(file, {Kind::insert, 1, plain(50, 2)}, 20);
    ASSERT_EQ(plan->steps.size(), 4u);
    EXPECT_EQ(plan->effective, 4u);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NE(plan->steps[i].octets[0], 0x30);
    EXPECT_EQ(plan->steps[3].offset, 10u);
    EXPECT_EQ(plan->steps[3].octets, (Blob{0x30, 0x30, 0x02}));
}

TEST(WritePlan, ReplacesALongRecordBehindAMark) {
    const Blob file = plain(10, 1) + plain(50, 2) + plain(10, 3);
    const Images images = imagesOf(file, {Kind::replace, 1, plain(50, 9)}, 20);
    const Blob mark = {0x30, 0x81, 0x2F, 0x00};
    EXPECT_EQ(images[0], plain(10, 1) + mark + times(16, 9) + times(30, 2) + plain(10, 3));
    EXPECT_EQ(images.back(), plain(10, 1) + plain(50, 9) + plain(10, 3));
    EXPECT_EQ(images.size(), 4u);
}

TEST(WritePlan, MixesAGapOfOneValueBeforeRecordsMoveAwayFromIt) {
    // What follows the gap could be hidden by a response that ends inside it.
    for (const std::uint8_t fill : Blob{0x00, 0xFF}) {
        const Blob behind = plain(40, 2) + times(80, 0x00);
        const Blob file = plain(10, 1) + times(70, fill) + behind;
        const Images images = imagesOf(file, {Kind::replace, 0, plain(100, 9)}, 70);
        const Blob mixed = Blob{0x00, 0xFF} + times(68, fill);
        EXPECT_EQ(images[0], plain(10, 1) + mixed + behind);
    }
}

TEST(WritePlan, LeavesEveryOctetOfACompactFileThatIsOnlyCompacted) {
    EXPECT_TRUE(imagesOf(plain(10, 1) + times(9, 0xFF), {}, 20).empty());
}

TEST(WritePlan, ClearsStaleOctetsBeforeItWritesThere) {
    const Blob file = plain(10, 1) + Blob{0x80} + plain(20, 2) + plain(20, 3);
    const Images images = imagesOf(file, {Kind::insert, 1, plain(15, 9)}, 20);
    for (std::size_t i = 0; i + 1 < images.size(); ++i)
        EXPECT_EQ(recordsIn(images[i]), Records{plain(10, 1)});
    EXPECT_EQ(images.back(), plain(10, 1) + plain(15, 9) + times(26, 0x00));
}

}  // namespace
}  // namespace tovi
