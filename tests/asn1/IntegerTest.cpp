#include "tovi/asn1/Integer.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using ASN1::INTEGER, ASN1::Octets;

TEST(Integer, IsZeroAtFirst) {
    EXPECT_EQ(INTEGER().toInt64(), 0);
    EXPECT_EQ(Octets(INTEGER().shortest()), Octets{0});
    EXPECT_EQ(INTEGER(), INTEGER(0));
}

TEST(Integer, HoldsNumbersInTheFewestOctets) {
    const std::pair<std::int64_t, Octets> cases[] = {
        {0, {0x00}},
        {127, {0x7F}},
        {128, {0x00, 0x80}},
        {255, {0x00, 0xFF}},
        {256, {0x01, 0x00}},
        {-1, {0xFF}},
        {-128, {0x80}},
        {-129, {0xFF, 0x7F}},
        {2048, {0x08, 0x00}},
        {std::numeric_limits<std::int64_t>::min(), {0x80, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& [number, octets] : cases) {
        const INTEGER integer = number;
        EXPECT_EQ(integer.octets(), octets) << number;
        EXPECT_EQ(integer.toInt64(), number);
        EXPECT_TRUE(integer.fitsInt64());
    }
}

TEST(Integer, KeepsUnsignedNumbersPositive) {
    const INTEGER large = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(large.octets().size(), 9u);
    EXPECT_FALSE(large.isNegative());
    EXPECT_FALSE(large.fitsInt64());
    EXPECT_EQ(large.toUInt64(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(INTEGER(std::uint32_t{0x80000000}).octets(), (Octets{0, 0x80, 0, 0, 0}));
}

TEST(Integer, KeepsOctetsAsTheyCame) {
    INTEGER serial;
    serial.setValue(Octets{0x00, 0x00, 0x81});
    EXPECT_EQ(serial.octets(), (Octets{0x00, 0x00, 0x81}));
    EXPECT_EQ(Octets(serial.shortest()), (Octets{0x00, 0x81}));
    EXPECT_EQ(serial, INTEGER(129));
    EXPECT_NE(serial, INTEGER(-127));
}

TEST(Integer, ShortensNegativeNumbersToTheSignBit) {
    INTEGER number;
    number.setValue(Octets{0xFF, 0xFF, 0x80});
    EXPECT_EQ(Octets(number.shortest()), Octets{0x80});
    number.setValue(Octets{0xFF, 0x7F});
    EXPECT_EQ(Octets(number.shortest()), (Octets{0xFF, 0x7F}));
}

TEST(Integer, GivesItsLowBits) {
    INTEGER number;
    number.setValue(Octets{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x02});
    EXPECT_EQ(number.toUInt64(), 0x456789ABCDEF0102u);
    EXPECT_EQ(number.toUInt32(), 0xCDEF0102u);
    EXPECT_EQ(number.toInt32(), static_cast<std::int32_t>(0xCDEF0102u));
    EXPECT_EQ(static_cast<std::uint16_t>(number), 0x0102);
    EXPECT_EQ(INTEGER(-2).toUInt64(), ~std::uint64_t{1});
    EXPECT_EQ(INTEGER(-2).toInt32(), -2);
}

TEST(Integer, IsAssignedFromNumbers) {
    INTEGER number = 5;
    number = 2048u;
    EXPECT_EQ(number.toInt32(), 2048);
    number.setValue(-7);
    EXPECT_EQ(number.toInt32(), -7);
}

}  // namespace
