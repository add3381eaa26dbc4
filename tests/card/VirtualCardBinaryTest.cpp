// READ, UPDATE and ERASE BINARY of the virtual card.
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

/// smallCard with EF 4401 selected: 32 octets, 01 02 03 ...
VirtualCard selectedCard() {
    VirtualCard card = smallCard();
    answer(card, "00A4080C 04 50154401");
    return card;
}

Blob& contents(VirtualCard& card) { return card.files().find(octets("3F0050154401"))->contents; }

TEST(VirtualCardBinary, ReadsFromAnOffset) {
    VirtualCard card = selectedCard();
    EXPECT_EQ(answer(card, "00B00000 03"), "0102039000");
    EXPECT_EQ(answer(card, "00B0001E 02"), "1F209000");
    EXPECT_EQ(answer(card, "00B0001E 00"), "1F209000");  // all there is
    EXPECT_EQ(answer(card, "00B0001E 03"), "1F206282");
    EXPECT_EQ(answer(card, "00B0001E 000003"), "1F206282");
    EXPECT_EQ(answer(card, "00B0001E 000000"), "1F209000");
    EXPECT_EQ(answer(card, "00B00020 01"), "6B00");
    EXPECT_EQ(answer(card, "00B07FFF 01"), "6B00");
}

TEST(VirtualCardBinary, RefusesToReadWithoutLengthOrWithData) {
    VirtualCard card = selectedCard();
    EXPECT_EQ(answer(card, "00B00000"), "6700");
    EXPECT_EQ(answer(card, "00B00000 01 00 05"), "6700");
}

TEST(VirtualCardBinary, SelectsByShortIdentifier) {
    VirtualCard card = smallCard();
    answer(card, "00A4080C 02 5015");
    EXPECT_EQ(answer(card, "00B00000 01"), "6986");
    EXPECT_EQ(answer(card, "00B08105 01"), "069000");
    EXPECT_EQ(answer(card, "00B00000 01"), "019000");  // it is the current file now
    EXPECT_EQ(answer(card, "00D68101 01 AA"), "9000");
    EXPECT_EQ(contents(card)[1], 0xAA);
    EXPECT_EQ(answer(card, "00B08300 01"), "6A82");
    EXPECT_EQ(answer(card, "00B08000 01"), "6A86");
    EXPECT_EQ(answer(card, "00B09F00 01"), "6A86");
    EXPECT_EQ(answer(card, "00B0A100 01"), "6A86");
    EXPECT_EQ(answer(card, "00B08200 01"), "6981");  // a linear file
}

TEST(VirtualCardBinary, RefusesLinearFilesAndNoFile) {
    VirtualCard card = smallCard();
    for (const char* command :
         {"00B00000 01", "00D60000 01 AA", "000E0000", "00B10000 04 54020000 00",
          "00D70000 07 54020000 5301AA", "000F0000"})
        EXPECT_EQ(answer(card, command), "6986") << command;
    answer(card, "00A4080C 04 50154402");
    for (const char* command :
         {"00B00000 01", "00D60000 01 AA", "000E0000", "00B10000 04 54020000 00",
          "00D70000 07 54020000 5301AA", "000F0000"})
        EXPECT_EQ(answer(card, command), "6981") << command;
}

TEST(VirtualCardBinary, OverwritesAndNeverGrows) {
    VirtualCard card = selectedCard();
    EXPECT_EQ(answer(card, "00D60001 02 AABB"), "9000");
    EXPECT_EQ(answer(card, "00D6001E 02 CCDD"), "9000");
    EXPECT_EQ(hexOf(slice(contents(card), 0, 4)), "01AABB04");
    EXPECT_EQ(hexOf(slice(contents(card), 29, 3)), "1ECCDD");
    const Blob before = contents(card);
    EXPECT_EQ(answer(card, "00D6001F 02 EEFF"), "6A84");
    EXPECT_EQ(answer(card, "00D60020 01 EE"), "6B00");
    EXPECT_EQ(answer(card, "00D60000"), "6700");
    EXPECT_EQ(contents(card), before);
}

TEST(VirtualCardBinary, ErasesToTheEndOrToAnOffset) {
    VirtualCard card = selectedCard();
    EXPECT_EQ(answer(card, "000E001C"), "9000");
    EXPECT_EQ(hexOf(slice(contents(card), 27, 5)), "1C00000000");
    EXPECT_EQ(answer(card, "000E0000 02 0002"), "9000");
    EXPECT_EQ(hexOf(slice(contents(card), 0, 3)), "000003");
    EXPECT_EQ(answer(card, "000E0020"), "6B00");
    EXPECT_EQ(answer(card, "000E0000 02 0021"), "6B00");
    EXPECT_EQ(answer(card, "000E0004 02 0004"), "6A80");
    EXPECT_EQ(answer(card, "000E0000 01 02"), "6700");
}

TEST(VirtualCardBinary, ReadsWithDataObjects) {
    VirtualCard card = selectedCard();
    EXPECT_EQ(answer(card, "00B10000 04 54020001 04"), "530202039000");
    EXPECT_EQ(answer(card, "00B10000 03 540101 04"), "530202039000");
    EXPECT_EQ(answer(card, "00B10000 04 5402001F 00"), "5301209000");
    EXPECT_EQ(answer(card, "00B10000 04 5402001F 04"), "5301206282");
    EXPECT_EQ(answer(card, "00B10000 04 54020020 04"), "6B00");
    EXPECT_EQ(answer(card, "00B10000 06 540400000000 03"), "5301019000");
    EXPECT_EQ(answer(card, "00B10000 04 54020000 02"), "6700");  // no room for an octet
    for (const char* data :
         {"", "02 5400", "04 53020000", "05 5402000000", "07 54050000000000", "05 54020000 53"})
        EXPECT_EQ(answer(card, std::string("00B10000 ") + data + " 00").substr(0, 2), "6A") << data;
}

TEST(VirtualCardBinary, FillsAResponseWithDataObjectsExactly) {
    VirtualCard card = smallCard();
    card.addTransparent(octets("3F0050154500"), 1000);
    answer(card, "00A4080C 04 50154500");
    for (const auto& [expected, content] : {std::pair<const char*, std::size_t>{"03", 1},
                                            {"81", 0x7F},
                                            {"82", 0x7F},
                                            {"83", 0x80},
                                            {"00", 253},
                                            {"0103", 0xFF},
                                            {"0104", 0x100}}) {
        const bool extended = std::string(expected).size() == 4;
        const Blob response = octets(answer(
            card, std::string(extended ? "00B10000 000004 54020000 " : "00B10000 04 54020000 ") +
                      expected));
        const std::size_t header = content > 0xFF ? 4 : content > 0x7F ? 3 : 2;
        EXPECT_EQ(response.size(), header + content + 2) << expected;
    }
}

TEST(VirtualCardBinary, WritesAndErasesWithDataObjects) {
    VirtualCard card = selectedCard();
    EXPECT_EQ(answer(card, "00D70000 08 54020001 5302AABB"), "9000");
    EXPECT_EQ(answer(card, "00D70000 07 5401037302CCDD"), "9000");
    EXPECT_EQ(hexOf(slice(contents(card), 0, 6)), "01AABBCCDD06");
    EXPECT_EQ(answer(card, "00D70000 08 5402001F 5302AABB"), "6A84");
    EXPECT_EQ(answer(card, "00D70000 08 54020020 5302AABB"), "6B00");
    for (const char* data : {"04 54020000", "06 54020000 5300", "04 5302AABB",
                             "08 54020000 5402AABB", "08 54020000 5301AABB"})
        EXPECT_EQ(answer(card, std::string("00D70000 ") + data), "6A80") << data;
    EXPECT_EQ(answer(card, "000F0000 08 54020001 54020003"), "9000");
    EXPECT_EQ(hexOf(slice(contents(card), 0, 6)), "010000CCDD06");
    EXPECT_EQ(answer(card, "000F0000 03 54011F"), "9000");
    EXPECT_EQ(contents(card)[31], 0x00);
    EXPECT_EQ(contents(card)[30], 0x1F);
    EXPECT_EQ(answer(card, "000F0000 04 53020001"), "6A80");
    EXPECT_EQ(answer(card, "000F0000"), "9000");
    EXPECT_EQ(contents(card), filled(32, 0x00));
}

TEST(VirtualCardBinary, NamesTheFileOfAnOddInstructionInP1P2) {
    VirtualCard card = smallCard();
    answer(card, "00A4080C 02 5015");
    EXPECT_EQ(answer(card, "00B14401 03 540100 03"), "5301019000");  // FID
    EXPECT_EQ(answer(card, "00B10001 03 540101 03"), "5301029000");  // SFI
    EXPECT_EQ(answer(card, "00B10003 03 540100 03"), "6A82");
    EXPECT_EQ(answer(card, "00B14499 03 540100 03"), "6A82");
    EXPECT_EQ(answer(card, "00B16F01 03 540100 03"), "6A82");  // a DF
    EXPECT_EQ(answer(card, "00B1001F 03 540100 03"), "6A86");
}

TEST(VirtualCardBinary, HasNoOddInstructionsWhenSwitchedOff) {
    VirtualCard card = selectedCard();
    card.settings().oddInstructions = false;
    for (const char* ins : {"B1", "D7", "0F"})
        EXPECT_EQ(answer(card, std::string("00") + ins + "0000 04 54020000 00"), "6D00") << ins;
}

TEST(VirtualCardBinary, RefusesToGoPastTheEndWhereSwitchedSo) {
    VirtualCard card = selectedCard();
    card.settings().lengthAtEnd = true;
    EXPECT_EQ(answer(card, "00B0001E 02"), "1F209000");
    EXPECT_EQ(answer(card, "00B0001E 03"), "6700");
    EXPECT_EQ(answer(card, "00B00000 00"), "6700");
}

TEST(VirtualCardBinary, ObeysTheRulesOfTheFile) {
    VirtualCard card = selectedCard();
    FileDescription& file = card.files().find(octets("3F0050154401"))->description;
    file.read.kind = AccessRule::Kind::never;
    EXPECT_EQ(answer(card, "00B00000 01"), "6982");
    EXPECT_EQ(answer(card, "00B10000 03 540100 03"), "6982");
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "9000");
    file.update.kind = AccessRule::Kind::never;
    for (const char* command :
         {"00D60000 01 BB", "000E0000", "00D70000 06 540100 5301BB", "000F0000"})
        EXPECT_EQ(answer(card, command), "6982") << command;
    EXPECT_EQ(contents(card)[0], 0xAA);
}

TEST(VirtualCardBinary, ReadsAnEmptyFileAsOutsideOfIt) {
    VirtualCard card = smallCard();
    card.addTransparent(octets("3F0050154500"), 0);
    answer(card, "00A4080C 04 50154500");
    EXPECT_EQ(answer(card, "00B00000 00"), "6B00");
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "6B00");
    EXPECT_EQ(answer(card, "000E0000"), "6B00");
}

}  // namespace
}  // namespace tovi::test
