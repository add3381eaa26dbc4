#include "tests/pkcs15/Facts.h"

#include "tests/asn1/TestTools.h"
#include "tovi/pkcs15/PKCS15.h"

namespace pkcs15test {

namespace {

using namespace PKCS15;
using asn1test::toHex;
using nlohmann::json;

json bits(const ASN1::BIT_STRING& string) {
    const auto unused = static_cast<std::uint8_t>(string.unusedBits());
    json numbers = json::array();
    for (std::size_t bit = 0; bit < string.size(); ++bit)
        if (string.test(bit)) numbers.push_back(bit);
    return {{"raw", toHex(ASN1::View(&unused, 1)) + toHex(string.octets())}, {"set", numbers}};
}

template <class Text>
void addText(json& out, const char* key, const std::optional<Text>& text) {
    if (text) out[key] = text->text();
}

template <class String>
void addHex(json& out, const char* key, const std::optional<String>& octets) {
    if (octets) out[key] = toHex(*octets);
}

template <class Bits>
void addBits(json& out, const char* key, const std::optional<Bits>& string) {
    if (string) out[key] = bits(*string);
}

template <class Number>
void addNumber(json& out, const char* key, const std::optional<Number>& number) {
    if (number) out[key] = *number;
}

json pathFacts(const Path& path) {
    json out = {{"path", toHex(path.efidOrPath)}};
    addNumber(out, "index", path.index);
    addNumber(out, "length", path.length);
    return out;
}

template <class Content>
json valueFacts(const ObjectValue<Content>& value) {
    const Path* path = indirectPath(value);
    return path ? pathFacts(*path) : json("not a path");
}

json conditionFacts(const SecurityCondition& condition) {
    if (const auto* authId = condition.getIf<SecurityCondition::authId>())
        return {{"authId", toHex(*authId)}};
    // NULL is "always" in ISO/IEC 7816-15.
    if (const auto* unknown = condition.getIf<SecurityCondition::unknown>())
        if (toHex(*unknown) == "0500") return {{"always", true}};
    return "another condition";
}

void addCommon(json& out, const CommonObjectAttributes& common) {
    addText(out, "label", common.label);
    addBits(out, "flags", common.flags);
    addHex(out, "authId", common.authId);
    addNumber(out, "userConsent", common.userConsent);
    if (!common.accessControlRules) return;
    for (const AccessControlRule& rule : *common.accessControlRules)
        out["accessControlRules"].push_back(
            {{"accessMode", bits(rule.accessMode)},
             {"securityCondition", conditionFacts(rule.securityCondition)}});
}

/// The numbers of an [1] SEQUENCE OF INTEGER that ISO/IEC 7816-15 added to the key attributes.
void addAlgorithmReferences(json& out, const ASN1::Unknown& unknown) {
    for (const auto& run : unknown.runs()) {
        ASN1::Octets list = run.elements;
        list[0] = 0x30;
        std::vector<ASN1::INTEGER> numbers;
        ASN1::Error error;
        EXPECT_TRUE(ASN1::decode(list, numbers, error)) << toString(error);
        for (const ASN1::INTEGER& number : numbers) out["algReference"].push_back(number.toInt64());
    }
}

void addClass(json& out, const CommonKeyAttributes& key) {
    out["iD"] = toHex(key.iD);
    out["usage"] = bits(key.usage);
    addNumber(out, "native", key.native);
    addBits(out, "accessFlags", key.accessFlags);
    addNumber(out, "keyReference", key.keyReference);
    addAlgorithmReferences(out, key.unknown);
}

void addType(json& out, const PrivateRSAKeyAttributes& key) {
    out["modulusLength"] = key.modulusLength.toInt64();
}
template <class Attributes>
void addType(json& out, const Attributes& key) {
    if (!key.keyInfo) return;
    if (const auto* reference = std::get_if<std::uint64_t>(&key.keyInfo->value))
        out["keyInfoReference"] = *reference;
}

template <class Attributes>
json keyFacts(const PrivateKeyObject<Attributes>& key) {
    json out;
    addCommon(out, key.commonObjectAttributes);
    addClass(out, key.classAttributes);
    addType(out, key.typeAttributes);
    out["value"] = valueFacts(key.typeAttributes.value);
    return out;
}

json factsOf(const PrivateKeyType& key) {
    json out = key.getIf<PrivateKeyType::privateRSAKey>()
                   ? keyFacts(*key.getIf<PrivateKeyType::privateRSAKey>())
                   : keyFacts(*key.getIf<PrivateKeyType::privateECKey>());
    out["alternative"] = key.selectionName();
    return out;
}

json factsOf(const CertificateType& certificate) {
    const auto& x509 = *certificate.getIf<CertificateType::x509Certificate>();
    json out = {{"alternative", certificate.selectionName()}};
    addCommon(out, x509.commonObjectAttributes);
    out["iD"] = toHex(x509.classAttributes.iD);
    addNumber(out, "authority", x509.classAttributes.authority);
    out["value"] = valueFacts(x509.typeAttributes.value);
    return out;
}

json factsOf(const DataType& data) {
    const auto& object = *data.getIf<DataType::oidDO>();
    json out = {{"alternative", data.selectionName()}};
    addCommon(out, object.commonObjectAttributes);
    addText(out, "applicationName", object.classAttributes.applicationName);
    const ASN1::OBJECT_IDENTIFIER& id = object.typeAttributes.id;
    out["id"] = {{"raw", toHex(id.content())}, {"dotted", id.toString()}};
    out["value"] = valueFacts(object.typeAttributes.value);
    return out;
}

json factsOf(const AuthenticationType& authentication) {
    const auto& object = *authentication.getIf<AuthenticationType::pin>();
    const PinAttributes& pin = object.typeAttributes;
    json out = {{"alternative", authentication.selectionName()}};
    addCommon(out, object.commonObjectAttributes);
    out["authObjectId"] = toHex(object.classAttributes.authId);
    out["pinFlags"] = bits(pin.pinFlags);
    out["pinType"] = {{"value", pin.pinType.value}};
    out["minLength"] = pin.minLength;
    out["storedLength"] = pin.storedLength;
    addNumber(out, "pinReference", pin.pinReference);
    addHex(out, "padChar", pin.padChar);
    if (pin.path) out["path"] = pathFacts(*pin.path);
    return out;
}

json factsOf(const PKCS15Objects& entry) {
    return {{"alternative", entry.selectionName()}, {"path", toHex(filePath(entry)->efidOrPath)}};
}

/// Elements of one octet of tag, length and content each.
void addExtensions(json& out, const char* where, const ASN1::Unknown& unknown) {
    for (const auto& run : unknown.runs())
        out["extensionElements"].push_back({{"where", where},
                                            {"tag", toHex(ASN1::View(run.elements).first(1))},
                                            {"value", toHex(ASN1::View(run.elements).subspan(2))}});
}

json factsOf(const TokenInfo& info) {
    json out = {{"alternative", "TokenInfo"},
                {"version", info.version.toInt64()},
                {"serialNumber", toHex(info.serialNumber)},
                {"tokenflags", bits(info.tokenflags)}};
    addText(out, "label", info.label);
    addText(out, "manufacturerID", info.manufacturerID);
    addExtensions(out, "TokenInfo", info.unknown);
    return out;
}

json factsOf(const UnusedSpace& space) {
    json out = pathFacts(space.path);
    out["alternative"] = "UnusedSpace";
    addHex(out, "authId", space.authId);
    addExtensions(out, "UnusedSpace", space.unknown);
    return out;
}

json factsOf(const DIRRecord& record) {
    json out = {
        {"alternative", "DIRRecord"}, {"aid", toHex(record.aid)}, {"path", toHex(record.path)}};
    addText(out, "label", record.label);
    if (record.ddo) out["ddo"]["oid"] = record.ddo->oid.toString();
    return out;
}

template <class T>
bool tryFacts(const ASN1::AbstractData& record, json& out) {
    if (&record.type() != &T::type) return false;
    out = factsOf(*static_cast<const T*>(record.value()));
    return true;
}

}  // namespace

json facts(const ASN1::AbstractData& record) {
    json out;
    tryFacts<PrivateKeyType>(record, out) || tryFacts<CertificateType>(record, out) ||
        tryFacts<DataType>(record, out) || tryFacts<AuthenticationType>(record, out) ||
        tryFacts<PKCS15Objects>(record, out) || tryFacts<TokenInfo>(record, out) ||
        tryFacts<UnusedSpace>(record, out) || tryFacts<DIRRecord>(record, out);
    return out;
}

}  // namespace pkcs15test
