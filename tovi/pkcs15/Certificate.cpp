#include "tovi/pkcs15/Certificate.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

using Common = CommonCertificateAttributes;
using X509 = X509CertificateAttributes;
using X509Attribute = X509AttributeCertificateAttributes;

constexpr bool no() { return false; }

constexpr Member commonCertificateAttributesRows[] = {
    mandatory<&Common::iD>("iD"),
    defaulted<&Common::authority, no>("authority", "FALSE"),
    optional<&Common::identifier>("identifier").spelled("CredentialIdentifier {{KeyIdentifiers}}"),
    optional<&Common::certHash>("certHash").tagged(0),
    extension<&Common::unknown>(),
    optional<&Common::trustedUsage>("trustedUsage").tagged(1),
    optional<&Common::identifiers>("identifiers")
        .tagged(2)
        .spelled("SEQUENCE OF CredentialIdentifier {{KeyIdentifiers}}"),
    defaulted<&Common::implicitTrust, no>("implicitTrust", "FALSE").tagged(3),
};

constexpr Member x509CertificateAttributesRows[] = {
    mandatory<&X509::value>("value").spelled("ObjectValue { Certificate }"),
    optional<&X509::subject>("subject"),
    optional<&X509::issuer>("issuer").explicitly(0),
    optional<&X509::serialNumber>("serialNumber"),
    extension<&X509::unknown>(),
};

constexpr Member x509AttributeCertificateAttributesRows[] = {
    mandatory<&X509Attribute::value>("value").spelled("ObjectValue { AttributeCertificate }"),
    optional<&X509Attribute::issuer>("issuer").as(generalNamesType),
    optional<&X509Attribute::serialNumber>("serialNumber"),
    optional<&X509Attribute::attrTypes>("attrTypes").tagged(0),
    extension<&X509Attribute::unknown>(),
};

constexpr Member spkiCertificateAttributesRows[] = {
    mandatory<&SPKICertificateAttributes::value>("value"),
    extension<&SPKICertificateAttributes::unknown>(),
};

constexpr Member pgpCertificateAttributesRows[] = {
    mandatory<&PGPCertificateAttributes::value>("value"),
    extension<&PGPCertificateAttributes::unknown>(),
};

constexpr Member wtlsCertificateAttributesRows[] = {
    mandatory<&WTLSCertificateAttributes::value>("value"),
    extension<&WTLSCertificateAttributes::unknown>(),
};

constexpr Member x9_68CertificateAttributesRows[] = {
    mandatory<&X9_68CertificateAttributes::value>("value"),
    extension<&X9_68CertificateAttributes::unknown>(),
};

constexpr Member cvCertificateAttributesRows[] = {
    mandatory<&CVCertificateAttributes::value>("value"),
    extension<&CVCertificateAttributes::unknown>(),
};

using Certificate = CertificateType;

constexpr Member certificateTypeRows[] = {
    alternative<&Certificate::value, Certificate::x509Certificate>("x509Certificate"),
    alternative<&Certificate::value, Certificate::x509AttributeCertificate>(
        "x509AttributeCertificate")
        .tagged(0),
    alternative<&Certificate::value, Certificate::spkiCertificate>("spkiCertificate").tagged(1),
    alternative<&Certificate::value, Certificate::pgpCertificate>("pgpCertificate").tagged(2),
    alternative<&Certificate::value, Certificate::wtlsCertificate>("wtlsCertificate").tagged(3),
    alternative<&Certificate::value, Certificate::x9_68Certificate>("x9-68Certificate").tagged(4),
    extension<&Certificate::value, Certificate::unknown>(),
    alternative<&Certificate::value, Certificate::cvCertificate>("cvCertificate").tagged(5),
};

}  // namespace

constinit const Type CommonCertificateAttributes::type = sequence<CommonCertificateAttributes>(
    "CommonCertificateAttributes", commonCertificateAttributesRows);
constinit const Type X509CertificateAttributes::type =
    sequence<X509CertificateAttributes>("X509CertificateAttributes", x509CertificateAttributesRows);
constinit const Type X509AttributeCertificateAttributes::type =
    sequence<X509AttributeCertificateAttributes>("X509AttributeCertificateAttributes",
                                                 x509AttributeCertificateAttributesRows);
constinit const Type SPKICertificateAttributes::type =
    sequence<SPKICertificateAttributes>("SPKICertificateAttributes", spkiCertificateAttributesRows);
constinit const Type PGPCertificateAttributes::type =
    sequence<PGPCertificateAttributes>("PGPCertificateAttributes", pgpCertificateAttributesRows);
constinit const Type WTLSCertificateAttributes::type =
    sequence<WTLSCertificateAttributes>("WTLSCertificateAttributes", wtlsCertificateAttributesRows);
constinit const Type X9_68CertificateAttributes::type = sequence<X9_68CertificateAttributes>(
    "X9-68CertificateAttributes", x9_68CertificateAttributesRows);
constinit const Type CVCertificateAttributes::type =
    sequence<CVCertificateAttributes>("CVCertificateAttributes", cvCertificateAttributesRows);
constinit const Type CertificateType::type =
    choice<CertificateType>("CertificateType", certificateTypeRows);

}  // namespace PKCS15
