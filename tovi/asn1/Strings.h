#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"

namespace ASN1 {

/// An OCTET STRING is its octets.
using OCTET_STRING = Octets;

/// A character string as the octets that are on the wire, whatever they are; UTF-8 is not enforced.
template <std::uint32_t TagNumber>
struct TOVI_API CharacterString : Octets {
    using Octets::Octets;
    using Octets::operator=;
    CharacterString() = default;
    /// From the octets or the characters given, as they are.
    CharacterString(const Octets& octets) : Octets(octets) {}
    CharacterString(std::string_view text) { *this = text; }
    CharacterString(const char* text) : CharacterString(std::string_view(text)) {}
    CharacterString& operator=(std::string_view text) {
        assign(View(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
        return *this;
    }
    CharacterString& operator=(const char* text) { return *this = std::string_view(text); }
    /// The octets as characters; lives as long as the string is not changed.
    std::string_view text() const { return {reinterpret_cast<const char*>(data()), size()}; }
};

/// The character strings that the module uses, by their universal tag.
using UTF8String = CharacterString<12>;
using PrintableString = CharacterString<19>;
using IA5String = CharacterString<22>;

/// A time as its characters, "20250101000000Z" (X.680 clause 46 of 2008).
using GeneralizedTime = CharacterString<24>;

/// One whole element of a type that is not looked into: header and content, as they came.
struct TOVI_API OpenData : Octets {
    using Octets::Octets;
    using Octets::operator=;
    OpenData() = default;
    /// One element in its encoding.
    OpenData(const Octets& octets) : Octets(octets) {}
};

/// Characters of UTF-8 text; octets when they are not UTF-8 (RFC 3629).
TOVI_API std::size_t countCharacters(View octets);
/// Whether the octets are UTF-8 text (RFC 3629).
TOVI_API bool isUTF8(View octets);

}  // namespace ASN1
