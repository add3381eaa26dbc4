#include "tools/HeldFields.h"

#include <algorithm>
#include <type_traits>

#include "tools/FieldNames.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {
namespace {

using Place = JsonPlace;

constexpr const char* notHeld = "no record of this kind holds it";

template <class Info>
constexpr bool isAsymmetricKey =
    std::is_same_v<Info, PrivateKeyInfo> || std::is_base_of_v<PublicKeyInfo, Info>;
template <class Info>
constexpr bool isKey = isAsymmetricKey<Info> || std::is_same_v<Info, BlockCipherKeyInfo>;

bool isGiven(const Place& fields, const char* name) {
    return fields.has(name) && !fields.at(name).isNull();
}

// ---- what all records have ----

/// Flags that are all false are not written, and reading takes an object without flags for
/// modifiable.
void checkFlags(const PKCS15Object& object, const Place& fields) {
    if (object.isPrivate || object.isModifiable) return;
    for (const char* name : {"isModifiable", "isPrivate", "attributes"}) {
        if (!fields.has(name)) continue;
        const Place field = fields.at(name);
        const bool isFlag = std::string_view(name) != "attributes" ||
                            field.has(attributeName(CKA_PRIVATE)) ||
                            field.has(attributeName(CKA_MODIFIABLE));
        if (isFlag) field.refuse("an object that is not private is always read as modifiable");
    }
}

/// A boolean, or its octet.
bool booleanOf(const Place& value) {
    if (!value.json().is_string()) return value.boolean();
    const Blob octets = value.octets();
    if (octets.size() != 1 || octets[0] > 1) value.fail("true or false");
    return octets[0] == 1;
}

void checkAttribute(unsigned long attribute, const Place& value, const PKCS15Object& object,
                    bool hasUsage) {
    if (!isBooleanAttribute(attribute)) value.refuse(notHeld);
    const bool wanted = booleanOf(value);
    if (attribute == CKA_PRIVATE) {
        if (wanted != object.isPrivate) value.refuse("isPrivate says otherwise");
    } else if (attribute == CKA_MODIFIABLE) {
        if (wanted != object.isModifiable) value.refuse("isModifiable says otherwise");
    } else if (wanted && !hasUsage) {
        value.refuse(notHeld);
    }
}

/// The flags and, of keys, the usage are all that a record says of attributes.
void checkAttributes(const PKCS15Object& object, bool hasUsage, const Place& fields) {
    if (!fields.has("attributes")) return;
    const Place attributes = fields.at("attributes");
    for (const auto& [name, value] : attributes.json().items()) {
        checkAttribute(attributeNumber(name).value(), attributes.at(name), object, hasUsage);
    }
}

void refuseReference(const Place& fields) {
    if (isGiven(fields, "reference")) fields.at("reference").refuse(notHeld);
}

// ---- what those of a kind have; `before` may be null ----

template <class Info>
void checkAsymmetricKey(const PKCS15ObjectInfo<Info>& key, const PKCS15ObjectInfo<Info>* before,
                        const Place& fields) {
    const bool isOtherType = key.keyType != CKK_RSA && key.keyType != noKeyType;
    if (isOtherType && isGiven(fields, "modulusLength")) {
        fields.at("modulusLength").refuse("only records of RSA keys hold it");
    }
    if (before == nullptr) return;
    if (key.keyType != before->keyType) {
        fields.at("keyType").refuse("a record keeps its type; delete the key and write it again");
    }
    // An update leaves the member alone for a native key, and so the FALSE that is in it.
    if (key.native && !before->native) {
        fields.at("native").refuse("an update does not make a key native");
    }
}

void checkOwn(const PKCS15ObjectInfo<PrivateKeyInfo>& key,
              const PKCS15ObjectInfo<PrivateKeyInfo>* before, const Place& fields) {
    checkAsymmetricKey(key, before, fields);
}
void checkOwn(const PKCS15ObjectInfo<PublicKeyInfo>& key,
              const PKCS15ObjectInfo<PublicKeyInfo>* before, const Place& fields) {
    checkAsymmetricKey(key, before, fields);
}
void checkOwn(const PKCS15ObjectInfo<TrustedPublicKeyInfo>& key,
              const PKCS15ObjectInfo<TrustedPublicKeyInfo>* before, const Place& fields) {
    checkAsymmetricKey(key, before, fields);
}

/// The name follows from the alternative of the record; a generic key without length has none.
void checkOwn(const PKCS15ObjectInfo<BlockCipherKeyInfo>& key,
              const PKCS15ObjectInfo<BlockCipherKeyInfo>* before, const Place& fields) {
    if (before == nullptr || before->algorithmName.empty()) return;
    if (key.algorithmName == before->algorithmName) return;
    fields.at("algorithmName")
        .refuse("a record keeps its algorithm; delete the key and write it again");
}

/// Logon is all that a record says of the usage, by the bits that reading gives for it; the lower
/// bits alone follow from the keys.
template <class Info>
void checkCertificate(const PKCS15ObjectInfo<Info>& certificate,
                      const PKCS15ObjectInfo<Info>* before, const Place& fields) {
    refuseReference(fields);
    if (!fields.has("trustedUsage")) return;
    const Place usage = fields.at("trustedUsage");
    const bool isNone = certificate.trustedUsage == noTrustedUsage;
    if (!isNone && (certificate.trustedUsage & ~trustedUsageLogonDecoded) != 0) {
        usage.refuse("no record holds other bits than those of 267");
    }
    const bool wasLogon = before != nullptr && before->trustedUsage != noTrustedUsage &&
                          (before->trustedUsage & trustedUsageLogon) != 0;
    if (isNone && wasLogon) usage.refuse("null leaves it as it is; 0 takes logon away");
}

void checkOwn(const PKCS15ObjectInfo<CertificateInfo>& certificate,
              const PKCS15ObjectInfo<CertificateInfo>* before, const Place& fields) {
    checkCertificate(certificate, before, fields);
}
void checkOwn(const PKCS15ObjectInfo<TrustedCertificateInfo>& certificate,
              const PKCS15ObjectInfo<TrustedCertificateInfo>* before, const Place& fields) {
    checkCertificate(certificate, before, fields);
}
void checkOwn(const PKCS15ObjectInfo<UsefulCertificateInfo>& certificate,
              const PKCS15ObjectInfo<UsefulCertificateInfo>* before, const Place& fields) {
    checkCertificate(certificate, before, fields);
}

void checkOwn(const PKCS15ObjectInfo<DataInfo>&, const PKCS15ObjectInfo<DataInfo>*,
              const Place& fields) {
    refuseReference(fields);
}

/// Members that every record of the type has can be changed, but not taken away.
void checkMandatory(const PKCS15ObjectInfo<AuthInfo>& before, const Place& fields) {
    if (before.type != AuthType::pin && before.type != AuthType::biometric) return;
    for (const char* name : {"pinFlags", "pinType", "minLength", "storedLength", "bioFlags"}) {
        if (fields.has(name) && fields.at(name).isNull()) fields.at(name).fail("a value");
    }
    if (fields.has("templateId") && fields.at("templateId").text().empty()) {
        fields.at("templateId").fail("an object identifier");
    }
}

void checkOwn(const PKCS15ObjectInfo<AuthInfo>& object, const PKCS15ObjectInfo<AuthInfo>* before,
              const Place& fields) {
    const bool hasPlace = object.type == AuthType::pin || object.type == AuthType::biometric;
    if (!hasPlace) refuseReference(fields);
    if (fields.has("path")) {
        const PKCS15Path& path = object.path;
        const bool isEmpty = path.path.empty() && path.index == 0 && path.length == 0;
        if (!isEmpty && (!hasPlace || path.path.empty())) fields.at("path").refuse(notHeld);
    }
    if (before != nullptr) checkMandatory(*before, fields);
}

}  // namespace

template <class Info>
void checkHeld(const PKCS15ObjectInfo<Info>& object, const PKCS15ObjectInfo<Info>* before,
               const JsonPlace& fields) {
    checkFlags(object, fields);
    checkAttributes(object, isKey<Info>, fields);
    checkOwn(object, before, fields);
}

/// A key container is no record, and keeps everything for as long as it lives.
template <>
void checkHeld(const PKCS15ObjectInfo<ContainerInfo>&, const PKCS15ObjectInfo<ContainerInfo>*,
               const JsonPlace&) {}

template void checkHeld(const PKCS15ObjectInfo<PrivateKeyInfo>&,
                        const PKCS15ObjectInfo<PrivateKeyInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<PublicKeyInfo>&,
                        const PKCS15ObjectInfo<PublicKeyInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<TrustedPublicKeyInfo>&,
                        const PKCS15ObjectInfo<TrustedPublicKeyInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<BlockCipherKeyInfo>&,
                        const PKCS15ObjectInfo<BlockCipherKeyInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<CertificateInfo>&,
                        const PKCS15ObjectInfo<CertificateInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<TrustedCertificateInfo>&,
                        const PKCS15ObjectInfo<TrustedCertificateInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<UsefulCertificateInfo>&,
                        const PKCS15ObjectInfo<UsefulCertificateInfo>*, const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<DataInfo>&, const PKCS15ObjectInfo<DataInfo>*,
                        const JsonPlace&);
template void checkHeld(const PKCS15ObjectInfo<AuthInfo>&, const PKCS15ObjectInfo<AuthInfo>*,
                        const JsonPlace&);

}  // namespace tovi
