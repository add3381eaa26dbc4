#include "tovi/coders/PKCS15KeyCT.h"

#include <string>

#include "tovi/coders/CommonAttributes.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

namespace {

void decodeClass(const PKCS15::CommonKeyAttributes& attributes, PKCS15Object& object, Blob& id) {
    ASN1_assign(id, attributes.iD);
    if (attributes.native) object.native = *attributes.native;
    if (attributes.keyReference)
        object.reference = static_cast<std::uint16_t>(*attributes.keyReference);
}

template <class KeyInfo>
void decodeKeyInfoReference(const std::optional<KeyInfo>& keyInfo, PKCS15Object& object) {
    if (!keyInfo) return;
    if (const auto* reference = keyInfo->template getIf<KeyInfo::reference>())
        object.keyInfoReference = static_cast<std::uint16_t>(*reference);
}

/// What all key types have in common.
template <class Info, class Object>
bool decodeKey(const Object& object, std::string_view alternative, unsigned long keyType,
               PKCS15ObjectInfo<Info>& info) {
    getPKCS15Attributes(info, object.commonObjectAttributes);
    getPKCS15Label(info.label, object.commonObjectAttributes, std::string(alternative).c_str());
    info.keyType = keyType;
    decodeClass(object.classAttributes, info, info.id);
    PKCS15KeyCT::decodeKeyUsage(object.classAttributes.usage, info);
    decodeKeyInfoReference(object.typeAttributes.keyInfo, info);
    getPKCS15Path(info.path, object.typeAttributes.value);
    getFID(info);
    return PKCS15CT::decodeAuthConstraints(object.commonObjectAttributes);
}

template <class Info, class Object>
bool decodeRSAKey(const Object& object, std::string_view alternative,
                  PKCS15ObjectInfo<Info>& info) {
    info.modulusLength = static_cast<std::uint16_t>(object.typeAttributes.modulusLength.toUInt32());
    return decodeKey(object, alternative, CKK_RSA, info);
}

template <class Info>
std::optional<bool> decodePublic(const PKCS15::PublicKeyType& record,
                                 PKCS15ObjectInfo<Info>& info) {
    using Key = PKCS15::PublicKeyType;
    const std::string_view name = record.selectionName();
    if (const auto* rsa = record.getIf<Key::publicRSAKey>()) return decodeRSAKey(*rsa, name, info);
    if (const auto* ec = record.getIf<Key::publicECKey>())
        return decodeKey(*ec, name, CKK_EC, info);
    if (const auto* dh = record.getIf<Key::publicDHKey>())
        return decodeKey(*dh, name, CKK_DH, info);
    if (const auto* dsa = record.getIf<Key::publicDSAKey>())
        return decodeKey(*dsa, name, CKK_DSA, info);
    return std::nullopt;
}

}  // namespace

std::optional<bool> PKCS15KeyCT::decodePrivateKey(const PKCS15::PrivateKeyType& record,
                                                  PKCS15ObjectInfo<PrivateKeyInfo>& info) {
    using Key = PKCS15::PrivateKeyType;
    const std::string_view name = record.selectionName();
    if (const auto* rsa = record.getIf<Key::privateRSAKey>()) return decodeRSAKey(*rsa, name, info);
    if (const auto* ec = record.getIf<Key::privateECKey>())
        return decodeKey(*ec, name, CKK_EC, info);
    if (const auto* dh = record.getIf<Key::privateDHKey>())
        return decodeKey(*dh, name, CKK_DH, info);
    if (const auto* dsa = record.getIf<Key::privateDSAKey>())
        return decodeKey(*dsa, name, CKK_DSA, info);
    return std::nullopt;
}

std::optional<bool> PKCS15KeyCT::decodePublicKey(const PKCS15::PublicKeyType& record,
                                                 PKCS15ObjectInfo<PublicKeyInfo>& info) {
    return decodePublic(record, info);
}

std::optional<bool> PKCS15KeyCT::decodeTrustedPublicKey(
    const PKCS15::PublicKeyType& record, PKCS15ObjectInfo<TrustedPublicKeyInfo>& info) {
    return decodePublic(record, info);
}

}  // namespace tovi
