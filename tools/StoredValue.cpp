#include "tools/StoredValue.h"

#include <string_view>

#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

using ASN1::AbstractData;
using ASN1::Kind;
using ASN1::Member;
using Found = std::optional<AbstractData>;

Found valueAt(AbstractData data, const Member* member) {
    const void* held = member == nullptr ? nullptr : member->get(data.value());
    if (held == nullptr || member->isExtension()) return std::nullopt;
    return AbstractData(*member->type, held);
}

/// The member of that name; of a CHOICE nothing while another alternative is selected.
Found memberNamed(AbstractData data, std::string_view name) {
    const bool hasMembers = data.type().kind == Kind::sequence || data.type().kind == Kind::choice;
    return hasMembers ? valueAt(data, ASN1::findMember(data.type(), name)) : std::nullopt;
}

Found alternativeOf(AbstractData data) {
    if (data.type().kind != Kind::choice) return std::nullopt;
    return valueAt(data, ASN1::chosen(data.type(), data.value()));
}

bool isObjectValue(const ASN1::Type& type) {
    return type.kind == Kind::choice && ASN1::findMember(type, "indirect") != nullptr;
}

/// The ObjectValue of a record: the type attributes themselves, or their member `value`.
Found objectValueOf(AbstractData record) {
    Found object = alternativeOf(record);
    if (!object) return std::nullopt;
    if (const Found other = memberNamed(*object, "keyAttr")) object = other;  // of an OtherKey
    const Found attributes = memberNamed(*object, "typeAttributes");
    if (!attributes) return std::nullopt;
    if (isObjectValue(attributes->type())) return attributes;
    const Found value = memberNamed(*attributes, "value");
    return value && isObjectValue(value->type()) ? value : std::nullopt;
}

StoredValue placeOf(AbstractData reference) {
    const Found path = memberNamed(reference, "path");
    if (!path) return {.kind = StoredValue::Kind::url};
    const auto& place = ASN1::as<PKCS15::Path>(path->value());
    if (place.efidOrPath.otherForm) return {.kind = StoredValue::Kind::unknown};
    return {.kind = StoredValue::Kind::file,
            .path = place.efidOrPath,
            .index = place.index,
            .length = place.length};
}

}  // namespace

StoredValue storedValueOf(AbstractData record) {
    const Found value = objectValueOf(record);
    if (!value) return {};
    if (const Found reference = memberNamed(*value, "indirect")) return placeOf(*reference);
    if (const Found direct = memberNamed(*value, "direct")) {
        return {.kind = StoredValue::Kind::inRecord, .octets = ASN1::encode(*direct)};
    }
    return {.kind =
                alternativeOf(*value) ? StoredValue::Kind::enveloped : StoredValue::Kind::unknown};
}

}  // namespace tovi
