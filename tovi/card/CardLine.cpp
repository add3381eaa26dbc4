#include "tovi/card/CardLine.h"

#include <charconv>
#include <limits>
#include <vector>

namespace tovi {
namespace {

using Kind = FileDescription::Kind;
using RuleKind = AccessRule::Kind;
using Words = std::vector<std::string_view>;

constexpr std::string_view blanks = " \t\r";
constexpr std::string_view digits = "0123456789ABCDEF";

struct KindName {
    std::string_view name;
    Kind kind;
};
constexpr KindName kindNames[] = {
    {"df", Kind::df},
    {"transparent", Kind::transparent},
    {"linear", Kind::linearVariable},
    {"linear-fixed", Kind::linearFixed},
};

Words split(std::string_view text) {
    Words words;
    for (;;) {
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) return words;
        text.remove_prefix(begin);
        const std::size_t end = std::min(text.find_first_of(blanks), text.size());
        words.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
}

std::string mismatch(std::string_view found, std::string_view expected) {
    return "found " + inQuotes(found) + ", expected " + std::string(expected);
}

std::string missing(std::string_view expected) {
    return "found the end of the line, expected " + std::string(expected);
}

template <class Number>
bool parseNumber(std::string_view text, Number& number) {
    int base = 10;
    if (text.starts_with("0x")) {
        base = 16;
        text.remove_prefix(2);
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && stop == end && !text.empty();
}

int digitValue(char digit, bool anyCase) {
    if (anyCase && digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    const std::size_t value = digits.find(digit);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

bool parseHex(std::string_view text, bool anyCase, Blob& octets) {
    octets.clear();
    if (text.empty() || text.size() % 2 != 0) return false;
    for (; !text.empty(); text.remove_prefix(2)) {
        const int high = digitValue(text[0], anyCase);
        const int low = digitValue(text[1], anyCase);
        if (high < 0 || low < 0) return false;
        octets.push_back(static_cast<std::uint8_t>(high << 4 | low));
    }
    return true;
}

std::string formatHex(ASN1::View octets) {
    std::string text;
    for (const std::uint8_t octet : octets) {
        text += digits[octet >> 4];
        text += digits[octet & 0x0F];
    }
    return text;
}

/// Only upper case: the path is the name of the contents in the folder, too.
bool parsePath(std::string_view text, Blob& path) {
    path.clear();
    for (;;) {
        Blob step;
        if (!parseHex(text.substr(0, 4), false, step) || step.size() != 2) return false;
        path.append(step);
        text.remove_prefix(4);
        if (text.empty()) return true;
        if (text[0] != '/') return false;
        text.remove_prefix(1);
    }
}

bool parseKind(std::string_view text, Kind& kind) {
    for (const KindName& row : kindNames) {
        if (row.name != text) continue;
        kind = row.kind;
        return true;
    }
    return false;
}

bool parseRule(std::string_view text, AccessRule& rule) {
    if (text == "always") rule.kind = RuleKind::always;
    if (text == "never") rule.kind = RuleKind::never;
    if (text == "always" || text == "never") return true;
    if (!text.starts_with("pin:")) return false;
    rule.kind = RuleKind::pin;
    return parseNumber(text.substr(4), rule.reference);
}

/// The value of the option `name`; false for another option.
bool isOption(std::string_view word, std::string_view name, std::string_view& value) {
    if (!word.starts_with(name) || word.size() == name.size() || word[name.size()] != '=')
        return false;
    value = word.substr(name.size() + 1);
    return true;
}

std::string parseOption(std::string_view word, FileDescription& file) {
    constexpr std::string_view rule = "always, never or pin: and a number up to 255";
    const bool linear = file.kind == Kind::linearFixed || file.kind == Kind::linearVariable;
    std::string_view value;
    if (isOption(word, "read", value))
        return parseRule(value, file.read) ? "" : mismatch(word, rule);
    if (isOption(word, "update", value))
        return parseRule(value, file.update) ? "" : mismatch(word, rule);
    if (file.kind == Kind::df && isOption(word, "aid", value))
        return parseHex(value, true, file.aid) ? "" : mismatch(word, "an AID in hex");
    if (linear && isOption(word, "record", value))
        return parseNumber(value, file.recordSize) ? "" : mismatch(word, "a number of octets");
    if (file.kind != Kind::df && isOption(word, "sfi", value)) {
        file.sfi = 0;
        return parseNumber(value, *file.sfi) ? "" : mismatch(word, "a short identifier, 1 to 30");
    }
    if (file.kind == Kind::df) return mismatch(word, "aid=, read= or update=");
    if (linear) return mismatch(word, "record=, sfi=, read= or update=");
    return mismatch(word, "sfi=, read= or update=");
}

std::string parseFile(const Words& words, FileDescription& file) {
    constexpr std::string_view structures = "df, transparent, linear or linear-fixed";
    if (!parsePath(words[0], file.path))
        return mismatch(words[0], "pin, or a path in upper-case hex such as 3F00/5015");
    if (words.size() == 1) return missing(structures);
    if (!parseKind(words[1], file.kind)) return mismatch(words[1], structures);
    std::size_t next = 2;
    if (file.kind == Kind::df) {
        // A DF has no size, and the dash that keeps the column may be left out.
        if (next < words.size() && words[next] == "-") ++next;
    } else {
        if (next == words.size()) return missing("a size");
        if (!parseNumber(words[next], file.size)) return mismatch(words[next], "a size");
        ++next;
    }
    Words seen;
    for (; next < words.size(); ++next) {
        std::string reason = parseOption(words[next], file);
        if (!reason.empty()) return reason;
        const std::string_view name = words[next].substr(0, words[next].find('='));
        for (const std::string_view other : seen)
            if (other == name) return mismatch(words[next], "each option once");
        seen.push_back(name);
    }
    return {};
}

std::string parsePin(const Words& words, PinDescription& pin) {
    constexpr std::string_view parts[] = {"a reference, 0 to 255", "a value in hex",
                                          "a number of tries"};
    if (words.size() < 4) return missing(parts[words.size() - 1]);
    if (!parseNumber(words[1], pin.reference)) return mismatch(words[1], parts[0]);
    // The value stays out of the message: it is a secret.
    if (!parseHex(words[2], true, pin.value)) return "found something else than a value in hex";
    if (!parseNumber(words[3], pin.tries)) return mismatch(words[3], parts[2]);
    pin.left = pin.tries;
    if (words.size() == 4) return {};
    std::string_view left;
    if (!isOption(words[4], "left", left) || !parseNumber(left, pin.left))
        return mismatch(words[4], "left= and a number");
    return words.size() == 5 ? "" : mismatch(words[5], "the end of the line");
}

void appendRule(std::string& text, std::string_view name, const AccessRule& rule) {
    if (rule.kind == RuleKind::always) return;
    text.append(" ").append(name).append("=");
    if (rule.kind == RuleKind::never) text += "never";
    if (rule.kind == RuleKind::pin) text += "pin:" + std::to_string(rule.reference);
}

void padTo(std::string& text, std::size_t column) {
    text.append(text.size() < column ? column - text.size() : 1, ' ');
}

}  // namespace

std::string inQuotes(std::string_view found) {
    constexpr std::size_t most = 40;
    std::string text = "'";
    for (const char c : found.substr(0, most)) text += c >= ' ' && c <= '~' ? c : '?';
    return text + (found.size() > most ? "...'" : "'");
}

std::string parseCardLine(std::string_view text, CardLine& line) {
    line = std::monostate();
    const Words words = split(text);
    if (words.empty() || words[0][0] == '#') return {};
    if (words[0] == "pin") return parsePin(words, line.emplace<PinDescription>());
    return parseFile(words, line.emplace<FileDescription>());
}

std::string formatCardLine(const FileDescription& file) {
    std::string text = pathName(file.path);
    padTo(text, 18);
    for (const KindName& row : kindNames)
        if (row.kind == file.kind) text += row.name;
    padTo(text, 32);
    text += file.kind == Kind::df ? "-" : std::to_string(file.size);
    if (!file.aid.empty()) text += " aid=" + formatHex(file.aid);
    if (file.recordSize != 0) text += " record=" + std::to_string(file.recordSize);
    if (file.sfi) text += " sfi=" + std::to_string(*file.sfi);
    appendRule(text, "read", file.read);
    appendRule(text, "update", file.update);
    return text;
}

std::string formatCardLine(const PinDescription& pin) {
    std::string text = "pin " + std::to_string(pin.reference) + " " + formatHex(pin.value) + " " +
                       std::to_string(pin.tries);
    if (pin.left != pin.tries) text += " left=" + std::to_string(pin.left);
    return text;
}

}  // namespace tovi
