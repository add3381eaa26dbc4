#include "tovi/asn1/Strings.h"

namespace ASN1 {

namespace {

/// Octets of the character that `rest` begins with, 0 when it begins with none (RFC 3629, clause
/// 4).
std::size_t characterSize(View rest) {
    const std::uint8_t lead = rest[0];
    if (lead < 0x80) return 1;
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || rest.size() < size) return 0;
    for (std::size_t i = 1; i < size; ++i)
        if ((rest[i] & 0xC0) != 0x80) return 0;
    // Overlong forms, surrogates, and what lies beyond U+10FFFF.
    const std::uint8_t second = rest[1];
    const bool wrong = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                       (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return wrong ? 0 : size;
}

constexpr std::size_t notText = ~std::size_t{0};

std::size_t charactersOrNotText(View octets) {
    std::size_t count = 0;
    while (!octets.empty()) {
        const std::size_t size = characterSize(octets);
        if (size == 0) return notText;
        octets = octets.subspan(size);
        ++count;
    }
    return count;
}

}  // namespace

bool isUTF8(View octets) { return charactersOrNotText(octets) != notText; }

std::size_t countCharacters(View octets) {
    const std::size_t count = charactersOrNotText(octets);
    return count == notText ? octets.size() : count;
}

}  // namespace ASN1
