// READ, UPDATE, APPEND and ERASE RECORD of the virtual card.
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

std::vector<Blob>& variable(VirtualCard& card) {
    return card.files().find(octets("3F0050154402"))->records;
}
std::vector<Blob>& fixed(VirtualCard& card) {
    return card.files().find(octets("3F0050154403"))->records;
}

/// smallCard with the variable file 4402 selected and the records 01, 0202, 030303 in it.
VirtualCard variableCard() {
    VirtualCard card = smallCard();
    variable(card) = {octets("01"), octets("0202"), octets("030303")};
    answer(card, "00A4080C 04 50154402");
    return card;
}

/// smallCard with the fixed file 4403 selected and one record 01020304 in it.
VirtualCard fixedCard() {
    VirtualCard card = smallCard();
    fixed(card) = {octets("01020304")};
    answer(card, "00A4080C 04 50154403");
    return card;
}

TEST(VirtualCardRecord, ReadsByNumber) {
    VirtualCard card = variableCard();
    EXPECT_EQ(answer(card, "00B20104 00"), "019000");
    EXPECT_EQ(answer(card, "00B20304 00"), "0303039000");
    EXPECT_EQ(answer(card, "00B20404 00"), "6A83");
    EXPECT_EQ(answer(card, "00B20004 00"), "6A83");  // no record is current
    EXPECT_EQ(answer(card, "00B2FF04 00"), "6A86");
    EXPECT_EQ(answer(card, "00B20205 00"), "02020303039000");  // from it to the last
}

TEST(VirtualCardRecord, StepsThroughTheRecords) {
    VirtualCard card = variableCard();
    EXPECT_EQ(answer(card, "00B20002 00"), "019000");
    EXPECT_EQ(answer(card, "00B20002 00"), "02029000");
    EXPECT_EQ(answer(card, "00B20004 00"), "02029000");  // the current one
    EXPECT_EQ(answer(card, "00B20003 00"), "019000");
    EXPECT_EQ(answer(card, "00B20003 00"), "6A83");
    EXPECT_EQ(answer(card, "00B20001 00"), "0303039000");
    EXPECT_EQ(answer(card, "00B20002 00"), "6A83");
    EXPECT_EQ(answer(card, "00B20000 00"), "019000");
    EXPECT_EQ(answer(card, "00A4080C 04 50154402"), "9000");
    EXPECT_EQ(answer(card, "00B20003 00"), "0303039000");  // before the first: the last
    EXPECT_EQ(answer(card, "00B20100 00"), "6A83");        // a record identifier
    EXPECT_EQ(answer(card, "00B20006 00"), "6A86");
}

TEST(VirtualCardRecord, ComparesLengths) {
    VirtualCard card = variableCard();
    EXPECT_EQ(answer(card, "00B20304"), "6700");
    EXPECT_EQ(answer(card, "00B20304 01 00 00"), "6700");
    EXPECT_EQ(answer(card, "00B20304 03"), "0303039000");
    EXPECT_EQ(answer(card, "00B20304 02"), "6C03");
    EXPECT_EQ(answer(card, "00B20304 04"), "0303036282");
    EXPECT_EQ(answer(card, "00B20304 000004"), "0303036282");
}

TEST(VirtualCardRecord, SelectsByShortIdentifier) {
    VirtualCard card = variableCard();
    answer(card, "00A4080C 02 5015");
    EXPECT_EQ(answer(card, "00B20104 00"), "6986");
    EXPECT_EQ(answer(card, "00B20114 00"), "019000");  // SFI 2
    EXPECT_EQ(answer(card, "00B20012 00"), "019000");
    EXPECT_EQ(answer(card, "00B20012 00"), "02029000");  // the pointer stays with the file
    EXPECT_EQ(answer(card, "00B2011C 00"), "6A82");
    EXPECT_EQ(answer(card, "00B201FC 00"), "6A86");
    EXPECT_EQ(answer(card, "00B2010C 00"), "6981");  // SFI 1 is transparent
    EXPECT_EQ(answer(card, "00E20008 01 AA"), "6981");
}

TEST(VirtualCardRecord, UpdatesVariableRecordsUpToTheirSize) {
    VirtualCard card = variableCard();
    EXPECT_EQ(answer(card, "00DC0104 04 AABBCCDD"), "9000");
    EXPECT_EQ(hexOf(variable(card)[0]), "AABBCCDD");
    EXPECT_EQ(answer(card, "00DC0104 05 AABBCCDDEE"), "6A84");
    EXPECT_EQ(answer(card, "00DC0104"), "6700");
    EXPECT_EQ(answer(card, "00DC0404 01 AA"), "6A83");
    EXPECT_EQ(answer(card, "00DC0105 01 AA"), "6A86");
    EXPECT_EQ(answer(card, "00DC0001 01 EE"), "9000");  // the last one
    EXPECT_EQ(hexOf(variable(card)[2]), "EE");
}

TEST(VirtualCardRecord, UpdatesFixedRecordsWholly) {
    VirtualCard card = fixedCard();
    EXPECT_EQ(answer(card, "00DC0104 04 AABBCCDD"), "9000");
    EXPECT_EQ(hexOf(fixed(card)[0]), "AABBCCDD");
    EXPECT_EQ(answer(card, "00DC0104 03 AABBCC"), "6700");
    EXPECT_EQ(answer(card, "00DC0104 05 AABBCCDDEE"), "6700");
}

TEST(VirtualCardRecord, AppendsUntilTheFileIsFull) {
    VirtualCard card = fixedCard();
    EXPECT_EQ(answer(card, "00E20000 04 05060708"), "9000");
    EXPECT_EQ(answer(card, "00B20004 00"), "050607089000");  // it is the current one
    EXPECT_EQ(answer(card, "00E20000 03 050607"), "6700");
    EXPECT_EQ(answer(card, "00E20000 04 090A0B0C"), "9000");
    EXPECT_EQ(answer(card, "00E20000 04 0D0E0F10"), "6A84");
    EXPECT_EQ(fixed(card).size(), 3u);
    EXPECT_EQ(answer(card, "00E20100 04 0D0E0F10"), "6A86");
    EXPECT_EQ(answer(card, "00E20004 04 0D0E0F10"), "6A86");
}

TEST(VirtualCardRecord, KeepsTheNumberOfAnErasedRecord) {
    VirtualCard card = variableCard();
    EXPECT_EQ(answer(card, "000C0204"), "9000");
    EXPECT_EQ(variable(card), (std::vector<Blob>{octets("01"), {}, octets("030303")}));
    EXPECT_EQ(answer(card, "00B20204 00"), "9000");
    EXPECT_EQ(answer(card, "000C0205"), "9000");
    EXPECT_EQ(variable(card), (std::vector<Blob>{octets("01"), {}, {}}));
    EXPECT_EQ(answer(card, "000C0404"), "6A83");
    EXPECT_EQ(answer(card, "000C0000"), "6A86");
    EXPECT_EQ(answer(card, "000C0104 01 00"), "6700");
    VirtualCard other = fixedCard();
    EXPECT_EQ(answer(other, "000C0104"), "9000");
    EXPECT_EQ(hexOf(fixed(other)[0]), "00000000");
}

TEST(VirtualCardRecord, RefusesTransparentFilesAndNoFile) {
    VirtualCard card = smallCard();
    for (const char* command : {"00B20104 00", "00DC0104 01 AA", "00E20000 01 AA", "000C0104"})
        EXPECT_EQ(answer(card, command), "6986") << command;
    answer(card, "00A4080C 04 50154401");
    for (const char* command : {"00B20104 00", "00DC0104 01 AA", "00E20000 01 AA", "000C0104"})
        EXPECT_EQ(answer(card, command), "6981") << command;
}

TEST(VirtualCardRecord, ObeysTheRulesOfTheFile) {
    VirtualCard card = variableCard();
    FileDescription& file = card.files().find(octets("3F0050154402"))->description;
    file.read.kind = AccessRule::Kind::never;
    file.update.kind = AccessRule::Kind::never;
    variable(card).pop_back();
    for (const char* command : {"00B20104 00", "00DC0104 01 AA", "00E20000 01 AA", "000C0104"})
        EXPECT_EQ(answer(card, command), "6982") << command;
    EXPECT_EQ(variable(card), (std::vector<Blob>{octets("01"), octets("0202")}));
}

}  // namespace
}  // namespace tovi::test
