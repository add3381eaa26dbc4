#include "tools/AnswerToReset.h"

#include <gtest/gtest.h>

#include "tools/Text.h"

namespace tovi::test {
namespace {

std::string fault(const char* atr) { return findAtrFault(*fromHex(atr)); }

TEST(AnswerToReset, OfTheVirtualCardIsSound) {
    EXPECT_EQ(findAtrFault(virtualCardAtr()), "");
    EXPECT_EQ(toHex(virtualCardAtr()), "3B85018073F621C060");
}

TEST(AnswerToReset, IsTakenWithAndWithoutInterfaceAndHistoricalBytes) {
    EXPECT_EQ(fault("3B00"), "");
    EXPECT_EQ(fault("3F00"), "");
    EXPECT_EQ(fault("3B021450"), "");                // historical bytes only
    EXPECT_EQ(fault("3B951381018073FF01000B"), "");  // TA1, TD1, TD2, TCK
    EXPECT_EQ(fault("3BFF1300008131FE454142434445464748494A4B4C4D4E4FA7"), "");
    EXPECT_EQ(fault("3B80800101"), "");  // T=0, then T=1
    EXPECT_EQ(fault("3B8000"), "");      // T=0 alone: no TCK
}

TEST(AnswerToReset, IsRefusedWhenItIsTooShortOrTooLong) {
    EXPECT_EQ(fault(""), "an ATR is 2 to 33 octets in hexadecimal");
    EXPECT_EQ(fault("3B"), "an ATR is 2 to 33 octets in hexadecimal");
    EXPECT_EQ(findAtrFault(Blob(34, 0x3B)), "an ATR is 2 to 33 octets in hexadecimal");
}

TEST(AnswerToReset, IsRefusedWithAnotherInitialCharacter) {
    EXPECT_EQ(fault("3C00"), "an ATR begins with 3B or 3F");
}

TEST(AnswerToReset, IsRefusedWhenTheLengthIsNotAsAnnounced) {
    EXPECT_EQ(fault("3B80"), "the ATR ends within its interface bytes");
    EXPECT_EQ(fault("3B8080"), "the ATR ends within its interface bytes");
    EXPECT_EQ(fault("3BF01300"), "the ATR ends within its interface bytes");
    EXPECT_EQ(fault("3B0214"), "the ATR has 3 octets and announces 4");
    EXPECT_EQ(fault("3B0000"), "the ATR has 3 octets and announces 2");
    EXPECT_EQ(fault("3B8001"), "the ATR has 3 octets and announces 4");  // TCK is missing
    EXPECT_EQ(fault("3B10"), "the ATR has 2 octets and announces 3");
}

TEST(AnswerToReset, IsRefusedWhenTheCheckCharacterIsWrong) {
    EXPECT_EQ(fault("3B85018073F621C061"), "the check character of the ATR is wrong");
}

}  // namespace
}  // namespace tovi::test
