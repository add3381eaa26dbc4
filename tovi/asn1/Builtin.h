#pragma once

#include <concepts>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/BitString.h"
#include "tovi/asn1/Enumerated.h"
#include "tovi/asn1/Integer.h"
#include "tovi/asn1/ObjectIdentifier.h"
#include "tovi/asn1/Strings.h"
#include "tovi/asn1/Type.h"

namespace ASN1 {

// What the types that ASN.1 brings along do; see Type.
TOVI_API bool decodeBoolean(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeBoolean(const Type&, const void*, Writer&);
TOVI_API bool decodeInteger(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeInteger(const Type&, const void*, Writer&);
TOVI_API bool decodeUnsigned(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeUnsigned(const Type&, const void*, Writer&);
TOVI_API std::int64_t measureUnsigned(const void*);
TOVI_API bool decodeEnumerated(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeEnumerated(const Type&, const void*, Writer&);
TOVI_API bool decodeBits(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeBits(const Type&, const void*, Writer&);
TOVI_API void encodeNamedBits(const Type&, const void*, Writer&);
TOVI_API bool decodeOctets(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeOctets(const Type&, const void*, Writer&);
TOVI_API std::int64_t countOctets(const void*);
TOVI_API std::int64_t countTextCharacters(const void*);
TOVI_API bool decodeNull(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeNothing(const Type&, const void*, Writer&);
TOVI_API bool decodeObjectIdentifier(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeObjectIdentifier(const Type&, const void*, Writer&);
TOVI_API bool decodeOpen(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeOpen(const Type&, const void*, Writer&);
TOVI_API bool decodeOpaque(const Type&, const Element&, void*, Reader&);

template <class T>
inline constexpr Lifetime lifetimeOf{
    sizeof(T),
    alignof(T),
    [](void* room) { new (room) T(); },
    [](void* object) { static_cast<T*>(object)->~T(); },
    [](void* to, const void* from) { as<T>(to) = as<T>(from); },
    [](void* to, void* from) { as<T>(to) = static_cast<T&&>(as<T>(from)); }};

/// A type of one universal tag; `Value` is its C++ type.
template <class Value>
constexpr Type builtin(std::string_view name, Kind kind, std::uint32_t number, Form form,
                       decltype(Type::decode) decode, decltype(Type::encode) encode,
                       decltype(Type::measure) measure = nullptr) {
    return {.name = name,
            .kind = kind,
            .tag = universal(number),
            .form = form,
            .decode = decode,
            .encode = encode,
            .measure = measure,
            .lifetime = &lifetimeOf<Value>};
}

template <class String>
constexpr Type characterStringType(std::string_view name, std::uint32_t number) {
    return builtin<String>(name, Kind::characterString, number, Form::either, decodeOctets,
                           encodeOctets, countTextCharacters);
}

TOVI_API inline constexpr Type booleanType =
    builtin<bool>("BOOLEAN", Kind::boolean, 1, Form::primitive, decodeBoolean, encodeBoolean);
TOVI_API inline constexpr Type integerType =
    builtin<INTEGER>("INTEGER", Kind::integer, 2, Form::primitive, decodeInteger, encodeInteger);
TOVI_API inline constexpr Type unsignedType =
    builtin<std::uint64_t>("INTEGER", Kind::unsignedInteger, 2, Form::primitive, decodeUnsigned,
                           encodeUnsigned, measureUnsigned);
TOVI_API inline constexpr Type bitStringType =
    builtin<BIT_STRING>("BIT STRING", Kind::bitString, 3, Form::either, decodeBits, encodeBits);
TOVI_API inline constexpr Type octetStringType = builtin<Octets>(
    "OCTET STRING", Kind::octetString, 4, Form::either, decodeOctets, encodeOctets, countOctets);
TOVI_API inline constexpr Type nullType =
    builtin<Null>("NULL", Kind::null, 5, Form::primitive, decodeNull, encodeNothing);
TOVI_API inline constexpr Type objectIdentifierType =
    builtin<OBJECT_IDENTIFIER>("OBJECT IDENTIFIER", Kind::objectIdentifier, 6, Form::primitive,
                               decodeObjectIdentifier, encodeObjectIdentifier);
TOVI_API inline constexpr Type utf8StringType = characterStringType<UTF8String>("UTF8String", 12);
TOVI_API inline constexpr Type printableStringType =
    characterStringType<PrintableString>("PrintableString", 19);
TOVI_API inline constexpr Type ia5StringType = characterStringType<IA5String>("IA5String", 22);
TOVI_API inline constexpr Type generalizedTimeType =
    characterStringType<GeneralizedTime>("GeneralizedTime", 24);
TOVI_API inline constexpr Type openType{.name = "ANY",
                                        .kind = Kind::open,
                                        .form = Form::either,
                                        .decode = decodeOpen,
                                        .encode = encodeOpen,
                                        .lifetime = &lifetimeOf<OpenData>};

/// The description of a C++ type. Types of a module carry theirs as a static member `type`.
template <class T>
struct TypeOf;
template <class T>
requires requires {
    { &T::type } -> std::same_as<const Type*>;
}
struct TypeOf<T> {
    static constexpr const Type* value = &T::type;
};
template <>
struct TypeOf<bool> {
    static constexpr const Type* value = &booleanType;
};
template <>
struct TypeOf<INTEGER> {
    static constexpr const Type* value = &integerType;
};
template <>
struct TypeOf<std::uint64_t> {
    static constexpr const Type* value = &unsignedType;
};
template <>
struct TypeOf<Octets> {
    static constexpr const Type* value = &octetStringType;
};
template <>
struct TypeOf<UTF8String> {
    static constexpr const Type* value = &utf8StringType;
};
template <>
struct TypeOf<PrintableString> {
    static constexpr const Type* value = &printableStringType;
};
template <>
struct TypeOf<IA5String> {
    static constexpr const Type* value = &ia5StringType;
};
template <>
struct TypeOf<GeneralizedTime> {
    static constexpr const Type* value = &generalizedTimeType;
};
template <>
struct TypeOf<BIT_STRING> {
    static constexpr const Type* value = &bitStringType;
};
template <>
struct TypeOf<Null> {
    static constexpr const Type* value = &nullType;
};
template <>
struct TypeOf<OBJECT_IDENTIFIER> {
    static constexpr const Type* value = &objectIdentifierType;
};
template <>
struct TypeOf<OpenData> {
    static constexpr const Type* value = &openType;
};

template <class T>
struct TOVI_API TypeOf<std::vector<T>> {
    using List = std::vector<T>;
    static constexpr ListAccess access{
        [](const void* list) { return as<List>(list).size(); },
        [](const void* list, std::size_t i) -> const void* { return &as<List>(list)[i]; },
        [](void* list) -> void* { return &as<List>(list).emplace_back(); }};
    static constexpr Type type{
        .name = {},
        .kind = Kind::list,
        .tag = universal(16),
        .form = Form::constructed,
        .decode = decodeList,
        .encode = encodeList,
        .measure = [](const void* list) { return std::int64_t(as<List>(list).size()); },
        .element = TypeOf<T>::value,
        .list = &access,
        .lifetime = &lifetimeOf<List>};
    static constexpr const Type* value = &type;
};

}  // namespace ASN1
