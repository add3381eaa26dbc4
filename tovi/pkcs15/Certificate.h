#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/pkcs15/CommonKeyAttributes.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/pkcs15/PKCS15Object.h"

/// Records of EF(CDF), of certificates, trusted and useful ones. A certificate itself is kept as it
/// came.
namespace PKCS15 {

///     CommonCertificateAttributes ::= SEQUENCE {
///         iD             Identifier,
///         authority      BOOLEAN DEFAULT FALSE,
///         identifier     CredentialIdentifier {{KeyIdentifiers}} OPTIONAL,
///         certHash       [0] OOBCertHash OPTIONAL,
///         ...,
///         trustedUsage   [1] Usage OPTIONAL,
///         identifiers    [2] SEQUENCE OF CredentialIdentifier {{KeyIdentifiers}} OPTIONAL,
///         implicitTrust  [3] BOOLEAN DEFAULT FALSE }
struct TOVI_API CommonCertificateAttributes : ASN1::Sequence<CommonCertificateAttributes> {
    Identifier iD;
    std::optional<bool> authority;
    ASN1::Boxed<CredentialIdentifier> identifier;
    ASN1::Boxed<OOBCertHash> certHash;
    ASN1::Unknown unknown;
    ASN1::Boxed<Usage> trustedUsage;
    std::optional<std::vector<CredentialIdentifier>> identifiers;
    std::optional<bool> implicitTrust;
    static const ASN1::Type type;

    /// Brings the member into being unless it is there.
    Usage& set_trustedUsage() { return trustedUsage ? *trustedUsage : trustedUsage.emplace(); }
};

///     X509CertificateAttributes ::= SEQUENCE {
///         value         ObjectValue { Certificate },
///         subject       Name OPTIONAL,
///         issuer        [0] EXPLICIT Name OPTIONAL,
///         serialNumber  CertificateSerialNumber OPTIONAL,
///         ... }
struct TOVI_API X509CertificateAttributes : ASN1::Sequence<X509CertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    std::optional<Name> subject;
    std::optional<Name> issuer;
    std::optional<CertificateSerialNumber> serialNumber;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     X509AttributeCertificateAttributes ::= SEQUENCE {
///         value         ObjectValue { AttributeCertificate },
///         issuer        GeneralNames OPTIONAL,
///         serialNumber  CertificateSerialNumber OPTIONAL,
///         attrTypes     [0] SEQUENCE OF OBJECT IDENTIFIER OPTIONAL,
///         ... }
struct TOVI_API X509AttributeCertificateAttributes
    : ASN1::Sequence<X509AttributeCertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    std::optional<GeneralNames> issuer;
    std::optional<CertificateSerialNumber> serialNumber;
    std::optional<std::vector<ASN1::OBJECT_IDENTIFIER>> attrTypes;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     SPKICertificateAttributes ::= SEQUENCE {
///         value  ObjectValue { PKCS15-OPAQUE.&Type },
///         ... }
struct TOVI_API SPKICertificateAttributes : ASN1::Sequence<SPKICertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     PGPCertificateAttributes ::= SEQUENCE {
///         value  ObjectValue { PKCS15-OPAQUE.&Type },
///         ... }
struct TOVI_API PGPCertificateAttributes : ASN1::Sequence<PGPCertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     WTLSCertificateAttributes ::= SEQUENCE {
///         value  ObjectValue { PKCS15-OPAQUE.&Type },
///         ... }
struct TOVI_API WTLSCertificateAttributes : ASN1::Sequence<WTLSCertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     X9-68CertificateAttributes ::= SEQUENCE {
///         value  ObjectValue { PKCS15-OPAQUE.&Type },
///         ... }
struct TOVI_API X9_68CertificateAttributes : ASN1::Sequence<X9_68CertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     CVCertificateAttributes ::= SEQUENCE {
///         value  ObjectValue { PKCS15-OPAQUE.&Type },
///         ... }
struct TOVI_API CVCertificateAttributes : ASN1::Sequence<CVCertificateAttributes> {
    ObjectValue<ASN1::OpenData> value;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     CertificateObject { CertAttributes } ::= PKCS15Object {
///         CommonCertificateAttributes, NULL, CertAttributes }
template <class CertAttributes>
using CertificateObject = PKCS15Object<CommonCertificateAttributes, ASN1::Null, CertAttributes>;

///     CertificateType ::= CHOICE {
///         x509Certificate               CertificateObject {X509CertificateAttributes},
///         x509AttributeCertificate  [0] CertificateObject {X509AttributeCertificateAttributes},
///         spkiCertificate           [1] CertificateObject {SPKICertificateAttributes},
///         pgpCertificate            [2] CertificateObject {PGPCertificateAttributes},
///         wtlsCertificate           [3] CertificateObject {WTLSCertificateAttributes},
///         x9-68Certificate          [4] CertificateObject {X9-68CertificateAttributes},
///         ...,
///         cvCertificate             [5] CertificateObject {CVCertificateAttributes} }
struct TOVI_API CertificateType : ASN1::Choice<CertificateType> {
    enum Alternative : std::size_t {
        x509Certificate,
        x509AttributeCertificate,
        spkiCertificate,
        pgpCertificate,
        wtlsCertificate,
        x9_68Certificate,
        cvCertificate,
        unknown,
        none,
    };
    std::variant<
        CertificateObject<X509CertificateAttributes>,
        CertificateObject<X509AttributeCertificateAttributes>,
        CertificateObject<SPKICertificateAttributes>, CertificateObject<PGPCertificateAttributes>,
        CertificateObject<WTLSCertificateAttributes>, CertificateObject<X9_68CertificateAttributes>,
        CertificateObject<CVCertificateAttributes>, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    auto& select_x509Certificate() { return select<x509Certificate>(); }
    auto& select_x509AttributeCertificate() { return select<x509AttributeCertificate>(); }
    auto& select_spkiCertificate() { return select<spkiCertificate>(); }
    auto& select_pgpCertificate() { return select<pgpCertificate>(); }
    auto& select_wtlsCertificate() { return select<wtlsCertificate>(); }
    auto& select_x9_68Certificate() { return select<x9_68Certificate>(); }
    auto& select_cvCertificate() { return select<cvCertificate>(); }
};

}  // namespace PKCS15
