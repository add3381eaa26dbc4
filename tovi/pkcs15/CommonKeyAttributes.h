#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/pkcs15/Basic.h"
#include "tovi/pkcs15/Imported.h"

/// Class and subclass attributes of keys.
namespace PKCS15 {

///     KeyUsageFlags ::= BIT STRING {
///         encrypt (0), decrypt (1), sign (2), signRecover (3), wrap (4), unwrap (5), verify (6),
///         verifyRecover (7), derive (8), nonRepudiation (9) }
struct TOVI_API KeyUsageFlags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t {
        encrypt,
        decrypt,
        sign,
        signRecover,
        wrap,
        unwrap,
        verify,
        verifyRecover,
        derive,
        nonRepudiation,
    };
    static const ASN1::Type type;
};

///     KeyAccessFlags ::= BIT STRING {
///         sensitive (0), extractable (1), alwaysSensitive (2), neverExtractable (3), local (4) }
struct TOVI_API KeyAccessFlags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t { sensitive, extractable, alwaysSensitive, neverExtractable, local };
    static const ASN1::Type type;
};

///     CommonKeyAttributes ::= SEQUENCE {
///         iD            Identifier,
///         usage         KeyUsageFlags,
///         native        BOOLEAN DEFAULT TRUE,
///         accessFlags   KeyAccessFlags OPTIONAL,
///         keyReference  Reference OPTIONAL,
///         startDate     GeneralizedTime OPTIONAL,
///         endDate       [0] GeneralizedTime OPTIONAL,
///         ... }
struct TOVI_API CommonKeyAttributes : ASN1::Sequence<CommonKeyAttributes> {
    Identifier iD;
    KeyUsageFlags usage;
    std::optional<bool> native;
    std::optional<KeyAccessFlags> accessFlags;
    std::optional<std::uint64_t> keyReference;
    std::optional<ASN1::GeneralizedTime> startDate;
    std::optional<ASN1::GeneralizedTime> endDate;
    ASN1::Unknown unknown;
    static const ASN1::Type type;

    /// Sets the member.
    void set_native(bool isNative) { native = isNative; }
    void set_keyReference(std::uint64_t reference) { keyReference = reference; }
};

///     CommonPrivateKeyAttributes ::= SEQUENCE {
///         subjectName     Name OPTIONAL,
///         keyIdentifiers  [0] SEQUENCE OF CredentialIdentifier {{KeyIdentifiers}} OPTIONAL,
///         ... }
struct TOVI_API CommonPrivateKeyAttributes : ASN1::Sequence<CommonPrivateKeyAttributes> {
    std::optional<Name> subjectName;
    std::optional<std::vector<CredentialIdentifier>> keyIdentifiers;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

/// At least one of the two.
///
///     Usage ::= SEQUENCE {
///         keyUsage     KeyUsage OPTIONAL,
///         extKeyUsage  SEQUENCE SIZE (1..MAX) OF OBJECT IDENTIFIER OPTIONAL }
struct TOVI_API Usage : ASN1::Sequence<Usage> {
    std::optional<KeyUsage> keyUsage;
    std::optional<std::vector<ASN1::OBJECT_IDENTIFIER>> extKeyUsage;
    static const ASN1::Type type;
};

///     CommonPublicKeyAttributes ::= SEQUENCE {
///         subjectName   Name OPTIONAL,
///         ...,
///         trustedUsage  [0] Usage OPTIONAL }
struct TOVI_API CommonPublicKeyAttributes : ASN1::Sequence<CommonPublicKeyAttributes> {
    std::optional<Name> subjectName;
    ASN1::Unknown unknown;
    ASN1::Boxed<Usage> trustedUsage;
    static const ASN1::Type type;
};

///     CommonSecretKeyAttributes ::= SEQUENCE {
///         keyLen  INTEGER OPTIONAL,
///         ... }
struct TOVI_API CommonSecretKeyAttributes : ASN1::Sequence<CommonSecretKeyAttributes> {
    std::optional<ASN1::INTEGER> keyLen;  ///< in bits
    ASN1::Unknown unknown;
    static const ASN1::Type type;

    /// Sets the member.
    void set_keyLen(std::uint32_t bits) { keyLen = bits; }
};

}  // namespace PKCS15
