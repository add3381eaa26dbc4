#include "tovi/asn1/Module.h"

#include <utility>

namespace ASN1 {

Module::Module(std::string_view name, OBJECT_IDENTIFIER identifier,
               std::span<const Type* const> types, std::span<const TypeAlias> aliases)
    : name_(name), identifier_(std::move(identifier)), types_(types), aliases_(aliases) {}

const Type* Module::find(std::string_view name) const {
    for (const Type* type : types_)
        if (type->name == name) return type;
    for (const TypeAlias& alias : aliases_)
        if (alias.name == name) return alias.type;
    return nullptr;
}

}  // namespace ASN1
