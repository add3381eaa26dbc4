#include "tovi/card/FileImage.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

FileDescription linear(FileDescription::Kind kind = FileDescription::Kind::linearVariable) {
    FileDescription file;
    file.kind = kind;
    file.size = 3;
    file.recordSize = 4;
    return file;
}

std::string reason(const char* image) {
    std::vector<Blob> records;
    return decodeRecords(octets(image), linear(), records);
}

TEST(FileImage, KeepsEachRecordBehindItsLength) {
    const std::vector<Blob> records = {octets("0102"), {}, octets("03040506")};
    const Blob image = encodeRecords(records);
    EXPECT_EQ(hexOf(image),
              "00020102"
              "0000"
              "000403040506");
    std::vector<Blob> again;
    EXPECT_EQ(decodeRecords(image, linear(), again), "");
    EXPECT_EQ(again, records);
}

TEST(FileImage, FillsShortRecordsOfAFixedFile) {
    std::vector<Blob> records;
    EXPECT_EQ(
        decodeRecords(octets("00020102"), linear(FileDescription::Kind::linearFixed), records), "");
    EXPECT_EQ(records, std::vector{octets("01020000")});
}

TEST(FileImage, SaysWhichRecordDoesNotFit) {
    EXPECT_EQ(reason("0001AA 00"), "record 2: found 1 octets, expected a length of 2");
    EXPECT_EQ(reason("0001AA 0005"), "record 2: found 5 octets, expected at most 4");
    EXPECT_EQ(reason("0003AABB"), "record 1: found 2 octets, expected 3");
    EXPECT_EQ(reason("0000 0000 0000 0000"), "found more than 3 records");
    EXPECT_EQ(reason(""), "");
}

TEST(FileImage, KnowsTheLargestImage) {
    EXPECT_EQ(largestImage(linear()), 18u);
    FileDescription file;
    EXPECT_EQ(largestImage(file), 0u);
    file.kind = FileDescription::Kind::transparent;
    file.size = 7;
    EXPECT_EQ(largestImage(file), 7u);
}

}  // namespace
}  // namespace tovi::test
