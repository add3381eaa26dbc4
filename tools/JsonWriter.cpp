#include "tools/JsonWriter.h"

#include <ostream>

#include "tools/Text.h"

namespace tovi {
namespace {

constexpr int spaces = 2;  // of one level

/// The value in a document whose lines at its level begin with `levels` times the spaces. A line
/// feed within a string is escaped, so every one ends a line.
std::string dumped(const Json& value, int levels) {
    const std::string text =
        jsonForTerminal(value.dump(spaces, ' ', false, Json::error_handler_t::replace));
    const std::string indent(static_cast<std::size_t>(levels * spaces), ' ');
    std::string lines;
    lines.reserve(text.size());
    for (const char character : text) {
        lines += character;
        if (character == '\n') lines += indent;
    }
    return lines;
}

}  // namespace

void JsonWriter::addName(std::string_view name) {
    text_ += isFirstMember_ ? "\n  " : ",\n  ";
    text_ += Json(name).dump() + ": ";
    isFirstMember_ = false;
}

void JsonWriter::add(std::string_view name, const Json& value) {
    addName(name);
    text_ += dumped(value, 1);
}

void JsonWriter::beginList(std::string_view name) {
    addName(name);
    text_ += '[';
    isFirstElement_ = true;
}

void JsonWriter::addElement(const Json& value) {
    text_ += isFirstElement_ ? "\n    " : ",\n    ";
    text_ += dumped(value, 2);
    isFirstElement_ = false;
}

void JsonWriter::endList() { text_ += isFirstElement_ ? "]" : "\n  ]"; }

void JsonWriter::finish() {
    text_ += isFirstMember_ ? "}\n" : "\n}\n";
    call_.checkInterrupt();
    std::ostream& out = call_.console().out;
    out << text_ << std::flush;
    if (!out) throw Failure("the output cannot be written", call_.operation());
}

}  // namespace tovi
