#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Values.h"

namespace PKCS15 {

/// An identifier that one object's attributes share with another's.
///
///     Identifier ::= OCTET STRING (SIZE (0..pkcs15-ub-identifier))
struct TOVI_API Identifier : ASN1::OCTET_STRING {
    using ASN1::OCTET_STRING::OCTET_STRING;
    using ASN1::OCTET_STRING::operator=;
    Identifier() = default;
    Identifier(const ASN1::OCTET_STRING& octets) : ASN1::OCTET_STRING(octets) {}
    static const ASN1::Type type;
};

///     Label ::= UTF8String (SIZE (0..pkcs15-ub-label))
///
/// The size counts characters, and octets where they are not UTF-8.
struct TOVI_API Label : ASN1::UTF8String {
    using ASN1::UTF8String::CharacterString;
    using ASN1::UTF8String::operator=;
    Label() = default;
    Label(const ASN1::Octets& octets) : ASN1::UTF8String(octets) {}
    static const ASN1::Type type;
};

///     Reference ::= INTEGER (0..pkcs15-ub-reference)
///
/// In C++ a std::uint64_t. Cards go up to 65535; so does isValid().
TOVI_API extern const ASN1::Type referenceType;

/// Names a key, the issuer of a certificate, or a certificate by a value of one of several kinds.
///
///     CredentialIdentifier { KEY-IDENTIFIER : IdentifierSet } ::= SEQUENCE {
///         idType   KEY-IDENTIFIER.&id ({IdentifierSet}),
///         idValue  KEY-IDENTIFIER.&Value ({IdentifierSet}{@idType}) }
struct TOVI_API CredentialIdentifier : ASN1::Sequence<CredentialIdentifier> {
    /// The kinds of identifier by their number.
    enum IdType {
        issuerAndSerialNumber = 1,
        subjectKeyId = 2,
        issuerAndSerialNumberHash = 3,
        subjectKeyHash = 4,
        issuerKeyHash = 5,
        issuerNameHash = 6,
        subjectNameHash = 7,
    };
    ASN1::INTEGER idType;
    ASN1::OpenData idValue;
    static const ASN1::Type type;
};

}  // namespace PKCS15
