#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/Basic.h"

namespace PKCS15 {

///     Operations ::= BIT STRING {
///         compute-checksum (0), compute-signature (1), verify-checksum (2), verify-signature (3),
///         encipher (4), decipher (5), hash (6), generate-key (7) }
struct TOVI_API Operations : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t {
        compute_checksum,
        compute_signature,
        verify_checksum,
        verify_signature,
        encipher,
        decipher,
        hash,
        generate_key,
    };
    static const ASN1::Type type;
};

///     PublicKeyOperations ::= Operations
using PublicKeyOperations = Operations;

/// Algorithm parameters of a key: a row of TokenInfo.supportedAlgorithms, or in place.
///
///     KeyInfo { ParameterType, OperationsType } ::= CHOICE {
///         reference     Reference,
///         paramsAndOps  SEQUENCE {
///             parameters           ParameterType,
///             supportedOperations  OperationsType OPTIONAL } }
template <class ParameterType, class OperationsType>
struct TOVI_API KeyInfo : ASN1::Choice<KeyInfo<ParameterType, OperationsType>> {
    /// The SEQUENCE of the alternative paramsAndOps.
    struct ParamsAndOps : ASN1::Sequence<ParamsAndOps> {
        ParameterType parameters;                           ///< of the key's algorithm
        std::optional<OperationsType> supportedOperations;  ///< what the key can do

        static constexpr ASN1::Member members[] = {
            ASN1::schema::mandatory<&ParamsAndOps::parameters>("parameters"),
            ASN1::schema::optional<&ParamsAndOps::supportedOperations>("supportedOperations"),
        };
        static constexpr ASN1::Type type = ASN1::schema::sequence<ParamsAndOps>("", members);
    };

    enum Alternative : std::size_t { reference, paramsAndOps, none };
    std::variant<std::uint64_t, ASN1::Boxed<ParamsAndOps>, std::monostate> value{std::monostate()};

    using T = KeyInfo;
    static constexpr ASN1::Member members[] = {
        ASN1::schema::alternative<&T::value, reference>("reference").as(referenceType),
        ASN1::schema::alternative<&T::value, paramsAndOps>("paramsAndOps"),
    };
    static constexpr const ASN1::Type* typeParameters[] = {ASN1::TypeOf<ParameterType>::value,
                                                           ASN1::TypeOf<OperationsType>::value};
    static constexpr ASN1::Type type = ASN1::schema::choice<T>("KeyInfo", members, typeParameters);
};

}  // namespace PKCS15
