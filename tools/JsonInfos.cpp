#include "tools/JsonInfos.h"

#include <fmt/format.h>

#include "tools/FieldNames.h"
#include "tools/Text.h"

namespace tovi {
namespace {

/// The number, or null when it is the "no value" of its field.
template <class Number>
Json number(Number value, Number none) {
    return value == none ? Json(nullptr) : Json(value);
}

Json link(std::int64_t record) { return number(record, noLink); }

Json named(const std::optional<std::string_view>& name, const Json& otherwise) {
    return name ? Json(*name) : otherwise;
}

Json pathJson(const PKCS15Path& path) {
    return {{"path", toHex(path.path)}, {"index", path.index}, {"length", path.length}};
}

Json fidJson(const PKCS15Object& object) {
    const std::uint16_t fid = fid16(object);
    return fid == noFID16 ? Json(nullptr) : Json(fmt::format("{:04X}", fid));
}

/// The fields in front of those of the kind.
Json head(const PKCS15Object& object, const Blob& label, const ObjectState& state) {
    Json json;
    json["recordNumber"] = number(object.recordNumber, noRecord);
    json["objectType"] = state.objectType ? Json(*state.objectType) : Json(nullptr);
    json["label"] = toUtf8(label);
    json["labelHex"] = toHex(label);
    return json;
}

/// Adds the fields behind those of the kind.
Json finished(Json json, const PKCS15Object& object, const ObjectState& state) {
    json["reference"] = number(object.reference, noReference);
    json["path"] = pathJson(object.path);
    json["fid"] = fidJson(object);
    json["authId"] = toHex(object.authId);
    json["isPrivate"] = object.isPrivate;
    json["isModifiable"] = object.isModifiable;
    json["userConsent"] = number(object.userConsent, noUserConsent);
    json["sharesFile"] = object.sharesFile;
    json["isDecoded"] = state.isDecoded;
    return json;
}

/// What private and public keys have in common.
template <class Info>
Json keyHead(const PKCS15Object& object, const Info& info, const ObjectState& state) {
    Json json = head(object, info.label, state);
    json["id"] = toHex(info.id);
    json["keyType"] = named(keyTypeName(info.keyType), nullptr);
    json["modulusLength"] = number(object.modulusLength, noModulusLength);
    json["keyInfoReference"] = number(object.keyInfoReference, noReference);
    json["native"] = object.native;
    json["attributes"] = toJson(static_cast<const PKCS11Attrs&>(info));
    return json;
}

Json operationsJson(const std::array<bool, 8>& operations) {
    Json names = Json::array();
    for (std::size_t bit = 0; bit < operations.size(); ++bit) {
        if (operations[bit]) names.push_back(operationName(bit));
    }
    return names;
}

Json attributeValue(const PKCS11Attrs::Param& param) {
    const bool isBoolean = isBooleanAttribute(param.attribute) && param.value.size() == 1;
    return isBoolean ? Json(param.value[0] != 0) : Json(toHex(param.value));
}

/// A text of an authentication object that its record may leave out.
Json optionalText(const Blob& text) { return text.empty() ? Json(nullptr) : Json(toUtf8(text)); }

Json flagsJson(std::uint32_t flags, std::vector<std::string> (*names)(std::uint32_t)) {
    return flags == noAuthValue ? Json(nullptr) : Json(names(flags));
}

/// Arcs of four octets each, with dots between them.
std::string dotted(const Blob& arcs) {
    std::string text;
    for (std::size_t i = 0; i + 4 <= arcs.size(); i += 4) {
        const std::uint32_t arc = std::uint32_t{arcs[i]} << 24 | std::uint32_t{arcs[i + 1]} << 16 |
                                  std::uint32_t{arcs[i + 2]} << 8 | arcs[i + 3];
        text += fmt::format("{}{}", i == 0 ? "" : ".", arc);
    }
    return text;
}

void addPin(Json& json, const AuthInfo& info) {
    json["pinFlags"] = flagsJson(info.pinFlags, pinFlagNames);
    json["pinType"] = named(pinTypeName(info.pinType), number(info.pinType, noAuthValue));
    json["minLength"] = number(info.minLength, noAuthValue);
    json["storedLength"] = number(info.storedLength, noAuthValue);
    json["maxLength"] = number(info.maxLength, noAuthValue);
    json["padChar"] = info.hasPadChar ? Json(toHex(Blob{info.padChar})) : Json(nullptr);
    json["lastPinChange"] = optionalText(info.lastChange);
}

void addBiometric(Json& json, const AuthInfo& info) {
    json["bioFlags"] = flagsJson(info.bioFlags, biometricFlagNames);
    json["templateId"] = dotted(info.templateId);
    json["bioType"] =
        named(biometricTypeName(info.bioType), number(info.bioType, std::uint64_t{noAuthValue}));
    json["lastChange"] = optionalText(info.lastChange);
}

void addKindOfAuthentication(Json& json, const AuthInfo& info) {
    switch (info.type) {
        case AuthType::pin:
            return addPin(json, info);
        case AuthType::biometric:
            return addBiometric(json, info);
        case AuthType::authKey:
            json["derivedKey"] = info.derivedKey;
            json["authKeyId"] = toHex(info.authKeyId);
            return;
        case AuthType::external:
            json["cha"] = toHex(info.cha);
            return;
        case AuthType::none:
            return;
    }
}

Json authTypeJson(AuthType type) {
    switch (type) {
        case AuthType::pin:
            return "pin";
        case AuthType::biometric:
            return "biometric";
        case AuthType::authKey:
            return "authKey";
        case AuthType::external:
            return "external";
        case AuthType::none:
            return nullptr;
    }
    return nullptr;
}

}  // namespace

Json toJson(const PKCS15TokenInfo& info) {
    Json json;
    json["label"] = toUtf8(info.info.label);
    json["labelHex"] = toHex(info.info.label);
    json["serialNumber"] = toHex(info.info.serialNumber);
    json["manufacturerID"] = toUtf8(info.manufacturerID);
    json["version"] = info.version;
    json["readonly"] = info.readonly;
    json["loginRequired"] = info.loginRequired;
    json["prnGeneration"] = info.prnGeneration;
    json["eidCompliant"] = info.eidCompliant;
    json["supportedAlgorithms"] = Json::array();
    for (const PKCS15AlgorithmInfo& algorithm : info.supportedAlgorithms) {
        json["supportedAlgorithms"].push_back(
            {{"algorithm", algorithm.algorithm},
             {"algId", toHex(algorithm.algId)},
             {"supportedOperations", operationsJson(algorithm.supportedOperations)}});
    }
    return json;
}

Json toJson(const FATInfo& row, std::size_t recordNumber) {
    const bool isFree = row.objectType == freeRow;
    return {{"recordNumber", recordNumber},
            {"objectType", row.objectType},
            {"isPrivate", isFree ? Json(nullptr) : Json(row.isPrivate != 0)}};
}

Json toJson(const PKCS15ObjectInfo<PrivateKeyInfo>& info, const ObjectState& state) {
    Json json = keyHead(info, info, state);
    json["publicKey"] = link(info.auxValue1);
    json["container"] = link(info.auxValue2);
    return finished(std::move(json), info, state);
}

Json toJson(const PKCS15Object& object, const PublicKeyInfo& info, const ObjectState& state) {
    Json json = keyHead(object, info, state);
    json["container"] = link(object.auxValue2);
    return finished(std::move(json), object, state);
}

Json toJson(const PKCS15ObjectInfo<BlockCipherKeyInfo>& info, const ObjectState& state) {
    Json json = head(info, info.label, state);
    json["id"] = toHex(info.id);
    json["algorithmName"] = toUtf8(info.algorithmName);
    json["keyLength"] = info.keyLength;
    json["attributes"] = toJson(static_cast<const PKCS11Attrs&>(info));
    return finished(std::move(json), info, state);
}

Json toJson(const PKCS15Object& object, const CertificateInfo& info, const ObjectState& state) {
    Json json = head(object, info.label, state);
    json["id"] = toHex(info.id);
    json["certificateType"] = info.certificateType;
    json["trustedUsage"] = number(info.trustedUsage, noTrustedUsage);
    json["serialNumber"] = toHex(info.serialNumber);
    json["attributes"] = toJson(static_cast<const PKCS11Attrs&>(info));
    json["container"] = link(object.auxValue2);
    return finished(std::move(json), object, state);
}

Json toJson(const PKCS15ObjectInfo<DataInfo>& info, const ObjectState& state) {
    Json json = head(info, info.label, state);
    json["applicationName"] = toUtf8(info.applicationName);
    json["attributes"] = toJson(static_cast<const PKCS11Attrs&>(info));
    return finished(std::move(json), info, state);
}

Json toJson(const PKCS15ObjectInfo<AuthInfo>& info, const ObjectState& state) {
    Json json = head(info, info.label, state);
    json["type"] = authTypeJson(info.type);
    json["authObjectId"] = toHex(info.authObjectId);
    addKindOfAuthentication(json, info);
    return finished(std::move(json), info, state);
}

Json toJson(const PKCS15ObjectInfo<ContainerInfo>& info, const ObjectState& state) {
    Json json = head(info, info.label, state);
    json["exchangeKeyRecord"] = info.exchangeKeyRecord;
    json["exchangeCertificateRecord"] = info.exchangeCertificateRecord;
    json["signatureKeyRecord"] = info.signatureKeyRecord;
    json["signatureCertificateRecord"] = info.signatureCertificateRecord;
    json["logonCertificate"] = info.logonCertificate;
    return json;
}

Json toJson(const PKCS11Attrs& attributes) {
    Json json = Json::object();
    for (const PKCS11Attrs::Param& param : attributes.Params()) {
        json[attributeName(param.attribute)] = attributeValue(param);
    }
    return json;
}

}  // namespace tovi
