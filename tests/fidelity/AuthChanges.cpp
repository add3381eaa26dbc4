#include "tests/fidelity/ChangeList.h"

namespace tovi::test {

namespace {

/// A number of AuthInfo becomes another one.
template <class Number>
Edit setting(Number AuthInfo::*field, Number value) {
    return [=](Fields& fields) { fields.auth->*field = value; };
}

std::uint32_t flagsOf(const std::vector<unsigned>& bits) {
    std::uint32_t flags = 0;
    for (const unsigned bit : bits) flags |= std::uint32_t{1} << bit;
    return flags;
}

void addFlagChanges(ChangeList& list, const Place& place, std::uint32_t AuthInfo::*field,
                    std::initializer_list<unsigned> bits) {
    for (const unsigned bit : bits) {
        const std::vector<unsigned> others = toggled(list.bitsAt(place), bit);
        list.set("flag " + std::to_string(bit), place, namedBits(others),
                 setting(field, flagsOf(others)));
    }
}

/// A reference of DEFAULT 0 with the tag `tag`; what has no reference has number 0.
void addReferenceChanges(ChangeList& list, const Place& place, std::uint8_t tag) {
    const auto setReference = [](std::uint16_t number) {
        return [=](Fields& fields) { fields.object.reference = number; };
    };
    list.set("reference", place, retagged(tag, integer(200)), setReference(200));
    list.remove("reference 0", place, setReference(0));
    if (list.at(place))
        list.set("no reference", place, {}, setReference(noReference)).readsAs = setReference(0);
}

void addTimeChanges(ChangeList& list, const Place& place) {
    const Blob time = text("20260707070707Z");
    list.set("lastChange", place, element(0x18, time), setting(&AuthInfo::lastChange, time));
    list.remove("no lastChange", place, setting(&AuthInfo::lastChange, Blob()));
}

/// The path of an authentication object is a member that may be absent.
void addOptionalPathChanges(ChangeList& list, const Place& place, Tlv& (*path)(Tlv& object)) {
    const PKCS15Path added{hex("3F00 4F01"), 3, 4};
    if (list.at(place)) {
        addPathChanges(list, path, "type.path");
        list.add(
            "no path", "type.path", {}, [](Fields& fields) { fields.object.path = {}; },
            [&](Tlv& object) { put(typeOf(object), place.tags, place.slot, {}); });
    } else {
        list.add(
            "path", "type.path",
            {{"type.path.path", "3f004f01"},
             {"type.path.index", "0x03"},
             {"type.path.length", "0x04"}},
            [=](Fields& fields) { fields.object.path = added; },
            [&](Tlv& object) {
                put(typeOf(object), place.tags, place.slot, test::path("3F004F01", 3, 4));
            });
    }
}

// ---- PINs ----

const Place pinFlags{typeOf, tags::pin, 0, "type.pinFlags"};
const Place pinType{typeOf, tags::pin, 1, "type.pinType"};
const Place minLength{typeOf, tags::pin, 2, "type.minLength"};
const Place storedLength{typeOf, tags::pin, 3, "type.storedLength"};
const Place maxLength{typeOf, tags::pin, 4, "type.maxLength"};
const Place pinReference{typeOf, tags::pin, 5, "type.pinReference"};
const Place padChar{typeOf, tags::pin, 6, "type.padChar"};
const Place lastPinChange{typeOf, tags::pin, 7, "type.lastPinChange"};
const Place pinPath{typeOf, tags::pin, 8, "type.path"};
Tlv& pathOfPin(Tlv& object) { return *member(typeOf(object), tags::pin, 8); }

void addPinChanges(ChangeList& list) {
    addFlagChanges(list, pinFlags, &AuthInfo::pinFlags, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    list.set("pinType", pinType, enumerated(4), setting(&AuthInfo::pinType, std::uint32_t{4}));
    list.set("minLength", minLength, integer(7), setting(&AuthInfo::minLength, std::uint32_t{7}));
    list.set("storedLength", storedLength, integer(33),
             setting(&AuthInfo::storedLength, std::uint32_t{33}));
    list.set("maxLength", maxLength, integer(200),
             setting(&AuthInfo::maxLength, std::uint32_t{200}));
    list.remove("no maxLength", maxLength, setting(&AuthInfo::maxLength, noAuthValue));
    list.set("padChar", padChar, octetString({0x2A}), [](Fields& fields) {
        fields.auth->hasPadChar = true;
        fields.auth->padChar = 0x2A;
    });
    list.remove("no padChar", padChar, setting(&AuthInfo::hasPadChar, false));
    addReferenceChanges(list, pinReference, 0x80);
    addTimeChanges(list, lastPinChange);
    addOptionalPathChanges(list, pinPath, pathOfPin);
}

// ---- biometric templates ----

const Place bioFlags{typeOf, tags::fingerPrint, 0, "type.bioFlags"};
const Place templateId{typeOf, tags::fingerPrint, 1, "type.templateId"};
Tlv& bioTypeOf(Tlv& object) { return typeOf(object).members.at(2); }
Tlv& pathOfFinger(Tlv& object) { return *member(typeOf(object), tags::fingerPrint, 5); }
Tlv& pathOfIris(Tlv& object) { return *member(typeOf(object), tags::irisScan, 5); }

void addFingerChanges(ChangeList& list) {
    const std::string where = "type.bioType";
    list.add("hand", where + ".fingerPrint.hand", {{where + ".fingerPrint.hand", "0x00"}},
             setting(&AuthInfo::side, std::uint64_t{0}),
             [](Tlv& object) { bioTypeOf(object).members.at(0) = parseTlv(enumerated(0)); });
    list.add("finger", where + ".fingerPrint.finger", {{where + ".fingerPrint.finger", "0x04"}},
             setting(&AuthInfo::finger, std::uint64_t{4}),
             [](Tlv& object) { bioTypeOf(object).members.at(1) = parseTlv(enumerated(4)); });
    list.add(
        "iris in place of a finger", where, {{where + ".irisScan.eye", "0x01"}},
        [](Fields& fields) {
            fields.auth->bioType = 1;
            fields.auth->side = 1;
            fields.auth->finger = noAuthValue;
        },
        [](Tlv& object) { bioTypeOf(object) = parseTlv(context(0, enumerated(1))); });
}

void addIrisChanges(ChangeList& list) {
    const std::string where = "type.bioType";
    list.add("eye", where, {{where + ".irisScan.eye", "0x01"}},
             setting(&AuthInfo::side, std::uint64_t{1}),
             [](Tlv& object) { bioTypeOf(object).members.at(0) = parseTlv(enumerated(1)); });
    list.add(
        "finger in place of an iris", where,
        {{where + ".fingerPrint.hand", "0x00"}, {where + ".fingerPrint.finger", "0x03"}},
        [](Fields& fields) {
            fields.auth->bioType = 0;
            fields.auth->side = 0;
            fields.auth->finger = 3;
        },
        [](Tlv& object) { bioTypeOf(object) = parseTlv(sequence(enumerated(0), enumerated(3))); });
}

void addBiometricChanges(ChangeList& list) {
    const bool isFinger = bioTypeOf(list.settled()).is(0x30);
    const Tags& tags = isFinger ? tags::fingerPrint : tags::irisScan;
    addFlagChanges(list, bioFlags, &AuthInfo::bioFlags, {1, 2, 3, 4, 8, 9, 10});
    list.set("templateId", templateId, objectIdentifier({1, 2, 840, 113549}),
             setting(&AuthInfo::templateId, hex("00000001 00000002 00000348 0001BB8D")));
    addReferenceChanges(list, {typeOf, tags, 3, "type.bioReference"}, 0x02);
    addTimeChanges(list, {typeOf, tags, 4, "type.lastChange"});
    addOptionalPathChanges(list, {typeOf, tags, 5, "type.path"},
                           isFinger ? pathOfFinger : pathOfIris);
    return isFinger ? addFingerChanges(list) : addIrisChanges(list);
}

// ---- authentication keys, external authentication ----

const Place derivedKey{typeOf, tags::authKey, 0, "type.derivedKey"};
const Place authKeyId{typeOf, tags::authKey, 1, "type.authKeyId"};
const Place cha{typeOf, tags::certBased, 0, "type.certBasedAttributes.cha"};

void addAuthKeyChanges(ChangeList& list) {
    // TRUE is the DEFAULT.
    const bool isDerived = list.at(derivedKey) == nullptr;
    list.set("derivedKey", derivedKey, isDerived ? boolean(false) : Blob(),
             setting(&AuthInfo::derivedKey, !isDerived));
    const Blob other = hex("C0FFEE03");
    list.set("authKeyId", authKeyId, octetString(other), setting(&AuthInfo::authKeyId, other));
}

void addExternalChanges(ChangeList& list) {
    const Blob other = hex("0102030405");
    list.set("cha", cha, octetString(other), setting(&AuthInfo::cha, other));
}

}  // namespace

void addAuthChanges(ChangeList& list) {
    const Place authObjectId{classOf, tags::commonAuthObject, 0, "class.authId"};
    const Blob other = hex("C0FFEE04");
    list.set("authObjectId", authObjectId, octetString(other),
             setting(&AuthInfo::authObjectId, other));
    if (list.settled().is(0x30)) return addPinChanges(list);
    if (list.settled().is(0xA0)) return addBiometricChanges(list);
    return list.settled().is(0xA1) ? addAuthKeyChanges(list) : addExternalChanges(list);
}

}  // namespace tovi::test
