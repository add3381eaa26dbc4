#include "tools/EfDir.h"

#include <gtest/gtest.h>

#include "TestCard.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

const Blob directory = {0x3F, 0x00, 0x2F, 0x00};

// 61: AID, label "BELPIC", path 3F00DF00, 73 with an identifier; as a card in use has it.
const Blob belowDF00 =
    *fromHex("61234F0CA000000177504B43532D3135500642454C50494351043F00DF0073050603603802");
// AID of PKCS#15 and path 3F005015.
const Blob belowFifty = *fromHex("61144F0CA000000063504B43532D313551043F005015");

Blob applicationIn(TestCard& test, const Blob& aid) {
    return findInDirectory(test.os, aid).application;
}

TEST(FindInDirectory, GoesByTheIdentifier) {
    TestCard test;
    Blob contents = belowDF00;
    contents.append(belowFifty);
    test.card.addTransparent(directory, 128, contents);
    EXPECT_EQ(applicationIn(test, PKCS15_AID), (Blob{0x3F, 0x00, 0x50, 0x15}));
    EXPECT_EQ(applicationIn(test, *fromHex("A000000177504B43532D3135")),
              (Blob{0x3F, 0x00, 0xDF, 0x00}));
    EXPECT_EQ(applicationIn(test, *fromHex("A000000177")), (Blob{0x3F, 0x00, 0xDF, 0x00}))
        << "the beginning is enough";
    EXPECT_EQ(applicationIn(test, *fromHex("A1")), Blob{});
}

TEST(FindInDirectory, ReadsALinearFile) {
    TestCard test;
    VirtualFile& file =
        test.card.addLinear(directory, FileDescription::Kind::linearVariable, 64, 5);
    file.records = {belowDF00, belowFifty};
    EXPECT_EQ(applicationIn(test, PKCS15_AID), (Blob{0x3F, 0x00, 0x50, 0x15}));
}

TEST(FindInDirectory, FindsNothingWhereThereIsNothing) {
    TestCard test;
    EXPECT_EQ(applicationIn(test, PKCS15_AID), Blob{}) << "no such file";
    test.card.addTransparent(directory, 40, *fromHex("61024F00611451"));
    EXPECT_EQ(applicationIn(test, PKCS15_AID), Blob{}) << "no whole entry";
}

/// The entry of an application A1 with `rest` behind its identifier, in hex.
DirectoryEntry entryWith(const std::string& rest) {
    const Blob contents = *fromHex("4F01A1" + rest);
    Blob record = {0x61, static_cast<std::uint8_t>(contents.size())};
    record.append(contents);
    TestCard test;
    test.card.addTransparent(directory, 128, record);
    return findInDirectory(test.os, Blob{0xA1});
}

TEST(FindInDirectory, PutsTheMasterFileInFrontOfARelativePath) {
    EXPECT_EQ(entryWith("51025015").application, (Blob{0x3F, 0x00, 0x50, 0x15}));
    EXPECT_EQ(entryWith("51043FFF5015").application, (Blob{0x3F, 0x00, 0x50, 0x15}));
    EXPECT_EQ(entryWith("51023F00").application, (Blob{0x3F, 0x00}));
}

TEST(FindInDirectory, TakesNoPathOfOddLength) {
    EXPECT_EQ(entryWith("51035015FF").application, Blob{});
    EXPECT_EQ(entryWith("5100").application, Blob{});
    EXPECT_EQ(entryWith("").application, Blob{});
}

TEST(FindInDirectory, TellsWhereTheFilesOfTheApplicationAre) {
    const DirectoryEntry entry = entryWith(
        "51045015"
        "5016"                  // path 50155016
        "731B06022A03"          // DDO with an identifier
        "300404025131"          // odfPath 5131
        "A00804063F0050155132"  // tokenInfoPath 3F0050155132
        "A10504035133FF");      // unusedPath, of odd length
    EXPECT_EQ(entry.application, (Blob{0x3F, 0x00, 0x50, 0x15, 0x50, 0x16}));
    EXPECT_EQ(entry.odf, (Blob{0x51, 0x31}));
    EXPECT_EQ(entry.tokenInfo, (Blob{0x3F, 0x00, 0x50, 0x15, 0x51, 0x32}));
    EXPECT_EQ(entry.unusedSpace, Blob{});
}

}  // namespace
}  // namespace tovi::test
