#include "tovi/pkcs15/Authentication.h"

#include "tovi/pkcs15/Bounds.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr Member commonAuthenticationObjectAttributesRows[] = {
    expected<&CommonAuthenticationObjectAttributes::authId>("authId"),
    extension<&CommonAuthenticationObjectAttributes::unknown>(),
};

constexpr NamedNumber pinFlagsBits[] = {
    {"case-sensitive", 0},
    {"local", 1},
    {"change-disabled", 2},
    {"unblock-disabled", 3},
    {"initialized", 4},
    {"needs-padding", 5},
    {"unblockingPin", 6},
    {"soPin", 7},
    {"disable-allowed", 8},
    {"integrity-protected", 9},
    {"confidentiality-protected", 10},
    {"exchangeRefData", 11},
};

constexpr NamedNumber pinTypeNumbers[] = {{"bcd", 0},
                                          {"ascii-numeric", 1},
                                          {"utf8", 2},
                                          {"...", ASN1::noNumber},
                                          {"half-nibble-bcd", 3},
                                          {"iso9564-1", 4}};

constexpr std::uint64_t zero() { return 0; }
constexpr bool yes() { return true; }

constexpr Member pinAttributesRows[] = {
    mandatory<&PinAttributes::pinFlags>("pinFlags"),
    mandatory<&PinAttributes::pinType>("pinType"),
    mandatory<&PinAttributes::minLength>("minLength").range(lbMinPinLength, ubMinPinLength),
    mandatory<&PinAttributes::storedLength>("storedLength").range(0, ubStoredPinLength),
    optional<&PinAttributes::maxLength>("maxLength"),
    defaulted<&PinAttributes::pinReference, zero>("pinReference", "0").tagged(0).as(referenceType),
    optional<&PinAttributes::padChar>("padChar").size(1, 1),
    optional<&PinAttributes::lastPinChange>("lastPinChange"),
    optional<&PinAttributes::path>("path"),
    extension<&PinAttributes::unknown>(),
};

constexpr NamedNumber biometricFlagsBits[] = {
    {"local", 1},
    {"change-disabled", 2},
    {"unblock-disabled", 3},
    {"initialized", 4},
    {"disable-allowed", 8},
    {"integrity-protected", 9},
    {"confidentiality-protected", 10},
};

constexpr NamedNumber bodySideNumbers[] = {{"left", 0}, {"right", 1}};

constexpr NamedNumber fingerNumbers[] = {
    {"thumb", 0}, {"pointerFinger", 1}, {"middleFinger", 2}, {"ringFinger", 3}, {"littleFinger", 4},
};

constexpr Member fingerPrintRows[] = {
    mandatory<&FingerPrint::hand>("hand"),
    mandatory<&FingerPrint::finger>("finger"),
    extension<&FingerPrint::unknown>(),
};

constexpr Member irisScanRows[] = {
    mandatory<&IrisScan::eye>("eye"),
    extension<&IrisScan::unknown>(),
};

constexpr Member biometricTypeRows[] = {
    alternative<&BiometricType::value, BiometricType::fingerPrint>("fingerPrint"),
    alternative<&BiometricType::value, BiometricType::irisScan>("irisScan").tagged(0),
    extension<&BiometricType::value, BiometricType::unknown>(),
};

constexpr Member biometricAttributesRows[] = {
    mandatory<&BiometricAttributes::bioFlags>("bioFlags"),
    mandatory<&BiometricAttributes::templateId>("templateId"),
    mandatory<&BiometricAttributes::bioType>("bioType"),
    defaulted<&BiometricAttributes::bioReference, zero>("bioReference", "0").as(referenceType),
    optional<&BiometricAttributes::lastChange>("lastChange"),
    optional<&BiometricAttributes::path>("path"),
    extension<&BiometricAttributes::unknown>(),
};

// Biometric information templates in place of the attributes.
constexpr ASN1::Tag otherTemplates[] = {ASN1::application(96), ASN1::application(97)};

constexpr Type biometricAttributes() {
    Type type = sequence<BiometricAttributes>("BiometricAttributes", biometricAttributesRows);
    type.otherForm = [](void* value) -> ASN1::Boxed<ASN1::OpenData>& {
        return ASN1::as<BiometricAttributes>(value).otherForm;
    };
    type.otherTags = otherTemplates;
    return type;
}

constexpr Member authKeyAttributesRows[] = {
    defaulted<&AuthKeyAttributes::derivedKey, yes>("derivedKey", "TRUE"),
    mandatory<&AuthKeyAttributes::authKeyId>("authKeyId"),
    extension<&AuthKeyAttributes::unknown>(),
};

constexpr Member certBasedAuthenticationAttributesRows[] = {
    mandatory<&CertBasedAuthenticationAttributes::cha>("cha"),
    extension<&CertBasedAuthenticationAttributes::unknown>(),
};

using External = ExternalAuthObjectAttributes;

constexpr Member externalAuthObjectAttributesRows[] = {
    alternative<&External::value, External::authKeyAttributes>("authKeyAttributes"),
    alternative<&External::value, External::certBasedAttributes>("certBasedAttributes").tagged(0),
    extension<&External::value, External::unknown>(),
};

using Authentication = AuthenticationType;

constexpr Member authenticationTypeRows[] = {
    alternative<&Authentication::value, Authentication::pin>("pin"),
    extension<&Authentication::value, Authentication::unknown>(),
    alternative<&Authentication::value, Authentication::biometricTemplate>("biometricTemplate")
        .tagged(0),
    alternative<&Authentication::value, Authentication::authKey>("authKey").tagged(1),
    alternative<&Authentication::value, Authentication::external>("external").tagged(2),
};

}  // namespace

constinit const Type CommonAuthenticationObjectAttributes::type =
    sequence<CommonAuthenticationObjectAttributes>("CommonAuthenticationObjectAttributes",
                                                   commonAuthenticationObjectAttributesRows);
constinit const Type PinFlags::type = namedBits<PinFlags>("PinFlags", pinFlagsBits);
constinit const Type PinType::type =
    enumerated<PinType>("PinType", pinTypeNumbers, Growth::extensible);
constinit const Type PinAttributes::type =
    sequence<PinAttributes>("PinAttributes", pinAttributesRows);
constinit const Type BiometricFlags::type =
    namedBits<BiometricFlags>("BiometricFlags", biometricFlagsBits);
constinit const Type BodySide::type = enumerated<BodySide>("", bodySideNumbers);
constinit const Type Finger::type = enumerated<Finger>("", fingerNumbers);
constinit const Type FingerPrint::type = sequence<FingerPrint>("FingerPrint", fingerPrintRows);
constinit const Type IrisScan::type = sequence<IrisScan>("IrisScan", irisScanRows);
constinit const Type BiometricType::type =
    choice<BiometricType>("BiometricType", biometricTypeRows);
constinit const Type BiometricAttributes::type = biometricAttributes();
constinit const Type AuthKeyAttributes::type =
    sequence<AuthKeyAttributes>("AuthKeyAttributes", authKeyAttributesRows);
constinit const Type CertBasedAuthenticationAttributes::type =
    sequence<CertBasedAuthenticationAttributes>("CertBasedAuthenticationAttributes",
                                                certBasedAuthenticationAttributesRows);
constinit const Type ExternalAuthObjectAttributes::type = choice<ExternalAuthObjectAttributes>(
    "ExternalAuthObjectAttributes", externalAuthObjectAttributesRows);
constinit const Type AuthenticationType::type =
    choice<AuthenticationType>("AuthenticationType", authenticationTypeRows);

}  // namespace PKCS15
