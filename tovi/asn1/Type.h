#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "tovi/Export.h"
#include "tovi/asn1/Boxed.h"
#include "tovi/asn1/Reader.h"
#include "tovi/asn1/Strings.h"
#include "tovi/asn1/Tag.h"
#include "tovi/asn1/Unknown.h"
#include "tovi/asn1/Writer.h"

/// How ASN.1 types are described: one constant Type for each, whose Member rows stand for the lines
/// of its notation. One interpreter reads these tables to decode, encode, check, number, name and
/// print.
namespace ASN1 {

struct Member;

/// The object behind a pointer whose type the tables guarantee.
template <class T>
const T& as(const void* object) {
    return *static_cast<const T*>(object);
}
template <class T>
T& as(void* object) {
    return *static_cast<T*>(object);
}

enum class Kind : std::uint8_t {
    boolean,
    integer,          ///< unbounded, an INTEGER
    unsignedInteger,  ///< bounded to non-negative values, a std::uint64_t
    enumerated,
    bitString,
    octetString,
    characterString,
    null,
    objectIdentifier,
    open,    ///< any one element, an OpenData
    opaque,  ///< content of a fixed tag that is not looked into, kept as it came
    sequence,
    choice,
    list,  ///< SEQUENCE OF and SET OF
};

enum class Form : std::uint8_t { primitive, constructed, either };

/// A number with a name: a bit of a BIT STRING, a value of an ENUMERATED or an INTEGER.
struct TOVI_API NamedNumber {
    std::string_view name;
    std::int64_t number;
};

/// The number of the "..." among the names of an ENUMERATED.
constexpr std::int64_t noNumber = std::numeric_limits<std::int64_t>::min();

struct TOVI_API Bounds {
    static constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    static constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
    std::int64_t low = lowest;
    std::int64_t high = highest;

    constexpr bool areSet() const { return low != lowest || high != highest; }
    constexpr bool hold(std::int64_t value) const { return low <= value && value <= high; }
};

/// How the interpreter walks a SEQUENCE OF without knowing its element type.
struct TOVI_API ListAccess {
    std::size_t (*size)(const void* list);
    const void* (*at)(const void* list, std::size_t index);
    void* (*append)(void* list);
};

/// How the interpreter makes, moves and destroys values of a C++ type it does not know.
struct TOVI_API Lifetime {
    std::size_t size, alignment;
    void (*construct)(void* room);
    void (*destroy)(void* object);
    void (*copyAssign)(void* to, const void* from);
    void (*moveAssign)(void* to, void* from);
};

/// Constant description of one ASN.1 type. In all functions `value` points at the matching C++
/// object.
struct TOVI_API Type {
    std::string_view name;  ///< as spelled in the ASN.1 module; empty for a type written in place
    Kind kind = Kind::open;
    Tag tag = {};  ///< Tag::none for CHOICE and open types
    Form form = Form::primitive;
    /// Decodes into a fresh value.
    bool (*decode)(const Type&, const Element&, void* value, Reader&) = nullptr;
    /// Writes the content; of an untagged type the whole element.
    void (*encode)(const Type&, const void* value, Writer&) = nullptr;
    /// What bounds refer to: the value of an INTEGER, the size of all others.
    std::int64_t (*measure)(const void* value) = nullptr;
    Bounds bounds = {};    ///< of this type wherever it is used
    Bounds accepted = {};  ///< wider than `bounds` where cards in use are
    std::span<const Member> members = {};
    const Member* extension = nullptr;  ///< the "..." among the members, nullptr without one
    std::size_t (*selection)(const void* value) = nullptr;  ///< of a CHOICE: index of the variant
    const Type* element = nullptr;                          ///< of a list
    const ListAccess* list = nullptr;
    std::span<const NamedNumber> names = {};
    bool extensible = false;           ///< "..." of an ENUMERATED
    std::string_view constraint = {};  ///< notation of a constraint that excludes nothing
    /// Where a value keeps an element of another form than the notation has, which ISO/IEC 7816-15
    /// allows in its place; nullptr for types without that allowance.
    Boxed<OpenData>& (*otherForm)(void* value) = nullptr;
    std::span<const Tag> otherTags = {};  ///< what such an element begins with; empty: with any tag
    std::span<const Type* const> parameters = {};  ///< actual parameters of a parameterized type
    const Lifetime* lifetime = nullptr;

    bool isUntagged() const { return tag.isNone(); }
    /// Whether an element with this header can be a value of the type, members not looked at.
    bool begins(Tag first, bool constructed) const {
        if (tag == first && fitsForm(constructed)) return true;
        return (tag.isNone() || otherForm) && mayBegin(first, constructed);
    }
    bool fitsForm(bool constructed) const {
        return form == Form::either || (form == Form::constructed) == constructed;
    }
    /// The element of another form that `value` holds instead of a value, nullptr without one.
    const OpenData* otherFormOf(const void* value) const;
    constexpr const Bounds& acceptedBounds() const { return accepted.areSet() ? accepted : bounds; }

private:
    bool mayBegin(Tag first, bool constructed) const;
};

/// How the interpreter handles the C++ member behind a row.
struct TOVI_API SlotAccess {
    const void* (*get)(const void* slot);  ///< the value, nullptr while absent
    void* (*make)(void* slot);             ///< brings a fresh value into being
    void (*clear)(void* slot);             ///< makes it absent
    bool (*isDefault)(const void* slot) = nullptr;
};

enum class Presence : std::uint8_t {
    mandatory,
    expected,  ///< mandatory in PKCS#15 v1.1, optional in ISO/IEC 7816-15: may be missing when read
    optional,
    defaulted,
    alternative,  ///< of a CHOICE
    extension,    ///< "...": keeps the octets of what the table does not know
};

/// One row of a SEQUENCE or CHOICE table.
struct TOVI_API Member {
    std::string_view name;  ///< as spelled in the ASN.1 module
    const Type* type;
    Tag tag = {};  ///< in front of the type, or Tag::none
    bool explicitTag = false;
    bool isKindness = false;  ///< not in the notation: cards of another edition write it
    Presence presence = Presence::mandatory;
    std::uint8_t alternative = 0;  ///< index in the variant of a CHOICE
    Bounds bounds = {};            ///< value range of an INTEGER, size of the rest
    Bounds accepted = {};          ///< wider than `bounds` where cards in use are
    std::string_view defaultText = {};
    std::string_view notation = {};  ///< the type's notation where its name does not say it
    void* (*locate)(void* object) = nullptr;
    const SlotAccess* slot = nullptr;

    const void* get(const void* object) const {
        return slot->get(locate(const_cast<void*>(object)));
    }
    void* make(void* object) const { return slot->make(locate(object)); }
    void clear(void* object) const { slot->clear(locate(object)); }
    /// The value DER has to show, nullptr when it is absent or equals its DEFAULT (X.690 11.5).
    const void* getEncoded(const void* object) const {
        const void* at = locate(const_cast<void*>(object));
        return slot->isDefault && slot->isDefault(at) ? nullptr : slot->get(at);
    }
    constexpr bool isExtension() const { return presence == Presence::extension; }
    bool isOptional() const {
        return presence == Presence::optional || presence == Presence::defaulted;
    }
    /// A tag on an untagged type is explicit even where nobody says so (X.680 31.2.7).
    bool isExplicit() const { return explicitTag || (!tag.isNone() && type->isUntagged()); }
    bool begins(Tag first, bool constructed) const {
        if (tag.isNone()) return type->begins(first, constructed);
        return tag == first && (isExplicit() ? constructed : type->fitsForm(constructed));
    }
    constexpr const Bounds& acceptedBounds() const { return accepted.areSet() ? accepted : bounds; }
};

// The interpreter, for the tables.
TOVI_API bool decodeSequence(const Type&, const Element&, void*, Reader&);
TOVI_API bool decodeChoice(const Type&, const Element&, void*, Reader&);
TOVI_API bool decodeList(const Type&, const Element&, void*, Reader&);
TOVI_API void encodeSequence(const Type&, const void*, Writer&);
TOVI_API void encodeChoice(const Type&, const void*, Writer&);
TOVI_API void encodeList(const Type&, const void*, Writer&);

/// The row at `position`, extension points not counted; nullptr past the last one.
TOVI_API const Member* memberAt(const Type& type, std::size_t position);
/// The row at `optionalIndex` among the members that may be left out; nullptr past the last one.
TOVI_API const Member* optionalAt(const Type& type, std::size_t optionalIndex);
/// The row named `name`, nullptr without one.
TOVI_API const Member* findMember(const Type& type, std::string_view name);
/// The row of the alternative a CHOICE holds, nullptr while it holds none.
TOVI_API const Member* chosen(const Type& type, const void* value);

}  // namespace ASN1
