#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Values.h"

/// What the module imports, as far as a reader of card directories looks into it. The rest is kept
/// as it came.
namespace PKCS15 {

/// A distinguished name (X.501); the octets are the content of the RDNSequence.
///
///     Name ::= CHOICE { rdnSequence RDNSequence }
struct TOVI_API Name : ASN1::Octets {
    using ASN1::Octets::Octets;
    using ASN1::Octets::operator=;
    static const ASN1::Type type;
};

///     GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName
using GeneralNames = std::vector<ASN1::OpenData>;
TOVI_API extern const ASN1::Type generalNamesType;

///     CertificateSerialNumber ::= INTEGER
using CertificateSerialNumber = ASN1::INTEGER;

///     KeyUsage ::= BIT STRING { digitalSignature (0), ... }           -- X.509
struct TOVI_API KeyUsage : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t {
        digitalSignature,
        nonRepudiation,
        keyEncipherment,
        dataEncipherment,
        keyAgreement,
        keyCertSign,
        cRLSign,
        encipherOnly,
        decipherOnly,
    };
    static const ASN1::Type type;
};

///     AlgorithmIdentifier ::= SEQUENCE {
///         algorithm   OBJECT IDENTIFIER,
///         parameters  ANY OPTIONAL }
struct TOVI_API AlgorithmIdentifier : ASN1::Sequence<AlgorithmIdentifier> {
    ASN1::OBJECT_IDENTIFIER algorithm;
    std::optional<ASN1::OpenData> parameters;
    static const ASN1::Type type;

    friend bool operator==(const AlgorithmIdentifier& a, const AlgorithmIdentifier& b) {
        return a.algorithm == b.algorithm && a.parameters == b.parameters;
    }
};

///     SubjectPublicKeyInfo ::= SEQUENCE {
///         algorithm         AlgorithmIdentifier,
///         subjectPublicKey  BIT STRING }
struct TOVI_API SubjectPublicKeyInfo : ASN1::Sequence<SubjectPublicKeyInfo> {
    AlgorithmIdentifier algorithm;
    ASN1::BIT_STRING subjectPublicKey;
    static const ASN1::Type type;
};

///     RSAPublicKey ::= SEQUENCE {                                     -- PKCS#1
///         modulus         INTEGER,
///         publicExponent  INTEGER }
struct TOVI_API RSAPublicKey : ASN1::Sequence<RSAPublicKey> {
    ASN1::INTEGER modulus;
    ASN1::INTEGER publicExponent;
    static const ASN1::Type type;
};

/// Elliptic curve parameters written out (X9.62); the octets are the content of the SEQUENCE.
struct TOVI_API ECParameters : ASN1::Octets {
    using ASN1::Octets::Octets;
    using ASN1::Octets::operator=;
    static const ASN1::Type type;
};

///     Parameters ::= CHOICE {                                         -- X9.62
///         ecParameters  ECParameters,
///         namedCurve    OBJECT IDENTIFIER,
///         implicitlyCA  NULL }
struct TOVI_API Parameters : ASN1::Choice<Parameters> {
    enum Alternative : std::size_t { ecParameters, namedCurve, implicitlyCA, none };
    std::variant<ECParameters, ASN1::OBJECT_IDENTIFIER, ASN1::Null, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

///     ValidationParms ::= SEQUENCE {
///         seed         BIT STRING,
///         pgenCounter  INTEGER }
struct TOVI_API ValidationParms : ASN1::Sequence<ValidationParms> {
    ASN1::BIT_STRING seed;
    ASN1::INTEGER pgenCounter;
    static const ASN1::Type type;
};

///     DomainParameters ::= SEQUENCE {                                 -- X9.42
///         p                INTEGER,
///         g                INTEGER,
///         q                INTEGER,
///         j                INTEGER OPTIONAL,
///         validationParms  ValidationParms OPTIONAL }
struct TOVI_API DomainParameters : ASN1::Sequence<DomainParameters> {
    ASN1::INTEGER p;
    ASN1::INTEGER g;
    ASN1::INTEGER q;
    std::optional<ASN1::INTEGER> j;
    std::optional<ValidationParms> validationParms;
    static const ASN1::Type type;
};

///     CertId ::= SEQUENCE {                                           -- RFC 2510
///         issuer        GeneralName,
///         serialNumber  INTEGER }
struct TOVI_API CertId : ASN1::Sequence<CertId> {
    ASN1::OpenData issuer;
    ASN1::INTEGER serialNumber;
    static const ASN1::Type type;
};

///     OOBCertHash ::= SEQUENCE {                                      -- RFC 2510
///         hashAlg  [0] EXPLICIT AlgorithmIdentifier OPTIONAL,
///         certId   [1] EXPLICIT CertId OPTIONAL,
///         hashVal  BIT STRING }
struct TOVI_API OOBCertHash : ASN1::Sequence<OOBCertHash> {
    std::optional<AlgorithmIdentifier> hashAlg;
    std::optional<CertId> certId;
    ASN1::BIT_STRING hashVal;
    static const ASN1::Type type;
};

///     OriginatorInfo ::= SEQUENCE {                                   -- RFC 2630
///         certs  [0] SET OF ANY OPTIONAL,
///         crls   [1] SET OF ANY OPTIONAL }
struct TOVI_API OriginatorInfo : ASN1::Sequence<OriginatorInfo> {
    std::optional<std::vector<ASN1::OpenData>> certs;
    std::optional<std::vector<ASN1::OpenData>> crls;
    static const ASN1::Type type;
};

///     RecipientInfos ::= SET OF RecipientInfo                         -- RFC 2630
using RecipientInfo = ASN1::OpenData;
using RecipientInfos = std::vector<RecipientInfo>;
TOVI_API extern const ASN1::Type recipientInfosType;

///     Attribute ::= SEQUENCE {                                        -- X.501
///         type    OBJECT IDENTIFIER,
///         values  SET OF ANY }
struct TOVI_API Attribute : ASN1::Sequence<Attribute> {
    ASN1::OBJECT_IDENTIFIER attributeType;  ///< `type` in the notation
    std::vector<ASN1::OpenData> values;
    static const ASN1::Type type;
};

}  // namespace PKCS15
