#include "tovi/card/ISO7816CardOS.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"
#include "tovi/card/CountingChannel.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

/// An FCP of a transparent file of 200 octets, and one that says nothing.
constexpr const char* fcp200 = "6207800200C88201019000";
constexpr const char* fcpEmpty = "62009000";

std::string hexData(std::size_t size, std::string_view status = "9000") {
    return hexOf(pattern(size)) + std::string(status);
}

/// A card behind the commands, and the file system of smallCard with one file of `size` octets.
struct Connected {
    explicit Connected(std::size_t size = 600, const CardCapabilities& capabilities = {})
        : card(smallCard()), os(counted, capabilities) {
        card.addTransparent(octets("3F0050154500"), size, pattern(size));
    }
    std::string read(std::size_t offset, std::size_t length) {
        return hexOf(os.readBinary(offset, length));
    }
    std::string expected(std::size_t offset, std::size_t length) {
        return hexOf(slice(pattern(card.files().find(octets("3F0050154500"))->contents.size()),
                           offset, length));
    }

    VirtualCard card;
    VirtualCardChannel channel{card};
    CountingChannel counted{channel};
    ISO7816CardOS os;
};

TEST(ISO7816CardOS, SelectsAnApplicationInTheModeGiven) {
    ScriptedChannel channel({"9000"});
    ISO7816CardOS os(channel);
    EXPECT_TRUE(os.selectApplication(octets("A000000063"), 0x0C).empty());
    os.selectApplication(octets("A000000063"), 0x00);
    EXPECT_THAT(channel.commands, ElementsAre("00A4040C05A000000063", "00A4040005A00000006300"));
}

TEST(ISO7816CardOS, GivesBackWhatSelectingAnApplicationTells) {
    Connected card;
    EXPECT_EQ(hexOf(card.os.selectApplication(octets("A000000063"), 0x04)),
              "6215"
              "820138"
              "83025015"
              "840CA000000063504B43532D3135");
}

TEST(ISO7816CardOS, ReportsRefusalsWithTheStatusWord) {
    ScriptedChannel channel({"6A82"});
    ISO7816CardOS os(channel);
    EXPECT_EQ(failureOf([&] { os.selectApplication(octets("A0"), 0x0C); }),
              refusal("SELECT refused", "selectApplication", 0x6A82));
    EXPECT_EQ(failureOf([&] { os.selectFile(octets("3F005031")); }),
              refusal("SELECT refused", "selectFile", 0x6A82));
    EXPECT_EQ(failureOf([&] { os.readBinary(0, 1); }),
              refusal("READ BINARY refused", "readBinary", 0x6A82));
    EXPECT_EQ(failureOf([&] { os.updateBinary(0, octets("01")); }),
              refusal("UPDATE BINARY refused", "updateBinary", 0x6A82));
    EXPECT_EQ(failureOf([&] { os.readRecord(1); }),
              refusal("READ RECORD refused", "readRecord", 0x6A82));
    EXPECT_EQ(failureOf([&] { os.updateRecord(1, octets("01")); }),
              refusal("UPDATE RECORD refused", "updateRecord", 0x6A82));
    EXPECT_EQ(failureOf([&] { os.appendRecord(octets("01")); }),
              refusal("APPEND RECORD refused", "appendRecord", 0x6A82));
}

TEST(ISO7816CardOS, DoesNotUseDeactivatedOrTerminatedFiles) {
    for (const std::uint16_t status : {std::uint16_t{0x6283}, std::uint16_t{0x6285}}) {
        ScriptedChannel channel({hexOf(ResponseApdu{octets("62038001FF"), status}.encode())});
        ISO7816CardOS os(channel);
        EXPECT_EQ(failureOf([&] { os.selectFile(octets("5031")); }),
                  refusal("SELECT refused", "selectFile", status));
    }
}

TEST(ISO7816CardOS, RefusesArgumentsThatNoCommandCanExpress) {
    ScriptedChannel channel({"9000"});
    ISO7816CardOS os(channel);
    const auto invalid = [](const char* message, const char* operation) {
        return smartcardFailure(message, std::string("ISO7816CardOS::") + operation);
    };
    for (const Blob& path : {Blob(), octets("50"), octets("3F0050"), filled(130, 0x50)})
        EXPECT_EQ(failureOf([&] { os.selectFile(path); }), invalid("invalid path", "selectFile"));
    for (const Blob& aid : {Blob(), filled(17, 0xA0)})
        EXPECT_EQ(failureOf([&] { os.selectApplication(aid, 0x0C); }),
                  invalid("invalid AID", "selectApplication"));
    EXPECT_EQ(failureOf([&] { os.readBinary(0xFFFFFFFF, 1); }),
              invalid("invalid offset", "readBinary"));
    EXPECT_EQ(failureOf([&] { os.updateBinary(0xFFFFFFFF, octets("01")); }),
              invalid("invalid offset", "updateBinary"));
    EXPECT_EQ(failureOf([&] { os.updateBinary(0, filled(256, 0x00)); }),
              invalid("too much data for one command", "updateBinary"));
    EXPECT_EQ(failureOf([&] { os.updateBinary(0x8000, filled(255, 0x00)); }),
              invalid("too much data for one command", "updateBinary"));
    EXPECT_TRUE(channel.commands.empty());
}

TEST(ISO7816CardOS, ReadsAFileOfOneResponseWithTwoCommands) {
    Connected card(200);
    const FileInfo info = card.os.selectFile(octets("3F0050154500"));
    EXPECT_EQ(info.structure, FileStructure::transparent);
    EXPECT_EQ(info.size, 200u);
    EXPECT_EQ(card.read(0, 256), card.expected(0, 200));
    EXPECT_EQ(card.read(200, 256), "");
    EXPECT_EQ(card.counted.counts().commands, 2u);
}

TEST(ISO7816CardOS, ReadsUpToTheSizeOfAResponseAtOnce) {
    Connected card;
    card.os.selectFile(octets("3F0050154500"));
    EXPECT_EQ(card.read(0, 1000), card.expected(0, 256));
    EXPECT_EQ(card.read(500, 256), card.expected(500, 100));
    EXPECT_EQ(card.counted.counts().commands, 3u);
}

TEST(ISO7816CardOS, ReadsWithExtendedLengthWhereTheCardHasIt) {
    Connected card(600, {.extendedLength = true});
    card.os.selectFile(octets("3F0050154500"));
    EXPECT_EQ(card.read(0, 1000), card.expected(0, 600));
    EXPECT_EQ(card.counted.counts().commands, 2u);
}

TEST(ISO7816CardOS, FindsTheEndOfAFileWhoseSizeTheCardDoesNotTell) {
    for (const bool exact : {false, true}) {
        Connected card(100);
        card.card.settings().fileControl = false;
        card.card.settings().exactLength = exact;
        EXPECT_EQ(card.os.selectFile(octets("3F0050154500")).size, 0u);
        EXPECT_EQ(card.read(0, 256), card.expected(0, 100));
        EXPECT_EQ(card.read(50, 200), card.expected(50, 50));
        EXPECT_EQ(card.read(100, 256), "");
    }
}

TEST(ISO7816CardOS, FindsTheEndWhereReadingPastItIsAWrongLength) {
    for (std::size_t size = 1; size <= 257; ++size) {
        Connected card(size);
        card.card.settings().fileControl = false;
        card.card.settings().lengthAtEnd = true;
        card.os.selectFile(octets("3F0050154500"));
        ASSERT_EQ(card.read(0, 256), card.expected(0, std::min<std::size_t>(size, 256)));
        ASSERT_EQ(card.read(size, 256), "");
        ASSERT_LE(card.counted.counts().commands, 16u);
    }
}

TEST(ISO7816CardOS, DoesNotTakeACardThatRefusesEveryLengthForAnEmptyFile) {
    ScriptedChannel channel({"6700"});
    ISO7816CardOS os(channel);
    EXPECT_EQ(failureOf([&] { os.readBinary(0, 256); }),
              refusal("READ BINARY refused", "readBinary", 0x6700));
    EXPECT_LE(channel.commands.size(), 9u);
}

TEST(ISO7816CardOS, DoesNotTakeACardThatReadsOnlyALittleAtATimeForTheEndOfTheFile) {
    ScriptedChannel channel({"6700", "6700", hexData(64), hexData(32), hexData(16), hexData(8),
                             hexData(4), hexData(2), hexData(1), hexData(1)});
    ISO7816CardOS os(channel);
    EXPECT_EQ(failureOf([&] { os.readBinary(0, 256); }),
              refusal("READ BINARY refused", "readBinary", 0x6700));
}

TEST(ISO7816CardOS, TakesWhatCameWithTheWarningAtTheEndOfTheFile) {
    ScriptedChannel channel({hexData(3, "6282")});
    ISO7816CardOS os(channel);
    EXPECT_EQ(hexOf(os.readBinary(0, 256)), "000102");
    EXPECT_EQ(channel.commands.size(), 1u);
}

TEST(ISO7816CardOS, ReadsNothingBehindTheEndOfTheFile) {
    ScriptedChannel channel({"6B00"});
    ISO7816CardOS os(channel);
    EXPECT_TRUE(os.readBinary(0, 256).empty());
    EXPECT_TRUE(os.readBinary(300, 0).empty());
    EXPECT_EQ(channel.commands.size(), 1u);
}

TEST(ISO7816CardOS, GivesBackNoMoreThanWasAskedFor) {
    ScriptedChannel channel({fcp200, hexData(250)});
    ISO7816CardOS os(channel);
    os.selectFile(octets("5031"));
    EXPECT_EQ(os.readBinary(0, 100).size(), 100u);
    EXPECT_EQ(os.readBinary(0, 256).size(), 200u);
}

TEST(ISO7816CardOS, EndsAtAShortResponseWhateverTheSizeIsSaidToBe) {
    ScriptedChannel channel({fcp200, hexData(10), "9000"});
    ISO7816CardOS os(channel);
    os.selectFile(octets("5031"));
    EXPECT_EQ(os.readBinary(0, 256).size(), 10u);
    EXPECT_EQ(channel.commands.size(), 2u);
}

TEST(ISO7816CardOS, ForgetsTheSizeOfAFileThatIsNoLongerSelected) {
    ScriptedChannel channel({fcp200, fcpEmpty, hexData(256)});
    ISO7816CardOS os(channel);
    os.selectFile(octets("5031"));
    os.selectFile(octets("5032"));
    EXPECT_EQ(os.readBinary(0, 256).size(), 256u);
}

TEST(ISO7816CardOS, ReadsAndWritesOnBothSidesOfOffset7FFF) {
    Connected card(70000);
    card.os.selectFile(octets("3F0050154500"));
    for (const std::size_t offset : {0x7EFFu, 0x7F80u, 0x7FFFu, 0x8000u, 0xFFFFu, 0x10000u}) {
        EXPECT_EQ(card.read(offset, 256), card.expected(offset, 256)) << offset;
        card.os.updateBinary(offset, filled(200, 0xEE));
        EXPECT_EQ(card.read(offset, 200), hexOf(filled(200, 0xEE))) << offset;
        card.os.updateBinary(offset, slice(pattern(70000), offset, 200));
    }
    EXPECT_EQ(card.read(69990, 256), card.expected(69990, 10));
    EXPECT_EQ(card.read(70000, 256), "");
}

TEST(ISO7816CardOS, KnowsTheEndBehindOffset7FFFWithoutTheSize) {
    Connected card(0x8000 + 300);
    card.card.settings().fileControl = false;
    card.os.selectFile(octets("3F0050154500"));
    EXPECT_EQ(card.read(0x8000, 256), card.expected(0x8000, 256));
    EXPECT_EQ(card.read(0x8100, 256), card.expected(0x8100, 44));
    EXPECT_EQ(card.read(0x812C, 256), "");
}

TEST(ISO7816CardOS, WritesLessAtOnceIntoAFileThatNeedsTheOddInstructions) {
    Connected card(0x8001);
    EXPECT_EQ(card.os.maxWrite(), 255u);
    card.os.selectFile(octets("3F0050154500"));
    EXPECT_EQ(card.os.maxWrite(), 245u);
    card.os.updateBinary(0x8000, octets("AA"));
    EXPECT_EQ(card.read(0x8000, 1), "AA");
    EXPECT_EQ(failureOf([&] { card.os.updateBinary(0x8000, octets("AABB")); }),
              refusal("UPDATE BINARY refused", "updateBinary", 0x6A84));
    card.os.selectFile(octets("3F0050154401"));
    EXPECT_EQ(card.os.maxWrite(), 255u);
}

TEST(ISO7816CardOS, WritesOffsetsInAsManyOctetsAsTheyNeed) {
    ScriptedChannel channel({"5301AA9000"});
    ISO7816CardOS os(channel);
    for (const std::size_t offset :
         {0x7FFFu, 0x8000u, 0xFFFFu, 0x10000u, 0xFFFFFFu, 0x1000000u, 0xFFFFFFFEu})
        os.readBinary(offset, 1);
    EXPECT_THAT(channel.commands,
                ElementsAre("00B07FFF01", "00B10000045402800003", "00B10000045402FFFF03",
                            "00B1000005540301000003", "00B10000055403FFFFFF03",
                            "00B100000654040100000003", "00B10000065404FFFFFFFE03"));
}

TEST(ISO7816CardOS, TakesDataObject73AndRefusesOthers) {
    const auto read = [](const char* response) {
        ScriptedChannel channel({response});
        return ISO7816CardOS(channel).readBinary(0x8000, 2);
    };
    EXPECT_EQ(hexOf(read("7302AABB9000")), "AABB");
    EXPECT_EQ(hexOf(read("5301AA6282")), "AA");
    const Failure malformed =
        smartcardFailure("malformed card response", "ISO7816CardOS::readBinary");
    for (const char* response : {"5402AABB9000", "5303AABB9000", "AABB9000", "539000"})
        EXPECT_EQ(failureOf([&] { read(response); }), malformed) << response;
}

TEST(ISO7816CardOS, SendsOneCommandForAnUpdateAndNoneForNothing) {
    Connected card;
    card.os.selectFile(octets("3F0050154500"));
    card.os.updateBinary(300, filled(255, 0xAB));
    card.os.updateBinary(0, {});
    EXPECT_EQ(card.counted.counts().commands, 2u);
    EXPECT_EQ(card.read(299, 2), hexOf(slice(pattern(600), 299, 1)) + "AB");
}

TEST(ISO7816CardOS, WritesLongDataInOneChainOrOneExtendedCommand) {
    for (const CardCapabilities& capabilities :
         {CardCapabilities{.extendedLength = true}, CardCapabilities{.commandChaining = true}}) {
        Connected card(600, capabilities);
        card.os.selectFile(octets("3F0050154500"));
        card.os.updateBinary(10, filled(580, 0xAB));
        EXPECT_EQ(card.card.files().find(octets("3F0050154500"))->contents[589], 0xAB);
        EXPECT_EQ(card.card.files().find(octets("3F0050154500"))->contents[590], 590 % 251);
    }
}

TEST(ISO7816CardOS, ReadsUpdatesAndAppendsRecords) {
    Connected card;
    const FileInfo info = card.os.selectFile(octets("3F0050154402"));
    EXPECT_EQ(info.structure, FileStructure::linearVariable);
    EXPECT_EQ(info.recordSize, 4u);
    EXPECT_EQ(info.recordCount, 0u);
    card.os.appendRecord(octets("01"));
    card.os.appendRecord(octets("0203"));
    card.os.updateRecord(1, octets("0A0B0C0D"));
    EXPECT_EQ(hexOf(card.os.readRecord(1)), "0A0B0C0D");
    EXPECT_EQ(hexOf(card.os.readRecord(2)), "0203");
    EXPECT_EQ(card.os.selectFile(octets("3F0050154402")).recordCount, 2u);
    EXPECT_EQ(failureOf([&] { card.os.readRecord(3); }),
              refusal("READ RECORD refused", "readRecord", 0x6A83));
    card.os.appendRecord(octets("04"));
    EXPECT_EQ(failureOf([&] { card.os.appendRecord(octets("05")); }),
              refusal("APPEND RECORD refused", "appendRecord", 0x6A84));
}

TEST(ISO7816CardOS, ReadsRecordsThatAreLongerThanAResponse) {
    for (const bool extended : {false, true}) {
        Connected card(1, {.extendedLength = extended});
        VirtualFile& file =
            card.card.addLinear(octets("3F0050154600"), FileDescription::Kind::linearFixed, 700, 2);
        file.records = {pattern(700)};
        card.os.selectFile(octets("3F0050154600"));
        EXPECT_EQ(card.os.readRecord(1), pattern(700));
        EXPECT_EQ(card.counted.counts().commands, extended ? 2u : 4u);
    }
}

TEST(ISO7816CardOS, TakesARecordThatIsShorterThanTheCardWasAskedFor) {
    ScriptedChannel channel({"01026282"});
    ISO7816CardOS os(channel);
    EXPECT_EQ(hexOf(os.readRecord(1)), "0102");
}

TEST(ISO7816CardOS, HasNoRecordsThatNoNumberNames) {
    ScriptedChannel channel({"9000"});
    ISO7816CardOS os(channel);
    for (const std::size_t number : {std::size_t{0}, std::size_t{255}, std::size_t{0x101}}) {
        EXPECT_EQ(failureOf([&] { os.readRecord(number); }),
                  refusal("READ RECORD refused", "readRecord", 0x6A83));
        EXPECT_EQ(failureOf([&] { os.updateRecord(number, octets("01")); }),
                  refusal("UPDATE RECORD refused", "updateRecord", 0x6A83));
    }
    EXPECT_TRUE(channel.commands.empty());
}

TEST(ISO7816CardOS, WorksOnACardThatKeepsAllDataForGetResponse) {
    Connected card;
    card.card.settings().useGetResponse = true;
    EXPECT_EQ(card.os.selectFile(octets("3F0050154500")).size, 600u);
    EXPECT_EQ(card.read(0, 256), card.expected(0, 256));
}

TEST(ISO7816CardOS, WorksOnACardWithoutPathsAndFileControl) {
    Connected card(200);
    card.card.settings().selectByPath = false;
    card.card.settings().fileControl = false;
    card.os.selectApplication(octets("A000000063"), 0x0C);
    card.os.selectFile(octets("3F0050154500"));
    EXPECT_EQ(card.read(0, 256), card.expected(0, 200));
    card.os.selectFile(octets("4500"));
    EXPECT_EQ(card.read(0, 256), card.expected(0, 200));
}

}  // namespace
}  // namespace tovi::test
