#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Upper-case hexadecimal digits without spaces.
std::string toHex(ASN1::View octets);

/// The octets of an even number of hexadecimal digits in either case; nothing for any other text.
std::optional<Blob> fromHex(std::string_view digits);

/// The octets as UTF-8 text. What is not UTF-8 becomes U+FFFD, one for each longest piece that
/// could have begun a character.
std::string toUtf8(ASN1::View octets);

/// Whether a terminal shows the text as it is or acts upon it.
enum class Lines : std::uint8_t { escape, keep };

/// The text fit for a terminal: control characters, and those that turn the direction of writing,
/// stand as \x1B or \u202E, octets that are not UTF-8 as U+FFFD. Line feeds stay with Lines::keep.
std::string forTerminal(std::string_view text, Lines lines = Lines::escape);

/// JSON text with DEL and the control characters U+0080 to U+009F, which JSON allows, written as
/// \u007F and so on: they stand within strings only.
std::string jsonForTerminal(std::string_view json);

/// How many columns a terminal needs for the text.
std::size_t displayWidth(std::string_view text);

}  // namespace tovi
