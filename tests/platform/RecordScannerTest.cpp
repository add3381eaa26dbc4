#include "tovi/platform/RecordScanner.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <random>

#include "tests/platform/FakeCard.h"

namespace tovi {

void PrintTo(const FileEntry& entry, std::ostream* out) {
    static constexpr const char* names[] = {"record", "broken", "erased", "padding", "stale"};
    *out << names[static_cast<int>(entry.kind)] << " " << entry.offset << "+" << entry.length;
}

namespace {

using test::times;
using test::operator+;
using Kind = FileEntry::Kind;
using Entries = std::vector<FileEntry>;

const Blob shortRecord = {0x30, 0x02, 0x30, 0x00};

/// A record of 50 octets, 48 of them contents, whose contents begin with an empty SEQUENCE.
Blob recordOf48() { return Blob{0x30, 0x30, 0x30, 0x00} + times(46, 0x11); }

Blob erased(Blob record) {
    record[0] = 0x00;
    return record;
}

TEST(RecordScanner, FindsRecordsBackToBack) {
    const Entries expected = {{Kind::record, 0, 4}, {Kind::record, 4, 5}};
    EXPECT_EQ(scanRecords(shortRecord + Blob{0xA1, 0x03, 0x30, 0x01, 0x00}), expected);
}

TEST(RecordScanner, FindsNothingInEmptyFiles) {
    EXPECT_EQ(scanRecords(Blob()), Entries{});
    EXPECT_EQ(scanRecords(times(9, 0x00)), (Entries{{Kind::padding, 0, 9}}));
    EXPECT_EQ(scanRecords(times(9, 0xFF)), (Entries{{Kind::padding, 0, 9}}));
}

TEST(RecordScanner, SkipsPaddingOfBothKindsAroundRecords) {
    const Blob file = Blob{0xFF, 0x00, 0x00} + shortRecord + Blob{0x00, 0xFF, 0xFF} + shortRecord +
                      Blob{0xFF, 0x00};
    const Entries expected = {{Kind::padding, 0, 3},
                              {Kind::record, 3, 4},
                              {Kind::padding, 7, 3},
                              {Kind::record, 10, 4},
                              {Kind::padding, 14, 2}};
    EXPECT_EQ(scanRecords(file), expected);
}

TEST(RecordScanner, SkipsAnErasedRecordWithItsLength) {
    const Blob live = {0xA0, 0x02, 0x05, 0x00};
    const Entries expected = {{Kind::record, 0, 4}, {Kind::erased, 4, 4}, {Kind::record, 8, 4}};
    EXPECT_EQ(scanRecords(live + erased(live) + live), expected);
}

TEST(RecordScanner, SkipsAnErasedRecordWithALongLength) {
    const Blob record = Blob{0x30, 0x82, 0x01, 0x00} + times(256, 0x30);
    const Entries expected = {{Kind::erased, 0, 260}, {Kind::record, 260, 4}};
    EXPECT_EQ(scanRecords(erased(record) + shortRecord), expected);
}

TEST(RecordScanner, TakesZeroBeforeZeroOrFFOrTheEndForPadding) {
    EXPECT_EQ(scanRecords(Blob{0x00, 0x00, 0xFF, 0x00}), (Entries{{Kind::padding, 0, 4}}));
}

TEST(RecordScanner, TakesZeroBeforeAContextTagForPadding) {
    const Blob live = {0xA0, 0x01, 0x05};
    EXPECT_EQ(scanRecords(Blob{0x00} + live),
              (Entries{{Kind::padding, 0, 1}, {Kind::record, 1, 3}}));
}

TEST(RecordScanner, TellsAnErasedRecordOf48OctetsFromPaddingBeforeASequence) {
    EXPECT_EQ(scanRecords(erased(recordOf48()) + shortRecord),
              (Entries{{Kind::erased, 0, 50}, {Kind::record, 50, 4}}));
    EXPECT_EQ(scanRecords(Blob{0x00} + shortRecord),
              (Entries{{Kind::padding, 0, 1}, {Kind::record, 1, 4}}));
    EXPECT_EQ(scanRecords(Blob{0x00} + recordOf48()),
              (Entries{{Kind::padding, 0, 1}, {Kind::record, 1, 50}}))
        << "here the octets begin 00 30 30 30";
    const Blob tokenInfo = Blob{0x30, 0x33, 0x02, 0x01} + times(49, 0x00);
    EXPECT_EQ(scanRecords(Blob{0x00} + tokenInfo),
              (Entries{{Kind::padding, 0, 1}, {Kind::record, 1, 53}}));
}

TEST(RecordScanner, TakesZeroBeforeALengthThatDoesNotFitForPadding) {
    // An erased record of 16 octets would fit; one octet less and it is padding, and stale octets.
    EXPECT_EQ(scanRecords(Blob{0x00, 0x10} + times(16, 0xFF)), (Entries{{Kind::erased, 0, 18}}));
    EXPECT_EQ(scanRecords(Blob{0x00, 0x10} + times(15, 0xFF)),
              (Entries{{Kind::padding, 0, 1}, {Kind::stale, 1, 16}}));
    // The same for 48: what is left is a record that runs past the file.
    Blob cut = erased(recordOf48());
    cut.pop_back();
    EXPECT_EQ(scanRecords(cut), (Entries{{Kind::padding, 0, 1}, {Kind::broken, 1, 48}}));
}

TEST(RecordScanner, TakesZeroBeforeAnInvalidLengthForPadding) {
    const Entries expected = {{Kind::padding, 0, 1}, {Kind::stale, 1, 3}};
    EXPECT_EQ(scanRecords(Blob{0x00, 0x80, 0x01, 0x02}), expected);  // indefinite
    EXPECT_EQ(scanRecords(Blob{0x00, 0x85, 0x01, 0x02}), expected);  // too long a length
    EXPECT_EQ(scanRecords(Blob{0x00, 0x83, 0x00, 0x00}), expected);  // cut by the end of the file
}

TEST(RecordScanner, EndsTheFileAtAPrimitiveTag) {
    EXPECT_EQ(scanRecords(shortRecord + Blob{0x80, 0x00, 0x00} + shortRecord),
              (Entries{{Kind::record, 0, 4}, {Kind::stale, 4, 7}}));
    EXPECT_EQ(scanRecords(shortRecord + Blob{0x80}),
              (Entries{{Kind::record, 0, 4}, {Kind::stale, 4, 1}}));
}

TEST(RecordScanner, KeepsARecordWithABadLengthAsOneLastBrokenOne) {
    const Entries expected = {{Kind::record, 0, 4}, {Kind::broken, 4, 7}};
    EXPECT_EQ(scanRecords(shortRecord + Blob{0xA0, 0x80, 0x01} + shortRecord), expected);
    EXPECT_EQ(scanRecords(shortRecord + Blob{0xA0, 0xFF, 0x01} + shortRecord), expected);
}

TEST(RecordScanner, KeepsARecordThatRunsPastTheFileAsOneLastBrokenOne) {
    EXPECT_EQ(scanRecords(shortRecord + Blob{0x30, 0x03, 0x30, 0x00}),
              (Entries{{Kind::record, 0, 4}, {Kind::broken, 4, 4}}));
    EXPECT_EQ(scanRecords(shortRecord + Blob{0x30}),
              (Entries{{Kind::record, 0, 4}, {Kind::broken, 4, 1}}));
}

TEST(RecordScanner, ReadsARealFileWithStaleOctetsBehindItsRecords) {
    const Blob first = Blob{0x30, 0x31} + times(0x31, 0x30);
    const Blob file = first + Blob{0x02, 0x00, 0x82, 0x04, 0x01, 0x00} + times(80, 0x00);
    EXPECT_EQ(scanRecords(file), (Entries{{Kind::record, 0, 51}, {Kind::stale, 51, 86}}));
}

TEST(RecordScanner, AsksForMoreUntilARecordIsWhole) {
    const Blob file = shortRecord + shortRecord;
    RecordScanner scanner;
    for (std::size_t read = 0; read < file.size(); ++read) {
        EXPECT_FALSE(scanner.scan(ASN1::View(file).first(read), file.size()));
        EXPECT_EQ(scanner.entries().size(), read / 4);
    }
    EXPECT_TRUE(scanner.scan(file, file.size()));
    EXPECT_EQ(scanner.entries().size(), 2u);
}

TEST(RecordScanner, AsksForMoreWhileTheEndOfTheFileIsNotKnown) {
    const Blob file = shortRecord;
    RecordScanner scanner;
    EXPECT_FALSE(scanner.scan(file, RecordScanner::unknownSize));
    EXPECT_TRUE(scanner.scan(file, file.size()));
}

TEST(RecordScanner, NeedsNothingBehindStaleOctets) {
    RecordScanner scanner;
    EXPECT_TRUE(scanner.scan(Blob{0x80}, RecordScanner::unknownSize));
    EXPECT_EQ(scanner.entries(), (Entries{{Kind::stale, 0, 1}}));
    RecordScanner inKnownFile;
    EXPECT_TRUE(inKnownFile.scan(Blob{0x80}, 100));
    EXPECT_EQ(inKnownFile.entries(), (Entries{{Kind::stale, 0, 100}}));
}

TEST(RecordScanner, FindsTheSameHoweverTheFileComes) {
    const Blob file = shortRecord + erased(recordOf48()) + Blob{0x00, 0xFF} + recordOf48() +
                      Blob{0x00, 0x02, 0x30, 0x00, 0x00} + shortRecord +
                      Blob{0x00, 0x82, 0x00, 0x03, 0x30, 0x01, 0x55} + Blob{0x30, 0x82, 0x01};
    for (std::size_t step = 1; step <= file.size(); ++step) {
        RecordScanner scanner;
        for (std::size_t read = 0; read < file.size(); read += step)
            scanner.scan(ASN1::View(file).first(read), RecordScanner::unknownSize);
        EXPECT_TRUE(scanner.scan(file, file.size()));
        EXPECT_EQ(scanner.entries(), scanRecords(file)) << "in steps of " << step;
    }
}

TEST(RecordScanner, TellsWherePaddingOfOneValueBegins) {
    const auto paddingOf = [](const Blob& octets) {
        RecordScanner scanner;
        scanner.scan(octets, RecordScanner::unknownSize);
        return scanner.uniformPadding(octets);
    };
    EXPECT_EQ(paddingOf(shortRecord + times(5, 0x00)), 4u);
    EXPECT_EQ(paddingOf(shortRecord + times(5, 0xFF)), 4u);
    EXPECT_EQ(paddingOf(shortRecord + Blob{0x00} + times(5, 0xFF)), std::nullopt);
    EXPECT_EQ(paddingOf(shortRecord + times(5, 0xFF) + Blob{0x00}), std::nullopt);
    EXPECT_EQ(paddingOf(Blob{0x00, 0xFF} + shortRecord + times(5, 0xFF)), 6u);
    EXPECT_EQ(paddingOf(shortRecord), std::nullopt);
    EXPECT_EQ(paddingOf(Blob{0x30, 0x7F} + times(5, 0x00)), std::nullopt) << "inside a record";
    EXPECT_EQ(paddingOf(times(5, 0x00) + Blob{0x30}), std::nullopt);
}

/// A directory file as writers leave it, and what it holds.
class GeneratedFile {
public:
    explicit GeneratedFile(std::uint32_t seed) : random_(seed) {
        for (std::uint32_t i = upTo(12); i > 0; --i) addSomething();
    }

    Blob octets;
    Entries records;

private:
    std::uint32_t upTo(std::uint32_t most) {
        return static_cast<std::uint32_t>(random_()) % (most + 1);
    }

    Blob record() {
        Blob common = Blob(upTo(90), 0x0C);
        for (std::uint8_t& octet : common) octet = static_cast<std::uint8_t>(random_());
        const Blob contents =
            Blob{0x30, static_cast<std::uint8_t>(common.size())} + common + Blob{0x30, 0x00};
        const std::uint8_t tag = upTo(1) == 0 ? 0x30 : static_cast<std::uint8_t>(0xA0 + upTo(4));
        return Blob{tag, static_cast<std::uint8_t>(contents.size())} + contents;
    }

    void addSomething() {
        const Blob next = record();
        switch (upTo(3)) {
            case 0:
                octets.append(ASN1::View(erased(next)));
                break;
            case 1:
                octets.append(ASN1::View(times(upTo(70), upTo(1) == 0 ? 0x00 : 0xFF)));
                break;
            default:
                records.push_back({Kind::record, static_cast<std::uint32_t>(octets.size()),
                                   static_cast<std::uint32_t>(next.size())});
                octets.append(ASN1::View(next));
        }
    }

    std::mt19937 random_;
};

TEST(RecordScanner, FindsExactlyTheLiveRecordsOfGeneratedFiles) {
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        const GeneratedFile file(seed);
        Entries found;
        for (const FileEntry& entry : scanRecords(file.octets))
            if (entry.kind == Kind::record) found.push_back(entry);
        ASSERT_EQ(found, file.records) << "seed " << seed;
    }
}

TEST(RecordScanner, CoversTheWholeFileWithoutGaps) {
    for (std::uint32_t seed = 0; seed < 500; ++seed) {
        const GeneratedFile file(seed);
        std::size_t end = 0;
        for (const FileEntry& entry : scanRecords(file.octets)) {
            ASSERT_EQ(entry.offset, end) << "seed " << seed;
            end += entry.length;
        }
        ASSERT_EQ(end, file.octets.size()) << "seed " << seed;
    }
}

}  // namespace
}  // namespace tovi
