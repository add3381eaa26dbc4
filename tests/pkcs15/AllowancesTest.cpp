#include <gtest/gtest.h>

#include "tests/asn1/CaseFile.h"
#include "tovi/pkcs15/Module.h"

namespace {

using namespace asn1test;

const ASN1::Type& typeNamed(const std::string& name) {
    const ASN1::Type* type = PKCS15::getModule().find(name);
    if (!type) throw std::runtime_error("no type " + name);
    return *type;
}

/// What cards in use get wrong, and constraints.
class Allowance : public testing::TestWithParam<Case> {};

TEST_P(Allowance, IsReadAsTheRowSays) { check(GetParam(), typeNamed(GetParam().type)); }

INSTANTIATE_TEST_SUITE_P(Rows, Allowance, testing::ValuesIn(readCases("allowances.txt")), caseName);

/// Cards written to ISO/IEC 7816-15.
class LaterEdition : public testing::TestWithParam<Case> {};

TEST_P(LaterEdition, IsReadAsTheRowSays) { check(GetParam(), typeNamed(GetParam().type)); }

INSTANTIATE_TEST_SUITE_P(Rows, LaterEdition, testing::ValuesIn(readCases("edition-cases.txt")),
                         caseName);

}  // namespace
