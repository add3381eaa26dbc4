#include "tovi/pkcs15/Module.h"

#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/PKCS15.h"

namespace PKCS15 {

using ASN1::Type;
using ASN1::schema::derived, ASN1::schema::named;

namespace {

// Names that the module gives to types which are plain values in C++.
constexpr Type sha1Parameters = named("SHA1Parameters", ASN1::nullType);
constexpr Type cms3DESwrap = named("CMS3DESwrap", ASN1::nullType);
constexpr Type desIV = derived<ASN1::OCTET_STRING>("DES-IV", ASN1::octetStringType, {8, 8});
constexpr Type ecPrivateKey = named("ECPrivateKey", ASN1::integerType);
constexpr Type dhPrivateKey = named("DHPrivateKey", ASN1::integerType);
constexpr Type dsaPrivateKey = named("DSAPrivateKey", ASN1::integerType);
constexpr Type keaPrivateKey = named("KEAPrivateKey", ASN1::integerType);

constexpr const Type* types[] = {
    &Identifier::type,
    &referenceType,
    &Label::type,
    &CredentialIdentifier::type,
    &ReferencedValue::type,
    &URL::type,
    &sha1Parameters,
    &DigestInfoWithDefault::type,
    &Path::type,
    &ObjectValue<ASN1::OpenData>::type,
    &PathOrObjects<PrivateKeyType>::type,
    &CommonObjectAttributes::type,
    &CommonObjectFlags::type,
    &AccessControlRule::type,
    &AccessMode::type,
    &SecurityCondition::type,
    &CommonKeyAttributes::type,
    &KeyUsageFlags::type,
    &KeyAccessFlags::type,
    &CommonPrivateKeyAttributes::type,
    &CommonPublicKeyAttributes::type,
    &CommonSecretKeyAttributes::type,
    &KeyInfo<Parameters, Operations>::type,
    &CommonCertificateAttributes::type,
    &Usage::type,
    &CommonDataObjectAttributes::type,
    &CommonAuthenticationObjectAttributes::type,
    &PrivateKeyObject<PrivateRSAKeyAttributes>::type,
    &PKCS15Objects::type,
    &PrivateKeyType::type,
    &PrivateRSAKeyAttributes::type,
    &RSAPrivateKeyObject::type,
    &PrivateECKeyAttributes::type,
    &ecPrivateKey,
    &PrivateDHKeyAttributes::type,
    &dhPrivateKey,
    &PrivateDSAKeyAttributes::type,
    &dsaPrivateKey,
    &PrivateKEAKeyAttributes::type,
    &keaPrivateKey,
    &PublicKeyType::type,
    &PublicRSAKeyAttributes::type,
    &RSAPublicKeyChoice::type,
    &PublicECKeyAttributes::type,
    &ECPublicKeyChoice::type,
    &PublicDHKeyAttributes::type,
    &DHPublicKeyChoice::type,
    &PublicDSAKeyAttributes::type,
    &DSAPublicKeyChoice::type,
    &PublicKEAKeyAttributes::type,
    &KEAPublicKeyChoice::type,
    &SecretKeyType::type,
    &OtherKey::type,
    &GenericSecretKeyAttributes::type,
    &CertificateType::type,
    &X509CertificateAttributes::type,
    &X509AttributeCertificateAttributes::type,
    &SPKICertificateAttributes::type,
    &PGPCertificateAttributes::type,
    &WTLSCertificateAttributes::type,
    &X9_68CertificateAttributes::type,
    &CVCertificateAttributes::type,
    &DataType::type,
    &OidDO::type,
    &AuthenticationType::type,
    &PinAttributes::type,
    &PinFlags::type,
    &PinType::type,
    &BiometricAttributes::type,
    &BiometricFlags::type,
    &BiometricType::type,
    &FingerPrint::type,
    &IrisScan::type,
    &ExternalAuthObjectAttributes::type,
    &AuthKeyAttributes::type,
    &CertBasedAuthenticationAttributes::type,
    &TokenInfo::type,
    &TokenFlags::type,
    &SecurityEnvironmentInfo::type,
    &RecordInfo::type,
    &AlgorithmInfo::type,
    &Operations::type,
    &LastUpdate::type,
    &EnvelopedData::type,
    &EncryptedContentInfo::type,
    &PKCS15Token::type,
    &keyManagementInfoType,
    &PasswordInfo::type,
    &cms3DESwrap,
    &desIV,
    &DDO::type,
    &DIRRecord::type,
    &UnusedSpace::type,
};

constexpr ASN1::TypeAlias aliases[] = {
    {"PublicKeyOperations", &Operations::type},
    {"PrivateKeys", &PathOrObjects<PrivateKeyType>::type},
    {"PublicKeys", &PathOrObjects<PublicKeyType>::type},
    {"SecretKeys", &PathOrObjects<SecretKeyType>::type},
    {"Certificates", &PathOrObjects<CertificateType>::type},
    {"DataObjects", &PathOrObjects<DataType>::type},
    {"AuthObjects", &PathOrObjects<AuthenticationType>::type},
    {"Opaque", &ObjectValue<ASN1::OpenData>::type},
    {"ExternalIDO", &ObjectValue<ASN1::OpenData>::type},
};

}  // namespace

ASN1::Module& getModule() {
    static ASN1::Module module("PKCS-15", {1, 2, 840, 113549, 1, 15, 1, 1}, types, aliases);
    return module;
}

}  // namespace PKCS15
