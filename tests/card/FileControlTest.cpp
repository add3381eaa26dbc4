#include "tovi/card/FileControl.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

FileInfo infoOf(const char* hex) { return FileControl::parse(octets(hex)).info(); }

TEST(FileControl, ReadsATransparentFileFromFcpAndFci) {
    for (const char* hex : {"62 0E 80 02 0123 82 01 01 83 02 5031 88 01 F0",
                            "6F 0E 80 02 0123 82 01 01 83 02 5031 88 01 F0"}) {
        const FileControl control = FileControl::parse(octets(hex));
        EXPECT_EQ(control.dataSize, 0x123u);
        EXPECT_EQ(control.descriptor, 0x01);
        EXPECT_EQ(control.fid, 0x5031);
        EXPECT_EQ(control.sfi, 30);
        EXPECT_EQ(control.info().structure, FileStructure::transparent);
        EXPECT_EQ(control.info().size, 0x123u);
    }
}

TEST(FileControl, ReadsRecordSizeAndCountInEveryLength) {
    EXPECT_EQ(infoOf("62 05 82 03 02 01 20").recordSize, 0x20u);
    EXPECT_EQ(infoOf("62 06 82 04 02 01 01 20").recordSize, 0x120u);
    EXPECT_EQ(infoOf("62 07 82 05 02 01 0020 05").recordCount, 5u);
    EXPECT_EQ(infoOf("62 08 82 06 02 01 0020 0105").recordCount, 0x105u);
    EXPECT_EQ(infoOf("62 07 82 05 02 01 0020 05").structure, FileStructure::linearFixed);
    EXPECT_EQ(infoOf("62 07 82 05 04 01 0020 05").structure, FileStructure::linearVariable);
    EXPECT_EQ(infoOf("62 07 82 05 04 01 0020 05").size, 0u);
}

TEST(FileControl, TellsStructuresApart) {
    EXPECT_EQ(infoOf("62 03 82 01 00").structure, FileStructure::transparent);
    EXPECT_EQ(infoOf("62 03 82 01 41").structure, FileStructure::transparent);  // shareable
    EXPECT_EQ(infoOf("62 03 82 01 03").structure, FileStructure::linearFixed);
    EXPECT_EQ(infoOf("62 03 82 01 05").structure, FileStructure::linearVariable);
    EXPECT_EQ(infoOf("62 03 82 01 06").structure, FileStructure::other);  // cyclic
    EXPECT_EQ(infoOf("62 03 82 01 38").structure, FileStructure::other);  // a DF
    EXPECT_EQ(infoOf("62 03 82 01 39").structure, FileStructure::other);  // data objects
    EXPECT_EQ(infoOf("62 03 82 01 78").structure, FileStructure::other);  // a shareable DF
}

TEST(FileControl, TakesTheAllocatedSizeWhereTheDataSizeIsMissing) {
    EXPECT_EQ(infoOf("62 04 81 02 0200").size, 0x200u);
    EXPECT_EQ(infoOf("62 08 81 02 0200 80 02 0100").size, 0x100u);
}

TEST(FileControl, TakesNothingFromWhatIsNoTemplate) {
    for (const char* hex :
         {"", "62", "62 05 80 02", "80 02 0100", "30 04 80 02 0100", "62 00", "6F 00"}) {
        const FileInfo info = infoOf(hex);
        EXPECT_EQ(info.size, 0u) << hex;
        EXPECT_EQ(info.structure, FileStructure::transparent) << hex;
    }
}

TEST(FileControl, KeepsTheMembersInFrontOfAMalformedOne) {
    const FileControl control = FileControl::parse(octets("62 07 80 02 0100 82 09 01"));
    EXPECT_EQ(control.dataSize, 0x100u);
    EXPECT_FALSE(control.descriptor);
}

TEST(FileControl, IgnoresMembersOfTheWrongLength) {
    const FileControl control =
        FileControl::parse(octets("62 0F 80 00 82 00 83 01 50 88 02 0101 83 00"));
    EXPECT_FALSE(control.dataSize);
    EXPECT_FALSE(control.descriptor);
    EXPECT_FALSE(control.fid);
    EXPECT_FALSE(control.sfi);
}

TEST(FileControl, HoldsSizesThatDoNotFitAtTheLargest) {
    EXPECT_EQ(infoOf("62 0B 80 09 01 00 00 00 00 00 00 00 00").size,
              std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(infoOf("62 0B 80 09 00 00 00 00 00 00 00 00 07").size, 7u);
}

TEST(FileControl, EncodesWhatItReads) {
    FileControl control;
    control.dataSize = 0x12345;
    control.descriptor = 0x01;
    control.fid = 0x5031;
    control.sfi = 17;
    EXPECT_EQ(hexOf(control.encode(0x62)),
              "620F"
              "8003012345"
              "820101"
              "83025031"
              "880188");
    FileControl linear;
    linear.descriptor = 0x02;
    linear.recordSize = 0x20;
    linear.recordCount = 3;
    EXPECT_EQ(hexOf(linear.encode(0x6F)),
              "6F07"
              "82050201002003");
    FileControl folder;
    folder.descriptor = folderDescriptor;
    folder.name = octets("A000");
    EXPECT_EQ(hexOf(folder.encode(0x6F)),
              "6F07"
              "820138"
              "8402A000");
}

}  // namespace
}  // namespace tovi::test
