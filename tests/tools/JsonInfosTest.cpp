#include "tools/JsonInfos.h"

#include <gtest/gtest.h>

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

Blob text(std::string_view text) { return Blob(text.begin(), text.end()); }

std::vector<std::string> keysOf(const Json& json) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : json.items()) keys.push_back(key);
    return keys;
}
using Keys = std::vector<std::string>;

TEST(JsonOfPrivateKey, HasEveryFieldInOrderAndNullForNoValue) {
    const PKCS15ObjectInfo<PrivateKeyInfo> none;
    EXPECT_EQ(toJson(none, {}).dump(),
              R"({"recordNumber":null,"objectType":null,"label":"","labelHex":"",)"
              R"("id":"","keyType":null,"modulusLength":null,"keyInfoReference":null,)"
              R"("native":false,"attributes":{},"publicKey":null,"container":null,)"
              R"("reference":null,"path":{"path":"","index":0,"length":0},"fid":null,)"
              R"("authId":"","isPrivate":false,"isModifiable":true,"userConsent":null,)"
              R"("sharesFile":false,"isDecoded":false})");
}

TEST(JsonOfPrivateKey, ShowsEveryValue) {
    PKCS15ObjectInfo<PrivateKeyInfo> key;
    key.recordNumber = 3;
    key.label = Blob{'K', 0xFF};
    key.id = Blob{0x0A, 0xB0};
    key.keyType = CKK_RSA;
    key.modulusLength = 2048;
    key.keyInfoReference = 0;
    key.native = true;
    key.SetParam(CKA_SIGN, B_CK_TRUE);
    key.SetParam(CKA_PRIVATE, B_CK_FALSE);
    key.auxValue1 = 5;
    key.auxValue2 = 9;
    key.reference = 144;
    key.path = {Blob{0x3F, 0x00, 0x4B, 0x01}, 1, 65535};
    key.fid = 0x4B01;
    key.authId = Blob{0x01};
    key.isPrivate = true;
    key.isModifiable = false;
    key.userConsent = 0;
    key.sharesFile = true;
    EXPECT_EQ(toJson(key, {privateKeyObject, true}).dump(),
              R"({"recordNumber":3,"objectType":1,"label":"K)"
              "\xEF\xBF\xBD"
              R"(","labelHex":"4BFF",)"
              R"("id":"0AB0","keyType":"RSA","modulusLength":2048,"keyInfoReference":0,)"
              R"("native":true,"attributes":{"CKA_PRIVATE":false,"CKA_SIGN":true},)"
              R"("publicKey":5,"container":9,)"
              R"("reference":144,"path":{"path":"3F004B01","index":1,"length":65535},"fid":"4B01",)"
              R"("authId":"01","isPrivate":true,"isModifiable":false,"userConsent":0,)"
              R"("sharesFile":true,"isDecoded":true})");
}

TEST(JsonOfPublicKey, HasNoPublicKeyField) {
    const PKCS15ObjectInfo<TrustedPublicKeyInfo> key;
    EXPECT_EQ(keysOf(toJson(key, key, {})),
              (Keys{"recordNumber", "objectType",  "label",         "labelHex",
                    "id",           "keyType",     "modulusLength", "keyInfoReference",
                    "native",       "attributes",  "container",     "reference",
                    "path",         "fid",         "authId",        "isPrivate",
                    "isModifiable", "userConsent", "sharesFile",    "isDecoded"}));
}

TEST(JsonOfFid, TakesTheLowSixteenBits) {
    PKCS15ObjectInfo<DataInfo> data;
    data.fid = 0xFFFFFFFFFFFF4401;
    EXPECT_EQ(toJson(data, {})["fid"], "4401");
    data.fid = 0x12FFFF;
    EXPECT_EQ(toJson(data, {})["fid"], nullptr);
    data.fid = 0x000A;
    EXPECT_EQ(toJson(data, {})["fid"], "000A");
}

TEST(JsonOfSecretKey, HasItsFields) {
    PKCS15ObjectInfo<BlockCipherKeyInfo> key;
    key.algorithmName = text("TripleDES");
    key.keyLength = 32;
    const Json json = toJson(key, {secretKeyObject, true});
    EXPECT_EQ(json["algorithmName"], "TripleDES");
    EXPECT_EQ(json["keyLength"], 32);
    const Keys keys = keysOf(json);
    EXPECT_EQ(Keys(keys.begin() + 4, keys.begin() + 9),
              (Keys{"id", "algorithmName", "keyLength", "attributes", "reference"}));
}

TEST(JsonOfCertificate, HasItsFields) {
    PKCS15ObjectInfo<UsefulCertificateInfo> certificate;
    certificate.serialNumber = Blob{0x00, 0x80};
    Json json = toJson(certificate, certificate, {usefulCertificateObject, true});
    EXPECT_EQ(json["objectType"], 35);
    EXPECT_EQ(json["certificateType"], 0);
    EXPECT_EQ(json["serialNumber"], "0080");
    EXPECT_EQ(json["trustedUsage"], nullptr);
    const Keys keys = keysOf(json);
    EXPECT_EQ(Keys(keys.begin() + 4, keys.begin() + 11),
              (Keys{"id", "certificateType", "trustedUsage", "serialNumber", "attributes",
                    "container", "reference"}));
    certificate.trustedUsage = trustedUsageLogonDecoded;
    EXPECT_EQ(toJson(certificate, certificate, {})["trustedUsage"], 267);
}

TEST(JsonOfDataObject, HasItsFields) {
    PKCS15ObjectInfo<DataInfo> data;
    data.applicationName = text("editor");
    const Keys keys = keysOf(toJson(data, {}));
    EXPECT_EQ(Keys(keys.begin() + 4, keys.begin() + 7),
              (Keys{"applicationName", "attributes", "reference"}));
    EXPECT_EQ(toJson(data, {})["applicationName"], "editor");
}

/// The fields of an authentication object between label and reference.
Keys kindKeys(const AuthInfo& info) {
    PKCS15ObjectInfo<AuthInfo> object;
    static_cast<AuthInfo&>(object) = info;
    const Keys keys = keysOf(toJson(object, {}));
    return Keys(keys.begin() + 4, keys.end() - 9);
}

TEST(JsonOfAuthObject, HasTheFieldsOfItsType) {
    AuthInfo info;
    EXPECT_EQ(kindKeys(info), (Keys{"type", "authObjectId"}));
    info.type = AuthType::pin;
    EXPECT_EQ(kindKeys(info), (Keys{"type", "authObjectId", "pinFlags", "pinType", "minLength",
                                    "storedLength", "maxLength", "padChar", "lastPinChange"}));
    info.type = AuthType::biometric;
    EXPECT_EQ(kindKeys(info),
              (Keys{"type", "authObjectId", "bioFlags", "templateId", "bioType", "lastChange"}));
    info.type = AuthType::authKey;
    EXPECT_EQ(kindKeys(info), (Keys{"type", "authObjectId", "derivedKey", "authKeyId"}));
    info.type = AuthType::external;
    EXPECT_EQ(kindKeys(info), (Keys{"type", "authObjectId", "cha"}));
}

TEST(JsonOfAuthObject, ShowsAPin) {
    PKCS15ObjectInfo<AuthInfo> pin;
    pin.type = AuthType::pin;
    pin.authObjectId = Blob{0x81};
    pin.pinFlags = 1u << 1 | 1u << 4;
    pin.pinType = 1;
    pin.minLength = 4;
    pin.storedLength = 8;
    pin.hasPadChar = true;
    pin.lastChange = text("20250101000000Z");
    Json json = toJson(pin, {std::nullopt, true});
    EXPECT_EQ(json["recordNumber"], nullptr);
    EXPECT_EQ(json["objectType"], nullptr);
    EXPECT_EQ(json["type"], "pin");
    EXPECT_EQ(json["authObjectId"], "81");
    EXPECT_EQ(json["pinFlags"], Json::array({"local", "initialized"}));
    EXPECT_EQ(json["pinType"], "ascii-numeric");
    EXPECT_EQ(json["minLength"], 4);
    EXPECT_EQ(json["maxLength"], nullptr);
    EXPECT_EQ(json["padChar"], "00");
    EXPECT_EQ(json["lastPinChange"], "20250101000000Z");
    pin.pinType = 9;
    pin.hasPadChar = false;
    pin.lastChange.clear();
    json = toJson(pin, {});
    EXPECT_EQ(json["pinType"], 9);
    EXPECT_EQ(json["padChar"], nullptr);
    EXPECT_EQ(json["lastPinChange"], nullptr);
}

TEST(JsonOfAuthObject, ShowsATemplate) {
    PKCS15ObjectInfo<AuthInfo> object;
    object.type = AuthType::biometric;
    object.bioFlags = 0;
    object.bioType = 1;
    object.templateId = Blob{0, 0, 0, 1, 0, 0, 0, 2, 0, 1, 0x86, 0xA0};
    const Json json = toJson(object, {});
    EXPECT_EQ(json["bioFlags"], Json::array());
    EXPECT_EQ(json["templateId"], "1.2.100000");
    EXPECT_EQ(json["bioType"], "irisScan");
    EXPECT_EQ(json["lastChange"], nullptr);
}

TEST(JsonOfContainer, HasFieldsOfItsOwnOnly) {
    PKCS15ObjectInfo<ContainerInfo> container;
    container.recordNumber = 12;
    container.label = text("A & B");
    container.exchangeKeyRecord = 1;
    container.signatureCertificateRecord = 8;
    container.logonCertificate = true;
    EXPECT_EQ(toJson(container, {containerObject, true}).dump(),
              R"({"recordNumber":12,"objectType":5,"label":"A & B","labelHex":"4120262042",)"
              R"("exchangeKeyRecord":1,"exchangeCertificateRecord":0,"signatureKeyRecord":0,)"
              R"("signatureCertificateRecord":8,"logonCertificate":true})");
}

TEST(JsonOfTokenInfo, HasEveryFieldInOrder) {
    PKCS15TokenInfo info;
    info.info.label = text("T");
    info.info.serialNumber = Blob{0x00, 0x01};
    info.manufacturerID = text("M");
    info.eidCompliant = true;
    PKCS15AlgorithmInfo algorithm;
    algorithm.algorithm = 0x80000001;
    algorithm.algId = Blob{0x01, 0x02, 0x48};
    algorithm.supportedOperations = {false, true, false, false, false, false, false, true};
    info.supportedAlgorithms = {algorithm, {}};
    EXPECT_EQ(toJson(info).dump(),
              R"({"label":"T","labelHex":"54","serialNumber":"0001","manufacturerID":"M",)"
              R"("version":0,"readonly":false,"loginRequired":true,"prnGeneration":false,)"
              R"("eidCompliant":true,"supportedAlgorithms":[)"
              R"({"algorithm":2147483649,"algId":"010248",)"
              R"("supportedOperations":["compute-signature","generate-key"]},)"
              R"({"algorithm":0,"algId":"","supportedOperations":[]}]})");
}

TEST(JsonOfFAT, HasNullForTheFlagOfAFreeRow) {
    EXPECT_EQ(toJson(FATInfo{tokenInfoObject, 0, 0, 0}, 0).dump(),
              R"({"recordNumber":0,"objectType":6,"isPrivate":false})");
    EXPECT_EQ(toJson(FATInfo{}, 1).dump(), R"({"recordNumber":1,"objectType":0,"isPrivate":null})");
    EXPECT_EQ(toJson(FATInfo{privateKeyObject, 1, 2, 2}, 2).dump(),
              R"({"recordNumber":2,"objectType":1,"isPrivate":true})");
}

TEST(JsonOfAttributes, ShowsOtherAttributesInHex) {
    PKCS11Attrs attributes;
    attributes.SetParam(0x102, Blob{0xAB});
    attributes.SetParam(CKA_WRAP, B_CK_TRUE);
    attributes.SetParam(0x3, Blob{});
    EXPECT_EQ(toJson(attributes).dump(), R"({"CKA_0x3":"","CKA_0x102":"AB","CKA_WRAP":true})");
}

}  // namespace
}  // namespace tovi::test
