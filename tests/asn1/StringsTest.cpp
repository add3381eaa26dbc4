#include "tovi/asn1/Strings.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace ASN1;

Octets octetsOf(std::string_view text) { return UTF8String(text); }

TEST(Strings, AreMadeOfText) {
    UTF8String label = "KEY";
    EXPECT_EQ(label, (Octets{'K', 'E', 'Y'}));
    label = std::string("PIN");
    EXPECT_EQ(label.text(), "PIN");
    label = Octets{0xFF};
    EXPECT_EQ(label.size(), 1u);
}

TEST(Strings, CountCharacters) {
    EXPECT_EQ(countCharacters(octetsOf("")), 0u);
    EXPECT_EQ(countCharacters(octetsOf("abc")), 3u);
    EXPECT_EQ(countCharacters(octetsOf("é")), 1u);
    EXPECT_EQ(countCharacters(octetsOf("€uro")), 4u);
    EXPECT_EQ(countCharacters(octetsOf("\xF0\x9F\x94\x91")), 1u);
}

TEST(Strings, CountOctetsOfWhatIsNotUTF8) {
    const Octets none[] = {
        {0x80},                    // a continuation without beginning
        {0xC3},                    // a beginning without continuation
        {0xC3, 0x28},              // continued by something else
        {0xC0, 0x80},              // overlong
        {0xC1, 0xBF},              // overlong
        {0xE0, 0x80, 0x80},        // overlong
        {0xF0, 0x80, 0x80, 0x80},  // overlong
        {0xED, 0xA0, 0x80},        // a surrogate
        {0xF4, 0x90, 0x80, 0x80},  // beyond U+10FFFF
        {0xF5, 0x80, 0x80, 0x80},
        {0xE2, 0x82},
        {0xF0, 0x9F, 0x94},
    };
    for (const Octets& octets : none) {
        EXPECT_FALSE(isUTF8(octets));
        EXPECT_EQ(countCharacters(octets), octets.size());
    }
}

TEST(Strings, KnowTheLimitsOfUTF8) {
    EXPECT_TRUE(isUTF8(Octets{0xC2, 0x80}));
    EXPECT_TRUE(isUTF8(Octets{0xE0, 0xA0, 0x80}));
    EXPECT_TRUE(isUTF8(Octets{0xED, 0x9F, 0xBF}));
    EXPECT_TRUE(isUTF8(Octets{0xF0, 0x90, 0x80, 0x80}));
    EXPECT_TRUE(isUTF8(Octets{0xF4, 0x8F, 0xBF, 0xBF}));
}

}  // namespace
