#include "tovi/asn1/Error.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::Error;

TEST(Error, SaysWhereWhatWasFoundAndWhatWasExpected) {
    EXPECT_EQ(refusal<Shape>("A0 0C 30 03 02 01 07 30 04 04 02 CA FE"),
              "Shape: content runs past the end of the data, at octet 0");
    EXPECT_EQ(refusal<Shape>("A0 0B 30 03 02 01 07 30 05 04 02 CA FE"),
              "Shape.points: content runs past the end of the data, at octet 7");
    EXPECT_EQ(refusal<Shape>("A1 0D A0 0B 30 03 02 01 07 30 04 04 02 CA FE"),
              "Shape.inner.points[1].x: found OCTET STRING, expected INTEGER, at octet 11");
}

TEST(Error, NamesTheTagThatWasExpected) {
    EXPECT_EQ(refusal<Number>("30 80"),
              "Number: content runs past the end of the data, at octet 2");
    EXPECT_EQ(refusal<Strict>("30 03 30 01 00"),
              "Strict.colour: found SEQUENCE, expected ENUMERATED, at octet 2");
}

TEST(Error, IsEmptyAfterSuccess) {
    Point point;
    Error error;
    error.kind = Error::badTag;
    error.path = "left over";
    ASSERT_TRUE(ASN1::decode(hex("30 03 02 01 07"), point, error));
    EXPECT_FALSE(error);
    EXPECT_EQ(toString(error), "no error");
}

}  // namespace
