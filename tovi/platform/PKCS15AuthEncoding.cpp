// The encoding side of PKCS15AuthCT.
#include <tuple>

#include "tovi/coders/CommonAttributeEncoding.h"
#include "tovi/coders/CommonAttributes.h"
#include "tovi/coders/EntryWriting.h"
#include "tovi/interfaces/PKCS15AuthCT.h"
#include "tovi/interfaces/PKCS15CT.h"
#include "tovi/platform/AuthNumbers.h"
#include "tovi/records/AuthInfo.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {
namespace {

using Auth = PKCS15::AuthenticationType;
using Info = PKCS15AuthCT::Info;

// A member that reads as the info says stays as it stands: records hold numbers, identifiers and
// paths that infos do not hold to the last bit.

void setNumber(std::uint64_t& member, std::uint64_t number) {
    if (number != noAuthValue && number != toNumber(member)) member = number;
}

void setNumber(ASN1::ENUMERATED& member, std::uint64_t number) {
    if (number != noAuthValue && number != toNumber(member))
        member.value = static_cast<std::int64_t>(number);
}

void setNumber(std::optional<ASN1::INTEGER>& member, std::uint32_t number) {
    if (number == (member ? toNumber(*member) : noAuthValue)) return;
    if (number == noAuthValue)
        member.reset();
    else
        member.emplace(number);
}

void setFlags(ASN1::BIT_STRING& member, std::uint32_t flags) {
    if (flags == noAuthValue) return;
    for (unsigned bit = 0; bit < 32; ++bit)
        if (const bool flag = (flags >> bit & 1) != 0; member.test(bit) != flag)
            member.set(bit, flag);
}

/// DEFAULT 0.
void setReference(std::optional<std::uint64_t>& member, std::uint16_t reference) {
    if (static_cast<std::uint16_t>(member.value_or(0)) == reference) return;
    if (reference == noReference)
        member.reset();
    else
        member = reference;
}

void setTime(std::optional<ASN1::GeneralizedTime>& member, const Blob& time) {
    if (time.empty())
        member.reset();
    else
        member.emplace(time);
}

void setPath(std::optional<PKCS15::Path>& member, const PKCS15Path& path) {
    PKCS15Path held;
    if (member) getPath(held, *member);
    if (std::tie(held.path, held.index, held.length) ==
        std::tie(path.path, path.index, path.length))
        return;
    if (path.path.empty())
        member.reset();
    else
        setReferencedPath(member ? *member : member.emplace(), path);
}

bool setTemplateId(ASN1::OBJECT_IDENTIFIER& member, const Blob& arcs) {
    if (!arcs.empty() && arcs != toArcs(member)) member = fromArcs(arcs);
    return !member.empty();
}

/// False when another alternative is held and `needed` does not say all of the one that is to be.
template <std::size_t Alternative, class... Needed>
auto* heldOrNew(PKCS15::BiometricType& type, Needed... needed) {
    auto* held = type.getIf<Alternative>();
    const bool isComplete = ((needed != noAuthValue) && ...);
    return held || !isComplete ? held : &type.select<Alternative>();
}

bool setBioType(PKCS15::BiometricType& member, const AuthInfo& info) {
    using Type = PKCS15::BiometricType;
    if (info.bioType == noAuthValue) return member.selection() != Type::none;
    if (info.bioType == Type::fingerPrint) {
        auto* print = heldOrNew<Type::fingerPrint>(member, info.side, info.finger);
        if (print == nullptr) return false;
        setNumber(print->hand, info.side);
        setNumber(print->finger, info.finger);
        return true;
    }
    if (info.bioType != Type::irisScan) return false;
    auto* scan = heldOrNew<Type::irisScan>(member, info.side);
    if (scan != nullptr) setNumber(scan->eye, info.side);
    return scan != nullptr;
}

bool fillType(PKCS15::PinAttributes& pin, const Info& info) {
    setFlags(pin.pinFlags, info.pinFlags);
    setNumber(pin.pinType, info.pinType);
    setNumber(pin.minLength, info.minLength);
    setNumber(pin.storedLength, info.storedLength);
    setNumber(pin.maxLength, info.maxLength);
    setReference(pin.pinReference, info.reference);
    if (info.hasPadChar)
        pin.padChar = ASN1::OCTET_STRING{info.padChar};
    else
        pin.padChar.reset();
    setTime(pin.lastPinChange, info.lastChange);
    setPath(pin.path, info.path);
    return true;
}

bool saysNothingOfATemplate(const Info& info) {
    return info.bioFlags == noAuthValue && info.templateId.empty() && info.bioType == noAuthValue &&
           info.reference == noReference && info.lastChange.empty() && info.path.path.empty();
}

bool fillType(PKCS15::BiometricAttributes& bio, const Info& info) {
    // A template in one of the forms of ISO/IEC 7816-15:2016 has no attributes that are known here.
    if (bio.otherForm) return saysNothingOfATemplate(info);
    setFlags(bio.bioFlags, info.bioFlags);
    setReference(bio.bioReference, info.reference);
    setTime(bio.lastChange, info.lastChange);
    setPath(bio.path, info.path);
    return setTemplateId(bio.templateId, info.templateId) && setBioType(bio.bioType, info);
}

bool fillType(PKCS15::AuthKeyAttributes& key, const Info& info) {
    if (key.derivedKey.value_or(true) != info.derivedKey) key.derivedKey = info.derivedKey;
    key.authKeyId = info.authKeyId;
    return true;
}

bool fillType(PKCS15::ExternalAuthObjectAttributes& external, const Info& info) {
    using External = PKCS15::ExternalAuthObjectAttributes;
    if (external.selection() == External::none) external.select_certBasedAttributes();
    auto* certificate = external.getIf<External::certBasedAttributes>();
    if (certificate != nullptr) certificate->cha = info.cha;
    return certificate != nullptr;
}

/// False also for no object: the record is of another kind.
template <class Object>
bool fillObject(Object* object, const Info& info) {
    if (object == nullptr) return false;
    setPKCS15Attributes(info, object->commonObjectAttributes);
    setPKCS15Label(info.label, object->commonObjectAttributes);
    object->classAttributes.authId = info.authObjectId;
    return fillType(object->typeAttributes, info) &&
           PKCS15CT::encodeAuthConstraints(info.auxValue3, object->commonObjectAttributes);
}

/// Whether the info says all that a new record of its kind has to say in numbers; what else is
/// mandatory shows when it is filled.
bool isComplete(const AuthInfo& info) {
    const auto has = [](auto... numbers) { return ((numbers != noAuthValue) && ...); };
    if (info.type == AuthType::pin)
        return has(info.pinFlags, info.pinType, info.minLength, info.storedLength);
    return info.type != AuthType::biometric || has(info.bioFlags);
}

bool fill(Auth& value, const Info& info, bool isNew) {
    if (isNew && !isComplete(info)) return false;
    if (isNew) value.setSelection(static_cast<std::size_t>(info.type));
    switch (info.type) {
        case AuthType::pin:
            return fillObject(value.getIf<Auth::pin>(), info);
        case AuthType::biometric:
            return fillObject(value.getIf<Auth::biometricTemplate>(), info);
        case AuthType::authKey:
            return fillObject(value.getIf<Auth::authKey>(), info);
        case AuthType::external:
            return fillObject(value.getIf<Auth::external>(), info);
        default:
            return false;
    }
}

}  // namespace

unsigned long PKCS15AuthCT::encodeAuthInfoBase(ASN1::CoderEnv* env, ISCardOS* os,
                                               ProfileDFHandler& handler, const Info& info,
                                               std::vector<ASN1Object<Auth>>& raws,
                                               unsigned long index) {
    return encodeEntry(env, os, handler, info, raws, index, "PKCS15AuthCT::encodeAuthInfoBase",
                       [&info](Auth& value, bool isNew) { return fill(value, info, isNew); });
}

}  // namespace tovi
