#include "tools/Html.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "tools/Text.h"

namespace tovi {
namespace {

bool beginsCharacter(char octet) { return (static_cast<unsigned char>(octet) & 0xC0) != 0x80; }

/// Behind these a line feed would be seen, as a space.
bool isWithinText(std::string_view tag) { return tag == "a" || tag == "span"; }

}  // namespace

Html::Html() : document_("<!DOCTYPE html>\n") {}

Html& Html::open(std::string_view tag, Attributes attributes) {
    beginTag(tag, attributes);
    open_.push_back(tag);
    return *this;
}

Html& Html::close() {
    document_ += "</";
    document_ += open_.back();
    document_ += isWithinText(open_.back()) ? ">" : ">\n";
    open_.pop_back();
    return *this;
}

Html& Html::empty(std::string_view tag, Attributes attributes) {
    beginTag(tag, attributes);
    document_ += '\n';
    return *this;
}

Html& Html::text(std::string_view text) {
    escape(text);
    return *this;
}

Html& Html::element(std::string_view tag, Attributes attributes, std::string_view text) {
    beginTag(tag, attributes);
    escape(text);
    document_ += "</";
    document_ += tag;
    document_ += '>';
    return *this;
}

Html& Html::style(std::string_view css) {
    document_ += "<style>";
    document_ += css;
    document_ += "</style>\n";
    return *this;
}

std::string Html::finish() {
    while (!open_.empty()) close();
    return std::exchange(document_, {});
}

void Html::beginTag(std::string_view tag, Attributes attributes) {
    document_ += '<';
    document_ += tag;
    for (const Attribute& attribute : attributes) {
        document_ += ' ';
        document_ += attribute.name;
        document_ += "=\"";
        escape(attribute.value);
        document_ += '"';
    }
    document_ += '>';
}

void Html::escape(std::string_view text) {
    for (const char character : forTerminal(text)) {
        switch (character) {
            case '&':
                document_ += "&amp;";
                break;
            case '<':
                document_ += "&lt;";
                break;
            case '>':
                document_ += "&gt;";
                break;
            case '"':
                document_ += "&quot;";
                break;
            case '\'':
                document_ += "&#39;";
                break;
            default:
                document_ += character;
        }
    }
}

std::string shortened(std::string_view text, std::size_t characters) {
    if (text.size() <= characters) return std::string(text);
    const auto all = static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char octet) { return beginsCharacter(octet); }));
    if (all <= characters) return std::string(text);
    std::size_t end = 0;
    for (std::size_t begun = 0; end < text.size(); ++end) {
        if (beginsCharacter(text[end]) && begun++ == characters) break;
    }
    return fmt::format("{}… ({} characters)", text.substr(0, end), all);
}

std::string counted(std::size_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

}  // namespace tovi
