#include "tovi/asn1/Builtin.h"

#include <gtest/gtest.h>

#include "tests/asn1/CaseFile.h"
#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;

const ASN1::Type* const types[] = {
    &ASN1::booleanType,    &ASN1::integerType,
    &ASN1::bitStringType,  &ASN1::octetStringType,
    &ASN1::nullType,       &ASN1::objectIdentifierType,
    &ASN1::utf8StringType, &ASN1::printableStringType,
    &ASN1::ia5StringType,  &ASN1::generalizedTimeType,
    &ASN1::openType,       &Colour::type,
    &Flags::type,          &Point::type,
    &Shape::type,          &Number::type,
    &Strict::type,
};

const ASN1::Type& typeNamed(const std::string& name) {
    if (name == "unsigned INTEGER") return ASN1::unsignedType;
    for (const ASN1::Type* type : types)
        if (type->name == name) return *type;
    throw std::runtime_error("no type " + name);
}

class BER : public testing::TestWithParam<Case> {};

TEST_P(BER, IsReadAsTheRowSays) { check(GetParam(), typeNamed(GetParam().type)); }

INSTANTIATE_TEST_SUITE_P(Values, BER, testing::ValuesIn(readCases("ber-cases.txt")), caseName);
INSTANTIATE_TEST_SUITE_P(Structures, BER, testing::ValuesIn(readCases("structure-cases.txt")),
                         caseName);

TEST(UnsignedInteger, IsMeasuredWithoutWrappingAround) {
    const std::uint64_t large = ~std::uint64_t{0};
    EXPECT_EQ(ASN1::measureUnsigned(&large), ASN1::Bounds::highest);
}

}  // namespace
