#include "tools/Text.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>

namespace tovi {
namespace {

/// The first character of a text that may be anything.
struct Character {
    std::uint32_t value = 0xFFFD;
    std::size_t size = 1;  ///< octets that it, or the piece that is none, takes
    bool isValid = false;
};

/// What the first octet says of a character of two to four octets (Unicode 15, table 3-7).
struct Lead {
    std::uint8_t first, last;
    std::uint8_t more;       // octets that follow
    std::uint8_t low, high;  // range of the second octet
};
constexpr Lead leads[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF}, {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF}, {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

constexpr std::uint8_t octetAt(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

Character longCharacter(std::string_view text, const Lead& lead) {
    std::uint32_t value = octetAt(text, 0) & (0x3Fu >> lead.more);
    std::size_t size = 1;
    for (; size <= lead.more; ++size) {
        if (size == text.size()) return {0xFFFD, size, false};
        const std::uint8_t octet = octetAt(text, size);
        const std::uint8_t low = size == 1 ? lead.low : 0x80;
        const std::uint8_t high = size == 1 ? lead.high : 0xBF;
        if (octet < low || octet > high) return {0xFFFD, size, false};
        value = value << 6 | (octet & 0x3Fu);
    }
    return {value, size, true};
}

Character firstCharacter(std::string_view text) {
    const std::uint8_t first = octetAt(text, 0);
    if (first < 0x80) return {first, 1, true};
    for (const Lead& lead : leads) {
        if (first >= lead.first && first <= lead.last) return longCharacter(text, lead);
    }
    return {};
}

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

bool isControl(std::uint32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

/// Line and paragraph separators, marks and overrides of direction, and invisible characters that
/// make two labels look alike.
bool isDeceptive(std::uint32_t character) {
    return (character >= 0x200B && character <= 0x200F) ||
           (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2060 && character <= 0x2069) || character == 0x061C ||
           character == 0xFEFF;
}

/// East Asian characters take two columns, combining ones none; the coarse ranges are enough to
/// keep a table straight.
std::size_t columns(std::uint32_t character) {
    if (character >= 0x300 && character <= 0x36F) return 0;
    const bool isWide = (character >= 0x1100 && character <= 0x115F) ||
                        (character >= 0x2E80 && character <= 0xA4CF) ||
                        (character >= 0xAC00 && character <= 0xD7A3) ||
                        (character >= 0xF900 && character <= 0xFAFF) ||
                        (character >= 0xFE30 && character <= 0xFE6F) ||
                        (character >= 0xFF00 && character <= 0xFF60) ||
                        (character >= 0x1F300 && character <= 0x1FAFF) ||
                        (character >= 0x20000 && character <= 0x3FFFD);
    return isWide ? 2 : 1;
}

std::optional<unsigned> digit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    return std::nullopt;
}

}  // namespace

std::string toHex(ASN1::View octets) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * octets.size());
    for (const std::uint8_t octet : octets) {
        text += digits[octet >> 4];
        text += digits[octet & 0xF];
    }
    return text;
}

std::optional<Blob> fromHex(std::string_view digits) {
    if (digits.size() % 2 != 0) return std::nullopt;
    Blob octets;
    octets.reserve(digits.size() / 2);
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const auto high = digit(digits[i]), low = digit(digits[i + 1]);
        if (!high || !low) return std::nullopt;
        octets.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
    }
    return octets;
}

std::string toUtf8(ASN1::View octets) {
    std::string_view rest(reinterpret_cast<const char*>(octets.data()), octets.size());
    std::string text;
    text.reserve(rest.size());
    while (!rest.empty()) {
        const Character character = firstCharacter(rest);
        text += character.isValid ? rest.substr(0, character.size) : replacement;
        rest.remove_prefix(character.size);
    }
    return text;
}

std::string forTerminal(std::string_view text, Lines lines) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.isValid) {
            shown += replacement;
        } else if (character.value == '\n' && lines == Lines::keep) {
            shown += '\n';
        } else if (isControl(character.value)) {
            shown += fmt::format("\\x{:02X}", character.value);
        } else if (isDeceptive(character.value)) {
            shown += fmt::format("\\u{:04X}", character.value);
        } else {
            shown += text.substr(0, character.size);
        }
        text.remove_prefix(character.size);
    }
    return shown;
}

std::string jsonForTerminal(std::string_view json) {
    std::string shown;
    shown.reserve(json.size());
    while (!json.empty()) {
        const Character character = firstCharacter(json);
        if (character.isValid && character.value >= 0x7F && character.value < 0xA0) {
            shown += fmt::format("\\u{:04x}", character.value);
        } else {
            shown += json.substr(0, character.size);
        }
        json.remove_prefix(character.size);
    }
    return shown;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        width += columns(character.value);
        text.remove_prefix(character.size);
    }
    return width;
}

}  // namespace tovi
