#include <gtest/gtest.h>

#include "tests/coders/UsageRows.h"
#include "tests/support/Records.h"
#include "tovi/coders/KeyUsage.h"
#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

template <class Info>
class EncodeKeyUsage : public testing::Test {
protected:
    /// What a usage string becomes when the attributes of `info` are written to it.
    static Blob written(const Info& info, const Blob& stored = namedBits({})) {
        auto usage = decoded<PKCS15::KeyUsageFlags>(stored);
        PKCS15KeyCT::encodeKeyUsage(usage, info);
        return ASN1::encode(usage);
    }
    static Info withAll(const Blob& value) {
        Info info;
        for (const UsageRow& row : usageRows) info.SetParam(row.attribute, value);
        return info;
    }
};

using KeyTypes =
    testing::Types<PrivateKeyInfo, PublicKeyInfo, TrustedPublicKeyInfo, BlockCipherKeyInfo>;
TYPED_TEST_SUITE(EncodeKeyUsage, KeyTypes);

const Blob allTen = bitString({0xFF, 0xC0}, 6);

TYPED_TEST(EncodeKeyUsage, SetsTheBitOfEachAttributeAndClearsAllOthers) {
    for (const UsageRow& row : usageRows) {
        TypeParam info;
        info.SetParam(row.attribute, B_CK_TRUE);
        EXPECT_EQ(this->written(info), namedBits({row.bit}));
        EXPECT_EQ(this->written(info, allTen), namedBits({row.bit}));
    }
}

TYPED_TEST(EncodeKeyUsage, WritesAllTenBits) {
    EXPECT_EQ(this->written(this->withAll(B_CK_TRUE)), allTen);
    EXPECT_EQ(this->written(this->withAll(B_CK_TRUE), allTen), allTen);
    EXPECT_EQ(this->written(this->withAll(B_CK_FALSE), allTen), namedBits({}));
}

TYPED_TEST(EncodeKeyUsage, ClearsTheBitsOfAttributesThatAreNotThere) {
    EXPECT_EQ(this->written({}, allTen), namedBits({}));
}

TYPED_TEST(EncodeKeyUsage, ClearsTheBitsOfValuesThatAreNoBoolean) {
    EXPECT_EQ(this->written(this->withAll({}), allTen), namedBits({}));
    EXPECT_EQ(this->written(this->withAll({0x01, 0x01}), allTen), namedBits({}));
}

TYPED_TEST(EncodeKeyUsage, TakesNonRepudiationFromAlwaysAuthenticateAlone) {
    TypeParam info = this->withAll(B_CK_TRUE);
    info.SetParam(CKA_ALWAYS_AUTHENTICATE, B_CK_FALSE);
    EXPECT_EQ(this->written(info), bitString({0xFF, 0x80}, 7));
}

TYPED_TEST(EncodeKeyUsage, IgnoresAttributesThatAreNoUsage) {
    TypeParam info;
    for (const unsigned long attribute : {CKA_PRIVATE, CKA_MODIFIABLE, 0x103UL, 0x12345UL})
        info.SetParam(attribute, B_CK_TRUE);
    EXPECT_EQ(this->written(info), namedBits({}));
}

TYPED_TEST(EncodeKeyUsage, KeepsBitsThatNoVersionNames) {
    TypeParam info;
    info.SetParam(CKA_SIGN, B_CK_TRUE);
    EXPECT_EQ(this->written(info, namedBits({encrypt, nonRepudiation, 10, 12})),
              namedBits({sign, 10, 12}));
}

TEST(EncodeP11BoolAttr, WritesOneBitAndNoOther) {
    PKCS11Attrs attributes;
    attributes.SetParam(CKA_SIGN, B_CK_TRUE);
    ASN1::BIT_STRING bits = {1, 3};
    ASN1_encodeP11BoolAttr(bits, attributes, CKA_SIGN, 12);
    ASN1_encodeP11BoolAttr(bits, attributes, CKA_WRAP, 3);
    EXPECT_EQ(bits, (ASN1::BIT_STRING{1, 12}));
    ASN1_encodeP11BoolAttr(bits, attributes, CKA_WRAP, 12);
    EXPECT_TRUE(bits.test(1));
    EXPECT_FALSE(bits.test(12));
}

}  // namespace
}  // namespace tovi::test
