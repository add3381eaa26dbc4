#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "tools/AsnJson.h"
#include "tools/Failure.h"
#include "tools/Text.h"
#include "tovi/asn1/Type.h"

namespace tovi {
namespace {

using ASN1::as;
using ASN1::Kind;
using Json = nlohmann::ordered_json;

constexpr unsigned deepest = 64;

/// What was found, for an error. Of arrays and objects, which may be deep, only what they are.
std::string shown(const Json& found) {
    if (found.is_structured()) return fmt::format("an {} of {}", found.type_name(), found.size());
    return found.dump(-1, ' ', false, Json::error_handler_t::replace).substr(0, 80);
}

/// One value on its way in, and where it stands.
class Filler {
public:
    Filler(const std::string& where, unsigned depth) : where_(where), depth_(depth) {}

    void fill(const ASN1::Type& type, void* value, const Json& json) const;

private:
    [[noreturn]] void fail(const Json& found, const std::string& expected) const {
        throw UsageError(fmt::format("{}: found {}, expected {}", where_, shown(found), expected));
    }
    Filler at(std::string_view member) const {
        return {where_ + "." + std::string(member), depth_ + 1};
    }

    ASN1::Octets octets(const Json& json) const;
    std::uint64_t count(const Json& json) const;
    std::int64_t number(const ASN1::Type& type, const Json& json) const;
    void fillInteger(ASN1::INTEGER& value, const Json& json) const;
    void fillText(ASN1::Octets& value, const Json& json) const;
    void fillBits(const ASN1::Type& type, ASN1::BIT_STRING& value, const Json& json) const;
    void fillIdentifier(ASN1::OBJECT_IDENTIFIER& value, const Json& json) const;
    void fillUnknown(const ASN1::Type& type, ASN1::Unknown& value, const Json& json) const;
    void fillSequence(const ASN1::Type& type, void* value, const Json& json) const;
    void fillMember(const ASN1::Type& type, const ASN1::Member& member, void* value,
                    const Json& json) const;
    void fillChoice(const ASN1::Type& type, void* value, const Json& json) const;
    void fillList(const ASN1::Type& type, void* value, const Json& json) const;

    std::string where_;
    unsigned depth_;
};

ASN1::Octets Filler::octets(const Json& json) const {
    const auto octets = json.is_string() ? fromHex(json.get<std::string>()) : std::nullopt;
    if (!octets) fail(json, "octets in hexadecimal");
    return *octets;
}

std::uint64_t Filler::count(const Json& json) const {
    // A number that was made in the program is signed also when it is not negative.
    const bool isNegative =
        !json.is_number_unsigned() && json.is_number_integer() && json.get<std::int64_t>() < 0;
    if (!json.is_number_integer() || isNegative) fail(json, "a number from 0 on");
    return json.get<std::uint64_t>();
}

std::int64_t Filler::number(const ASN1::Type& type, const Json& json) const {
    if (json.is_number_integer()) return json.get<std::int64_t>();
    if (json.is_string()) {
        for (const ASN1::NamedNumber& name : type.names) {
            if (name.name == json.get<std::string>()) return name.number;
        }
    }
    fail(json, "a name or number of " + std::string(type.name));
}

void Filler::fillInteger(ASN1::INTEGER& value, const Json& json) const {
    if (json.is_number_unsigned()) return value.setValue(json.get<std::uint64_t>());
    if (json.is_number_integer()) return value.setValue(json.get<std::int64_t>());
    const std::string text = json.is_string() ? json.get<std::string>() : "";
    const auto octets = text.rfind("0x", 0) == 0 ? fromHex(text.substr(2)) : std::nullopt;
    if (!octets) fail(json, "a number, or \"0x...\"");
    value.setValue(ASN1::View(*octets));
}

void Filler::fillText(ASN1::Octets& value, const Json& json) const {
    if (json.is_object() && json.size() == 1 && json.contains("hex")) {
        value.assign(ASN1::View(octets(json["hex"])));
        return;
    }
    if (!json.is_string()) fail(json, "a text, or {\"hex\": ...}");
    const auto& text = json.get_ref<const std::string&>();
    value.assign(ASN1::View(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

void Filler::fillBits(const ASN1::Type& type, ASN1::BIT_STRING& value, const Json& json) const {
    if (json.is_array() && !type.names.empty()) {
        for (const Json& bit : json) {
            const std::int64_t position = number(type, bit);
            if (position < 0 || position > 255) fail(bit, "a bit");
            value.set(static_cast<std::size_t>(position));
        }
        return;
    }
    if (json.is_object() && json.size() == 2 && json.contains("hex") && json.contains("unused") &&
        json["unused"].is_number_integer()) {
        return value.assign(octets(json["hex"]), count(json["unused"]));
    }
    if (!json.is_string())
        fail(json, type.names.empty() ? "bits in hexadecimal" : "a list of bits");
    value.assign(octets(json));
}

void Filler::fillIdentifier(ASN1::OBJECT_IDENTIFIER& value, const Json& json) const {
    std::vector<ASN1::OBJECT_IDENTIFIER::Arc> arcs;
    const std::string text = json.is_string() ? json.get<std::string>() : "";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t dot = std::min(text.find('.', at), text.size());
        const std::string arc = text.substr(at, dot - at);
        if (arc.empty() || arc.size() > 18 ||
            arc.find_first_not_of("0123456789") != std::string::npos) {
            break;
        }
        arcs.push_back(std::stoull(arc));
        at = dot + 1;
    }
    value.setArcs(arcs);
    if (value.empty() || value.toString() != text) fail(json, "an object identifier with dots");
}

void Filler::fillUnknown(const ASN1::Type& type, ASN1::Unknown& value, const Json& json) const {
    if (!json.is_array()) return value.add(type.members.size(), octets(json));
    for (const Json& run : json) {
        if (!run.is_object() || !run.contains("before") || !run.contains("hex")) {
            fail(run, "{\"before\": member, \"hex\": elements}");
        }
        const auto row = std::find_if(type.members.begin(), type.members.end(),
                                      [&](const auto& m) { return run["before"] == m.name; });
        value.add(static_cast<std::size_t>(row - type.members.begin()), octets(run["hex"]));
    }
}

void Filler::fillMember(const ASN1::Type& type, const ASN1::Member& member, void* value,
                        const Json& json) const {
    void* held = member.make(value);
    if (!member.isExtension()) return fill(*member.type, held, json);
    if (type.kind == Kind::sequence) return fillUnknown(type, as<ASN1::Unknown>(held), json);
    as<ASN1::Octets>(held).assign(ASN1::View(octets(json)));
}

void Filler::fillSequence(const ASN1::Type& type, void* value, const Json& json) const {
    if (!json.is_object()) fail(json, "an object with the members of " + std::string(type.name));
    for (const auto& [name, member] : json.items()) {
        const ASN1::Member* row = ASN1::findMember(type, name);
        if (row == nullptr) fail(name, "a member of " + std::string(type.name));
        at(name).fillMember(type, *row, value, member);
    }
    for (const ASN1::Member& row : type.members) {
        if (row.presence == ASN1::Presence::mandatory && !json.contains(std::string(row.name))) {
            fail(json, "member " + std::string(row.name));
        }
    }
}

void Filler::fillChoice(const ASN1::Type& type, void* value, const Json& json) const {
    const bool isOne = json.is_object() && json.size() == 1;
    if (!isOne) fail(json, "an object with one alternative of " + std::string(type.name));
    const std::string& name = json.begin().key();
    const ASN1::Member* row = ASN1::findMember(type, name);
    if (row == nullptr) fail(name, "an alternative of " + std::string(type.name));
    at(name).fillMember(type, *row, value, json.begin().value());
}

void Filler::fillList(const ASN1::Type& type, void* value, const Json& json) const {
    if (!json.is_array()) fail(json, "an array");
    for (std::size_t i = 0; i < json.size(); ++i) {
        at(std::to_string(i)).fill(*type.element, type.list->append(value), json[i]);
    }
}

void Filler::fill(const ASN1::Type& type, void* value, const Json& json) const {
    if (depth_ > deepest) fail("...", "fewer levels");
    if (type.otherForm && json.is_object() && json.size() == 1 && json.contains(otherForm)) {
        type.otherForm(value).emplace(octets(json[otherForm]));
        return;
    }
    switch (type.kind) {
        case Kind::boolean:
            if (!json.is_boolean()) fail(json, "true or false");
            as<bool>(value) = json.get<bool>();
            return;
        case Kind::integer:
            return fillInteger(as<ASN1::INTEGER>(value), json);
        case Kind::unsignedInteger:
            as<std::uint64_t>(value) = count(json);
            return;
        case Kind::enumerated:
            as<ASN1::ENUMERATED>(value).value = number(type, json);
            return;
        case Kind::bitString:
            return fillBits(type, as<ASN1::BIT_STRING>(value), json);
        case Kind::characterString:
            return fillText(as<ASN1::Octets>(value), json);
        case Kind::octetString:
        case Kind::open:
        case Kind::opaque:
            as<ASN1::Octets>(value).assign(ASN1::View(octets(json)));
            return;
        case Kind::null:
            if (!json.is_null()) fail(json, "null");
            return;
        case Kind::objectIdentifier:
            return fillIdentifier(as<ASN1::OBJECT_IDENTIFIER>(value), json);
        case Kind::sequence:
            return fillSequence(type, value, json);
        case Kind::choice:
            return fillChoice(type, value, json);
        case Kind::list:
            return fillList(type, value, json);
    }
}

}  // namespace

void asnFromJson(ASN1::AnyValue& value, const Json& json, const std::string& where) {
    Filler(where, 0).fill(value.type(), value.get(), json);
}

}  // namespace tovi
