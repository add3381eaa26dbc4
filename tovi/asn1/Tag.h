#pragma once

#include <cstdint>
#include <string>

#include "tovi/Export.h"

namespace ASN1 {

/// Class and number of a tag. The constructed bit is kept apart: a BER sender may choose the form
/// of a string (X.690 8.7.1).
class TOVI_API Tag {
public:
    /// The class of a tag, as the two high bits of its first octet (X.690 8.1.2.2).
    enum Class : std::uint8_t {
        universal = 0x00,
        application = 0x40,
        context = 0x80,
        privateUse = 0xC0,
    };
    /// The most bits of a tag number.
    static constexpr unsigned numberBits = 28;

    /// No tag: that of types without one of their own, CHOICE and open types.
    constexpr Tag() = default;
    /// `number` has at most numberBits bits.
    constexpr Tag(Class cls, std::uint32_t number)
        : code_(static_cast<std::uint32_t>(cls) << 24 | number) {}

    /// Whether there is no tag; only where there is one, it has a class and a number.
    constexpr bool isNone() const { return code_ == none; }
    constexpr Class cls() const { return static_cast<Class>(code_ >> 24 & 0xC0); }
    constexpr std::uint32_t number() const { return code_ & ((1u << numberBits) - 1); }
    friend constexpr bool operator==(Tag, Tag) = default;

private:
    static constexpr std::uint32_t none = ~std::uint32_t{0};

    std::uint32_t code_ = none;  ///< one number, because tags are compared more than anything else
};

/// The tag with that number in the class of the function's name.
constexpr Tag universal(std::uint32_t number) { return {Tag::universal, number}; }
constexpr Tag application(std::uint32_t number) { return {Tag::application, number}; }
constexpr Tag context(std::uint32_t number) { return {Tag::context, number}; }

/// The tag as the notation has it, "[3]", "[APPLICATION 15]"; a universal one by the name of its
/// type, "OCTET STRING".
TOVI_API std::string toString(Tag tag);

}  // namespace ASN1
