#pragma once

#include <gtest/gtest.h>

#include "tests/coders/EntryFile.h"
#include "tovi/coders/PKCS15CertCT.h"
#include "tovi/coders/PKCS15DataCT.h"
#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/coders/PKCS15SecKeyCT.h"
#include "tovi/interfaces/PKCS11.h"

/// The kinds of entry. Each has the info of a smallest object and the record that it makes; both
/// know nothing of common attributes but that objects are modifiable unless told otherwise.
namespace tovi::test {

/// What a smallest info says in its common attributes.
inline const Common modifiable = {.flags = namedBits({1})};

template <class KeyInfo, class KeyType>
struct AsymmetricKeys {
    using Info = PKCS15ObjectInfo<KeyInfo>;
    using Type = KeyType;
    static constexpr const char* operation = "PKCS15KeyCT::encodeKeyInfoBase";
    static constexpr auto encode = &PKCS15KeyCT::encodeKeyInfoBase<KeyInfo, KeyType>;

    static Info info() {
        Info key;
        key.keyType = CKK_EC;
        key.id = {0x45};
        key.path.path = hex("4B01");
        return key;
    }
    static Blob record(const Common& common, const Blob& value = path("4B01")) {
        return privateKey({.type = Key::ec, .common = common, .native = false, .value = value});
    }
};
using PrivateKeys = AsymmetricKeys<PrivateKeyInfo, PKCS15::PrivateKeyType>;
using PublicKeys = AsymmetricKeys<PublicKeyInfo, PKCS15::PublicKeyType>;
using TrustedPublicKeys = AsymmetricKeys<TrustedPublicKeyInfo, PKCS15::PublicKeyType>;

struct SecretKeys {
    using Info = PKCS15ObjectInfo<BlockCipherKeyInfo>;
    using Type = PKCS15::SecretKeyType;
    static constexpr const char* operation = "PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase";
    static constexpr auto encode = &PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase;

    static Info info() {
        Info key;
        key.algorithmName = text("DES");
        key.keyLength = 8;
        key.id = {0x51};
        key.path.path = hex("4B01");
        return key;
    }
    static Blob record(const Common& common, const Blob& value = path("4B01")) {
        return secretKey({.type = SecretKey::des, .common = common, .keyLen = 64, .value = value});
    }
};

template <class CertificateKind>
struct Certificates {
    using Info = PKCS15ObjectInfo<CertificateKind>;
    using Type = PKCS15::CertificateType;
    static constexpr const char* operation = "PKCS15CertCT::encodeCertInfoBase";
    static constexpr auto encode = &PKCS15CertCT::encodeCertInfoBase<CertificateKind>;

    static Info info() {
        Info certificate;
        certificate.id = {0x45};
        certificate.path.path = hex("4B01");
        return certificate;
    }
    static Blob record(const Common& common, const Blob& value = path("4B01")) {
        return certificate({.common = common, .value = value});
    }
};
using OwnCertificates = Certificates<CertificateInfo>;
using TrustedCertificates = Certificates<TrustedCertificateInfo>;
using UsefulCertificates = Certificates<UsefulCertificateInfo>;

struct DataObjects {
    using Info = PKCS15ObjectInfo<DataInfo>;
    using Type = PKCS15::DataType;
    static constexpr const char* operation = "PKCS15DataCT::encodeDataInfoBase";
    static constexpr auto encode = &PKCS15DataCT::encodeDataInfoBase;

    static Info info() {
        Info object;
        object.path.path = hex("4B01");
        return object;
    }
    static Blob record(const Common& common, const Blob& value = path("4B01")) {
        return dataRecord({.common = common, .value = value});
    }
};

using AsymmetricKeyKinds = testing::Types<PrivateKeys, PublicKeys, TrustedPublicKeys>;
using CertificateKinds = testing::Types<OwnCertificates, TrustedCertificates, UsefulCertificates>;
using AllKinds =
    testing::Types<PrivateKeys, PublicKeys, TrustedPublicKeys, SecretKeys, OwnCertificates,
                   TrustedCertificates, UsefulCertificates, DataObjects>;

/// A smallest info after `change`.
template <class Kind, class Change>
typename Kind::Info infoWith(Change change) {
    typename Kind::Info info = Kind::info();
    change(info);
    return info;
}

}  // namespace tovi::test
