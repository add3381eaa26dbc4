#include "tovi/asn1/Notation.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"

namespace {

using namespace asn1test;

TEST(Notation, RebuildsASequence) {
    EXPECT_EQ(ASN1::notation(Point::type),
              "Point ::= SEQUENCE {\n"
              "    x INTEGER,\n"
              "    y INTEGER (0..100) OPTIONAL,\n"
              "    name [0] UTF8String (SIZE (1..3)) OPTIONAL,\n"
              "    ...,\n"
              "    later [1] BOOLEAN DEFAULT TRUE,\n"
              "    last [2] EXPLICIT OCTET STRING OPTIONAL\n"
              "}");
}

TEST(Notation, RebuildsAChoice) {
    EXPECT_EQ(ASN1::notation(Shape::type),
              "Shape ::= CHOICE {\n"
              "    point Point,\n"
              "    points [0] SEQUENCE SIZE (1..MAX) OF Point,\n"
              "    inner [1] EXPLICIT Shape,\n"
              "    ...\n"
              "}");
}

TEST(Notation, ShowsMembersOfOtherEditionsAsThisOneHasThem) {
    EXPECT_EQ(ASN1::notation(Strict::type),
              "Strict ::= SEQUENCE {\n"
              "    serial OCTET STRING,\n"
              "    colour Colour,\n"
              "    flags Flags OPTIONAL,\n"
              "    shape Shape OPTIONAL,\n"
              "    set SET OF INTEGER OPTIONAL\n"
              "}");
}

TEST(Notation, ShowsNamedNumbers) {
    EXPECT_EQ(ASN1::notation(Flags::type), "Flags ::= BIT STRING { up (0), down (1), deep (9) }");
    EXPECT_EQ(ASN1::notation(Colour::type), "Colour ::= ENUMERATED { red, green, ..., blue }");
}

}  // namespace
