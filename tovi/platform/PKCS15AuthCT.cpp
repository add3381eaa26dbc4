// The decoding side of PKCS15AuthCT.
#include "tovi/interfaces/PKCS15AuthCT.h"

#include "tovi/coders/CommonAttributes.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS15CT.h"
#include "tovi/platform/AuthNumbers.h"
#include "tovi/records/AuthInfo.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {
namespace {

using Info = PKCS15AuthCT::Info;

/// What all authentication objects have in common. An object without label is labelled with the
/// name of its alternative of AuthenticationType.
template <class Object>
void decodeCommon(Info& info, const Object& object, AuthType type, const char* alternative) {
    info.type = type;
    getPKCS15Attributes(info, object.commonObjectAttributes);
    getPKCS15Label(info.label, object.commonObjectAttributes, alternative);
    ASN1_assign(info.authObjectId, object.classAttributes.authId);
}

void decodeReference(Info& info, const std::optional<std::uint64_t>& reference) {
    info.reference = static_cast<std::uint16_t>(reference.value_or(0));
}

void decodePath(Info& info, const std::optional<PKCS15::Path>& path) {
    if (path) getPath(info.path, *path);
    getFID(info);
}

void decodeBioType(AuthInfo& info, const PKCS15::BiometricType& type) {
    using Type = PKCS15::BiometricType;
    if (const PKCS15::FingerPrint* print = type.getIf<Type::fingerPrint>()) {
        info.bioType = Type::fingerPrint;
        info.side = toNumber(print->hand);
        info.finger = toNumber(print->finger);
    } else if (const PKCS15::IrisScan* scan = type.getIf<Type::irisScan>()) {
        info.bioType = Type::irisScan;
        info.side = toNumber(scan->eye);
    }
}

}  // namespace

bool PKCS15AuthCT::decodePinInfo(
    Info& info, const PKCS15::AuthenticationObject<PKCS15::PinAttributes>& object) {
    decodeCommon(info, object, AuthType::pin, "pin");
    const PKCS15::PinAttributes& pin = object.typeAttributes;
    info.pinFlags = toFlags(pin.pinFlags);
    info.pinType = toNumber(pin.pinType);
    info.minLength = toNumber(pin.minLength);
    info.storedLength = toNumber(pin.storedLength);
    if (pin.maxLength) info.maxLength = toNumber(*pin.maxLength);
    decodeReference(info, pin.pinReference);
    info.hasPadChar = pin.padChar && pin.padChar->size() == 1;
    if (info.hasPadChar) info.padChar = pin.padChar->front();
    if (pin.lastPinChange) ASN1_assign(info.lastChange, *pin.lastPinChange);
    decodePath(info, pin.path);
    return PKCS15CT::decodeAuthConstraints(object.commonObjectAttributes);
}

bool PKCS15AuthCT::decodeBioInfo(
    Info& info, const PKCS15::AuthenticationObject<PKCS15::BiometricAttributes>& object) {
    decodeCommon(info, object, AuthType::biometric, "biometricTemplate");
    const PKCS15::BiometricAttributes& bio = object.typeAttributes;
    // A template in one of the forms of ISO/IEC 7816-15:2016 has no attributes that are known here.
    if (bio.otherForm) return false;
    info.bioFlags = toFlags(bio.bioFlags);
    info.templateId = toArcs(bio.templateId);
    decodeBioType(info, bio.bioType);
    decodeReference(info, bio.bioReference);
    if (bio.lastChange) ASN1_assign(info.lastChange, *bio.lastChange);
    decodePath(info, bio.path);
    return PKCS15CT::decodeAuthConstraints(object.commonObjectAttributes);
}

bool PKCS15AuthCT::decodeAuthKeyInfo(
    Info& info, const PKCS15::AuthenticationObject<PKCS15::AuthKeyAttributes>& object) {
    decodeCommon(info, object, AuthType::authKey, "authKey");
    info.derivedKey = object.typeAttributes.derivedKey.value_or(true);
    ASN1_assign(info.authKeyId, object.typeAttributes.authKeyId);
    getFID(info);
    return PKCS15CT::decodeAuthConstraints(object.commonObjectAttributes);
}

bool PKCS15AuthCT::decodeExternalInfo(
    Info& info, const PKCS15::AuthenticationObject<PKCS15::ExternalAuthObjectAttributes>& object) {
    using External = PKCS15::ExternalAuthObjectAttributes;
    decodeCommon(info, object, AuthType::external, "external");
    const auto* certificate = object.typeAttributes.getIf<External::certBasedAttributes>();
    if (certificate == nullptr) return false;
    ASN1_assign(info.cha, certificate->cha);
    getFID(info);
    return PKCS15CT::decodeAuthConstraints(object.commonObjectAttributes);
}

}  // namespace tovi
