#include "tovi/platform/GapMarks.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {
namespace {

using test::times;
using test::operator+;
using Kind = FileEntry::Kind;

const Blob live = {0x30, 0x02, 0x30, 0x00};

Blob paintedGap(std::size_t length) {
    Blob gap = times(length, 0x55);
    paintGap(std::span(gap.data(), gap.size()));
    return gap;
}

TEST(PaintGap, Gives00AndThenFF) {
    EXPECT_EQ(paintedGap(0), Blob{});
    EXPECT_EQ(paintedGap(1), Blob{0xFF});
    EXPECT_EQ(paintedGap(2), (Blob{0x00, 0xFF}));
    EXPECT_EQ(paintedGap(5), (Blob{0x00, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(ErasedMark, HidesWhateverStandsBehindIt) {
    for (std::size_t length = 3; length < 70000; length += length < 400 ? 1 : 997) {
        Blob file = times(length, 0x30);
        const Blob mark = erasedMark(length);
        ASSERT_LE(mark.size(), 5u);
        std::copy(mark.begin(), mark.end(), file.begin());
        const auto entries = scanRecords(file + live);
        ASSERT_EQ(entries.size(), 2u) << length;
        EXPECT_EQ(entries[0], (FileEntry{Kind::erased, 0, static_cast<std::uint32_t>(length)}));
        EXPECT_EQ(entries[1].kind, Kind::record);
    }
}

TEST(ErasedMark, IsAsShortAsItCanBe) {
    EXPECT_EQ(erasedMark(3), (Blob{0x00, 0x01}));
    EXPECT_EQ(erasedMark(129), (Blob{0x00, 0x7F}));
    EXPECT_EQ(erasedMark(130), (Blob{0x00, 0x81, 0x7F}));
    EXPECT_EQ(erasedMark(258), (Blob{0x00, 0x81, 0xFF}));
    EXPECT_EQ(erasedMark(259), (Blob{0x00, 0x82, 0x00, 0xFF}));
    EXPECT_EQ(erasedMark(0x12345), (Blob{0x00, 0x83, 0x01, 0x23, 0x40}));
}

TEST(ErasedMark, AvoidsALengthThatCouldBeATag) {
    EXPECT_EQ(erasedMark(50), (Blob{0x00, 0x81, 0x2F}));
}

TEST(ErasedMark, IsPaddingWhereAnEntryDoesNotFit) {
    EXPECT_EQ(erasedMark(0), Blob{});
    EXPECT_EQ(erasedMark(1), Blob{0xFF});
    EXPECT_EQ(erasedMark(2), (Blob{0x00, 0xFF}));
}

TEST(UnfinishedMark, MakesARecordWithTheTagAndContentsThatNothingBeginsWith) {
    for (std::size_t length = longestMark; length < 70000; length += length < 400 ? 1 : 997) {
        Blob file = times(length, 0x30);
        const Blob mark = unfinishedMark(Blob{0xA1, 0x00}, length);
        ASSERT_LE(mark.size(), longestMark);
        std::copy(mark.begin(), mark.end(), file.begin());
        const auto entries = scanRecords(file + live);
        ASSERT_EQ(entries.size(), 2u) << length;
        EXPECT_EQ(entries[0], (FileEntry{Kind::record, 0, static_cast<std::uint32_t>(length)}));
        EXPECT_EQ(file[0], 0xA1);
        EXPECT_EQ(mark.back(), 0x00);
    }
}

TEST(UnfinishedMark, IsNoErasedRecordBehindAZeroOctet) {
    // 00 30 30 00 would be one (the tag overwritten, 48 octets).
    const Blob mark = unfinishedMark(Blob{0x30, 0x00}, 50);
    EXPECT_EQ(mark, (Blob{0x30, 0x81, 0x2F, 0x00}));
    const auto entries = scanRecords(Blob{0x00} + mark + times(46, 0x55));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1], (FileEntry{Kind::record, 1, 50}));
}

TEST(UnfinishedMark, HasTheTagOfASequenceForOneOfSeveralOctets) {
    EXPECT_EQ(unfinishedMark(Blob{0x7F, 0x4E, 0x00}, 10), (Blob{0x30, 0x08, 0x00}));
}

}  // namespace
}  // namespace tovi
