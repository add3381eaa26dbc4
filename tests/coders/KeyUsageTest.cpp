#include "tovi/coders/KeyUsage.h"

#include <gtest/gtest.h>

#include "tests/coders/UsageRows.h"
#include "tests/support/Records.h"
#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

template <class Info>
class DecodeKeyUsage : public testing::Test {
protected:
    static Info decodedFrom(const Blob& usage) {
        Info info;
        PKCS15KeyCT::decodeKeyUsage(decoded<PKCS15::KeyUsageFlags>(usage), info);
        return info;
    }
};

using KeyTypes = testing::Types<PrivateKeyInfo, PublicKeyInfo, TrustedPublicKeyInfo>;
TYPED_TEST_SUITE(DecodeKeyUsage, KeyTypes);

TYPED_TEST(DecodeKeyUsage, SetsTheAttributeOfEachBitAndClearsAllOthers) {
    for (const UsageRow& set : usageRows) {
        const auto info = this->decodedFrom(namedBits({set.bit}));
        for (const UsageRow& row : usageRows)
            EXPECT_EQ(info.GetParam(row.attribute), row.bit == set.bit ? 1 : 0)
                << "bit " << set.bit << ", attribute " << row.attribute;
    }
}

TYPED_TEST(DecodeKeyUsage, SetsAllTenAttributesExplicitlyForAnEmptyString) {
    const auto info = this->decodedFrom(namedBits({}));
    EXPECT_EQ(info.Params().size(), 10u);
    for (const auto& param : info.Params()) EXPECT_EQ(param.value, Blob{0});
}

TYPED_TEST(DecodeKeyUsage, TakesBitsBeyondAShortStringForZero) {
    const auto info = this->decodedFrom(bitString({0xC0}, 6));
    EXPECT_EQ(info.Params().size(), 10u);
    for (const UsageRow& row : usageRows)
        EXPECT_EQ(info.GetParam(row.attribute), row.bit < 2 ? 1 : 0);
}

TYPED_TEST(DecodeKeyUsage, TakesNonRepudiationForAlwaysAuthenticate) {
    EXPECT_EQ(this->decodedFrom(namedBits({nonRepudiation})).GetParam(CKA_ALWAYS_AUTHENTICATE), 1);
}

TYPED_TEST(DecodeKeyUsage, IgnoresBitsThatNoVersionNames) {
    const auto info = this->decodedFrom(bitString({0x00, 0x3F, 0xFF}, 0));
    for (const auto& param : info.Params()) EXPECT_EQ(param.value, Blob{0});
}

TYPED_TEST(DecodeKeyUsage, ReplacesWhatWasSetBefore) {
    TypeParam info;
    PKCS15KeyCT::decodeKeyUsage(PKCS15::KeyUsageFlags{2}, info);
    PKCS15KeyCT::decodeKeyUsage(PKCS15::KeyUsageFlags{6}, info);
    EXPECT_EQ(info.GetParam(CKA_SIGN), 0);
    EXPECT_EQ(info.GetParam(CKA_VERIFY), 1);
}

TEST(DecodeP11BoolAttr, SetsOneAttributeFromOneBit) {
    PKCS11Attrs attributes;
    const ASN1::BIT_STRING bits = {1, 12};
    ASN1_decodeP11BoolAttr(bits, attributes, CKA_SIGN, 12);
    ASN1_decodeP11BoolAttr(bits, attributes, CKA_WRAP, 0);
    ASN1_decodeP11BoolAttr(bits, attributes, CKA_DERIVE, 13);
    EXPECT_EQ(attributes.GetParam(CKA_SIGN), 1);
    EXPECT_EQ(attributes.GetParam(CKA_WRAP), 0);
    EXPECT_EQ(attributes.GetParam(CKA_DERIVE), 0);
    EXPECT_EQ(attributes.Params().size(), 3u);
}

}  // namespace
}  // namespace tovi::test
