#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "tovi/card/CardDescription.h"

namespace tovi {

/// What one line of CARD says; nothing for a blank line or a comment.
using CardLine = std::variant<std::monostate, FileDescription, PinDescription>;

/// Reads a line without its line end. Returns what is wrong with its spelling, "found 'x', expected
/// y", or an empty text; what it says is not checked against bounds or other lines.
[[nodiscard]] std::string parseCardLine(std::string_view text, CardLine& line);

/// The line for a description, without line end.
std::string formatCardLine(const FileDescription& file);
std::string formatCardLine(const PinDescription& pin);

/// "'tree'": what was found, for a message. Cut short and made printable, since it may be anything.
std::string inQuotes(std::string_view found);

}  // namespace tovi
