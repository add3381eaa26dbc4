#include "tovi/coders/CommonAttributes.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/Records.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/pkcs15/PKCS15.h"
#include "tovi/records/Infos.h"

namespace tovi::test {
namespace {

PKCS15::CommonObjectAttributes attributes(const Common& common) {
    return decoded<PKCS15::CommonObjectAttributes>(common.encoded());
}

// ---- flags, authId, userConsent ----

template <class Info>
class GetPKCS15Attributes : public testing::Test {
protected:
    static PKCS15ObjectInfo<Info> decodedFrom(const Common& common) {
        PKCS15ObjectInfo<Info> info;
        getPKCS15Attributes(info, attributes(common));
        return info;
    }
};

using InfoTypes =
    testing::Types<DataInfo, BlockCipherKeyInfo, CertificateInfo, UsefulCertificateInfo,
                   TrustedCertificateInfo, PublicKeyInfo, TrustedPublicKeyInfo, PrivateKeyInfo>;
TYPED_TEST_SUITE(GetPKCS15Attributes, InfoTypes);

template <class Info>
std::set<unsigned long> attributeNumbers(const PKCS15ObjectInfo<Info>& info) {
    std::set<unsigned long> numbers;
    for (const auto& param : info.Params()) numbers.insert(param.attribute);
    return numbers;
}

TYPED_TEST(GetPKCS15Attributes, KeepsTheDefaultsWithoutFlags) {
    const auto info = this->decodedFrom({});
    EXPECT_FALSE(info.isPrivate);
    EXPECT_TRUE(info.isModifiable);
    EXPECT_EQ(info.GetParam(CKA_PRIVATE), 0);
    EXPECT_EQ(info.GetParam(CKA_MODIFIABLE), 1);
}

TYPED_TEST(GetPKCS15Attributes, SetsBothAttributesAndNoOthersWhateverTheFlags) {
    const std::set<unsigned long> both = {CKA_PRIVATE, CKA_MODIFIABLE};
    EXPECT_EQ(attributeNumbers(this->decodedFrom({})), both);
    EXPECT_EQ(attributeNumbers(this->decodedFrom({.flags = namedBits({})})), both);
    EXPECT_EQ(attributeNumbers(this->decodedFrom({.flags = namedBits({0, 1})})), both);
}

TYPED_TEST(GetPKCS15Attributes, TakesEachFlagFromItsBit) {
    struct Case {
        Blob flags;
        bool isPrivate, isModifiable;
    };
    const Case cases[] = {{bitString({0xC0}, 6), true, true},
                          {bitString({0x80}, 6), true, false},
                          {bitString({0x40}, 6), false, true},
                          {bitString({0x3F, 0xFF}, 0), false, false}};
    for (const Case& each : cases) {
        const auto info = this->decodedFrom({.flags = each.flags});
        EXPECT_EQ(info.isPrivate, each.isPrivate);
        EXPECT_EQ(info.isModifiable, each.isModifiable);
        EXPECT_EQ(info.GetParam(CKA_PRIVATE), each.isPrivate ? 1 : 0);
        EXPECT_EQ(info.GetParam(CKA_MODIFIABLE), each.isModifiable ? 1 : 0);
    }
}

TYPED_TEST(GetPKCS15Attributes, MakesAnObjectNotModifiableWhoseFlagsEndBeforeThatBit) {
    const auto info = this->decodedFrom({.flags = bitString({0x80}, 7)});
    EXPECT_TRUE(info.isPrivate);
    EXPECT_FALSE(info.isModifiable);
    EXPECT_EQ(info.GetParam(CKA_MODIFIABLE), 0);
}

TYPED_TEST(GetPKCS15Attributes, ClearsBothFlagsForAnEmptyString) {
    const auto info = this->decodedFrom({.flags = bitString({}, 0)});
    EXPECT_FALSE(info.isPrivate);
    EXPECT_FALSE(info.isModifiable);
}

TYPED_TEST(GetPKCS15Attributes, TakesAuthIdAndUserConsentWherePresent) {
    const auto info = this->decodedFrom({.authId = Blob{0x01, 0x02}, .userConsent = 5});
    EXPECT_EQ(info.authId, hex("0102"));
    EXPECT_EQ(info.userConsent, 5);
    const auto without = this->decodedFrom({});
    EXPECT_TRUE(without.authId.empty());
    EXPECT_EQ(without.userConsent, -1);
}

TYPED_TEST(GetPKCS15Attributes, TakesAUserConsentOfZero) {
    EXPECT_EQ(this->decodedFrom({.userConsent = 0}).userConsent, 0);
}

TYPED_TEST(GetPKCS15Attributes, LeavesWhatTheRecordDoesNotHave) {
    PKCS15ObjectInfo<TypeParam> info;
    info.isPrivate = true;
    info.isModifiable = false;
    info.authId = {0x07};
    info.userConsent = 9;
    info.label = text("label");
    getPKCS15Attributes(info, attributes({.label = "other"}));
    EXPECT_TRUE(info.isPrivate);
    EXPECT_FALSE(info.isModifiable);
    EXPECT_EQ(info.GetParam(CKA_PRIVATE), 1);
    EXPECT_EQ(info.GetParam(CKA_MODIFIABLE), 0);
    EXPECT_EQ(info.authId, Blob{0x07});
    EXPECT_EQ(info.userConsent, 9);
    EXPECT_EQ(info.label, text("label"));
}

TYPED_TEST(GetPKCS15Attributes, DoesNotTouchAccessControl) {
    const auto info = this->decodedFrom({.accessControlRules = acceptableRules()});
    EXPECT_EQ(info.auxValue3, nullptr);
}

// ---- label ----

Blob labelOf(const Common& common, const char* defaultLabel, const Blob& before = {}) {
    Blob label = before;
    getPKCS15Label(label, attributes(common), defaultLabel);
    return label;
}

TEST(GetPKCS15Label, TakesTheOctetsOfTheLabel) {
    EXPECT_EQ(labelOf({.label = "Schlüssel"}, "privateRSAKey"), text("Schlüssel"));
}

TEST(GetPKCS15Label, KeepsZeroOctetsInsideALabel) {
    EXPECT_EQ(labelOf({.label = std::string("a\0b", 3)}, nullptr), hex("610062"));
}

TEST(GetPKCS15Label, TakesAnEmptyLabelForALabel) {
    EXPECT_EQ(labelOf({.label = ""}, "privateRSAKey", text("before")), Blob());
}

TEST(GetPKCS15Label, TakesTheDefaultWithoutItsEndWhereThereIsNone) {
    EXPECT_EQ(labelOf({}, "privateRSAKey"), text("privateRSAKey"));
    EXPECT_EQ(labelOf({}, "", text("before")), Blob());
}

TEST(GetPKCS15Label, LeavesTheLabelAsItIsWithNeither) {
    EXPECT_EQ(labelOf({}, nullptr), Blob());
    EXPECT_EQ(labelOf({}, nullptr, text("before")), text("before"));
}

// ---- path ----

template <class Value>
class GetPKCS15Path : public testing::Test {
protected:
    static PKCS15Path pathOf(const Blob& value) {
        PKCS15Path result = {{0x01, 0x02}, 3, 4};  // what was there before
        getPKCS15Path(result, decoded<Value>(value));
        return result;
    }
    static void expectNone(const PKCS15Path& result) {
        EXPECT_TRUE(result.path.empty());
        EXPECT_EQ(result.index, 0);
        EXPECT_EQ(result.length, 0);
    }
};

using ValueTypes = testing::Types<
    PKCS15::ObjectValue<ASN1::OpenData>, PKCS15::ObjectValue<PKCS15::RSAPublicKeyChoice>,
    PKCS15::ObjectValue<PKCS15::ECPublicKeyChoice>, PKCS15::ObjectValue<PKCS15::DSAPublicKeyChoice>,
    PKCS15::ObjectValue<PKCS15::DHPublicKeyChoice>,
    PKCS15::ObjectValue<PKCS15::RSAPrivateKeyObject>, PKCS15::ObjectValue<ASN1::INTEGER>,
    PKCS15::ObjectValue<ASN1::OCTET_STRING>>;
TYPED_TEST_SUITE(GetPKCS15Path, ValueTypes);

TYPED_TEST(GetPKCS15Path, TakesPathIndexAndLength) {
    const PKCS15Path result = this->pathOf(path("3F0050154B01", 300, 512));
    EXPECT_EQ(result.path, hex("3F0050154B01"));
    EXPECT_EQ(result.index, 300);
    EXPECT_EQ(result.length, 512);
}

TYPED_TEST(GetPKCS15Path, TakesAbsentIndexAndLengthForZero) {
    const PKCS15Path result = this->pathOf(path("4B01"));
    EXPECT_EQ(result.path, hex("4B01"));
    EXPECT_EQ(result.index, 0);
    EXPECT_EQ(result.length, 0);
}

TYPED_TEST(GetPKCS15Path, TakesIndexOrLengthAlone) {
    const PKCS15Path index = this->pathOf(sequence(octetString(hex("4B01")), integer(7)));
    EXPECT_EQ(index.index, 7);
    EXPECT_EQ(index.length, 0);
    const PKCS15Path length =
        this->pathOf(sequence(octetString(hex("4B01")), contextPrimitive(0, {0x08})));
    EXPECT_EQ(length.index, 0);
    EXPECT_EQ(length.length, 8);
}

TYPED_TEST(GetPKCS15Path, TakesTheLowSixteenBitsOfNumbers) {
    const PKCS15Path result = this->pathOf(path("4B01", 0x12345, 0x1ABCD));
    EXPECT_EQ(result.index, 0x2345);
    EXPECT_EQ(result.length, 0xABCD);
}

TYPED_TEST(GetPKCS15Path, LeavesNoPathForAURL) {
    this->expectNone(this->pathOf(element(0x13, text("http://k"))));
}

TYPED_TEST(GetPKCS15Path, LeavesNoPathForAProtectedValue) {
    this->expectNone(this->pathOf(context(1, path("4B01"))));
}

TYPED_TEST(GetPKCS15Path, LeavesNoPathForAValueThatWasNeverSet) {
    PKCS15Path result = {{0x01, 0x02}, 3, 4};
    getPKCS15Path(result, TypeParam());
    this->expectNone(result);
}

TEST(GetPKCS15PathOfDirectValues, LeavesNoPath) {
    PKCS15Path result = {{0x01, 0x02}, 3, 4};
    getPKCS15Path(result, decoded<PKCS15::ObjectValue<ASN1::INTEGER>>(context(0, integer(0x1234))));
    EXPECT_TRUE(result.path.empty());
    EXPECT_EQ(result.index, 0);
    EXPECT_EQ(result.length, 0);
    result.path = {0x01, 0x02};
    getPKCS15Path(result, decoded<PKCS15::ObjectValue<ASN1::OpenData>>(context(0, path("4B01"))));
    EXPECT_TRUE(result.path.empty());
}

// ---- octet strings ----

TEST(ASN1Assign, ReplacesTheContentsByTheOctets) {
    Blob blob = {1, 2, 3};
    ASN1_assign(blob, ASN1::OCTET_STRING({7, 8}));
    EXPECT_EQ(blob, hex("0708"));
    ASN1_assign(blob, PKCS15::Identifier({0x45, 0x00, 0x46}));
    EXPECT_EQ(blob, hex("450046"));
}

TEST(ASN1Assign, MakesTheContentsEmptyForAnEmptyString) {
    Blob blob = {1, 2, 3};
    ASN1_assign(blob, ASN1::OCTET_STRING());
    EXPECT_TRUE(blob.empty());
}

}  // namespace
}  // namespace tovi::test
