#include "tovi/asn1/Tag.h"

#include <gtest/gtest.h>

namespace {

TEST(Tag, IsShownAsTheNotationHasIt) {
    EXPECT_EQ(toString(ASN1::universal(4)), "OCTET STRING");
    EXPECT_EQ(toString(ASN1::universal(16)), "SEQUENCE");
    EXPECT_EQ(toString(ASN1::universal(30)), "BMPString");
    EXPECT_EQ(toString(ASN1::universal(15)), "[UNIVERSAL 15]");
    EXPECT_EQ(toString(ASN1::universal(31)), "[UNIVERSAL 31]");
    EXPECT_EQ(toString(ASN1::context(3)), "[3]");
    EXPECT_EQ(toString(ASN1::application(15)), "[APPLICATION 15]");
    EXPECT_EQ(toString(ASN1::Tag{ASN1::Tag::privateUse, 7}), "[PRIVATE 7]");
    EXPECT_EQ(toString(ASN1::Tag{}), "any type");
}

}  // namespace
