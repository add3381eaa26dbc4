#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

TEST(InitDataInfos, DecodesAnOpaqueObject) {
    const auto container = containerOf(CardBuilder().dataObjects(
        {dataRecord({.common = {.label = "notes", .flags = namedBits({0, 1}), .authId = Blob{0x01}},
                     .applicationName = "tovi",
                     .value = path("4E07", 16, 32)})}));
    const auto& info = container->getDataInfo(1);
    EXPECT_EQ(info.label, text("notes"));
    EXPECT_EQ(info.applicationName, text("tovi"));
    EXPECT_EQ(info.authId, Blob{0x01});
    EXPECT_EQ(info.path.path, hex("4E07"));
    EXPECT_EQ(info.path.index, 16);
    EXPECT_EQ(info.path.length, 32);
    EXPECT_EQ(info.fid, 0x4E07u);
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{4, 1, 1, 1}));
    EXPECT_TRUE(container->getRawDataObjects()[0].isDecoded);
}

TEST(InitDataInfos, LabelsAnObjectByItsKind) {
    const auto container = containerOf(CardBuilder().dataObjects({dataRecord()}));
    EXPECT_EQ(container->getDataInfo(1).label, text("opaqueDO"));
}

TEST(InitDataInfos, KeepsThePlacesOfOtherKindsAndBadRecords) {
    const std::vector<Blob> records = {dataRecord({.type = Data::external}),
                                       dataRecord({.type = Data::oid}),
                                       retagged(0xA7, dataRecord()),
                                       undecodable(),
                                       dataRecord({.common = {.authId = times(256, 1)}}),
                                       dataRecord()};
    const auto container = containerOf(CardBuilder().dataObjects(records));
    ASSERT_EQ(container->getDataInfos().size(), 6u);
    for (std::size_t i = 0; i < 5; ++i) {
        const auto& info = container->getDataInfos()[i];
        EXPECT_TRUE(info.label.empty());
        EXPECT_TRUE(info.authId.empty());
        EXPECT_EQ(info.fid, noFID);
        EXPECT_TRUE(info.Params().empty());
        EXPECT_EQ(info.recordNumber, i + 1);
        EXPECT_EQ(container->getFATRecords()[i + 1].objectType, unrecognisedObjectType);
        EXPECT_FALSE(container->getRawDataObjects()[i].isDecoded);
    }
    EXPECT_EQ(container->getDataInfo(6).label, text("opaqueDO"));
}

TEST(InitDataInfos, DecodesTheOtherKindsIntoValuesAllTheSame) {
    const auto container = containerOf(CardBuilder().dataObjects(
        {dataRecord({.type = Data::external}), dataRecord({.type = Data::oid})}));
    EXPECT_EQ(container->getRawDataObjects()[0].value->selectionName(), "externalIDO");
    EXPECT_EQ(container->getRawDataObjects()[1].value->selectionName(), "oidDO");
    EXPECT_TRUE(container->getRawDataObjects()[0].isValid);
}

TEST(InitDataInfos, MarksObjectsOfOneFile) {
    const auto container = containerOf(CardBuilder().dataObjects(
        {dataRecord({.value = path("4E01", 0, 8)}), dataRecord({.value = path("4E02")}),
         dataRecord({.value = path("4E01", 8, 8)})}));
    EXPECT_TRUE(container->getDataInfos()[0].sharesFile);
    EXPECT_FALSE(container->getDataInfos()[1].sharesFile);
    EXPECT_TRUE(container->getDataInfos()[2].sharesFile);
}

}  // namespace
}  // namespace tovi::test
