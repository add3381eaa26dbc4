#include "tools/FieldNames.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

using Names = std::vector<std::string>;

TEST(AttributeName, IsThatOfPKCS11) {
    EXPECT_EQ(attributeName(0x2), "CKA_PRIVATE");
    EXPECT_EQ(attributeName(0x108), "CKA_SIGN");
    EXPECT_EQ(attributeName(0x202), "CKA_ALWAYS_AUTHENTICATE");
}

TEST(AttributeName, IsTheNumberWhereThereIsNone) {
    EXPECT_EQ(attributeName(0x80000001), "CKA_0x80000001");
    EXPECT_FALSE(isBooleanAttribute(0x80000001));
    EXPECT_TRUE(isBooleanAttribute(0x170));
}

TEST(KeyTypeName, KnowsTheFourTypesOfTheModel) {
    EXPECT_EQ(keyTypeName(0), "RSA");
    EXPECT_EQ(keyTypeName(1), "DSA");
    EXPECT_EQ(keyTypeName(2), "DH");
    EXPECT_EQ(keyTypeName(3), "EC");
    EXPECT_EQ(keyTypeName(4), std::nullopt);
    EXPECT_EQ(keyTypeName(~std::uint64_t{0}), std::nullopt);
}

TEST(PinFlagNames, NameEveryBitInOrder) {
    EXPECT_EQ(pinFlagNames(0), Names{});
    EXPECT_EQ(pinFlagNames(1u << 0 | 1u << 7 | 1u << 11),
              (Names{"case-sensitive", "soPin", "exchangeRefData"}));
    EXPECT_EQ(pinFlagNames(1u << 12 | 1u << 31), (Names{"bit12", "bit31"}));
}

TEST(BiometricFlagNames, HaveNumbersWhereTheStandardReservesBits) {
    EXPECT_EQ(biometricFlagNames(1u << 0 | 1u << 1 | 1u << 5 | 1u << 10),
              (Names{"bit0", "local", "bit5", "confidentiality-protected"}));
}

TEST(TypeNames, EndWithTheStandard) {
    EXPECT_EQ(pinTypeName(0), "bcd");
    EXPECT_EQ(pinTypeName(4), "iso9564-1");
    EXPECT_EQ(pinTypeName(5), std::nullopt);
    EXPECT_EQ(biometricTypeName(0), "fingerPrint");
    EXPECT_EQ(biometricTypeName(1), "irisScan");
    EXPECT_EQ(biometricTypeName(2), std::nullopt);
    EXPECT_EQ(operationName(0), "compute-checksum");
    EXPECT_EQ(operationName(7), "generate-key");
}

TEST(FieldNames, AreFoundAgain) {
    for (const unsigned long number : {0x2ul, 0x108ul, 0x202ul, 0x102ul, 0xFFFFFFFFul}) {
        EXPECT_EQ(attributeNumber(attributeName(number)), number);
    }
    for (const std::uint64_t keyType : {0u, 1u, 2u, 3u}) {
        EXPECT_EQ(keyTypeNumber(*keyTypeName(keyType)), keyType);
    }
    for (unsigned bit = 0; bit < 32; ++bit) {
        EXPECT_EQ(pinFlagBit(pinFlagNames(1u << bit).front()), bit);
        EXPECT_EQ(biometricFlagBit(biometricFlagNames(1u << bit).front()), bit);
    }
    for (unsigned bit = 0; bit < 8; ++bit) EXPECT_EQ(operationBit(operationName(bit)), bit);
    for (unsigned type = 0; type < 5; ++type) EXPECT_EQ(pinTypeNumber(*pinTypeName(type)), type);
    EXPECT_EQ(biometricTypeNumber("irisScan"), 1u);
}

TEST(FieldNames, AreNotFoundForOtherTexts) {
    for (const char* name : {"", "CKA_", "CKA_0x", "CKA_0x1FFFFFFFF", "CKA_0x1G", "cka_sign"}) {
        EXPECT_EQ(attributeNumber(name), std::nullopt) << name;
    }
    for (const char* name : {"", "bit", "bit32", "bit-1", "bit1x", "Local"}) {
        EXPECT_EQ(pinFlagBit(name), std::nullopt) << name;
        EXPECT_EQ(biometricFlagBit(name), std::nullopt) << name;
    }
    EXPECT_EQ(keyTypeNumber("rsa"), std::nullopt);
    EXPECT_EQ(pinTypeNumber(""), std::nullopt);
}

}  // namespace
}  // namespace tovi::test
