#include "tovi/asn1/Notation.h"

namespace ASN1 {

namespace {

std::string reference(const Type& type);
std::string body(const Type& type, std::size_t indent, const Bounds& bounds);

std::string boundText(std::int64_t bound) {
    return bound == Bounds::highest ? "MAX" : std::to_string(bound);
}

std::string rangeText(const Bounds& bounds) {
    if (bounds.low == bounds.high) return "(" + boundText(bounds.low) + ")";
    return "(" + boundText(bounds.low) + ".." + boundText(bounds.high) + ")";
}

std::string constraintText(const Type& type, const Bounds& bounds) {
    if (!type.constraint.empty()) return " (" + std::string(type.constraint) + ")";
    if (!bounds.areSet()) return "";
    return type.kind == Kind::unsignedInteger ? " " + rangeText(bounds)
                                              : " (SIZE " + rangeText(bounds) + ")";
}

std::string numbersText(const Type& type) {
    std::string text = "{ ";
    for (const NamedNumber& named : type.names) {
        if (&named != type.names.data()) text += ", ";
        text += named.name;
        if (type.kind != Kind::enumerated) text += " (" + std::to_string(named.number) + ")";
    }
    return text + " }";
}

std::string tagText(const Member& member) {
    if (member.tag.isNone()) return "";
    return toString(member.tag) + (member.isExplicit() ? " EXPLICIT " : " ");
}

std::string memberText(const Member& member, std::size_t indent) {
    if (member.isExtension()) return "...";
    std::string text = std::string(member.name) + " " + tagText(member);
    const bool inPlace = member.type->name.empty() || !member.type->constraint.empty();
    if (!member.notation.empty())
        text += member.notation;
    else if (inPlace)
        text += body(*member.type, indent, member.bounds);
    else
        text += reference(*member.type) + constraintText(*member.type, member.bounds);
    if (member.presence == Presence::optional) text += " OPTIONAL";
    if (member.presence == Presence::defaulted) text += " DEFAULT " + std::string(member.defaultText);
    return text;
}

std::string membersText(const Type& type, std::size_t indent) {
    std::string text = "{";
    const char* separator = "\n";
    for (const Member& member : type.members) {
        if (member.isKindness) continue;
        text += separator + std::string(indent + 4, ' ') + memberText(member, indent + 4);
        separator = ",\n";
    }
    return text + "\n" + std::string(indent, ' ') + "}";
}

std::string listText(const Type& type, std::size_t indent, const Bounds& bounds) {
    std::string text = type.tag == universal(17) ? "SET" : "SEQUENCE";
    if (bounds.areSet()) text += " SIZE " + rangeText(bounds);
    text += " OF ";
    return text + (type.element->name.empty() ? body(*type.element, indent, {})
                                              : reference(*type.element));
}

/// The type where it is used: its name, with parameters.
std::string reference(const Type& type) {
    std::string text(type.name);
    for (const Type* parameter : type.parameters)
        text += (parameter == type.parameters[0] ? " {" : ", ") + reference(*parameter);
    return type.parameters.empty() ? text : text + "}";
}

/// The type where it is defined.
std::string body(const Type& type, std::size_t indent, const Bounds& bounds) {
    switch (type.kind) {
        case Kind::sequence: return "SEQUENCE " + membersText(type, indent);
        case Kind::choice: return "CHOICE " + membersText(type, indent);
        case Kind::list: return listText(type, indent, bounds);
        case Kind::open: return "ANY";
        default: break;
    }
    std::string text = toString(type.tag);
    if (!type.names.empty()) text += " " + numbersText(type);
    return text + constraintText(type, bounds);
}

}  // namespace

std::string notation(const Type& type) {
    const bool hasOwnTag = !type.isUntagged() && type.tag.cls != Tag::universal;
    return reference(type) + " ::= " + (hasOwnTag ? toString(type.tag) + " " : "") +
           body(type, 0, type.bounds);
}

}  // namespace ASN1
