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

JsonWriter::JsonWriter(Invocation& call) : call_(call) {
    call_.checkInterrupt();
    call_.console().out << '{';
}

void JsonWriter::addName(std::string_view name) {
    call_.console().out << (isFirstMember_ ? "\n  " : ",\n  ") << Json(name).dump() << ": ";
    isFirstMember_ = false;
}

void JsonWriter::add(std::string_view name, const Json& value) {
    addName(name);
    call_.console().out << dumped(value, 1);
}

void JsonWriter::beginList(std::string_view name) {
    addName(name);
    call_.console().out << '[';
    isFirstElement_ = true;
}

void JsonWriter::addElement(const Json& value) {
    call_.console().out << (isFirstElement_ ? "\n    " : ",\n    ") << dumped(value, 2);
    isFirstElement_ = false;
}

void JsonWriter::endList() { call_.console().out << (isFirstElement_ ? "]" : "\n  ]"); }

void JsonWriter::finish() {
    std::ostream& out = call_.console().out;
    out << (isFirstMember_ ? "}\n" : "\n}\n") << std::flush;
    if (!out) throw Failure("the output cannot be written", call_.operation());
}

}  // namespace tovi
