#include "tovi/asn1/Notation.h"

namespace ASN1 {

namespace {

std::string reference(const Type& type);
std::string body(const Type& type, std::size_t indent, const Bounds& bounds);

template <class... Parts>
std::string joined(const Parts&... parts) {
    std::string text;
    (text.append(parts), ...);
    return text;
}

std::string boundText(std::int64_t bound) {
    return bound == Bounds::highest ? "MAX" : std::to_string(bound);
}

std::string rangeText(const Bounds& bounds) {
    if (bounds.low == bounds.high) return joined("(", boundText(bounds.low), ")");
    return joined("(", boundText(bounds.low), "..", boundText(bounds.high), ")");
}

std::string constraintText(const Type& type, const Bounds& bounds) {
    if (!type.constraint.empty()) return joined(" (", type.constraint, ")");
    if (!bounds.areSet()) return "";
    return type.kind == Kind::unsignedInteger ? joined(" ", rangeText(bounds))
                                              : joined(" (SIZE ", rangeText(bounds), ")");
}

std::string numbersText(const Type& type) {
    std::string text = "{ ";
    for (const NamedNumber& named : type.names) {
        if (&named != type.names.data()) text += ", ";
        text += named.name;
        if (type.kind != Kind::enumerated) text += joined(" (", std::to_string(named.number), ")");
    }
    return text + " }";
}

std::string tagText(const Member& member) {
    if (member.tag.isNone()) return "";
    return joined(toString(member.tag), member.isExplicit() ? " EXPLICIT " : " ");
}

std::string memberText(const Member& member, std::size_t indent) {
    if (member.isExtension()) return "...";
    std::string text = joined(member.name, " ", tagText(member));
    const bool inPlace = member.type->name.empty() || !member.type->constraint.empty();
    if (!member.notation.empty())
        text += member.notation;
    else if (inPlace)
        text += body(*member.type, indent, member.bounds);
    else
        text += reference(*member.type) + constraintText(*member.type, member.bounds);
    if (member.presence == Presence::optional) text += " OPTIONAL";
    if (member.presence == Presence::defaulted) text += joined(" DEFAULT ", member.defaultText);
    return text;
}

std::string membersText(const Type& type, std::size_t indent) {
    std::string text = "{";
    const char* separator = "\n";
    for (const Member& member : type.members) {
        if (member.isKindness) continue;
        text += joined(separator, std::string(indent + 4, ' '), memberText(member, indent + 4));
        separator = ",\n";
    }
    return joined(text, "\n", std::string(indent, ' '), "}");
}

std::string listText(const Type& type, std::size_t indent, const Bounds& bounds) {
    std::string text = type.tag == universal(17) ? "SET" : "SEQUENCE";
    if (bounds.areSet()) text += joined(" SIZE ", rangeText(bounds));
    return joined(
        text, " OF ",
        type.element->name.empty() ? body(*type.element, indent, {}) : reference(*type.element));
}

/// The type where it is used: its name, with parameters.
std::string reference(const Type& type) {
    std::string text(type.name);
    for (const Type* parameter : type.parameters)
        text += joined(parameter == type.parameters[0] ? " {" : ", ", reference(*parameter));
    return type.parameters.empty() ? text : text + "}";
}

/// The type where it is defined.
std::string body(const Type& type, std::size_t indent, const Bounds& bounds) {
    switch (type.kind) {
        case Kind::sequence:
            return joined("SEQUENCE ", membersText(type, indent));
        case Kind::choice:
            return joined("CHOICE ", membersText(type, indent));
        case Kind::list:
            return listText(type, indent, bounds);
        case Kind::open:
            return "ANY";
        default:
            break;
    }
    std::string text = toString(type.tag);
    if (!type.names.empty()) text += joined(" ", numbersText(type));
    return joined(text, constraintText(type, bounds));
}

}  // namespace

std::string notation(const Type& type) {
    const bool hasOwnTag = !type.isUntagged() && type.tag.cls() != Tag::universal;
    return joined(reference(type), " ::= ", hasOwnTag ? joined(toString(type.tag), " ") : "",
                  body(type, 0, type.bounds));
}

}  // namespace ASN1
