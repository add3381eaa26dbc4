#include "tovi/platform/FileLayout.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"

namespace tovi {
namespace {

using test::times;
using test::operator+;
using Kind = RecordChange::Kind;

const Blob a = {0x30, 0x02, 0x30, 0x0A};
const Blob b = {0x30, 0x03, 0x30, 0x0B, 0x0B};
const Blob fresh = {0xA0, 0x01, 0x30};
const Blob erased = {0x00, 0x03, 0x30, 0x0C, 0x0C};
const Blob stale = {0x80, 0x00, 0x30, 0x55};
const Blob gapOfTwo = {0x00, 0xFF};
const Blob broken = {0x30, 0x7F, 0x30, 0x0D};

Blob targetOf(const Blob& file, const RecordChange& change) {
    const auto layout = FileLayout::of(file, change);
    return layout ? Blob(layout->target.begin(), layout->target.end()) : Blob();
}

TEST(FileLayout, PacksRecordsAndFillsWhatTheyLeave) {
    for (const std::uint8_t fill : Blob{0x00, 0xFF}) {
        const Blob file = times(2, 0xFF) + a + erased + b + times(3, fill);
        EXPECT_EQ(targetOf(file, {}), a + b + times(10, fill));
        EXPECT_EQ(targetOf(file, {Kind::insert, 2, fresh}), a + b + fresh + times(7, fill));
        EXPECT_EQ(targetOf(file, {Kind::insert, 9, fresh}), a + b + fresh + times(7, fill));
        EXPECT_EQ(targetOf(file, {Kind::insert, 0, fresh}), fresh + a + b + times(7, fill));
        EXPECT_EQ(targetOf(file, {Kind::replace, 1, fresh}), a + fresh + times(12, fill));
        EXPECT_EQ(targetOf(file, {Kind::remove, 0, {}}), b + times(14, fill));
    }
}

TEST(FileLayout, RemovesARecordWhateverComesWithIt) {
    EXPECT_EQ(targetOf(a + b, {Kind::remove, 1, fresh}), a + times(5, 0x00));
}

TEST(FileLayout, FillsAFileWithoutPaddingWith00) {
    EXPECT_EQ(targetOf(a + b, {Kind::remove, 0, {}}), b + times(4, 0x00));
    const Blob endsWithFF = {0x30, 0x02, 0x30, 0xFF};
    EXPECT_EQ(targetOf(a + endsWithFF, {Kind::remove, 1, {}}), a + times(4, 0x00));
}

TEST(FileLayout, HasNoRoomForMoreThanTheFileHolds) {
    EXPECT_TRUE(FileLayout::of(a + times(3, 0x00), {Kind::insert, 1, fresh}));
    EXPECT_FALSE(FileLayout::of(a + times(2, 0x00), {Kind::insert, 1, fresh}));
    EXPECT_FALSE(FileLayout::of(a, {Kind::replace, 0, b}));
    EXPECT_FALSE(FileLayout::of({}, {Kind::insert, 0, fresh}));
}

TEST(FileLayout, ClearsErasedAndStaleOctetsBehindTheRecords) {
    EXPECT_EQ(targetOf(a + Blob{0xFF} + erased + times(2, 0xFF), {Kind::replace, 0, a}),
              a + times(8, 0xFF));
    EXPECT_EQ(targetOf(a + stale, {Kind::replace, 0, a}), a + times(4, 0x00));
    EXPECT_EQ(targetOf(a + times(3, 0xFF) + stale, {Kind::insert, 1, fresh}),
              a + fresh + times(4, 0x00));
}

TEST(FileLayout, LeavesPaddingOfAnotherValueBehindTheRecords) {
    const Blob file = a + times(5, 0x00) + times(5, 0xFF);
    EXPECT_EQ(targetOf(file, {Kind::insert, 1, fresh}),
              a + fresh + times(2, 0x00) + times(5, 0xFF));
}

TEST(FileLayout, KeepsABrokenRecordWhereItIs) {
    const Blob file = a + times(5, 0x00) + broken;
    EXPECT_EQ(targetOf(file, {Kind::insert, 2, fresh}), a + fresh + gapOfTwo + broken);
    EXPECT_EQ(targetOf(file, {Kind::remove, 0, {}}), Blob{0x00} + times(8, 0xFF) + broken);
    EXPECT_FALSE(FileLayout::of(file, {Kind::insert, 1, fresh + fresh}));
    EXPECT_EQ(targetOf(file, {Kind::remove, 1, {}}), a + times(9, 0x00));
    EXPECT_EQ(targetOf(file, {Kind::replace, 1, fresh}), a + fresh + times(6, 0x00));
    EXPECT_EQ(FileLayout::of(file, {Kind::insert, 2, fresh})->changed, 1u);
}

TEST(FileLayout, TakesTheLastOctetOfABrokenRecordForPadding) {
    const Blob file = a + broken + times(20, 0xFF);
    EXPECT_EQ(targetOf(file, {Kind::remove, 1, {}}), a + times(24, 0xFF));
}

TEST(FileLayout, KnowsWhenNothingMoves) {
    const auto keeps = [](const Blob& file, const RecordChange& change) {
        return FileLayout::of(file, change)->keepsPlaces;
    };
    const Blob other = {0x30, 0x02, 0x30, 0x77};
    EXPECT_TRUE(keeps(a + b + times(3, 0x00), {Kind::replace, 0, other}));
    EXPECT_FALSE(keeps(a + b + times(3, 0x00), {Kind::replace, 0, fresh}));
    EXPECT_FALSE(keeps(Blob{0xFF} + a + b, {Kind::replace, 0, other}));
    EXPECT_FALSE(keeps(a + b + erased, {Kind::replace, 0, other}));
}

}  // namespace
}  // namespace tovi
