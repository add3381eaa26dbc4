#include "tovi/asn1/Print.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;

TEST(Print, IndentsValueNotation) {
    EXPECT_EQ(ASN1::print(decoded<Shape>("A1 10 A0 0E 30 03 02 01 07 30 07 02 01 08 A2 02 04 00")),
              "inner : points : {\n"
              "  {\n"
              "    x 7\n"
              "  },\n"
              "  {\n"
              "    x 8,\n"
              "    last ''H\n"
              "  }\n"
              "}");
}

TEST(Print, ShowsWhatNobodyFilled) {
    EXPECT_EQ(ASN1::print(Shape()), "-- nothing selected --");
    EXPECT_EQ(ASN1::print(std::vector<Point>()), "{}");
    EXPECT_EQ(ASN1::print(Flags()), "{}");
}

TEST(Print, StaysLinearInWhatAHostileCardSends) {
    // A list of ten thousand empty elements that nobody knows, inside the deepest nesting there is.
    ASN1::Octets content;
    for (int i = 0; i < 10000; ++i) content.append(hex("85 00"));
    Shape shape;
    ASN1::Octets octets = content;
    const auto wrap = [&octets](std::uint8_t tag) {
        ASN1::Writer writer;
        writer.octets(octets);
        writer.header(ASN1::context(tag), true, octets.size());
        octets = ASN1::Octets(writer.written());
    };
    wrap(7);
    for (int i = 0; i < 20; ++i) wrap(1);
    ASN1::Error error;
    ASSERT_TRUE(ASN1::decode(octets, shape, error)) << toString(error);
    EXPECT_LT(ASN1::print(shape).size(), 3 * octets.size());
    EXPECT_EQ(ASN1::encode(shape), octets);
}

}  // namespace
