#include "tovi/asn1/Module.h"

#include <utility>

namespace ASN1 {

Module::Module(std::string_view name, OBJECT_IDENTIFIER identifier,
               std::span<const Type* const> types)
    : name_(name), identifier_(std::move(identifier)), types_(types) {}

const Type* Module::find(std::string_view name) const {
    for (const Type* type : types_)
        if (type->name == name) return type;
    return nullptr;
}

}  // namespace ASN1
