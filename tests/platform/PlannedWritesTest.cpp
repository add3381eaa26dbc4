#include "tovi/platform/PlannedWrites.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {
namespace {

using test::times;
using test::operator+;

PlannedWrites writesTo(const Blob& file, const Blob& target, std::size_t most) {
    return {file, std::vector<std::uint8_t>(target.begin(), target.end()), most};
}

Blob ten() { return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}; }

/// Offset and octets of every step, one after the other.
std::vector<std::pair<std::size_t, Blob>> stepsOf(PlannedWrites& writes) {
    std::vector<std::pair<std::size_t, Blob>> steps;
    for (WriteStep& step : writes.take()) steps.emplace_back(step.offset, step.octets);
    return steps;
}

using Steps = std::vector<std::pair<std::size_t, Blob>>;

TEST(PlannedWrites, SendOnlyFromTheFirstToTheLastOctetThatDiffers) {
    PlannedWrites writes = writesTo(ten(), ten(), 8);
    writes.put(2, Blob{2, 0x33, 4, 0x55, 6});
    writes.put(2, Blob{2, 0x33, 4});
    EXPECT_EQ(Blob(writes.now()), (Blob{0, 1, 2, 0x33, 4, 0x55, 6, 7, 8, 9}));
    EXPECT_EQ(stepsOf(writes), (Steps{{3, {0x33, 4, 0x55}}}));
}

TEST(PlannedWrites, FinishOnceOneCommandCanDoTheRest) {
    PlannedWrites writes = writesTo(ten(), times(10, 0x77), 4);
    EXPECT_FALSE(writes.finish());
    writes.put(0, times(4, 0x77));
    EXPECT_FALSE(writes.finish()) << "six are left";
    writes.put(8, times(2, 0x77));
    EXPECT_TRUE(writes.finish());
    EXPECT_TRUE(writes.finish());
    EXPECT_EQ(stepsOf(writes),
              (Steps{{0, times(4, 0x77)}, {8, times(2, 0x77)}, {4, times(4, 0x77)}}));
}

TEST(PlannedWrites, FinishSeesWhatAStepTookBack) {
    Blob target = ten();
    target[9] = 0x99;
    PlannedWrites writes = writesTo(ten(), target, 4);
    writes.put(0, Blob{0x11});
    EXPECT_FALSE(writes.finish());
    writes.put(0, Blob{0});
    EXPECT_TRUE(writes.finish());
    EXPECT_EQ(Blob(writes.now()), target);
}

TEST(PlannedWrites, NeedNoStepWhenNothingDiffers) {
    PlannedWrites writes = writesTo(ten(), ten(), 4);
    EXPECT_TRUE(writes.finish());
    EXPECT_EQ(writes.size(), 0u);
}

TEST(PlannedWrites, HideWhatIsWrittenBehindAMarkThatIsReplacedLast) {
    PlannedWrites writes = writesTo(ten(), ten(), 4);
    writes.putLong(1, Blob{0xAA, 0xBB}, times(7, 0x77));
    EXPECT_EQ(stepsOf(writes),
              (Steps{{1, {0xAA, 0xBB, 0x77, 0x77}}, {5, times(3, 0x77)}, {1, {0x77, 0x77}}}));
}

TEST(PlannedWrites, GoBackwardsAndKeepTheBeginningToTheLast) {
    const Blob file = times(20, 0x11);
    const Blob target = times(20, 0x00);
    PlannedWrites writes = writesTo(file, target, 8);
    EXPECT_TRUE(writes.putBackwards(0, target));
    EXPECT_EQ(stepsOf(writes), (Steps{{12, times(8, 0)}, {7, times(5, 0)}, {0, times(7, 0)}}));
}

TEST(PlannedWrites, GoingBackwardsNeverLeaveTheTagOfASequenceAlone) {
    // Erased records of 48 octets, 00 30 30 xx: without the second 30 the first is a live tag.
    for (std::size_t offset = 0; offset < 24; ++offset) {
        const Blob file = times(offset, 0xFF) + Blob{0x00, 0x30, 0x30} + times(47, 0x11);
        for (const std::uint8_t fill : Blob{0x00, 0xFF}) {
            PlannedWrites writes = writesTo(file, times(file.size(), fill), 8);
            writes.putBackwards(0, times(file.size(), fill));
            Blob now = file;
            for (const auto& [at, octets] : stepsOf(writes)) {
                std::copy(octets.begin(), octets.end(), now.begin() + at);
                for (const FileEntry& entry : scanRecords(now))
                    EXPECT_FALSE(entry.isRecord()) << offset << " at " << at;
            }
            EXPECT_EQ(now, times(file.size(), fill));
        }
    }
}

TEST(PlannedWrites, GoingBackwardsSkipWhatIsRightAlready) {
    const Blob file = times(3, 0x11) + times(30, 0x00) + times(2, 0x11) + times(5, 0x00);
    PlannedWrites writes = writesTo(file, Blob{0x55} + times(38, 0x00) + Blob{0x55}, 8);
    EXPECT_FALSE(writes.putBackwards(0, times(40, 0x00)));
    EXPECT_EQ(stepsOf(writes), (Steps{{33, times(2, 0)}, {0, times(3, 0)}}));
}

}  // namespace
}  // namespace tovi
