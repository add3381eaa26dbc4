#include "tovi/container/FreeFID.h"

#include <gtest/gtest.h>

#include "tests/support/Failure.h"
#include "tovi/records/Infos.h"

namespace tovi::test {
namespace {

using List = std::vector<PKCS15ObjectInfo<DataInfo>>;

List objectsIn(std::initializer_list<std::uint64_t> fids) {
    List list;
    for (const std::uint64_t fid : fids) list.emplace_back().fid = fid;
    return list;
}

List objectsFromTo(std::uint64_t first, std::uint64_t last) {
    List list;
    for (std::uint64_t fid = first; fid <= last; ++fid) list.emplace_back().fid = fid;
    return list;
}

const Failure noFreeFID = smartcardFailure("no free FID", "getNextFreeFID");

TEST(GetNextFreeFID, IsTheStartWhenNobodyUsesIt) {
    EXPECT_EQ(getNextFreeFID(objectsIn({}), 0x5000), 0x5000);
    EXPECT_EQ(getNextFreeFID(objectsIn({0x5001}), 0x5000), 0x5000);
}

TEST(GetNextFreeFID, PassesOverUsedOnes) {
    const List objects = objectsIn({0x5001, 0x5000});
    EXPECT_EQ(getNextFreeFID(objects, 0x5000), 0x5002);
    EXPECT_EQ(getNextFreeFID(objects, 0x5001), 0x5002);
}

TEST(GetNextFreeFID, TakesTheLowestGap) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x5000, 0x5002, 0x5003}), 0x5000), 0x5001);
}

TEST(GetNextFreeFID, IgnoresFIDsBelowTheStart) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x4FFE, 0x4FFF}), 0x5000), 0x5000);
}

TEST(GetNextFreeFID, CountsAFIDOnceHoweverManyObjectsShareIt) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x5000, 0x5000, 0x5000}), 0x5000), 0x5001);
}

TEST(GetNextFreeFID, LooksAtTheLowSixteenBits) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x10005000}), 0x5000), 0x5001);
}

TEST(GetNextFreeFID, NeverCountsObjectsWithoutAFIDAsUsed) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0xFFFF, noFID}), 0xFFFF), 0xFFFF);
}

TEST(GetNextFreeFID, PassesOverTheFilesThatTheStandardNames) {
    for (std::uint16_t start = 0x5031; start <= 0x5033; ++start)
        EXPECT_EQ(getNextFreeFID(objectsIn({}), start), 0x5034) << start;
    EXPECT_EQ(getNextFreeFID(objectsIn({}), 0x5030), 0x5030);
    EXPECT_EQ(getNextFreeFID(objectsIn({}), 0x5034), 0x5034);
}

TEST(GetNextFreeFID, PassesOverTheSecondReservedBand) {
    for (std::uint16_t start = 0x6376; start <= 0x6378; ++start)
        EXPECT_EQ(getNextFreeFID(objectsIn({}), start), 0x6379) << start;
    EXPECT_EQ(getNextFreeFID(objectsIn({}), 0x6375), 0x6375);
    EXPECT_EQ(getNextFreeFID(objectsIn({}), 0x6379), 0x6379);
}

TEST(GetNextFreeFID, PassesOverUsedOnesBehindABandToo) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x5030, 0x5034, 0x5035}), 0x5030), 0x5036);
    EXPECT_EQ(getNextFreeFID(objectsIn({0x6375, 0x6379}), 0x6375), 0x637A);
}

TEST(GetNextFreeFID, WalksThroughABandWhoseFIDsAreAllUsed) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x5031, 0x5032, 0x5033, 0x5034}), 0x5031), 0x5035);
}

TEST(GetNextFreeFID, LeavesABandThatItReachesInTheMiddle) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0x5030, 0x5031}), 0x5030), 0x5034);
}

TEST(GetNextFreeFID, ReachesTheSecondBandFromTheFirst) {
    EXPECT_EQ(getNextFreeFID(objectsFromTo(0x5034, 0x6375), 0x5031), 0x6379);
}

TEST(GetNextFreeFID, NeverGives7FFF) {
    EXPECT_EQ(failureOf([] { getNextFreeFID(objectsIn({}), 0x7FFF); }), noFreeFID);
    EXPECT_EQ(failureOf([] { getNextFreeFID(objectsFromTo(0x7FF0, 0x7FFE), 0x7FF0); }), noFreeFID);
}

TEST(GetNextFreeFID, GoesBeyond7FFFWhenAnObjectUsesThat) {
    EXPECT_EQ(getNextFreeFID(objectsFromTo(0x7FF0, 0x7FFF), 0x7FF0), 0x8000);
}

TEST(GetNextFreeFID, GivesFIDsAbove7FFFToAStartAboveIt) {
    EXPECT_EQ(getNextFreeFID(objectsIn({}), 0x8000), 0x8000);
}

TEST(GetNextFreeFID, CountsUpInSixteenBits) {
    EXPECT_EQ(getNextFreeFID(objectsIn({0xFFFE}), 0xFFFE), 0xFFFF);
    EXPECT_EQ(getNextFreeFID(objectsFromTo(0, 0xFFFE), 0), 0xFFFF);
}

TEST(GetNextFreeFID, LeavesTheListAsItIs) {
    const List objects = objectsIn({0x5030, 0x5034});
    getNextFreeFID(objects, 0x5030);
    EXPECT_EQ(objects[0].fid, 0x5030u);
    EXPECT_EQ(objects[1].fid, 0x5034u);
}

}  // namespace
}  // namespace tovi::test
