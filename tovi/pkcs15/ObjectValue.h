#pragma once

#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/EnvelopedData.h"
#include "tovi/pkcs15/Path.h"

namespace PKCS15 {

/// A value by reference or in place.
///
///     ObjectValue { Type } ::= CHOICE {
///         indirect            ReferencedValue {Type},
///         direct              [0] EXPLICIT Type,
///         indirect-protected  [1] EXPLICIT ReferencedValue { EnvelopedData {Type} },
///         direct-protected    [2] EnvelopedData {Type} }
template <class Content>
struct TOVI_API ObjectValue : ASN1::Choice<ObjectValue<Content>> {
    enum Alternative : std::size_t {
        indirect,
        direct,
        indirect_protected,
        direct_protected,
        none,
    };
    std::variant<ReferencedValue, ASN1::Boxed<Content>, ASN1::Boxed<ReferencedValue>,
                 ASN1::Boxed<EnvelopedData>, std::monostate>
        value{std::monostate()};

    using T = ObjectValue;
    static constexpr ASN1::Member members[] = {
        ASN1::schema::alternative<&T::value, indirect>("indirect"),
        ASN1::schema::alternative<&T::value, direct>("direct").explicitly(0),
        ASN1::schema::alternative<&T::value, indirect_protected>("indirect-protected")
            .explicitly(1),
        ASN1::schema::alternative<&T::value, direct_protected>("direct-protected").tagged(2),
    };
    static constexpr const ASN1::Type* parameters[] = {ASN1::TypeOf<Content>::value};
    static constexpr ASN1::Type type = ASN1::schema::choice<T>("ObjectValue", members, parameters);
};

/// The path of a value that lies in a file; nullptr for a direct or protected value and for a URL.
template <class Content>
const Path* indirectPath(const ObjectValue<Content>& value) {
    const ReferencedValue* reference = value.template getIf<ObjectValue<Content>::indirect>();
    return reference ? reference->getIf<ReferencedValue::path>() : nullptr;
}

/// Entries by the path of the file that holds them, or in place.
///
///     PathOrObjects { ObjectType } ::= CHOICE {
///         path                Path,
///         objects             [0] SEQUENCE OF ObjectType,
///         ...,
///         indirect-protected  [1] EXPLICIT ReferencedValue { EnvelopedData { SEQUENCE OF
///         ObjectType } }, direct-protected    [2] EnvelopedData { SEQUENCE OF ObjectType } }
template <class ObjectType>
struct TOVI_API PathOrObjects : ASN1::Choice<PathOrObjects<ObjectType>> {
    enum Alternative : std::size_t {
        path,
        objects,
        indirect_protected,
        direct_protected,
        unknown,
        none,
    };
    std::variant<Path, std::vector<ObjectType>, ASN1::Boxed<ReferencedValue>,
                 ASN1::Boxed<EnvelopedData>, ASN1::OpenData, std::monostate>
        value{std::monostate()};

    Path& select_path() { return this->template select<path>(); }

    using T = PathOrObjects;
    static constexpr ASN1::Member members[] = {
        ASN1::schema::alternative<&T::value, path>("path"),
        ASN1::schema::alternative<&T::value, objects>("objects").tagged(0),
        ASN1::schema::extension<&T::value, unknown>(),
        ASN1::schema::alternative<&T::value, indirect_protected>("indirect-protected")
            .explicitly(1),
        ASN1::schema::alternative<&T::value, direct_protected>("direct-protected").tagged(2),
    };
    static constexpr const ASN1::Type* parameters[] = {ASN1::TypeOf<ObjectType>::value};
    static constexpr ASN1::Type type =
        ASN1::schema::choice<T>("PathOrObjects", members, parameters);
};

}  // namespace PKCS15
