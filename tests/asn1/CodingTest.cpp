#include "tovi/asn1/Coding.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::AbstractData, ASN1::AnyValue, ASN1::Error, ASN1::Octets, ASN1::Rest;

TEST(Decode, LeavesTheTargetAsItWasWhenItFails) {
    Point point;
    point.x = 5;
    point.name = "P";
    Error error;
    EXPECT_FALSE(ASN1::decode(hex("30 05 02 01 07 80 09"), point, error));
    EXPECT_EQ(encoded(point), "3006020105800150");
    EXPECT_FALSE(ASN1::decode(hex("30 05 02 01 07 80 09"), AbstractData(point), error));
    EXPECT_EQ(encoded(point), "3006020105800150");
}

TEST(Decode, ReplacesAllThatWasThere) {
    Point point;
    point.name = "P";
    point.later = false;
    Error error;
    ASSERT_TRUE(ASN1::decode(hex("30 03 02 01 07"), AbstractData(point), error));
    EXPECT_EQ(encoded(point), "3003020107");
    point.name = "P";
    ASSERT_TRUE(ASN1::decode(hex("30 03 02 01 08"), point, error));
    EXPECT_EQ(encoded(point), "3003020108");
}

TEST(Decode, RefusesOctetsBehindTheValueUnlessTold) {
    const Octets octets = hex("02 01 07 FF FF");
    ASN1::INTEGER number;
    Error error;
    EXPECT_FALSE(ASN1::decode(octets, number, error));
    EXPECT_EQ(error.kind, Error::trailing);
    EXPECT_EQ(error.offset, 3u);
    EXPECT_TRUE(ASN1::decode(octets, number, error, Rest::anything));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(error.kind, Error::none);
}

TEST(Decode, WorksForListsToo) {
    std::vector<Point> points;
    Error error;
    ASSERT_TRUE(ASN1::decode(hex("30 0A 30 03 02 01 01 30 03 02 01 02"), points, error));
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(ASN1::encode(points), hex("30 0A 30 03 02 01 01 30 03 02 01 02"));
}

TEST(AnyValue, OwnsAValueOfATypeKnownAtRunTime) {
    AnyValue value(Point::type);
    Error error;
    ASSERT_TRUE(ASN1::decode(hex("30 03 02 01 07"), value, error));
    AnyValue copy = value;
    static_cast<Point*>(copy.get())->x = 8;
    EXPECT_EQ(toHex(ASN1::encode(value)), "3003020107");
    EXPECT_EQ(toHex(ASN1::encode(copy)), "3003020108");
    AnyValue moved = std::move(copy);
    EXPECT_EQ(toHex(ASN1::encode(moved)), "3003020108");
    value = moved;
    EXPECT_EQ(toHex(ASN1::encode(value)), "3003020108");
    EXPECT_EQ(&value.type(), &Point::type);
}

TEST(Encode, GrowsBeyondAnyBuffer) {
    std::vector<Octets> list(300, Octets(200, 0x5A));
    const Octets octets = ASN1::encode(list);
    EXPECT_EQ(octets.size(), 300u * 203u + 4u);
    std::vector<Octets> again;
    Error error;
    ASSERT_TRUE(ASN1::decode(octets, again, error)) << toString(error);
    EXPECT_EQ(again, list);
}

}  // namespace
