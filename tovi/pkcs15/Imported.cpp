#include "tovi/pkcs15/Imported.h"

#include "tovi/asn1/Schema.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

using OpenSet = std::vector<ASN1::OpenData>;

constexpr NamedNumber keyUsageBits[] = {
    {"digitalSignature", 0}, {"nonRepudiation", 1}, {"keyEncipherment", 2},
    {"dataEncipherment", 3}, {"keyAgreement", 4},   {"keyCertSign", 5},
    {"cRLSign", 6},          {"encipherOnly", 7},   {"decipherOnly", 8},
};

constexpr Member algorithmIdentifierRows[] = {
    mandatory<&AlgorithmIdentifier::algorithm>("algorithm"),
    optional<&AlgorithmIdentifier::parameters>("parameters"),
};

constexpr Member subjectPublicKeyInfoRows[] = {
    mandatory<&SubjectPublicKeyInfo::algorithm>("algorithm"),
    mandatory<&SubjectPublicKeyInfo::subjectPublicKey>("subjectPublicKey"),
};

constexpr Member rsaPublicKeyRows[] = {
    mandatory<&RSAPublicKey::modulus>("modulus"),
    mandatory<&RSAPublicKey::publicExponent>("publicExponent"),
};

constexpr Member parametersRows[] = {
    alternative<&Parameters::value, Parameters::ecParameters>("ecParameters"),
    alternative<&Parameters::value, Parameters::namedCurve>("namedCurve"),
    alternative<&Parameters::value, Parameters::implicitlyCA>("implicitlyCA"),
};

constexpr Member validationParmsRows[] = {
    mandatory<&ValidationParms::seed>("seed"),
    mandatory<&ValidationParms::pgenCounter>("pgenCounter"),
};

constexpr Member domainParametersRows[] = {
    mandatory<&DomainParameters::p>("p"),
    mandatory<&DomainParameters::g>("g"),
    mandatory<&DomainParameters::q>("q"),
    optional<&DomainParameters::j>("j"),
    optional<&DomainParameters::validationParms>("validationParms"),
};

constexpr Member certIdRows[] = {
    mandatory<&CertId::issuer>("issuer"),
    mandatory<&CertId::serialNumber>("serialNumber"),
};

constexpr Member oobCertHashRows[] = {
    optional<&OOBCertHash::hashAlg>("hashAlg").explicitly(0),
    optional<&OOBCertHash::certId>("certId").explicitly(1),
    mandatory<&OOBCertHash::hashVal>("hashVal"),
};

constexpr Member originatorInfoRows[] = {
    optional<&OriginatorInfo::certs>("certs").tagged(0).as(setOf<OpenSet>),
    optional<&OriginatorInfo::crls>("crls").tagged(1).as(setOf<OpenSet>),
};

constexpr Member attributeRows[] = {
    mandatory<&Attribute::attributeType>("type"),
    mandatory<&Attribute::values>("values").as(setOf<OpenSet>),
};

}  // namespace

constinit const Type Name::type = opaque<Name>("Name");
constinit const Type generalNamesType = derived<GeneralNames>(
    "GeneralNames", *ASN1::TypeOf<GeneralNames>::value, {1, ASN1::Bounds::highest});
constinit const Type KeyUsage::type = namedBits<KeyUsage>("KeyUsage", keyUsageBits);
constinit const Type AlgorithmIdentifier::type =
    sequence<AlgorithmIdentifier>("AlgorithmIdentifier", algorithmIdentifierRows);
constinit const Type SubjectPublicKeyInfo::type =
    sequence<SubjectPublicKeyInfo>("SubjectPublicKeyInfo", subjectPublicKeyInfoRows);
constinit const Type RSAPublicKey::type = sequence<RSAPublicKey>("RSAPublicKey", rsaPublicKeyRows);
constinit const Type ECParameters::type = opaque<ECParameters>("ECParameters");
constinit const Type Parameters::type = choice<Parameters>("Parameters", parametersRows);
constinit const Type ValidationParms::type =
    sequence<ValidationParms>("ValidationParms", validationParmsRows);
constinit const Type DomainParameters::type =
    sequence<DomainParameters>("DomainParameters", domainParametersRows);
constinit const Type CertId::type = sequence<CertId>("CertId", certIdRows);
constinit const Type OOBCertHash::type = sequence<OOBCertHash>("OOBCertHash", oobCertHashRows);
constinit const Type OriginatorInfo::type =
    sequence<OriginatorInfo>("OriginatorInfo", originatorInfoRows);
constinit const Type recipientInfosType = named("RecipientInfos", setOf<RecipientInfos>);
constinit const Type Attribute::type = sequence<Attribute>("Attribute", attributeRows);

}  // namespace PKCS15
