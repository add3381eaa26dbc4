#include "tools/EfDir.h"

#include <gtest/gtest.h>

#include "TestCard.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

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

DirectoryRecord recordOf(const char* hex) { return directoryRecord(*fromHex(hex)); }

TEST(DirectoryRecord, TakesDataObjectsInAnyOrder) {
    // Path, label, a data object of no interest, identifier.
    const DirectoryRecord record = recordOf("6110510250155003426F625F5001754F01A1");
    ASSERT_TRUE(record.entry);
    EXPECT_EQ(record.error, "");
    EXPECT_EQ(record.entry->aid, Blob{0xA1});
    EXPECT_EQ(record.entry->label, (Blob{'B', 'o', 'b'}));
    EXPECT_EQ(record.entry->application, (Blob{0x3F, 0x00, 0x50, 0x15}));
}

TEST(DirectoryRecord, SaysWhatIsWrong) {
    EXPECT_EQ(recordOf("30034F01A1").error, "no application template");
    EXPECT_EQ(recordOf("6105").error, "no application template");
    EXPECT_EQ(recordOf("").error, "no application template");
    EXPECT_EQ(recordOf("6103500141").error, "no application identifier");
    EXPECT_EQ(recordOf("61024F00").error, "no application identifier");
    EXPECT_EQ(recordOf("61034F01A1").error, "");
}

TEST(DirectoryRecord, KeepsTheEntryWhenARestOfItIsBroken) {
    const DirectoryRecord path = recordOf("61084F01A151035015FF");
    ASSERT_TRUE(path.entry);
    EXPECT_EQ(path.error, "a path of odd length");
    const DirectoryRecord ddo = recordOf("61074F01A173023005");
    ASSERT_TRUE(ddo.entry);
    EXPECT_EQ(ddo.error.substr(0, 20), "discretionary data: ");
    const DirectoryRecord rest = recordOf("61064F01A1500541");
    ASSERT_TRUE(rest.entry);
    EXPECT_EQ(rest.error, "octets that are no data object");
    EXPECT_EQ(rest.entry->aid, Blob{0xA1});
}

TEST(DirectoryRecord, TakesDiscretionaryDataInEitherTag) {
    const DirectoryRecord record = recordOf("610F4F01A1530A06022A03300404025131");
    ASSERT_TRUE(record.entry);
    EXPECT_EQ(record.error, "");
    EXPECT_EQ(record.entry->odf, (Blob{0x51, 0x31}));
}

TEST(ReadDirectory, GivesEveryRecordAsItCame) {
    TestCard test;
    test.card.addTransparent(directory, 64, *fromHex("61024F0061034F01A1"));
    const auto records = readDirectory(test.os);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].octets, *fromHex("61024F00"));
    EXPECT_FALSE(records[0].entry);
    EXPECT_EQ(directoryEntries(test.os).size(), 1u);
    TestCard without;
    EXPECT_THROW(readDirectory(without.os), SmartcardException);
    EXPECT_TRUE(directoryEntries(without.os).empty());
}

}  // namespace
}  // namespace tovi::test
