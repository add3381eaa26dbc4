#pragma once

#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/pkcs15/CommonKeyAttributes.h"
#include "tovi/pkcs15/KeyInfo.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/pkcs15/PKCS15Object.h"

/// Records of EF(PuKDF), of public and of trusted public keys.
namespace PKCS15 {

///     ECPoint ::= OCTET STRING                                        -- X9.62
using ECPoint = ASN1::OCTET_STRING;

///     DiffieHellmanPublicNumber ::= INTEGER                           -- X9.42
using DiffieHellmanPublicNumber = ASN1::INTEGER;

///     RSAPublicKeyChoice ::= CHOICE {
///         raw       RSAPublicKey,
///         spki  [1] SubjectPublicKeyInfo,
///         ... }
struct TOVI_API RSAPublicKeyChoice : ASN1::Choice<RSAPublicKeyChoice> {
    enum Alternative : std::size_t { raw, spki, unknown, none };
    std::variant<RSAPublicKey, SubjectPublicKeyInfo, ASN1::OpenData, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

///     PublicRSAKeyAttributes ::= SEQUENCE {
///         value          ObjectValue {RSAPublicKeyChoice},
///         modulusLength  INTEGER,
///         keyInfo        KeyInfo {NULL, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PublicRSAKeyAttributes : ASN1::Sequence<PublicRSAKeyAttributes> {
    ObjectValue<RSAPublicKeyChoice> value;
    ASN1::INTEGER modulusLength;  ///< in bits
    std::optional<KeyInfo<ASN1::Null, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     ECPublicKeyChoice ::= CHOICE {
///         raw   ECPoint,
///         spki  SubjectPublicKeyInfo,
///         ... }
struct TOVI_API ECPublicKeyChoice : ASN1::Choice<ECPublicKeyChoice> {
    enum Alternative : std::size_t { raw, spki, unknown, none };
    std::variant<ECPoint, SubjectPublicKeyInfo, ASN1::OpenData, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

///     PublicECKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {ECPublicKeyChoice},
///         keyInfo  KeyInfo {Parameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PublicECKeyAttributes : ASN1::Sequence<PublicECKeyAttributes> {
    ObjectValue<ECPublicKeyChoice> value;
    std::optional<KeyInfo<Parameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     DHPublicKeyChoice ::= CHOICE {
///         raw   DiffieHellmanPublicNumber,
///         spki  SubjectPublicKeyInfo,
///         ... }
struct TOVI_API DHPublicKeyChoice : ASN1::Choice<DHPublicKeyChoice> {
    enum Alternative : std::size_t { raw, spki, unknown, none };
    std::variant<DiffieHellmanPublicNumber, SubjectPublicKeyInfo, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;
};

///     PublicDHKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {DHPublicKeyChoice},
///         keyInfo  KeyInfo {DomainParameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PublicDHKeyAttributes : ASN1::Sequence<PublicDHKeyAttributes> {
    ObjectValue<DHPublicKeyChoice> value;
    std::optional<KeyInfo<DomainParameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     DSAPublicKeyChoice ::= CHOICE {
///         raw   INTEGER,
///         spki  SubjectPublicKeyInfo,
///         ... }
struct TOVI_API DSAPublicKeyChoice : ASN1::Choice<DSAPublicKeyChoice> {
    enum Alternative : std::size_t { raw, spki, unknown, none };
    std::variant<ASN1::INTEGER, SubjectPublicKeyInfo, ASN1::OpenData, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

///     PublicDSAKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {DSAPublicKeyChoice},
///         keyInfo  KeyInfo {DomainParameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PublicDSAKeyAttributes : ASN1::Sequence<PublicDSAKeyAttributes> {
    ObjectValue<DSAPublicKeyChoice> value;
    std::optional<KeyInfo<DomainParameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     KEAPublicKeyChoice ::= CHOICE {
///         raw   INTEGER,
///         spki  SubjectPublicKeyInfo,
///         ... }
struct TOVI_API KEAPublicKeyChoice : ASN1::Choice<KEAPublicKeyChoice> {
    enum Alternative : std::size_t { raw, spki, unknown, none };
    std::variant<ASN1::INTEGER, SubjectPublicKeyInfo, ASN1::OpenData, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

///     PublicKEAKeyAttributes ::= SEQUENCE {
///         value    ObjectValue {KEAPublicKeyChoice},
///         keyInfo  KeyInfo {DomainParameters, PublicKeyOperations} OPTIONAL,
///         ... }
struct TOVI_API PublicKEAKeyAttributes : ASN1::Sequence<PublicKEAKeyAttributes> {
    ObjectValue<KEAPublicKeyChoice> value;
    std::optional<KeyInfo<DomainParameters, PublicKeyOperations>> keyInfo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     PublicKeyObject { KeyAttributes } ::= PKCS15Object {
///         CommonKeyAttributes, CommonPublicKeyAttributes, KeyAttributes }
template <class KeyAttributes>
using PublicKeyObject = PKCS15Object<CommonKeyAttributes, CommonPublicKeyAttributes, KeyAttributes>;

///     PublicKeyType ::= CHOICE {
///         publicRSAKey      PublicKeyObject {PublicRSAKeyAttributes},
///         publicECKey   [0] PublicKeyObject {PublicECKeyAttributes},
///         publicDHKey   [1] PublicKeyObject {PublicDHKeyAttributes},
///         publicDSAKey  [2] PublicKeyObject {PublicDSAKeyAttributes},
///         publicKEAKey  [3] PublicKeyObject {PublicKEAKeyAttributes},
///         ... }
struct TOVI_API PublicKeyType : ASN1::Choice<PublicKeyType> {
    enum Alternative : std::size_t {
        publicRSAKey,
        publicECKey,
        publicDHKey,
        publicDSAKey,
        publicKEAKey,
        unknown,
        none,
    };
    std::variant<PublicKeyObject<PublicRSAKeyAttributes>, PublicKeyObject<PublicECKeyAttributes>,
                 PublicKeyObject<PublicDHKeyAttributes>, PublicKeyObject<PublicDSAKeyAttributes>,
                 PublicKeyObject<PublicKEAKeyAttributes>, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    auto& select_publicRSAKey() { return select<publicRSAKey>(); }
    auto& select_publicECKey() { return select<publicECKey>(); }
    auto& select_publicDHKey() { return select<publicDHKey>(); }
    auto& select_publicDSAKey() { return select<publicDSAKey>(); }
    auto& select_publicKEAKey() { return select<publicKEAKey>(); }
};

}  // namespace PKCS15
