#include "tools/InfoFromJson.h"

#include <gtest/gtest.h>

#include "TestCommand.h"
#include "tools/JsonInfos.h"
#include "tools/Model.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

/// The fields of an object as `list` shows it that an object may be given.
Json settable(Json object) {
    for (const char* derived : {"recordNumber", "objectType", "label", "keyInfoReference",
                                "publicKey", "container", "fid", "sharesFile", "isDecoded"}) {
        object.erase(derived);
    }
    return object;
}

/// An object made of what the JSON of `info` says, and its JSON.
template <class Info>
void expectRoundTrip(const PKCS15ObjectInfo<Info>& info) {
    const Json wanted = settable(objectJson(info, {}));
    const auto again = newObject<Info>(JsonPlace(wanted, "object"));
    EXPECT_EQ(settable(objectJson(again, {})).dump(), wanted.dump());
}

void fillCommon(PKCS15Object& object) {
    object.reference = 7;
    object.path = {Blob{0x3F, 0x00, 0x4B, 0x01}, 1, 2};
    object.authId = Blob{0x0A};
    object.isPrivate = true;
    object.isModifiable = false;
    object.userConsent = 5;
}

template <class Info>
PKCS15ObjectInfo<Info> key() {
    PKCS15ObjectInfo<Info> info;
    fillCommon(info);
    info.label = Blob{0xFF, 0x41};
    info.id = Blob{0x01, 0x02};
    info.keyType = CKK_EC;
    info.modulusLength = 1024;
    info.native = true;
    info.SetParam(CKA_SIGN, B_CK_TRUE);
    info.SetParam(CKA_DERIVE, B_CK_FALSE);
    info.SetParam(0x102, Blob{0xAB, 0xCD});
    info.SetParam(CKA_PRIVATE, B_CK_TRUE);
    info.SetParam(CKA_MODIFIABLE, B_CK_FALSE);
    return info;
}

TEST(NewObject, IsWhatTheJsonOfAnObjectSays) {
    expectRoundTrip(key<PrivateKeyInfo>());
    expectRoundTrip(key<PublicKeyInfo>());
    expectRoundTrip(key<TrustedPublicKeyInfo>());
    PKCS15ObjectInfo<BlockCipherKeyInfo> secret;
    fillCommon(secret);
    secret.id = Blob{0x03};
    secret.algorithmName = Blob{'D', 'E', 'S'};
    secret.keyLength = 8;
    secret.SetParam(CKA_PRIVATE, B_CK_FALSE);
    secret.SetParam(CKA_MODIFIABLE, B_CK_FALSE);
    expectRoundTrip(secret);
    PKCS15ObjectInfo<TrustedCertificateInfo> certificate;
    certificate.id = Blob{0x04};
    certificate.trustedUsage = 267;
    certificate.serialNumber = Blob{0x00, 0x80};
    certificate.SetParam(CKA_PRIVATE, B_CK_FALSE);
    certificate.SetParam(CKA_MODIFIABLE, B_CK_TRUE);
    expectRoundTrip(certificate);
    PKCS15ObjectInfo<ContainerInfo> container;
    container.label = Blob{'K'};
    container.exchangeKeyRecord = 1;
    container.exchangeCertificateRecord = 2;
    container.signatureKeyRecord = 3;
    container.signatureCertificateRecord = 4;
    container.logonCertificate = true;
    expectRoundTrip(container);
}

/// An object with no more than what every one that was read has.
template <class Info>
PKCS15ObjectInfo<Info> plain() {
    PKCS15ObjectInfo<Info> info;
    info.SetParam(CKA_PRIVATE, B_CK_FALSE);
    info.SetParam(CKA_MODIFIABLE, B_CK_TRUE);
    return info;
}

TEST(NewObject, HasNoValueWhereTheJsonHasNull) {
    expectRoundTrip(plain<PrivateKeyInfo>());
    expectRoundTrip(plain<CertificateInfo>());
    PKCS15ObjectInfo<AuthInfo> pin;
    pin.type = AuthType::pin;
    expectRoundTrip(pin);
}

TEST(NewObject, HasTheFidOfItsPath) {
    const Json fields = {{"path", {{"path", "3F004B01"}}}};
    EXPECT_EQ(newObject<DataInfo>(JsonPlace(fields, "object")).fid, 0x4B01u);
}

TEST(NewObject, IsAnAuthenticationObjectOfEachType) {
    PKCS15ObjectInfo<AuthInfo> pin;
    fillCommon(pin);
    pin.type = AuthType::pin;
    pin.authObjectId = Blob{0x01};
    pin.pinFlags = 0x80000003;
    pin.pinType = 99;
    pin.minLength = 1;
    pin.storedLength = 2;
    pin.maxLength = 3;
    pin.hasPadChar = true;
    pin.padChar = 0x20;
    pin.lastChange = Blob{'2', '0'};
    expectRoundTrip(pin);
    pin.pinType = 4;
    expectRoundTrip(pin);
    PKCS15ObjectInfo<AuthInfo> biometric;
    biometric.type = AuthType::biometric;
    biometric.bioFlags = 0x13;
    biometric.templateId = Blob{0, 0, 0, 1, 0, 0, 0, 2, 0xFF, 0xFF, 0xFF, 0xFF};
    biometric.bioType = 1;
    expectRoundTrip(biometric);
    PKCS15ObjectInfo<AuthInfo> authKey;
    authKey.type = AuthType::authKey;
    authKey.derivedKey = false;
    authKey.authKeyId = Blob{0x09};
    expectRoundTrip(authKey);
    PKCS15ObjectInfo<AuthInfo> external;
    external.type = AuthType::external;
    external.cha = Blob{0x01, 0x02};
    expectRoundTrip(external);
}

TEST(SetFields, LetsFlagsAndTheirAttributesFollow) {
    PKCS15ObjectInfo<DataInfo> info;
    Json fields = {{"isPrivate", true}, {"isModifiable", false}};
    setFields(info, JsonPlace(fields, "object"));
    EXPECT_EQ(toJson(static_cast<const PKCS11Attrs&>(info)).dump(),
              R"({"CKA_PRIVATE":true,"CKA_MODIFIABLE":false})");
    fields = {{"attributes", {{"CKA_PRIVATE", true}}}, {"isPrivate", false}};
    setFields(info, JsonPlace(fields, "object"));
    EXPECT_EQ(info.GetParam(CKA_PRIVATE), 1) << "what is named counts as it stands";
    EXPECT_FALSE(info.isPrivate);
}

TEST(SetFields, LeavesWhatIsNotNamed) {
    auto info = key<PrivateKeyInfo>();
    const Json before = objectJson(info, {});
    const Json fields = {{"attributes", {{"CKA_SIGN", false}}}};
    setFields(info, JsonPlace(fields, "object"));
    Json expected = before;
    expected["attributes"]["CKA_SIGN"] = false;
    EXPECT_EQ(objectJson(info, {}), expected);
}

TEST(SetFields, SetsTokenInfo) {
    PKCS15TokenInfo info;
    const Json fields = {
        {"labelHex", "41"},
        {"serialNumber", "01"},
        {"manufacturerID", "M"},
        {"version", 1},
        {"readonly", true},
        {"loginRequired", false},
        {"prnGeneration", true},
        {"eidCompliant", true},
        {"supportedAlgorithms",
         {{{"algorithm", 2}, {"algId", "0102"}, {"supportedOperations", {"hash"}}}}}};
    setFields(info, JsonPlace(fields, "set"));
    Json shown = toJson(info);
    EXPECT_EQ(shown["label"], "A");
    shown.erase("label");
    EXPECT_EQ(shown.dump(), fields.dump());
}

}  // namespace
}  // namespace tovi::test
