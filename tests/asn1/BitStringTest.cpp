#include "tovi/asn1/BitString.h"

#include <gtest/gtest.h>

namespace {

using ASN1::BIT_STRING, ASN1::Octets;

TEST(BitString, CountsBitsFromTheTopOfTheFirstOctet) {
    BIT_STRING bits;
    bits.set(0);
    EXPECT_EQ(bits.octets(), Octets{0x80});
    EXPECT_EQ(bits.size(), 1u);
    bits.set(9);
    EXPECT_EQ(bits.octets(), (Octets{0x80, 0x40}));
    EXPECT_EQ(bits.size(), 10u);
    EXPECT_EQ(bits.unusedBits(), 6u);
}

TEST(BitString, GrowsByZeroBitsForAClearedBitToo) {
    BIT_STRING bits;
    bits.set(8, false);
    EXPECT_EQ(bits.size(), 9u);
    EXPECT_EQ(bits.octets(), (Octets{0, 0}));
    bits.set(3, true);
    EXPECT_EQ(bits.size(), 9u);
    bits.set(3, false);
    EXPECT_EQ(bits.octets(), (Octets{0, 0}));
}

TEST(BitString, GrowsWithinItsLastOctet) {
    BIT_STRING bits{0};
    bits.set(6, false);
    EXPECT_EQ(bits.size(), 7u);
    EXPECT_EQ(bits.octets(), Octets{0x80});
}

TEST(BitString, HasZeroBitsBeyondItsEnd) {
    const BIT_STRING bits{1};
    EXPECT_FALSE(bits.test(0));
    EXPECT_TRUE(bits.test(1));
    EXPECT_FALSE(bits.test(2));
    EXPECT_FALSE(bits.test(800));
}

TEST(BitString, TakesWhatIsLeftOfOctets) {
    BIT_STRING bits;
    const Octets octets = {0xFF, 0xFF};
    bits.assign(octets, 3);
    EXPECT_EQ(bits.size(), 13u);
    EXPECT_EQ(bits.octets(), (Octets{0xFF, 0xF8}));
    bits.assign(octets, 9);
    EXPECT_EQ(bits.size(), 7u);
    EXPECT_EQ(bits.octets(), Octets{0xFE});
    bits.assign(octets, 16);
    EXPECT_TRUE(bits.empty());
    bits.assign(octets, 255);
    EXPECT_EQ(bits.size(), 0u);
    EXPECT_EQ(bits.unusedBits(), 0u);
}

TEST(BitString, TrimsZeroBitsAtTheEnd) {
    BIT_STRING bits;
    bits.assign(Octets{0x40, 0x00, 0x00});
    bits.trim();
    EXPECT_EQ(bits.size(), 2u);
    bits.assign(Octets{0x00});
    bits.trim();
    EXPECT_TRUE(bits.empty());
    EXPECT_EQ(bits.unusedBits(), 0u);
    bits.set(5);
    bits.clear();
    EXPECT_EQ(bits, BIT_STRING());
}

TEST(BitString, StringsOfDifferentLengthDiffer) {
    BIT_STRING longer{0};
    longer.set(1, false);
    EXPECT_NE(BIT_STRING{0}, longer);
    longer.trim();
    EXPECT_EQ(BIT_STRING{0}, longer);
}

}  // namespace
