#pragma once

#include <cstdint>
#include <string>

namespace ASN1 {

/// Class and number of a tag. The constructed bit is kept apart: a BER sender may choose the form of a
/// string (X.690 8.7.1).
struct Tag {
    enum Class : std::uint8_t {
        universal = 0x00,
        application = 0x40,
        context = 0x80,
        privateUse = 0xC0,
        none = 0xFF,  ///< of types without a tag of their own: CHOICE and open types
    };
    Class cls = none;
    std::uint32_t number = 0;

    constexpr bool isNone() const { return cls == none; }
    friend constexpr bool operator==(Tag, Tag) = default;
};

constexpr Tag universal(std::uint32_t number) { return {Tag::universal, number}; }
constexpr Tag application(std::uint32_t number) { return {Tag::application, number}; }
constexpr Tag context(std::uint32_t number) { return {Tag::context, number}; }

/// The tag as the notation has it, "[3]", "[APPLICATION 15]"; a universal one by the name of its type,
/// "OCTET STRING".
std::string toString(Tag tag);

}  // namespace ASN1
