#pragma once

#include <span>
#include <string_view>

#include "tovi/asn1/ObjectIdentifier.h"
#include "tovi/asn1/Type.h"

namespace ASN1 {

/// An ASN.1 module: its types by name.
class Module {
public:
    /// `types` must outlive the module, and so must the types.
    Module(std::string_view name, OBJECT_IDENTIFIER identifier,
           std::span<const Type* const> types);

    std::string_view name() const { return name_; }
    const OBJECT_IDENTIFIER& identifier() const { return identifier_; }
    /// In the order of the notation.
    std::span<const Type* const> types() const { return types_; }
    /// nullptr for a name that the module does not define.
    const Type* find(std::string_view name) const;

private:
    std::string_view name_;
    OBJECT_IDENTIFIER identifier_;
    std::span<const Type* const> types_;
};

}  // namespace ASN1
