#include "tovi/coders/PKCS15KeyCT.h"

#include <gtest/gtest.h>

#include "tests/support/Records.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

/// How each of the three kinds of key is described and decoded.
struct PrivateKeys {
    using Info = PKCS15ObjectInfo<PrivateKeyInfo>;
    static constexpr const char* names[] = {"privateRSAKey", "privateECKey", "privateDHKey",
                                            "privateDSAKey"};
    static std::optional<bool> decode(const Blob& record, Info& info) {
        return PKCS15KeyCT::decodePrivateKey(decoded<PKCS15::PrivateKeyType>(record), info);
    }
};
struct PublicKeys {
    using Info = PKCS15ObjectInfo<PublicKeyInfo>;
    static constexpr const char* names[] = {"publicRSAKey", "publicECKey", "publicDHKey",
                                            "publicDSAKey"};
    static std::optional<bool> decode(const Blob& record, Info& info) {
        return PKCS15KeyCT::decodePublicKey(decoded<PKCS15::PublicKeyType>(record), info);
    }
};
struct TrustedPublicKeys {
    using Info = PKCS15ObjectInfo<TrustedPublicKeyInfo>;
    static constexpr auto& names = PublicKeys::names;
    static std::optional<bool> decode(const Blob& record, Info& info) {
        return PKCS15KeyCT::decodeTrustedPublicKey(decoded<PKCS15::PublicKeyType>(record), info);
    }
};

constexpr Key knownTypes[] = {Key::rsa, Key::ec, Key::dh, Key::dsa};
constexpr std::uint64_t keyTypes[] = {CKK_RSA, CKK_EC, CKK_DH, CKK_DSA};

template <class Kind>
class DecodeKey : public testing::Test {
protected:
    using Info = typename Kind::Info;

    /// The info of a record, which has to be understood.
    static Info infoOf(const KeyRecord& key) {
        Info info;
        EXPECT_EQ(Kind::decode(privateKey(key), info), std::optional(true));
        return info;
    }
};

using Kinds = testing::Types<PrivateKeys, PublicKeys, TrustedPublicKeys>;
TYPED_TEST_SUITE(DecodeKey, Kinds);

TYPED_TEST(DecodeKey, TellsTheTypeOfEveryAlternative) {
    for (std::size_t i = 0; i < std::size(knownTypes); ++i) {
        const auto info = this->infoOf({.type = knownTypes[i]});
        EXPECT_EQ(info.keyType, keyTypes[i]);
        EXPECT_EQ(info.label, text(TypeParam::names[i]));
    }
    EXPECT_EQ(CKK_RSA, 0u);
    EXPECT_EQ(CKK_DSA, 1u);
    EXPECT_EQ(CKK_DH, 2u);
    EXPECT_EQ(CKK_EC, 3u);
}

TYPED_TEST(DecodeKey, TakesTheModulusLengthOfAnRSAKeyAlone) {
    EXPECT_EQ(this->infoOf({.modulusLength = 2048}).modulusLength, 2048);
    for (const Key type : {Key::ec, Key::dh, Key::dsa})
        EXPECT_EQ(this->infoOf({.type = type}).modulusLength, noModulusLength);
}

TYPED_TEST(DecodeKey, TakesTheLowSixteenBitsOfTheModulusLength) {
    EXPECT_EQ(this->infoOf({.modulusLength = 0x12800}).modulusLength, 0x2800);
    EXPECT_EQ(this->infoOf({.modulusLength = -1}).modulusLength, 0xFFFF);
}

TYPED_TEST(DecodeKey, TakesWhatAllAlternativesHaveInCommon) {
    for (const Key type : knownTypes) {
        const auto info = this->infoOf({.type = type,
                                        .common = {.label = "mine",
                                                   .flags = namedBits({0}),
                                                   .authId = Blob{0x02},
                                                   .userConsent = 1},
                                        .id = {0x45, 0x46},
                                        .usage = namedBits({sign, derive}),
                                        .native = true,
                                        .keyReference = 0x90,
                                        .value = path("3F0050154B07", 5, 6),
                                        .keyInfo = integer(9)});
        EXPECT_EQ(info.label, text("mine"));
        EXPECT_TRUE(info.isPrivate);
        EXPECT_FALSE(info.isModifiable);
        EXPECT_EQ(info.authId, Blob{0x02});
        EXPECT_EQ(info.userConsent, 1);
        EXPECT_EQ(info.GetParam(CKA_PRIVATE), 1);
        EXPECT_EQ(info.GetParam(CKA_MODIFIABLE), 0);
        EXPECT_EQ(info.id, hex("4546"));
        EXPECT_EQ(info.GetParam(CKA_SIGN), 1);
        EXPECT_EQ(info.GetParam(CKA_DERIVE), 1);
        EXPECT_EQ(info.GetParam(CKA_DECRYPT), 0);
        EXPECT_EQ(info.Params().size(), 12u);
        EXPECT_TRUE(info.native);
        EXPECT_EQ(info.reference, 0x90);
        EXPECT_EQ(info.keyInfoReference, 9);
        EXPECT_EQ(info.path.path, hex("3F0050154B07"));
        EXPECT_EQ(info.path.index, 5);
        EXPECT_EQ(info.path.length, 6);
        EXPECT_EQ(info.fid, 0x4B07u);
    }
}

TYPED_TEST(DecodeKey, LeavesDefaultsWhereARecordSaysNothing) {
    for (const Key type : knownTypes) {
        const auto info = this->infoOf({.type = type});
        EXPECT_FALSE(info.native) << "though PKCS#15 has TRUE as its default";
        EXPECT_EQ(info.reference, noReference);
        EXPECT_EQ(info.keyInfoReference, noReference);
        EXPECT_FALSE(info.isPrivate);
        EXPECT_TRUE(info.isModifiable);
        EXPECT_TRUE(info.authId.empty());
        EXPECT_EQ(info.userConsent, -1);
    }
}

TYPED_TEST(DecodeKey, TakesAWrittenNativeAsItIs) {
    EXPECT_FALSE(this->infoOf({.native = false}).native);
    EXPECT_TRUE(this->infoOf({.native = true}).native);
}

TYPED_TEST(DecodeKey, TakesAKeyReferenceOfTwoOctets) {
    EXPECT_EQ(this->infoOf({.keyReference = 0x1234}).reference, 0x1234);
    EXPECT_EQ(this->infoOf({.keyReference = 0}).reference, 0);
}

TYPED_TEST(DecodeKey, TakesTheLowSixteenBitsOfAKeyReference) {
    EXPECT_EQ(this->infoOf({.keyReference = 0x10005}).reference, 5);
    EXPECT_EQ(this->infoOf({.keyReference = 0x1FFFF}).reference, noReference);
}

TYPED_TEST(DecodeKey, TakesNoReferenceFromParametersInPlace) {
    const Blob parameters = sequence(null(), namedBits({1}));
    EXPECT_EQ(this->infoOf({.keyInfo = parameters}).keyInfoReference, noReference);
}

TYPED_TEST(DecodeKey, LeavesNoPathForAURL) {
    const auto info = this->infoOf({.value = element(0x13, text("http://k"))});
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
}

TYPED_TEST(DecodeKey, HasNoFIDForAPathOfOneOctet) {
    EXPECT_EQ(this->infoOf({.value = path("4B")}).fid, noFID);
}

TYPED_TEST(DecodeKey, ReportsAnUnacceptableAccessControlPartAndFillsTheInfoAllTheSame) {
    for (const Key type : knownTypes) {
        typename TestFixture::Info info;
        const Blob record = privateKey(
            {.type = type, .common = {.label = "mine", .accessControlRules = unacceptableRules()}});
        EXPECT_EQ(TypeParam::decode(record, info), std::optional(false));
        EXPECT_EQ(info.label, text("mine"));
        EXPECT_EQ(info.fid, 0x4B01u);
    }
}

TYPED_TEST(DecodeKey, AcceptsAccessControlRules) {
    this->infoOf({.common = {.accessControlRules = acceptableRules()}});
}

TYPED_TEST(DecodeKey, LeavesTheInfoUntouchedForOtherAlternatives) {
    for (const std::uint8_t tag : Blob{0xA3, 0xA4, 0xA9}) {  // KEA, and two of later versions
        typename TestFixture::Info info;
        info.label = text("before");
        const Blob record = retagged(tag, privateKey({.type = Key::kea, .common = {.label = "x"}}));
        EXPECT_EQ(TypeParam::decode(record, info), std::nullopt);
        EXPECT_EQ(info.label, text("before"));
        EXPECT_TRUE(info.Params().empty());
    }
}

TYPED_TEST(DecodeKey, DoesNotReadWhatTheInfoHasNoPlaceFor) {
    // accessFlags, startDate and endDate of the class attributes (PKCS#15 v1.1, 6.1.9).
    const Blob record =
        element(0x30, join({sequence(),
                            sequence(octetString({0x45}), namedBits({2}), namedBits({0, 4}),
                                     element(0x18, text("20250101000000Z")),
                                     contextPrimitive(0, text("20300101000000Z"))),
                            context(1, sequence(path("4B01"), integer(1024)))}));
    typename TestFixture::Info info;
    EXPECT_EQ(TypeParam::decode(record, info), std::optional(true));
    EXPECT_EQ(info.id, Blob{0x45});
    EXPECT_EQ(info.reference, noReference);
    EXPECT_FALSE(info.native);
    EXPECT_EQ(info.Params().size(), 12u);
}

TEST(DecodePublicKey, LeavesNoPathForAKeyThatStandsInTheRecord) {
    struct Case {
        Key type;
        Blob raw;
    };
    const Case cases[] = {{Key::rsa, sequence(integer(197), integer(3))},
                          {Key::ec, octetString(hex("0304AABB"))},
                          {Key::dh, integer(0x1234)},
                          {Key::dsa, integer(0x1234)}};
    for (const Case& each : cases) {
        const Blob record = publicKey({.type = each.type, .value = context(0, each.raw)});
        PKCS15ObjectInfo<PublicKeyInfo> info;
        EXPECT_EQ(PKCS15KeyCT::decodePublicKey(decoded<PKCS15::PublicKeyType>(record), info),
                  std::optional(true));
        EXPECT_TRUE(info.path.path.empty());
        EXPECT_EQ(info.fid, noFID);
    }
}

TEST(DecodePrivateKey, LeavesNoPathForAKeyThatStandsInTheRecord) {
    PKCS15ObjectInfo<PrivateKeyInfo> info;
    const Blob record = privateKey({.type = Key::ec, .value = context(0, integer(0x1234))});
    EXPECT_EQ(PKCS15KeyCT::decodePrivateKey(decoded<PKCS15::PrivateKeyType>(record), info),
              std::optional(true));
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
}

}  // namespace
}  // namespace tovi::test
