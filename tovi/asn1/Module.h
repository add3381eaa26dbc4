#pragma once

#include <span>
#include <string_view>

#include "tovi/Export.h"
#include "tovi/asn1/ObjectIdentifier.h"
#include "tovi/asn1/Type.h"

namespace ASN1 {

/// A second name of a type, such as that of a parameterised type with its arguments filled in.
struct TOVI_API TypeAlias {
    std::string_view name;  ///< the second name
    const Type* type;       ///< what it names
};

/// An ASN.1 module: its types by name.
class TOVI_API Module {
public:
    /// `types` and `aliases` must outlive the module, and so must the types.
    Module(std::string_view name, OBJECT_IDENTIFIER identifier, std::span<const Type* const> types,
           std::span<const TypeAlias> aliases = {});

    /// As the module's heading has them.
    std::string_view name() const { return name_; }
    const OBJECT_IDENTIFIER& identifier() const { return identifier_; }
    /// In the order of the notation.
    std::span<const Type* const> types() const { return types_; }
    std::span<const TypeAlias> aliases() const { return aliases_; }
    /// nullptr for a name that the module does not define.
    const Type* find(std::string_view name) const;

private:
    std::string_view name_;
    OBJECT_IDENTIFIER identifier_;
    std::span<const Type* const> types_;
    std::span<const TypeAlias> aliases_;
};

}  // namespace ASN1
