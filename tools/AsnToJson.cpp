#include "tools/AsnJson.h"

#include <algorithm>

#include "tools/Text.h"
#include "tovi/asn1/Type.h"

namespace tovi {
namespace {

using ASN1::as;
using ASN1::Kind;
using Json = nlohmann::ordered_json;


Json valueJson(const ASN1::Type& type, const void* value);

Json textJson(const ASN1::Octets& text) {
    if (ASN1::isUTF8(text)) return toUtf8(text);
    return {{"hex", toHex(text)}};
}

Json integerJson(const ASN1::INTEGER& number) {
    if (number.fitsInt64()) return number.toInt64();
    return "0x" + toHex(number.shortest());
}

const ASN1::NamedNumber* named(const ASN1::Type& type, std::int64_t number) {
    const auto found = std::find_if(type.names.begin(), type.names.end(),
                                    [&](const auto& name) { return name.number == number; });
    return found == type.names.end() ? nullptr : &*found;
}

Json nameJson(const ASN1::Type& type, std::int64_t number) {
    const ASN1::NamedNumber* name = named(type, number);
    return name ? Json(name->name) : Json(number);
}

Json bitsJson(const ASN1::Type& type, const ASN1::BIT_STRING& bits) {
    if (type.names.empty()) {
        if (bits.unusedBits() == 0) return toHex(bits.octets());
        return {{"hex", toHex(bits.octets())}, {"unused", bits.unusedBits()}};
    }
    Json names = Json::array();
    for (std::size_t bit = 0; bit < bits.size(); ++bit) {
        if (bits.test(bit)) names.push_back(nameJson(type, static_cast<std::int64_t>(bit)));
    }
    return names;
}

Json unknownJson(const ASN1::Type& type, const ASN1::Unknown& unknown) {
    const auto runs = unknown.runs();
    const std::size_t end = type.members.size();
    if (runs.size() == 1 && runs[0].row >= end) return toHex(runs[0].elements);
    Json json = Json::array();
    for (const ASN1::Unknown::Run& run : runs) {
        const Json before = run.row < end ? Json(type.members[run.row].name) : Json(nullptr);
        json.push_back({{"before", before}, {"hex", toHex(run.elements)}});
    }
    return json;
}

Json sequenceJson(const ASN1::Type& type, const void* value) {
    Json json = Json::object();
    for (const ASN1::Member& member : type.members) {
        const void* held = member.get(value);
        const std::string name(member.name);
        if (held == nullptr) continue;
        if (!member.isExtension()) {
            json[name] = valueJson(*member.type, held);
        } else if (!as<ASN1::Unknown>(held).empty()) {
            json[name] = unknownJson(type, as<ASN1::Unknown>(held));
        }
    }
    return json;
}

Json choiceJson(const ASN1::Type& type, const void* value) {
    const ASN1::Member* member = ASN1::chosen(type, value);
    const void* held = member ? member->get(value) : nullptr;
    if (held == nullptr) return nullptr;
    Json json;
    json[std::string(member->name)] = member->isExtension() ? Json(toHex(as<ASN1::Octets>(held)))
                                                            : valueJson(*member->type, held);
    return json;
}

Json listJson(const ASN1::Type& type, const void* value) {
    Json json = Json::array();
    for (std::size_t i = 0; i < type.list->size(value); ++i) {
        json.push_back(valueJson(*type.element, type.list->at(value, i)));
    }
    return json;
}

Json valueJson(const ASN1::Type& type, const void* value) {
    if (const ASN1::OpenData* other = type.otherFormOf(value)) return {{otherForm, toHex(*other)}};
    switch (type.kind) {
        case Kind::boolean:
            return as<bool>(value);
        case Kind::integer:
            return integerJson(as<ASN1::INTEGER>(value));
        case Kind::unsignedInteger:
            return as<std::uint64_t>(value);
        case Kind::enumerated:
            return nameJson(type, as<ASN1::ENUMERATED>(value).value);
        case Kind::bitString:
            return bitsJson(type, as<ASN1::BIT_STRING>(value));
        case Kind::characterString:
            return textJson(as<ASN1::Octets>(value));
        case Kind::octetString:
        case Kind::open:
        case Kind::opaque:
            return toHex(as<ASN1::Octets>(value));
        case Kind::null:
            return nullptr;
        case Kind::objectIdentifier:
            return as<ASN1::OBJECT_IDENTIFIER>(value).toString();
        case Kind::sequence:
            return sequenceJson(type, value);
        case Kind::choice:
            return choiceJson(type, value);
        case Kind::list:
            return listJson(type, value);
    }
    return nullptr;
}

}  // namespace

Json asnToJson(ASN1::AbstractData value) { return valueJson(value.type(), value.value()); }

}  // namespace tovi
