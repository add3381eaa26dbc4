#pragma once

#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/pkcs15/CommonKeyAttributes.h"
#include "tovi/pkcs15/KeyInfo.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/pkcs15/PKCS15Object.h"

/// Records of EF(PrKDF).
namespace PKCS15 {

///     RSAPrivateKeyObject ::= SEQUENCE {
///         modulus          [0] INTEGER OPTIONAL,
///         publicExponent   [1] INTEGER OPTIONAL,
///         privateExponent  [2] INTEGER OPTIONAL,
///         prime1           [3] INTEGER OPTIONAL,
///         prime2           [4] INTEGER OPTIONAL,
///         exponent1        [5] INTEGER OPTIONAL,
///         exponent2        [6] INTEGER OPTIONAL,
///         coefficient      [7] INTEGER OPTIONAL }
struct TOVI_API RSAPrivateKeyObject : ASN1::Sequence<RSAPrivateKeyObject> {
    std::optional<ASN1::INTEGER> modulus;
    std::optional<ASN1::INTEGER> publicExponent;
    std::optional<ASN1::INTEGER> privateExponent;
    std::optional<ASN1::INTEGER> prime1;
    std::optional<ASN1::INTEGER> prime2;
    std::optional<ASN1::INTEGER> exponent1;
    std::optional<ASN1::INTEGER> exponent2;
    std::optional<ASN1::INTEGER> coefficient;
    static const ASN1::Type type;
};

///     PrivateRSAKeyAttributes ::= SEQUENCE {
///         value          ObjectValue {RSAPrivateKeyObject},
///         modulusLength  INTEGER,
///         keyInfo        KeyInfo {NULL, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PrivateRSAKeyAttributes : ASN1::Sequence<PrivateRSAKeyAttributes> {
    ObjectValue<RSAPrivateKeyObject> value;
    ASN1::INTEGER modulusLength;  ///< in bits
    std::optional<KeyInfo<ASN1::Null, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     ECPrivateKey ::= INTEGER
using ECPrivateKey = ASN1::INTEGER;

///     PrivateECKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {ECPrivateKey},
///         keyInfo  KeyInfo {Parameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PrivateECKeyAttributes : ASN1::Sequence<PrivateECKeyAttributes> {
    ObjectValue<ECPrivateKey> value;
    std::optional<KeyInfo<Parameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     DHPrivateKey ::= INTEGER
using DHPrivateKey = ASN1::INTEGER;

///     PrivateDHKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {DHPrivateKey},
///         keyInfo  KeyInfo {DomainParameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PrivateDHKeyAttributes : ASN1::Sequence<PrivateDHKeyAttributes> {
    ObjectValue<DHPrivateKey> value;
    std::optional<KeyInfo<DomainParameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     DSAPrivateKey ::= INTEGER
using DSAPrivateKey = ASN1::INTEGER;

///     PrivateDSAKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {DSAPrivateKey},
///         keyInfo  KeyInfo {DomainParameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PrivateDSAKeyAttributes : ASN1::Sequence<PrivateDSAKeyAttributes> {
    ObjectValue<DSAPrivateKey> value;
    std::optional<KeyInfo<DomainParameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     KEAPrivateKey ::= INTEGER
using KEAPrivateKey = ASN1::INTEGER;

///     PrivateKEAKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {KEAPrivateKey},
///         keyInfo  KeyInfo {DomainParameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PrivateKEAKeyAttributes : ASN1::Sequence<PrivateKEAKeyAttributes> {
    ObjectValue<KEAPrivateKey> value;
    std::optional<KeyInfo<DomainParameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     PrivateKeyObject { KeyAttributes } ::= PKCS15Object {
///         CommonKeyAttributes, CommonPrivateKeyAttributes, KeyAttributes }
template <class KeyAttributes>
using PrivateKeyObject =
    PKCS15Object<CommonKeyAttributes, CommonPrivateKeyAttributes, KeyAttributes>;

///     PrivateKeyType ::= CHOICE {
///         privateRSAKey      PrivateKeyObject {PrivateRSAKeyAttributes},
///         privateECKey   [0] PrivateKeyObject {PrivateECKeyAttributes},
///         privateDHKey   [1] PrivateKeyObject {PrivateDHKeyAttributes},
///         privateDSAKey  [2] PrivateKeyObject {PrivateDSAKeyAttributes},
///         privateKEAKey  [3] PrivateKeyObject {PrivateKEAKeyAttributes},
///         ... }
struct TOVI_API PrivateKeyType : ASN1::Choice<PrivateKeyType> {
    enum Alternative : std::size_t {
        privateRSAKey,
        privateECKey,
        privateDHKey,
        privateDSAKey,
        privateKEAKey,
        unknown,
        none,
    };
    std::variant<PrivateKeyObject<PrivateRSAKeyAttributes>,
                 PrivateKeyObject<PrivateECKeyAttributes>, PrivateKeyObject<PrivateDHKeyAttributes>,
                 PrivateKeyObject<PrivateDSAKeyAttributes>,
                 PrivateKeyObject<PrivateKEAKeyAttributes>, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    auto& select_privateRSAKey() { return select<privateRSAKey>(); }
    auto& select_privateECKey() { return select<privateECKey>(); }
    auto& select_privateDHKey() { return select<privateDHKey>(); }
    auto& select_privateDSAKey() { return select<privateDSAKey>(); }
    auto& select_privateKEAKey() { return select<privateKEAKey>(); }
};

}  // namespace PKCS15
