#include <gtest/gtest.h>

#include <cctype>

#include "tests/asn1/TestTools.h"
#include "tests/pkcs15/Facts.h"
#include "tests/pkcs15/Records.h"

namespace {

using namespace asn1test;
using ASN1::AnyValue, ASN1::Error, ASN1::Octets, ASN1::View;
using nlohmann::json;
using pkcs15test::Vector;

class CardFile : public testing::TestWithParam<Vector> {
protected:
    View record(const json& facts) const {
        return View(GetParam().file).subspan(facts.at("offset"), facts.at("size"));
    }
};

std::string nameOf(const testing::TestParamInfo<Vector>& info) {
    std::string name;
    for (char c : info.param.name) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

/// The facts without what they say about the file and without names, which another test compares.
json withoutPlaces(json facts) {
    if (facts.is_object())
        for (const char* key : {"offset", "size", "tag", "names", "name"})
            if (key != std::string("tag") || !facts.contains("where")) facts.erase(key);
    if (facts.is_structured())
        for (json& part : facts) part = withoutPlaces(part);
    return facts;
}

TEST_P(CardFile, HoldsWhatIsKnownToBeInIt) {
    const json& records = GetParam().facts.at("records");
    EXPECT_EQ(records.size(), GetParam().facts.at("recordCount"));
    for (const json& expected : records) {
        AnyValue value(*GetParam().type);
        Error error;
        ASSERT_TRUE(ASN1::decode(record(expected), value, error)) << toString(error);
        EXPECT_EQ(pkcs15test::facts(value), withoutPlaces(expected));
        EXPECT_TRUE(ASN1::isValid(value)) << expected.dump();
    }
}

/// A record in which a member equal to its DEFAULT is written out, which DER leaves out.
bool hasDefaultWrittenOut(const json& facts) { return facts.value("native", false); }

TEST_P(CardFile, ComesBackOctetForOctet) {
    for (const json& expected : GetParam().facts.at("records")) {
        if (hasDefaultWrittenOut(expected)) continue;
        AnyValue value(*GetParam().type);
        Error error;
        ASSERT_TRUE(ASN1::decode(record(expected), value, error)) << toString(error);
        EXPECT_EQ(toHex(ASN1::encode(value)), toHex(record(expected)));
    }
}

TEST_P(CardFile, DecodesNothingBehindItsLastRecord) {
    if (!GetParam().facts.contains("trailing")) return;
    const View rest = View(GetParam().file).subspan(GetParam().facts["trailing"]["offset"]);
    AnyValue value(*GetParam().type);
    Error error;
    EXPECT_FALSE(ASN1::decode(rest, value, error));
}

TEST_P(CardFile, IsNotReadBeyondItsCut) {
    if (!GetParam().facts.value("cutInsideRecord", false)) return;
    AnyValue value(*GetParam().type);
    Error error;
    EXPECT_FALSE(ASN1::decode(GetParam().file, value, error));
    EXPECT_EQ(error.kind, Error::truncated);
}

INSTANTIATE_TEST_SUITE_P(Vectors, CardFile, testing::ValuesIn(pkcs15test::readVectors()), nameOf);

TEST(CardFiles, LoseDefaultsThatWereWrittenOut) {
    std::size_t records = 0;
    for (const Vector& vector : pkcs15test::readVectors())
        for (const json& facts : vector.facts.at("records")) {
            if (!hasDefaultWrittenOut(facts)) continue;
            ++records;
            const View record = View(vector.file).subspan(facts.at("offset"), facts.at("size"));
            AnyValue value(*vector.type);
            Error error;
            ASSERT_TRUE(ASN1::decode(record, value, error)) << toString(error);
            EXPECT_EQ(ASN1::encode(value).size() + 3, record.size())
                << "native 01 01 FF is dropped";
        }
    EXPECT_EQ(records, 1u);
}

}  // namespace
