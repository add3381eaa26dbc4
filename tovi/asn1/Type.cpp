#include "tovi/asn1/Type.h"

#include <algorithm>

namespace ASN1 {

bool Type::mayBegin(Tag first, bool constructed) const {
    if (kind == Kind::open) return true;
    if (tag.isNone())
        for (const Member& member : members)
            if (!member.isExtension() && member.begins(first, constructed)) return true;
    return otherForm && (otherTags.empty() || std::ranges::count(otherTags, first) != 0);
}

const OpenData* Type::otherFormOf(const void* value) const {
    if (!otherForm) return nullptr;
    // What was put in its place since wins.
    if (kind == Kind::choice && chosen(*this, value)) return nullptr;
    if (kind == Kind::octetString && !as<Octets>(value).empty()) return nullptr;
    return otherForm(const_cast<void*>(value)).get();
}

const Member* memberAt(const Type& type, std::size_t position) {
    for (const Member& member : type.members)
        if (!member.isExtension() && position-- == 0) return &member;
    return nullptr;
}

const Member* optionalAt(const Type& type, std::size_t optionalIndex) {
    for (const Member& member : type.members)
        if (member.isOptional() && optionalIndex-- == 0) return &member;
    return nullptr;
}

const Member* findMember(const Type& type, std::string_view name) {
    for (const Member& member : type.members)
        if (member.name == name) return &member;
    return nullptr;
}

const Member* chosen(const Type& type, const void* value) {
    const std::size_t selection = type.selection(value);
    for (const Member& member : type.members)
        if (member.alternative == selection) return &member;
    return nullptr;
}

}  // namespace ASN1
