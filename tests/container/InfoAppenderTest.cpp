#include "tovi/container/InfoAppender.h"

#include <gtest/gtest.h>

#include "tovi/records/Infos.h"

namespace tovi {
namespace {

using List = std::vector<PKCS15ObjectInfo<DataInfo>>;

PKCS15ObjectInfo<DataInfo> inFile(std::uint64_t fid) {
    PKCS15ObjectInfo<DataInfo> info;
    info.fid = fid;
    return info;
}

std::vector<bool> marks(const List& list) {
    std::vector<bool> marks;
    for (const auto& info : list) marks.push_back(info.sharesFile);
    return marks;
}

/// The marks after appending objects with these FIDs to an empty list.
std::vector<bool> marksOf(std::initializer_list<std::uint64_t> fids) {
    List list;
    InfoAppender<DataInfo> appender(list);
    for (const std::uint64_t fid : fids) appender.append(inFile(fid));
    return marks(list);
}

TEST(InfoAppender, MarksBothObjectsOfOneFile) {
    EXPECT_EQ(marksOf({0x4B01, 0x4B02, 0x4B01}), (std::vector<bool>{true, false, true}));
}

TEST(InfoAppender, MarksEveryFurtherObjectOfAFile) {
    EXPECT_EQ(marksOf({0x4B01, 0x4B01, 0x4B01}), (std::vector<bool>{true, true, true}));
}

TEST(InfoAppender, LeavesAnObjectAloneInItsFileUnmarked) {
    EXPECT_EQ(marksOf({0x4B01}), std::vector<bool>{false});
}

TEST(InfoAppender, NeverMarksObjectsWithoutAFile) {
    EXPECT_EQ(marksOf({noFID, noFID, 0xFFFF, 0x1FFFF}), std::vector<bool>(4, false));
}

TEST(InfoAppender, ComparesTheLowSixteenBits) {
    EXPECT_EQ(marksOf({0x10004B01, 0x4B01}), (std::vector<bool>{true, true}));
}

TEST(InfoAppender, TakesFileZeroForAFile) {
    EXPECT_EQ(marksOf({0, 0}), (std::vector<bool>{true, true}));
}

TEST(InfoAppender, ClearsTheMarkThatAnObjectBrings) {
    List list;
    InfoAppender<DataInfo> appender(list);
    PKCS15ObjectInfo<DataInfo> marked = inFile(0x4B01), withoutFile = inFile(noFID);
    marked.sharesFile = withoutFile.sharesFile = true;
    appender.append(marked);
    appender.append(withoutFile);
    EXPECT_EQ(marks(list), std::vector<bool>(2, false));
}

TEST(InfoAppender, TouchesNoOtherObjectForOneWithoutAFile) {
    List list = {inFile(noFID)};
    list[0].sharesFile = true;
    InfoAppender<DataInfo>(list).append(inFile(noFID));
    EXPECT_EQ(marks(list), (std::vector<bool>{true, false}));
}

TEST(InfoAppender, MarksObjectsThatWereInTheListBefore) {
    List list = {inFile(0x4B01), inFile(0x4B02), inFile(0x4B01)};
    InfoAppender<DataInfo>(list).append(inFile(0x4B01));
    EXPECT_EQ(marks(list), (std::vector<bool>{true, false, true, true}));
}

TEST(InfoAppender, AppendsACopyOfTheWholeObject) {
    List list;
    PKCS15ObjectInfo<DataInfo> info = inFile(0x4B01);
    info.label = Blob(40, 'L');
    info.recordNumber = 3;
    InfoAppender<DataInfo>(list).append(info);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].label, Blob(40, 'L'));
    EXPECT_EQ(list[0].recordNumber, 3u);
    EXPECT_EQ(list[0].fid, 0x4B01u);
}

TEST(InfoAppender, AgreesWithComparingEveryPair) {
    List list, expected;
    InfoAppender<DataInfo> appender(list);
    std::uint32_t state = 1;
    for (int n = 0; n < 400; ++n) {
        state = state * 1103515245 + 12345;
        const std::uint16_t fid = (state >> 16) % 5 == 0 ? 0xFFFF : state >> 16 & 0xFF;
        appender.append(inFile(fid));
        expected.push_back(inFile(fid));
        for (std::size_t i = 0; i + 1 < expected.size() && fid != 0xFFFF; ++i)
            if (expected[i].fid == fid) expected[i].sharesFile = expected.back().sharesFile = true;
    }
    EXPECT_EQ(marks(list), marks(expected));
}

TEST(InfoAppender, BearsTenThousandObjectsOfOneFile) {
    List list;
    InfoAppender<DataInfo> appender(list);
    for (int i = 0; i < 10000; ++i) appender.append(inFile(0x4B01));
    EXPECT_EQ(marks(list), std::vector<bool>(10000, true));
}

}  // namespace
}  // namespace tovi
