#pragma once

#include <optional>
#include <type_traits>
#include <variant>

#include "tovi/asn1/Builtin.h"
#include "tovi/asn1/Expected.h"
#include "tovi/asn1/Values.h"

/// The vocabulary of the type tables. A row gives a C++ member and its ASN.1 spelling, once:
///
///     static constexpr Row members[] = {
///         mandatory<&Path::efidOrPath>("efidOrPath"),
///         optional<&Path::index>("index").range(0, ubIndex),
///         optional<&Path::length>("length").tagged(0).range(0, ubIndex),
///     };
namespace ASN1::schema {

/// A Member while it is being written down.
struct Row : Member {
    constexpr Row(const Member& member) : Member(member) {}

    /// [number] in the notation of a module with implicit tags.
    constexpr Row tagged(std::uint32_t number) const { return withTag(context(number), false); }
    /// [number] EXPLICIT, and every tag on a parameter of a parameterized type (X.680 31.2.7).
    constexpr Row explicitly(std::uint32_t number) const { return withTag(context(number), true); }
    /// [APPLICATION number]
    constexpr Row application(std::uint32_t number) const {
        return withTag(ASN1::application(number), false);
    }
    constexpr Row range(std::int64_t low, std::int64_t high) const {
        Row row = *this;
        row.bounds = {low, high};
        return row;
    }
    constexpr Row size(std::int64_t low, std::int64_t high = Bounds::highest) const {
        return range(low, high);
    }
    /// Wider bounds than those of the notation, for cards in use. isValid() goes by these.
    constexpr Row accepting(std::int64_t low, std::int64_t high) const {
        Row row = *this;
        row.accepted = {low, high};
        return row;
    }
    /// Another type of the same C++ representation.
    constexpr Row as(const Type& other) const {
        Row row = *this;
        row.type = &other;
        return row;
    }
    /// How the notation spells the type, where the type's name does not say it.
    constexpr Row spelled(std::string_view text) const {
        Row row = *this;
        row.notation = text;
        return row;
    }
    /// Not part of the notation: read for the sake of cards of another edition.
    constexpr Row kindness() const {
        Row row = *this;
        row.isKindness = true;
        return row;
    }

private:
    constexpr Row withTag(Tag number, bool isExplicit) const {
        Row row = *this;
        row.tag = number;
        row.explicitTag = isExplicit;
        return row;
    }
};

template <auto>
struct Field;
template <class O, class S, S O::*F>
struct Field<F> {
    using Object = O;
    using Slot = S;
    static void* locate(void* object) { return &(static_cast<O*>(object)->*F); }
};
template <auto F>
using Slot = typename Field<F>::Slot;

/// The described type inside a C++ member.
template <class S>
struct ContentOf {
    using type = S;
};
template <class T>
struct ContentOf<std::optional<T>> {
    using type = T;
};
template <class T>
struct ContentOf<Boxed<T>> {
    using type = T;
};
template <class T>
struct ContentOf<Expected<T>> {
    using type = T;
};
template <class S>
inline constexpr const Type* contentType = TypeOf<typename ContentOf<S>::type>::value;

// One SlotAccess for all members of the same C++ type keeps object code and compile time small.
template <class S>
inline constexpr SlotAccess plainSlot{[](const void* s) { return s; }, [](void* s) { return s; },
                                      [](void* s) { ASN1::as<S>(s) = S(); }};
template <class S>
inline constexpr SlotAccess expectedSlot{
    [](const void* s) -> const void* { return ASN1::as<S>(s).isLeftOut() ? nullptr : s; },
    [](void* s) -> void* { return ASN1::as<S>(s).setLeftOut(false), s; },
    [](void* s) { ASN1::as<S>(s).clear(), ASN1::as<S>(s).setLeftOut(true); }};
template <class S>
inline constexpr SlotAccess optionalSlot{
    [](const void* s) -> const void* { return ASN1::as<S>(s) ? &*ASN1::as<S>(s) : nullptr; },
    [](void* s) -> void* { return &ASN1::as<S>(s).emplace(); },
    [](void* s) { ASN1::as<S>(s).reset(); }};
template <class S, auto Default>
inline constexpr SlotAccess defaultedSlot{
    optionalSlot<S>.get, [](void* s) -> void* { return &ASN1::as<S>(s).emplace(Default()); },
    optionalSlot<S>.clear,
    [](const void* s) { return ASN1::as<S>(s) && *ASN1::as<S>(s) == Default(); }};
template <class V, std::size_t I>
inline constexpr SlotAccess alternativeSlot{
    [](const void* s) -> const void* { return unboxedOrNull(std::get_if<I>(&ASN1::as<V>(s))); },
    [](void* s) -> void* { return &unboxed(ASN1::as<V>(s).template emplace<I>()); },
    [](void* s) { ASN1::as<V>(s) = std::monostate(); }};

template <auto F>
constexpr Row row(std::string_view name, Presence presence, const SlotAccess& slot) {
    return Member{.name = name,
                  .type = contentType<Slot<F>>,
                  .presence = presence,
                  .locate = Field<F>::locate,
                  .slot = &slot};
}
template <auto F>
constexpr Row mandatory(std::string_view name) {
    return row<F>(name, Presence::mandatory, plainSlot<Slot<F>>);
}
/// Mandatory in the notation; may be missing on cards written to ISO/IEC 7816-15.
template <auto F>
constexpr Row expected(std::string_view name) {
    return row<F>(name, Presence::expected, expectedSlot<Slot<F>>);
}
template <auto F>
constexpr Row optional(std::string_view name) {
    return row<F>(name, Presence::optional, optionalSlot<Slot<F>>);
}
/// `Default` is a function that gives the DEFAULT value, `text` its notation.
template <auto F, auto Default>
constexpr Row defaulted(std::string_view name, std::string_view text) {
    Row defaulted = row<F>(name, Presence::defaulted, defaultedSlot<Slot<F>, Default>);
    defaulted.defaultText = text;
    return defaulted;
}
/// The "..." of a SEQUENCE: keeps the elements this table does not know.
template <auto F>
constexpr Row extension() {
    static_assert(std::is_same_v<Slot<F>, Unknown>);
    return Member{.name = "...",
                  .type = nullptr,
                  .presence = Presence::extension,
                  .locate = Field<F>::locate,
                  .slot = &plainSlot<Unknown>};
}
template <auto F, std::size_t I>
constexpr Row alternative(std::string_view name) {
    return Member{.name = name,
                  .type = contentType<std::variant_alternative_t<I, Slot<F>>>,
                  .presence = Presence::alternative,
                  .alternative = static_cast<std::uint8_t>(I),
                  .locate = Field<F>::locate,
                  .slot = &alternativeSlot<Slot<F>, I>};
}
/// The "..." of a CHOICE: keeps the element of an alternative this table does not know.
template <auto F, std::size_t I>
constexpr Row extension() {
    static_assert(std::is_same_v<std::variant_alternative_t<I, Slot<F>>, OpenData>);
    Row unknown = alternative<F, I>("...");
    unknown.presence = Presence::extension;
    return unknown;
}

constexpr const Member* extensionOf(std::span<const Member> members) {
    for (const Member& member : members)
        if (member.isExtension()) return &member;
    return nullptr;
}

template <class T>
constexpr Type sequence(std::string_view name, std::span<const Member> members,
                        std::span<const Type* const> parameters = {}) {
    return {.name = name,
            .kind = Kind::sequence,
            .tag = universal(16),
            .form = Form::constructed,
            .decode = decodeSequence,
            .encode = encodeSequence,
            .members = members,
            .extension = extensionOf(members),
            .parameters = parameters,
            .lifetime = &lifetimeOf<T>};
}
template <class T>
constexpr Type choice(std::string_view name, std::span<const Member> members,
                      std::span<const Type* const> parameters = {}) {
    return {.name = name,
            .kind = Kind::choice,
            .form = Form::either,
            .decode = decodeChoice,
            .encode = encodeChoice,
            .members = members,
            .extension = extensionOf(members),
            .selection = [](const void* value) { return ASN1::as<T>(value).selection(); },
            .parameters = parameters,
            .lifetime = &lifetimeOf<T>};
}
template <class T>
constexpr Type namedBits(std::string_view name, std::span<const NamedNumber> names) {
    Type type = builtin<T>(name, Kind::bitString, 3, Form::either, decodeBits, encodeNamedBits);
    type.names = names;
    return type;
}
enum class Growth : bool { closed, extensible };
template <class T>
constexpr Type enumerated(std::string_view name, std::span<const NamedNumber> names,
                          Growth growth = Growth::closed) {
    Type type =
        builtin<T>(name, Kind::enumerated, 10, Form::primitive, decodeEnumerated, encodeEnumerated);
    type.names = names;
    type.extensible = growth == Growth::extensible;
    return type;
}
/// An INTEGER written in place, with names for numbers and an extensible constraint, which excludes
/// none.
constexpr Type numbered(std::span<const NamedNumber> names, std::string_view constraint) {
    Type type = integerType;
    type.names = names;
    type.constraint = constraint;
    return type;
}
/// A SEQUENCE or SET that is not looked into: the content is kept as it came.
template <class T>
constexpr Type opaque(std::string_view name) {
    return builtin<T>(name, Kind::opaque, 16, Form::constructed, decodeOpaque, encodeOctets,
                      countOctets);
}
/// Another name for a type, perhaps with bounds of its own; T is its C++ type.
template <class T>
constexpr Type derived(std::string_view name, const Type& base, Bounds bounds = {},
                       Bounds accepted = {}) {
    Type type = base;
    type.name = name;
    type.bounds = bounds;
    type.accepted = accepted;
    type.lifetime = &lifetimeOf<T>;
    return type;
}
constexpr Type named(std::string_view name, Type type) {
    type.name = name;
    return type;
}
/// SET OF in place of SEQUENCE OF.
template <class List>
inline constexpr Type setOf = [] {
    Type type = *TypeOf<List>::value;
    type.tag = universal(17);
    return type;
}();

}  // namespace ASN1::schema
