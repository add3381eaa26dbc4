#include "tools/AsnJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCommand.h"
#include "tools/Failure.h"
#include "tools/Text.h"
#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

/// The DER of the value that `json` describes, in hex.
std::string encoded(const ASN1::Type& type, const Json& json) {
    ASN1::AnyValue value(type);
    asnFromJson(value, json, "value");
    return toHex(ASN1::encode(ASN1::AbstractData(type, value.get())));
}

/// The JSON of the value that the octets encode.
Json decoded(const ASN1::Type& type, const std::string& hex) {
    ASN1::AnyValue value(type);
    ASN1::Error error;
    EXPECT_TRUE(ASN1::decode(*fromHex(hex), ASN1::AbstractData(type, value.get()), error))
        << ASN1::toString(error);
    return asnToJson(ASN1::AbstractData(type, value.get()));
}

std::string failureOf(const ASN1::Type& type, const Json& json) {
    try {
        return "none: " + encoded(type, json);
    } catch (const UsageError& error) {
        return error.what();
    }
}

// The smallest private RSA key: label KEY1, private, authId 01; iD 45, decrypt, sign and unwrap;
// path 4B01, 1024 bits.
const std::string rsaKey =
    "3026300D0C044B4559310302078004010130070401450302026"
    "4A10C300A300404024B0102020400";
const Json rsaKeyJson = {
    {"privateRSAKey",
     {{"commonObjectAttributes", {{"label", "KEY1"}, {"flags", {"private"}}, {"authId", "01"}}},
      {"classAttributes", {{"iD", "45"}, {"usage", {"decrypt", "sign", "unwrap"}}}},
      {"typeAttributes",
       {{"value", {{"indirect", {{"path", {{"efidOrPath", "4B01"}}}}}}},
        {"modulusLength", 1024}}}}}};

TEST(AsnToJson, NamesTheMembersOfTheModule) {
    EXPECT_EQ(decoded(PKCS15::PrivateKeyType::type, rsaKey), rsaKeyJson);
}

TEST(AsnFromJson, MakesTheRecord) {
    EXPECT_EQ(encoded(PKCS15::PrivateKeyType::type, rsaKeyJson), rsaKey);
}

struct Pair {
    const char* name;
    const ASN1::Type* type;
    Json json;
    std::string der;
};
void PrintTo(const Pair& pair, std::ostream* out) { *out << pair.name; }

class AsnJsonPairs : public testing::TestWithParam<Pair> {};

TEST_P(AsnJsonPairs, GoBothWays) {
    EXPECT_EQ(encoded(*GetParam().type, GetParam().json), GetParam().der);
    EXPECT_EQ(decoded(*GetParam().type, GetParam().der), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    All, AsnJsonPairs,
    testing::Values(
        Pair{"longInteger",
             &PKCS15::RSAPublicKey::type,
             {{"modulus", "0x00C0FFEE0011223344"}, {"publicExponent", -3}},
             "300E020900C0FFEE00112233440201FD"},
        Pair{"integerOf64Bits",
             &PKCS15::RSAPublicKey::type,
             {{"modulus", 9223372036854775807}, {"publicExponent", 1}},
             "300D02087FFFFFFFFFFFFFFF020101"},
        Pair{"boolean",
             &PKCS15::AuthKeyAttributes::type,
             {{"derivedKey", false}, {"authKeyId", ""}},
             "30050101000400"},
        Pair{"enumerations",
             &PKCS15::FingerPrint::type,
             {{"hand", "right"}, {"finger", "thumb"}},
             "30060A01010A0100"},
        Pair{"identifiers",
             &PKCS15::Usage::type,
             {{"extKeyUsage", {"1.3.6.1.4.1.311.20.2.2", "2.999.1"}}},
             "30133011060A2B060104018237140202060388370"
             "1"},
        Pair{"bitsWithoutNames",
             &PKCS15::SubjectPublicKeyInfo::type,
             {{"algorithm", {{"algorithm", "1.2.3"}, {"parameters", "0500"}}},
              {"subjectPublicKey", "0411"}},
             "300D300606022A030500030300"
             "0411"},
        Pair{"unusedBits",
             &PKCS15::SubjectPublicKeyInfo::type,
             {{"algorithm", {{"algorithm", "1.2.3"}}},
              {"subjectPublicKey", {{"hex", "F0"}, {"unused", 4}}}},
             "300A300406022A03030204F0"},
        Pair{"laterMember",
             &PKCS15::CommonObjectAttributes::type,
             {{"label", "A"}, {"...", "A703020101"}},
             "30080C0141A703020101"},
        Pair{"laterMemberInFront",
             &PKCS15::TokenInfo::type,
             {{"version", 0},
              {"serialNumber", "01"},
              {"tokenflags", Json::array()},
              {"...", {{{"before", "preferredLanguage"}, {"hex", "9E0100"}}}},
              {"issuerId", "x"},
              {"preferredLanguage", "en"}},
             "30130201000401010301008301789E01001302656E"},
        Pair{"laterAlternative", &PKCS15::PrivateKeyType::type, {{"...", "A9020500"}}, "A9020500"},
        Pair{"null", &PKCS15::Parameters::type, {{"implicitlyCA", nullptr}}, "0500"},
        Pair{"textThatIsNotUtf8",
             &PKCS15::CommonObjectAttributes::type,
             {{"label", {{"hex", "FF41"}}}},
             "30040C02FF41"},
        Pair{"otherForm",
             &PKCS15::Path::type,
             {{"efidOrPath", {{"otherForm", "A10404024B01"}}}},
             "3006A10404024B01"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(AsnFromJson, TakesNumbersInThePlaceOfNames) {
    EXPECT_EQ(encoded(PKCS15::CommonKeyAttributes::type, {{"iD", ""}, {"usage", {2, "wrap"}}}),
              encoded(PKCS15::CommonKeyAttributes::type, {{"iD", ""}, {"usage", {"sign", 4}}}));
}

TEST(AsnToJson, HasANumberForABitWithoutName) {
    EXPECT_EQ(decoded(PKCS15::CommonObjectAttributes::type, "3004030202A4"),
              Json({{"flags", {"private", 2, 5}}}));
}

struct Refusal {
    const char* name;
    const ASN1::Type* type;
    Json json;
    const char* message;
};
void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }

class AsnJsonRefusals : public testing::TestWithParam<Refusal> {};

TEST_P(AsnJsonRefusals, NameThePlaceAndWhatWasExpected) {
    EXPECT_THAT(failureOf(*GetParam().type, GetParam().json), HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    All, AsnJsonRefusals,
    testing::Values(
        Refusal{"unknownMember",
                &PKCS15::Path::type,
                {{"efidOrPath", ""}, {"length2", 1}},
                "value: found \"length2\""},
        Refusal{"missingMember", &PKCS15::Path::type, {{"index", 1}}, "expected member efidOrPath"},
        Refusal{"noObject", &PKCS15::Path::type, "4401", "expected an object with the members"},
        Refusal{"structure",
                &PKCS15::Path::type,
                {{"efidOrPath", {1, 2}}},
                "value.efidOrPath: found an array of 2, expected octets in hexadecimal"},
        Refusal{"twoAlternatives",
                &PKCS15::PrivateKeyType::type,
                {{"privateRSAKey", {}}, {"privateECKey", {}}},
                "one alternative of PrivateKeyType"},
        Refusal{"unknownAlternative",
                &PKCS15::PrivateKeyType::type,
                {{"privateAESKey", {}}},
                "an alternative of PrivateKeyType"},
        Refusal{"noHex",
                &PKCS15::Path::type,
                {{"efidOrPath", "44x1"}},
                "value.efidOrPath: found \"44x1\", expected octets in hexadecimal"},
        Refusal{"noNumber",
                &PKCS15::Path::type,
                {{"efidOrPath", ""}, {"index", "1"}},
                "value.index: found \"1\", expected a number from 0 on"},
        Refusal{"negative",
                &PKCS15::Path::type,
                {{"efidOrPath", ""}, {"index", -1}},
                "a number from 0 on"},
        Refusal{"fraction",
                &PKCS15::RSAPublicKey::type,
                {{"modulus", 1.5}, {"publicExponent", 1}},
                "a number, or \"0x...\""},
        Refusal{"noFlag",
                &PKCS15::CommonObjectAttributes::type,
                {{"flags", {"secret"}}},
                "found \"secret\""},
        Refusal{"hugeBit",
                &PKCS15::CommonObjectAttributes::type,
                {{"flags", {4000000000}}},
                "expected a bit"},
        Refusal{"noBits", &PKCS15::CommonObjectAttributes::type, {{"flags", 3}}, "a list of bits"},
        Refusal{"noText", &PKCS15::CommonObjectAttributes::type, {{"label", 3}}, "a text"},
        Refusal{"noBoolean",
                &PKCS15::AuthKeyAttributes::type,
                {{"derivedKey", 1}, {"authKeyId", ""}},
                "true or false"},
        Refusal{"noName",
                &PKCS15::FingerPrint::type,
                {{"hand", "both"}, {"finger", 0}},
                "value.hand: found \"both\""},
        Refusal{"noIdentifier",
                &PKCS15::Usage::type,
                {{"extKeyUsage", {"1..2"}}},
                "value.extKeyUsage.0: "},
        Refusal{"hugeArc",
                &PKCS15::Usage::type,
                {{"extKeyUsage", {"1.2.99999999999999999999"}}},
                "an object identifier"},
        Refusal{"noIdentifierAtAll",
                &PKCS15::Usage::type,
                {{"extKeyUsage", {7}}},
                "an object identifier"},
        Refusal{"noList", &PKCS15::Usage::type, {{"extKeyUsage", "1.2.3"}}, "an array"},
        Refusal{"noNull", &PKCS15::Parameters::type, {{"implicitlyCA", 0}}, "expected null"},
        Refusal{"noRun", &PKCS15::CommonObjectAttributes::type, {{"...", {1}}}, "\"before\""}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(AsnFromJson, RefusesMoreLevelsThanAnyRecordHas) {
    Json condition = {{"authId", "01"}};
    for (int i = 0; i < 100; ++i) condition = {{"not", condition}};
    EXPECT_THAT(failureOf(PKCS15::SecurityCondition::type, condition), HasSubstr("fewer levels"));
}

}  // namespace
}  // namespace tovi::test
