#include "tovi/pkcs15/PublicKey.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

constexpr Member rsaPublicKeyChoiceRows[] = {
    alternative<&RSAPublicKeyChoice::value, RSAPublicKeyChoice::raw>("raw"),
    alternative<&RSAPublicKeyChoice::value, RSAPublicKeyChoice::spki>("spki").tagged(1),
    extension<&RSAPublicKeyChoice::value, RSAPublicKeyChoice::unknown>(),
};

constexpr Member publicRSAKeyAttributesRows[] = {
    mandatory<&PublicRSAKeyAttributes::value>("value"),
    mandatory<&PublicRSAKeyAttributes::modulusLength>("modulusLength"),
    optional<&PublicRSAKeyAttributes::keyInfo>("keyInfo"),
    extension<&PublicRSAKeyAttributes::unknown>(),
};

constexpr Member ecPublicKeyChoiceRows[] = {
    alternative<&ECPublicKeyChoice::value, ECPublicKeyChoice::raw>("raw"),
    alternative<&ECPublicKeyChoice::value, ECPublicKeyChoice::spki>("spki"),
    extension<&ECPublicKeyChoice::value, ECPublicKeyChoice::unknown>(),
};

constexpr Member publicECKeyAttributesRows[] = {
    mandatory<&PublicECKeyAttributes::value>("value"),
    optional<&PublicECKeyAttributes::keyInfo>("keyInfo"),
    extension<&PublicECKeyAttributes::unknown>(),
};

constexpr Member dhPublicKeyChoiceRows[] = {
    alternative<&DHPublicKeyChoice::value, DHPublicKeyChoice::raw>("raw"),
    alternative<&DHPublicKeyChoice::value, DHPublicKeyChoice::spki>("spki"),
    extension<&DHPublicKeyChoice::value, DHPublicKeyChoice::unknown>(),
};

constexpr Member publicDHKeyAttributesRows[] = {
    mandatory<&PublicDHKeyAttributes::value>("value"),
    optional<&PublicDHKeyAttributes::keyInfo>("keyInfo"),
    extension<&PublicDHKeyAttributes::unknown>(),
};

constexpr Member dsaPublicKeyChoiceRows[] = {
    alternative<&DSAPublicKeyChoice::value, DSAPublicKeyChoice::raw>("raw"),
    alternative<&DSAPublicKeyChoice::value, DSAPublicKeyChoice::spki>("spki"),
    extension<&DSAPublicKeyChoice::value, DSAPublicKeyChoice::unknown>(),
};

constexpr Member publicDSAKeyAttributesRows[] = {
    mandatory<&PublicDSAKeyAttributes::value>("value"),
    optional<&PublicDSAKeyAttributes::keyInfo>("keyInfo"),
    extension<&PublicDSAKeyAttributes::unknown>(),
};

constexpr Member keaPublicKeyChoiceRows[] = {
    alternative<&KEAPublicKeyChoice::value, KEAPublicKeyChoice::raw>("raw"),
    alternative<&KEAPublicKeyChoice::value, KEAPublicKeyChoice::spki>("spki"),
    extension<&KEAPublicKeyChoice::value, KEAPublicKeyChoice::unknown>(),
};

constexpr Member publicKEAKeyAttributesRows[] = {
    mandatory<&PublicKEAKeyAttributes::value>("value"),
    optional<&PublicKEAKeyAttributes::keyInfo>("keyInfo"),
    extension<&PublicKEAKeyAttributes::unknown>(),
};

using Key = PublicKeyType;

constexpr Member publicKeyTypeRows[] = {
    alternative<&Key::value, Key::publicRSAKey>("publicRSAKey"),
    alternative<&Key::value, Key::publicECKey>("publicECKey").tagged(0),
    alternative<&Key::value, Key::publicDHKey>("publicDHKey").tagged(1),
    alternative<&Key::value, Key::publicDSAKey>("publicDSAKey").tagged(2),
    alternative<&Key::value, Key::publicKEAKey>("publicKEAKey").tagged(3),
    extension<&Key::value, Key::unknown>(),
};

}  // namespace

constinit const Type RSAPublicKeyChoice::type =
    choice<RSAPublicKeyChoice>("RSAPublicKeyChoice", rsaPublicKeyChoiceRows);
constinit const Type PublicRSAKeyAttributes::type =
    sequence<PublicRSAKeyAttributes>("PublicRSAKeyAttributes", publicRSAKeyAttributesRows);
constinit const Type ECPublicKeyChoice::type =
    choice<ECPublicKeyChoice>("ECPublicKeyChoice", ecPublicKeyChoiceRows);
constinit const Type PublicECKeyAttributes::type =
    sequence<PublicECKeyAttributes>("PublicECKeyAttributes", publicECKeyAttributesRows);
constinit const Type DHPublicKeyChoice::type =
    choice<DHPublicKeyChoice>("DHPublicKeyChoice", dhPublicKeyChoiceRows);
constinit const Type PublicDHKeyAttributes::type =
    sequence<PublicDHKeyAttributes>("PublicDHKeyAttributes", publicDHKeyAttributesRows);
constinit const Type DSAPublicKeyChoice::type =
    choice<DSAPublicKeyChoice>("DSAPublicKeyChoice", dsaPublicKeyChoiceRows);
constinit const Type PublicDSAKeyAttributes::type =
    sequence<PublicDSAKeyAttributes>("PublicDSAKeyAttributes", publicDSAKeyAttributesRows);
constinit const Type KEAPublicKeyChoice::type =
    choice<KEAPublicKeyChoice>("KEAPublicKeyChoice", keaPublicKeyChoiceRows);
constinit const Type PublicKEAKeyAttributes::type =
    sequence<PublicKEAKeyAttributes>("PublicKEAKeyAttributes", publicKEAKeyAttributesRows);
constinit const Type PublicKeyType::type =
    choice<PublicKeyType>("PublicKeyType", publicKeyTypeRows);

}  // namespace PKCS15
