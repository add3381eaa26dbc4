#include "tovi/asn1/Values.h"

namespace ASN1 {

bool hasOptionalField(const Type& type, const void* value, std::size_t optionalIndex) {
    const Member* member = optionalAt(type, optionalIndex);
    return member && member->get(value);
}

void includeOptionalField(const Type& type, void* value, std::size_t optionalIndex,
                          std::size_t position) {
    const Member* member = optionalAt(type, optionalIndex);
    if (member && member == memberAt(type, position) && !member->get(value)) member->make(value);
}

void removeOptionalField(const Type& type, void* value, std::size_t optionalIndex) {
    if (const Member* member = optionalAt(type, optionalIndex)) member->clear(value);
}

void setSelection(const Type& type, void* value, std::size_t position) {
    if (const Member* member = memberAt(type, position)) member->make(value);
}

std::string_view selectionName(const Type& type, const void* value) {
    const Member* member = chosen(type, value);
    return member && !member->isExtension() ? member->name : std::string_view();
}

}  // namespace ASN1
