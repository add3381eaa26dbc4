#include "tovi/pkcs15/CommonKeyAttributes.h"

#include "tovi/asn1/Schema.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr NamedNumber keyUsageFlagsBits[] = {
    {"encrypt", 0}, {"decrypt", 1}, {"sign", 2},          {"signRecover", 3}, {"wrap", 4},
    {"unwrap", 5},  {"verify", 6},  {"verifyRecover", 7}, {"derive", 8},      {"nonRepudiation", 9},
};

constexpr NamedNumber keyAccessFlagsBits[] = {
    {"sensitive", 0},        {"extractable", 1}, {"alwaysSensitive", 2},
    {"neverExtractable", 3}, {"local", 4},
};

constexpr bool yes() { return true; }

constexpr Member commonKeyAttributesRows[] = {
    mandatory<&CommonKeyAttributes::iD>("iD"),
    mandatory<&CommonKeyAttributes::usage>("usage"),
    defaulted<&CommonKeyAttributes::native, yes>("native", "TRUE"),
    optional<&CommonKeyAttributes::accessFlags>("accessFlags"),
    optional<&CommonKeyAttributes::keyReference>("keyReference").as(referenceType),
    optional<&CommonKeyAttributes::startDate>("startDate"),
    optional<&CommonKeyAttributes::endDate>("endDate").tagged(0),
    extension<&CommonKeyAttributes::unknown>(),
};

constexpr Member commonPrivateKeyAttributesRows[] = {
    optional<&CommonPrivateKeyAttributes::subjectName>("subjectName"),
    optional<&CommonPrivateKeyAttributes::keyIdentifiers>("keyIdentifiers")
        .tagged(0)
        .spelled("SEQUENCE OF CredentialIdentifier {{KeyIdentifiers}}"),
    extension<&CommonPrivateKeyAttributes::unknown>(),
};

constexpr Member usageRows[] = {
    optional<&Usage::keyUsage>("keyUsage"),
    optional<&Usage::extKeyUsage>("extKeyUsage").size(1),
};

constexpr Member commonPublicKeyAttributesRows[] = {
    optional<&CommonPublicKeyAttributes::subjectName>("subjectName"),
    extension<&CommonPublicKeyAttributes::unknown>(),
    optional<&CommonPublicKeyAttributes::trustedUsage>("trustedUsage").tagged(0),
};

constexpr Member commonSecretKeyAttributesRows[] = {
    optional<&CommonSecretKeyAttributes::keyLen>("keyLen"),
    extension<&CommonSecretKeyAttributes::unknown>(),
};

}  // namespace

constinit const Type KeyUsageFlags::type =
    namedBits<KeyUsageFlags>("KeyUsageFlags", keyUsageFlagsBits);
constinit const Type KeyAccessFlags::type =
    namedBits<KeyAccessFlags>("KeyAccessFlags", keyAccessFlagsBits);
constinit const Type CommonKeyAttributes::type =
    sequence<CommonKeyAttributes>("CommonKeyAttributes", commonKeyAttributesRows);
constinit const Type CommonPrivateKeyAttributes::type = sequence<CommonPrivateKeyAttributes>(
    "CommonPrivateKeyAttributes", commonPrivateKeyAttributesRows);
constinit const Type Usage::type = sequence<Usage>("Usage", usageRows);
constinit const Type CommonPublicKeyAttributes::type =
    sequence<CommonPublicKeyAttributes>("CommonPublicKeyAttributes", commonPublicKeyAttributesRows);
constinit const Type CommonSecretKeyAttributes::type =
    sequence<CommonSecretKeyAttributes>("CommonSecretKeyAttributes", commonSecretKeyAttributesRows);

}  // namespace PKCS15
