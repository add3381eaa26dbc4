#include "tovi/pkcs15/PrivateKey.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

constexpr Member rsaPrivateKeyObjectRows[] = {
    optional<&RSAPrivateKeyObject::modulus>("modulus").tagged(0),
    optional<&RSAPrivateKeyObject::publicExponent>("publicExponent").tagged(1),
    optional<&RSAPrivateKeyObject::privateExponent>("privateExponent").tagged(2),
    optional<&RSAPrivateKeyObject::prime1>("prime1").tagged(3),
    optional<&RSAPrivateKeyObject::prime2>("prime2").tagged(4),
    optional<&RSAPrivateKeyObject::exponent1>("exponent1").tagged(5),
    optional<&RSAPrivateKeyObject::exponent2>("exponent2").tagged(6),
    optional<&RSAPrivateKeyObject::coefficient>("coefficient").tagged(7),
};

constexpr Member privateRSAKeyAttributesRows[] = {
    mandatory<&PrivateRSAKeyAttributes::value>("value"),
    mandatory<&PrivateRSAKeyAttributes::modulusLength>("modulusLength"),
    optional<&PrivateRSAKeyAttributes::keyInfo>("keyInfo"),
    extension<&PrivateRSAKeyAttributes::unknown>(),
};

constexpr Member privateECKeyAttributesRows[] = {
    mandatory<&PrivateECKeyAttributes::value>("value"),
    optional<&PrivateECKeyAttributes::keyInfo>("keyInfo"),
    extension<&PrivateECKeyAttributes::unknown>(),
};

constexpr Member privateDHKeyAttributesRows[] = {
    mandatory<&PrivateDHKeyAttributes::value>("value"),
    optional<&PrivateDHKeyAttributes::keyInfo>("keyInfo"),
    extension<&PrivateDHKeyAttributes::unknown>(),
};

constexpr Member privateDSAKeyAttributesRows[] = {
    mandatory<&PrivateDSAKeyAttributes::value>("value"),
    optional<&PrivateDSAKeyAttributes::keyInfo>("keyInfo"),
    extension<&PrivateDSAKeyAttributes::unknown>(),
};

constexpr Member privateKEAKeyAttributesRows[] = {
    mandatory<&PrivateKEAKeyAttributes::value>("value"),
    optional<&PrivateKEAKeyAttributes::keyInfo>("keyInfo"),
    extension<&PrivateKEAKeyAttributes::unknown>(),
};

using Key = PrivateKeyType;

constexpr Member privateKeyTypeRows[] = {
    alternative<&Key::value, Key::privateRSAKey>("privateRSAKey"),
    alternative<&Key::value, Key::privateECKey>("privateECKey").tagged(0),
    alternative<&Key::value, Key::privateDHKey>("privateDHKey").tagged(1),
    alternative<&Key::value, Key::privateDSAKey>("privateDSAKey").tagged(2),
    alternative<&Key::value, Key::privateKEAKey>("privateKEAKey").tagged(3),
    extension<&Key::value, Key::unknown>(),
};

}  // namespace

constinit const Type RSAPrivateKeyObject::type =
    sequence<RSAPrivateKeyObject>("RSAPrivateKeyObject", rsaPrivateKeyObjectRows);
constinit const Type PrivateRSAKeyAttributes::type =
    sequence<PrivateRSAKeyAttributes>("PrivateRSAKeyAttributes", privateRSAKeyAttributesRows);
constinit const Type PrivateECKeyAttributes::type =
    sequence<PrivateECKeyAttributes>("PrivateECKeyAttributes", privateECKeyAttributesRows);
constinit const Type PrivateDHKeyAttributes::type =
    sequence<PrivateDHKeyAttributes>("PrivateDHKeyAttributes", privateDHKeyAttributesRows);
constinit const Type PrivateDSAKeyAttributes::type =
    sequence<PrivateDSAKeyAttributes>("PrivateDSAKeyAttributes", privateDSAKeyAttributesRows);
constinit const Type PrivateKEAKeyAttributes::type =
    sequence<PrivateKEAKeyAttributes>("PrivateKEAKeyAttributes", privateKEAKeyAttributesRows);
constinit const Type PrivateKeyType::type =
    choice<PrivateKeyType>("PrivateKeyType", privateKeyTypeRows);

}  // namespace PKCS15
