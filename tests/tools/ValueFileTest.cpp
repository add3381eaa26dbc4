#include "tools/ValueFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCard.h"
#include "tovi/interfaces/Exception.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

const Blob path = {0x3F, 0x00, 0x4E, 0x01};

Blob counting(std::size_t size) {
    Blob octets;
    for (std::size_t i = 0; i < size; ++i) octets.push_back(static_cast<std::uint8_t>(i));
    return octets;
}

struct TransparentFile : TestCard {
    explicit TransparentFile(std::size_t size) { card.addTransparent(path, size, counting(size)); }
};

struct LinearFile : TestCard {
    LinearFile() {
        card.addLinear(path, FileDescription::Kind::linearVariable, 64, 5).records = {
            Blob{1, 2, 3}, Blob{4}, Blob{5, 6}};
    }
};

std::string complaint(ISCardOS& os, const ValueExtent& extent) {
    try {
        readValueFile(os, path, extent);
    } catch (const ValueError& error) {
        return error.what();
    }
    return "";
}

TEST(ReadValueFile, ReadsAWholeFileThatTakesSeveralCommands) {
    TransparentFile test(1000);
    EXPECT_EQ(readValueFile(test.os, path, {}), counting(1000));
    EXPECT_EQ(readValueFile(test.os, path, {0, 0}), counting(1000));
}

TEST(ReadValueFile, TakesIndexAndLengthAsOffsetAndOctets) {
    TransparentFile test(1000);
    EXPECT_EQ(readValueFile(test.os, path, {3, 4}), (Blob{3, 4, 5, 6}));
    EXPECT_EQ(readValueFile(test.os, path, {{}, 2}), (Blob{0, 1}));
    EXPECT_EQ(readValueFile(test.os, path, {996, {}}), (Blob{0xE4, 0xE5, 0xE6, 0xE7}));
    EXPECT_EQ(readValueFile(test.os, path, {996, 0}).size(), 4u) << "no length is written as 0";
    EXPECT_EQ(readValueFile(test.os, path, {100, 900}).size(), 900u);
}

TEST(ReadValueFile, RefusesWhatLiesBehindTheEndOfTheFile) {
    TransparentFile test(100);
    EXPECT_THAT(complaint(test.os, {90, 11}), HasSubstr("ends at octet 101, the file has 100"));
    EXPECT_THAT(complaint(test.os, {101, {}}), HasSubstr("the file has 100"));
    EXPECT_THAT(complaint(test.os, {0, 0xFFFFFFFFFFFFFFFF}), HasSubstr("in no file"));
    EXPECT_THAT(complaint(test.os, {0xFFFFFFFFFFFFFFFF, 1}), HasSubstr("in no file"));
}

TEST(ReadValueFile, FindsTheEndOfAFileWhoseSizeNobodyTells) {
    TransparentFile test(300);
    test.card.settings().fileControl = false;
    EXPECT_EQ(readValueFile(test.os, path, {}), counting(300));
    EXPECT_EQ(readValueFile(test.os, path, {298, 2}), (Blob{0x2A, 0x2B}));
    EXPECT_THAT(complaint(test.os, {298, 3}), HasSubstr("the file has 300"));
}

TEST(ReadValueFile, TakesTheIndexForARecordOfALinearFile) {
    LinearFile test;
    EXPECT_EQ(readValueFile(test.os, path, {1, 0}), (Blob{1, 2, 3}));
    EXPECT_EQ(readValueFile(test.os, path, {3, {}}), (Blob{5, 6}));
    EXPECT_EQ(readValueFile(test.os, path, {1, 2}), (Blob{1, 2}));
    EXPECT_EQ(readValueFile(test.os, path, {}), (Blob{1, 2, 3, 4, 5, 6})) << "all records";
}

TEST(ReadValueFile, RefusesRecordsThatAreNotThere) {
    LinearFile test;
    EXPECT_EQ(complaint(test.os, {4, {}}), "record 4 is not in the file");
    EXPECT_EQ(complaint(test.os, {1000, {}}), "record 1000 is not in the file");
    EXPECT_EQ(complaint(test.os, {2, 2}), "the value has 2 octets, the record 1");
}

TEST(ReadValueFile, ReadsRecordsOfACardThatTellsNoStructure) {
    LinearFile test;
    test.card.settings().fileControl = false;
    EXPECT_EQ(readValueFile(test.os, path, {2, {}}), Blob{4});
}

TEST(ReadValueFile, NeedsAnElementaryFile) {
    TestCard test;
    test.card.addFolder(path);
    EXPECT_EQ(complaint(test.os, {}), "the path names no elementary file");
    EXPECT_THROW(readValueFile(test.os, Blob{0x3F, 0x00, 0x4E, 0x02}, {}), SmartcardException);
}

}  // namespace
}  // namespace tovi::test
