#include <type_traits>

#include "tovi/coders/EntryWriting.h"
#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {

namespace {

constexpr const char* HERE = "PKCS15KeyCT::encodeKeyInfoBase";

/// The alternatives of a key CHOICE by key type.
template <std::size_t RSA, std::size_t EC, std::size_t DSA, std::size_t DH>
struct KeyAlternatives {
    static constexpr std::size_t rsa = RSA, ec = EC, dsa = DSA, dh = DH;
};
template <class Type>
struct AlternativesOf;
template <>
struct AlternativesOf<PKCS15::PrivateKeyType> {
    using Key = PKCS15::PrivateKeyType;
    using type = KeyAlternatives<Key::privateRSAKey, Key::privateECKey, Key::privateDSAKey,
                                 Key::privateDHKey>;
};
template <>
struct AlternativesOf<PKCS15::PublicKeyType> {
    using Key = PKCS15::PublicKeyType;
    using type =
        KeyAlternatives<Key::publicRSAKey, Key::publicECKey, Key::publicDSAKey, Key::publicDHKey>;
};

bool isKeyType(std::uint64_t keyType) {
    return keyType == CKK_RSA || keyType == CKK_EC || keyType == CKK_DSA || keyType == CKK_DH;
}

template <class Info, class Type>
bool fillNewKey(const PKCS15ObjectInfo<Info>& info, Type& key) {
    using Alternative = typename AlternativesOf<Type>::type;
    switch (info.keyType) {
        case CKK_RSA:
            return PKCS15KeyCT::encodeRSAKeyInfo(info, key.template select<Alternative::rsa>());
        case CKK_EC:
            return PKCS15KeyCT::encodeKeyInfo(info, key.template select<Alternative::ec>());
        case CKK_DSA:
            return PKCS15KeyCT::encodeKeyInfo(info, key.template select<Alternative::dsa>());
        default:
            return PKCS15KeyCT::encodeKeyInfo(info, key.template select<Alternative::dh>());
    }
}

/// Fills the alternative that the record has; false when the info is of another shape.
template <class Info, class Type>
bool fillStoredKey(const PKCS15ObjectInfo<Info>& info, Type& key) {
    using Alternative = typename AlternativesOf<Type>::type;
    if (info.keyType == CKK_RSA) {
        auto* rsa = key.template getIf<Alternative::rsa>();
        return rsa && PKCS15KeyCT::encodeRSAKeyInfo(info, *rsa);
    }
    if (auto* ec = key.template getIf<Alternative::ec>())
        return PKCS15KeyCT::encodeKeyInfo(info, *ec);
    if (auto* dsa = key.template getIf<Alternative::dsa>())
        return PKCS15KeyCT::encodeKeyInfo(info, *dsa);
    auto* dh = key.template getIf<Alternative::dh>();
    return dh && PKCS15KeyCT::encodeKeyInfo(info, *dh);
}

}  // namespace

void PKCS15KeyCT::checkModulusLength(const PKCS15Object& key) {
    if (key.modulusLength == noModulusLength)
        throw SmartcardException("modulusLength not initialized", "PKCS15KeyCT::encodeRSAKeyInfo");
}

template <class Info, class Type>
unsigned long PKCS15KeyCT::encodeKeyInfoBase(ASN1::CoderEnv* env, ISCardOS* os,
                                             ProfileDFHandler& handler,
                                             const PKCS15ObjectInfo<Info>& info,
                                             std::vector<ASN1Object<Type>>& raws,
                                             unsigned long index) {
    return encodeEntry(env, os, handler, info, raws, index, HERE, [&](Type& key, bool isNew) {
        if (!isKeyType(info.keyType)) throw SmartcardException("invalid key type", HERE);
        return isNew ? fillNewKey(info, key) : fillStoredKey(info, key);
    });
}

template unsigned long PKCS15KeyCT::encodeKeyInfoBase(
    ASN1::CoderEnv*, ISCardOS*, ProfileDFHandler&, const PKCS15ObjectInfo<PrivateKeyInfo>&,
    std::vector<ASN1Object<PKCS15::PrivateKeyType>>&, unsigned long);
template unsigned long PKCS15KeyCT::encodeKeyInfoBase(
    ASN1::CoderEnv*, ISCardOS*, ProfileDFHandler&, const PKCS15ObjectInfo<PublicKeyInfo>&,
    std::vector<ASN1Object<PKCS15::PublicKeyType>>&, unsigned long);
template unsigned long PKCS15KeyCT::encodeKeyInfoBase(
    ASN1::CoderEnv*, ISCardOS*, ProfileDFHandler&, const PKCS15ObjectInfo<TrustedPublicKeyInfo>&,
    std::vector<ASN1Object<PKCS15::PublicKeyType>>&, unsigned long);

}  // namespace tovi
