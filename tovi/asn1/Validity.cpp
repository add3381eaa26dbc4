#include "tovi/asn1/Coding.h"

namespace ASN1 {

namespace {

bool isValidValue(const Type& type, const void* value);

bool isWithin(const Type& type, const Bounds& bounds, const void* value) {
    return !bounds.areSet() || !type.measure || bounds.hold(type.measure(value));
}

bool isKnownNumber(const Type& type, const void* value) {
    if (type.extensible) return true;
    for (const NamedNumber& named : type.names)
        if (named.number == as<ENUMERATED>(value).value) return true;
    return false;
}

bool isValidMember(const Member& member, const void* object) {
    if (member.isExtension()) return true;
    const void* value = member.get(object);
    if (!value)
        return member.presence != Presence::mandatory && member.presence != Presence::alternative;
    return isWithin(*member.type, member.acceptedBounds(), value) &&
           isValidValue(*member.type, value);
}

bool isValidSequence(const Type& type, const void* value) {
    for (const Member& member : type.members)
        if (!isValidMember(member, value)) return false;
    return true;
}

bool isValidChoice(const Type& type, const void* value) {
    const Member* member = chosen(type, value);
    return member && isValidMember(*member, value);
}

bool isValidList(const Type& type, const void* value) {
    for (std::size_t i = 0, size = type.list->size(value); i < size; ++i)
        if (!isValidValue(*type.element, type.list->at(value, i))) return false;
    return true;
}

bool isValidValue(const Type& type, const void* value) {
    if (type.otherFormOf(value)) return true;
    if (!isWithin(type, type.acceptedBounds(), value)) return false;
    switch (type.kind) {
        case Kind::sequence:
            return isValidSequence(type, value);
        case Kind::choice:
            return isValidChoice(type, value);
        case Kind::list:
            return isValidList(type, value);
        case Kind::enumerated:
            return isKnownNumber(type, value);
        case Kind::objectIdentifier:
            return !as<OBJECT_IDENTIFIER>(value).empty();
        case Kind::open:
            return !as<OpenData>(value).empty();
        default:
            return true;
    }
}

}  // namespace

bool isValid(AbstractData value) { return isValidValue(value.type(), value.value()); }

}  // namespace ASN1
