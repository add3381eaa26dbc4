// What the container writes, read by somebody else.

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/fidelity/IndependentDecoder.h"
#include "tests/pkcs15/Records.h"
#include "tests/support/CardBuilder.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/interfaces/ProfileDFHandler.h"

namespace tovi::test {
namespace {

using Values = DecodedValues;

/// A card with one directory file and the container that writes to it.
class DirectoryOnCard {
public:
    explicit DirectoryOnCard(Directory kind, const std::vector<Blob>& records = {})
        : kind_(kind), card_(CardBuilder().room(400).directory(kind, records)) {
        container_->readFromCard(card_.os());
    }

    PKCS15Container* operator->() { return container_.get(); }
    ISCardOS* os() { return card_.os(); }

    /// The record that came last, as `type`.
    Values last(const std::string& type) {
        ProfileDFHandler reader(PKCS15_DF);
        reader.SetFilePath(absolutePath(directoryFID(kind_)), nullptr);
        reader.ReadFile(os(), IGNORE_TAG, false);
        return decodedIndependently(type, reader.records().back());
    }

private:
    Directory kind_;
    TestCard card_;
    std::unique_ptr<PKCS15Container> container_ = makeContainer();
};

const Blob rules = sequence(sequence(namedBits({1}), octetString({0x05})),
                            sequence(namedBits({0, 2}), context(0, octetString({0x06}))));

/// Gives an object everything that all objects can have, and a path.
template <class Info>
void fillCommon(PKCS15ObjectInfo<Info>& info) {
    info.label = text("mine");
    info.isPrivate = true;
    info.authId = hex("02A0");
    info.userConsent = 3;
    info.auxValue3 = &rules;
    info.path = {hex("3F0050154B07"), 16, 300};
}

/// The values of what fillCommon gives.
const Values commonValues = {
    {"common.label", "mine"},
    {"common.flags", "(2)c0"},
    {"common.authId", "02a0"},
    {"common.userConsent", "0x03"},
    {"common.accessControlRules.?1.accessMode", "(2)40"},
    {"common.accessControlRules.?1.securityCondition", "040105"},
    {"common.accessControlRules.?2.accessMode", "(3)a0"},
    {"common.accessControlRules.?2.securityCondition", "a003040106"},
};
Values pathValues(const std::string& where) {
    return {{where + ".path.path", "3f0050154b07"},
            {where + ".path.index", "0x10"},
            {where + ".path.length", "0x012c"}};
}

Values joined(std::initializer_list<Values> parts) {
    Values all;
    for (const Values& part : parts) all.insert(part.begin(), part.end());
    return all;
}

// ---- the decoder itself ----

TEST(IndependentDecoder, RefusesARecordOfAnotherType) {
    EXPECT_THROW(decodedIndependently("PrivateECKey", pkcs15test::sample("prk-dh")),
                 std::runtime_error);
    EXPECT_THROW(decodedIndependently("PrivateRSAKey", hex("30 02 30 00")), std::runtime_error);
}

TEST(IndependentDecoder, TellsWhatASampleHolds) {
    EXPECT_EQ(decodedIndependently("SecretKey", pkcs15test::sample("sk-genericSecretKey")),
              (Values{{"common.label", "S"},
                      {"class.iD", "51"},
                      {"class.usage", "(2)c0"},
                      {"subClass.keyLen", "0x0100"},
                      {"type.value.path.path", "3f0050154b01"}}));
}

// ---- new records ----

struct KeyCase {
    std::uint64_t keyType;
    const char* privateType;
    const char* publicType;
};
const KeyCase keyCases[] = {{CKK_RSA, "PrivateRSAKey", "PublicRSAKey"},
                            {CKK_EC, "PrivateECKey", "PublicECKey"},
                            {CKK_DH, "PrivateDHKey", "PublicDHKey"},
                            {CKK_DSA, "PrivateDSAKey", "PublicDSAKey"}};

template <class Info>
PKCS15ObjectInfo<Info> wholeKey(std::uint64_t keyType) {
    PKCS15ObjectInfo<Info> key;
    fillCommon(key);
    key.keyType = keyType;
    key.id = hex("4546");
    key.SetParam(CKA_SIGN, B_CK_TRUE);
    key.SetParam(CKA_ALWAYS_AUTHENTICATE, B_CK_TRUE);
    key.reference = 144;
    key.modulusLength = 2048;
    return key;
}
Values wholeKeyValues(std::uint64_t keyType) {
    Values values = joined({commonValues,
                            pathValues("type.value"),
                            {{"class.iD", "4546"},
                             {"class.usage", "(10)2040"},
                             {"class.native", "FALSE"},
                             {"class.keyReference", "0x0090"}}});
    if (keyType == CKK_RSA) values["type.modulusLength"] = "0x0800";
    return values;
}

TEST(IndependentDecoding, FindsAPrivateKeyAsItWasGiven) {
    for (const KeyCase& each : keyCases) {
        DirectoryOnCard card(Directory::privateKeys);
        auto key = wholeKey<PrivateKeyInfo>(each.keyType);
        card->writePrivateKeyInfo(card.os(), key);
        EXPECT_EQ(card.last(each.privateType), wholeKeyValues(each.keyType));
    }
}

TEST(IndependentDecoding, FindsAPublicKeyAsItWasGiven) {
    for (const KeyCase& each : keyCases) {
        DirectoryOnCard card(Directory::publicKeys);
        auto key = wholeKey<PublicKeyInfo>(each.keyType);
        card->writePublicKeyInfo(card.os(), key, ~0UL);
        EXPECT_EQ(card.last(each.publicType), wholeKeyValues(each.keyType));
    }
}

TEST(IndependentDecoding, FindsATrustedPublicKeyAsItWasGiven) {
    for (const KeyCase& each : keyCases) {
        DirectoryOnCard card(Directory::trustedPublicKeys);
        auto key = wholeKey<TrustedPublicKeyInfo>(each.keyType);
        card->writeTrustedPublicKeyInfo(card.os(), key);
        EXPECT_EQ(card.last(each.publicType), wholeKeyValues(each.keyType));
    }
}

TEST(IndependentDecoding, FindsNoMemberThatASmallestKeyDoesNotHave) {
    DirectoryOnCard card(Directory::privateKeys);
    PKCS15ObjectInfo<PrivateKeyInfo> key;
    key.keyType = CKK_EC;
    key.isModifiable = false;
    key.native = true;
    key.id = {0x45};
    key.path.path = hex("4B01");
    card->writePrivateKeyInfo(card.os(), key);
    EXPECT_EQ(
        card.last("PrivateECKey"),
        (Values{{"class.iD", "45"}, {"type.value.path.path", "4b01"}, {"class.usage", "(0)"}}));
}

TEST(IndependentDecoding, FindsASecretKeyAsItWasGiven) {
    const struct {
        const char* name;
        std::uint64_t length;
        const char* type;
        const char* bits;
    } cases[] = {{"DES", 8, "DESKey", "0x40"},
                 {"TripleDES", 16, "DES2Key", "0x0080"},
                 {"TripleDES", 24, "DES3Key", "0x00c0"}};
    for (const auto& each : cases) {
        DirectoryOnCard card(Directory::secretKeys);
        PKCS15ObjectInfo<BlockCipherKeyInfo> key;
        fillCommon(key);
        key.algorithmName = text(each.name);
        key.keyLength = each.length;
        key.id = hex("5152");
        key.SetParam(CKA_ENCRYPT, B_CK_TRUE);
        key.SetParam(CKA_DECRYPT, B_CK_TRUE);
        key.reference = 5;
        card->writeBlockCipherKeyInfo(card.os(), key);
        EXPECT_EQ(card.last(each.type), joined({commonValues,
                                                pathValues("type.value"),
                                                {{"class.iD", "5152"},
                                                 {"class.usage", "(2)c0"},
                                                 {"class.keyReference", "0x05"},
                                                 {"subClass.keyLen", each.bits}}}));
    }
}

template <class Info>
PKCS15ObjectInfo<Info> wholeCertificate() {
    PKCS15ObjectInfo<Info> certificate;
    fillCommon(certificate);
    certificate.id = hex("4546");
    certificate.trustedUsage = trustedUsageLogonDecoded;
    certificate.serialNumber = hex("00FEDCBA9876543210");
    return certificate;
}
const Values wholeCertificateValues =
    joined({commonValues,
            pathValues("type.value"),
            {{"class.iD", "4546"},
             {"class.trustedUsage.extKeyUsage.?1", "1.3.6.1.4.1.311.20.2.2"},
             {"type.serialNumber", "0x00fedcba9876543210"}}});

TEST(IndependentDecoding, FindsACertificateOfEveryKindAsItWasGiven) {
    DirectoryOnCard own(Directory::certificates);
    auto certificate = wholeCertificate<CertificateInfo>();
    own->writeCertificateInfo(own.os(), certificate);
    EXPECT_EQ(own.last("X509Certificate"), wholeCertificateValues);

    DirectoryOnCard trusted(Directory::trustedCertificates);
    auto trustedCertificate = wholeCertificate<TrustedCertificateInfo>();
    trusted->writeTrustedCertificateInfo(trusted.os(), trustedCertificate);
    EXPECT_EQ(trusted.last("X509Certificate"), wholeCertificateValues);

    DirectoryOnCard useful(Directory::usefulCertificates);
    auto usefulCertificate = wholeCertificate<UsefulCertificateInfo>();
    useful->writeUsefulCertificateInfo(useful.os(), usefulCertificate);
    EXPECT_EQ(useful.last("X509Certificate"), wholeCertificateValues);
}

TEST(IndependentDecoding, FindsADataObjectAsItWasGiven) {
    DirectoryOnCard card(Directory::dataObjects);
    PKCS15ObjectInfo<DataInfo> object;
    fillCommon(object);
    object.applicationName = text("tovi");
    card->writeDataInfo(card.os(), object);
    EXPECT_EQ(card.last("OpaqueDO"),
              joined({commonValues, pathValues("type"), {{"class.applicationName", "tovi"}}}));
}

TEST(IndependentDecoding, FindsAPinAsItWasGiven) {
    DirectoryOnCard card(Directory::authObjects);
    PKCS15ObjectInfo<AuthInfo> pin;
    fillCommon(pin);
    pin.type = AuthType::pin;
    pin.authObjectId = {0x01};
    pin.pinFlags = 1u << 1 | 1u << 4 | 1u << 5;
    pin.pinType = 1;
    pin.minLength = 4;
    pin.storedLength = 8;
    pin.maxLength = 12;
    pin.reference = 129;
    pin.hasPadChar = true;
    pin.padChar = 0xFF;
    pin.lastChange = text("20250101000000Z");
    card->writeAuthInfo(card.os(), pin);
    EXPECT_EQ(card.last("Pin"), joined({commonValues,
                                        {{"class.authId", "01"},
                                         {"type.pinFlags", "(6)4c"},
                                         {"type.pinType", "0x01"},
                                         {"type.minLength", "0x04"},
                                         {"type.storedLength", "0x08"},
                                         {"type.maxLength", "0x0c"},
                                         {"type.pinReference", "0x0081"},
                                         {"type.padChar", "ff"},
                                         {"type.lastPinChange", "20250101000000Z"},
                                         {"type.path.path", "3f0050154b07"},
                                         {"type.path.index", "0x10"},
                                         {"type.path.length", "0x012c"}}}));
}

// ---- updated records ----

/// Updates the label of the only object and expects that to be the only value that is another.
template <class Update>
void expectLabelAlone(const char* sample, const char* type, Directory kind, Update update,
                      Values others = {}) {
    const Blob record = pkcs15test::sample(sample);
    DirectoryOnCard card(kind, {record});
    update(card);
    others["common.label"] = "after";
    EXPECT_EQ(card.last(type), joined({others, decodedIndependently(type, record)}));
}

TEST(IndependentDecoding, FindsEverythingElseOfAnUpdatedKeyAsItWas) {
    expectLabelAlone("prk-rsa-full", "PrivateRSAKey", Directory::privateKeys, [](auto& card) {
        auto key = card->getPrivateKeyInfo(1);
        key.label = text("after");
        card->updatePrivateKeyInfo(card.os(), key);
    });
}

TEST(IndependentDecoding, FindsThatAnUpdatedKeySaysThatItIsNotNative) {
    expectLabelAlone("puk-trusted", "PublicRSAKey", Directory::trustedPublicKeys,
                     [](auto& card) {
                         auto key = card->getTrustedPublicKeyInfo(1);
                         key.label = text("after");
                         card->updateTrustedPublicKeyInfo(card.os(), key);
                     },
                     {{"common.flags", "(2)40"}, {"class.native", "FALSE"}});
}

TEST(IndependentDecoding, FindsEverythingElseOfAnUpdatedCertificateAsItWas) {
    for (const char* sample : {"cert-class-full", "cert-names", "cert-usage"})
        expectLabelAlone(sample, "X509Certificate", Directory::certificates,
                         [](auto& card) {
                             auto certificate = card->getCertificateInfo(1);
                             certificate.label = text("after");
                             card->updateCertificateInfo(card.os(), certificate);
                         },
                         {{"common.flags", "(2)40"}});
}

TEST(IndependentDecoding, FindsEverythingElseOfAnUpdatedPinAsItWas) {
    expectLabelAlone("auth-pin", "Pin", Directory::authObjects, [](auto& card) {
        auto pin = card->getAuthInfos().front();
        pin.label = text("after");
        card->updateAuthInfo(card.os(), pin);
    });
}

}  // namespace
}  // namespace tovi::test
