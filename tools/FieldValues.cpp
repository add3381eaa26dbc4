#include "tools/FieldValues.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "tools/FieldNames.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

/// The arcs that all of `text` is; none when it is no object identifier.
std::optional<Blob> arcsOf(std::string_view text) {
    Blob arcs;
    for (bool isFirst = true; isFirst || !text.empty(); isFirst = false) {
        const std::size_t dot = std::min(text.find('.'), text.size());
        std::uint32_t arc = 0;
        const auto [rest, error] = std::from_chars(text.data(), text.data() + dot, arc);
        if (dot == 0 || rest != text.data() + dot || error != std::errc()) return std::nullopt;
        for (int shift = 24; shift >= 0; shift -= 8) {
            arcs.push_back(static_cast<std::uint8_t>(arc >> shift));
        }
        const bool isLast = dot == text.size();
        text.remove_prefix(isLast ? dot : dot + 1);
        if (!isLast && text.empty()) return std::nullopt;
    }
    return arcs;
}

}  // namespace

Blob textField(const JsonPlace& place) {
    if (place.isNull()) return {};
    const std::string text = place.text();
    return Blob(text.begin(), text.end());
}

Blob octetsField(const JsonPlace& place) { return place.isNull() ? Blob() : place.octets(); }

PKCS15Path pathField(const JsonPlace& place) {
    if (place.isNull()) return {};
    if (!place.json().is_object()) place.fail("{\"path\": ..., \"index\": ..., \"length\": ...}");
    PKCS15Path path;
    for (const auto& [name, value] : place.json().items()) {
        const JsonPlace member = place.at(name);
        if (name == "path") {
            path.path = member.octets();
        } else if (name == "index") {
            path.index = static_cast<std::uint16_t>(member.number(0xFFFF));
        } else if (name == "length") {
            path.length = static_cast<std::uint16_t>(member.number(0xFFFF));
        } else {
            member.refuse("no such field");
        }
    }
    if (!place.has("path")) place.fail("'path'");
    return path;
}

Blob arcsField(const JsonPlace& place) {
    if (place.isNull()) return {};
    const std::string text = place.text();
    if (text.empty()) return {};
    const auto arcs = arcsOf(text);
    if (!arcs) place.fail("an object identifier with dots");
    return *arcs;
}

unsigned nameField(const JsonPlace& place, NumberOfName numberOf) {
    const auto number = numberOf(place.text());
    if (!number) place.fail("one of the names that list shows");
    return *number;
}

std::uint32_t bitsField(const JsonPlace& place, NumberOfName bitOf) {
    place.expectArray();
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < place.count(); ++i) {
        bits |= std::uint32_t{1} << nameField(place.at(i), bitOf);
    }
    return bits;
}

void addAttributes(PKCS11Attrs& attributes, const JsonPlace& place) {
    if (!place.json().is_object()) place.fail("an object of attributes");
    for (const auto& item : place.json().items()) {
        const std::string& name = item.key();
        const JsonPlace member = place.at(name);
        const auto number = attributeNumber(name);
        if (!number) member.refuse("no such attribute");
        if (isBooleanAttribute(*number)) {
            attributes.SetParam(*number, member.boolean() ? B_CK_TRUE : B_CK_FALSE);
        } else {
            attributes.SetParam(*number, member.octets());
        }
    }
}

}  // namespace tovi
