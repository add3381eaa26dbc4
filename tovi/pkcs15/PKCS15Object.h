#pragma once

#include <optional>

#include "tovi/Export.h"
#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/CommonObjectAttributes.h"

namespace PKCS15 {

/// The skeleton of every directory entry.
///
///     PKCS15Object { ClassAttributes, SubClassAttributes, TypeAttributes } ::= SEQUENCE {
///         commonObjectAttributes  CommonObjectAttributes,
///         classAttributes         ClassAttributes,
///         subClassAttributes      [0] EXPLICIT SubClassAttributes OPTIONAL,
///         typeAttributes          [1] EXPLICIT TypeAttributes }
template <class ClassAttributes, class SubClassAttributes, class TypeAttributes>
struct TOVI_API PKCS15Object
    : ASN1::Sequence<PKCS15Object<ClassAttributes, SubClassAttributes, TypeAttributes>> {
    CommonObjectAttributes commonObjectAttributes;
    ClassAttributes classAttributes;
    std::optional<SubClassAttributes> subClassAttributes;
    TypeAttributes typeAttributes;

    /// Brings the subclass attributes into being unless they are there.
    SubClassAttributes& set_subClassAttributes() {
        return subClassAttributes ? *subClassAttributes : subClassAttributes.emplace();
    }

    using T = PKCS15Object;
    static constexpr ASN1::Member members[] = {
        ASN1::schema::mandatory<&T::commonObjectAttributes>("commonObjectAttributes"),
        ASN1::schema::mandatory<&T::classAttributes>("classAttributes"),
        ASN1::schema::optional<&T::subClassAttributes>("subClassAttributes").explicitly(0),
        ASN1::schema::mandatory<&T::typeAttributes>("typeAttributes").explicitly(1),
    };
    static constexpr const ASN1::Type* parameters[] = {ASN1::TypeOf<ClassAttributes>::value,
                                                       ASN1::TypeOf<SubClassAttributes>::value,
                                                       ASN1::TypeOf<TypeAttributes>::value};
    static constexpr ASN1::Type type =
        ASN1::schema::sequence<T>("PKCS15Object", members, parameters);
};

}  // namespace PKCS15
