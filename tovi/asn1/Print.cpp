#include "tovi/asn1/Print.h"

namespace ASN1 {

namespace {

class Printer {
public:
    void value(const Type& type, const void* value);
    std::string take() && { return std::move(text_); }

private:
    void sequence(const Type& type, const void* value);
    void choice(const Type& type, const void* value);
    void list(const Type& type, const void* list);
    void integer(const INTEGER& number);
    void enumerated(const Type& type, std::int64_t number);
    void bits(const Type& type, const BIT_STRING& string);
    void namedBits(const Type& type, const BIT_STRING& string);
    void characters(View octets);
    void identifier(const OBJECT_IDENTIFIER& identifier);
    void hex(View octets);
    void comment(std::string_view what, View octets);
    void open() { text_ += "{", indent_ += 2; }
    void close() { indent_ -= 2, newLine(), text_ += "}"; }
    void newLine() { text_.append("\n").append(indent_, ' '); }

    std::string text_;
    std::size_t indent_ = 0;
};

void Printer::value(const Type& type, const void* value) {
    if (const OpenData* other = type.otherFormOf(value)) return comment("other form", *other);
    switch (type.kind) {
        case Kind::boolean:
            text_ += as<bool>(value) ? "TRUE" : "FALSE";
            break;
        case Kind::integer:
            integer(as<INTEGER>(value));
            break;
        case Kind::unsignedInteger:
            text_ += std::to_string(as<std::uint64_t>(value));
            break;
        case Kind::enumerated:
            enumerated(type, as<ENUMERATED>(value).value);
            break;
        case Kind::bitString:
            bits(type, as<BIT_STRING>(value));
            break;
        case Kind::octetString:
        case Kind::opaque:
        case Kind::open:
            hex(as<Octets>(value));
            break;
        case Kind::characterString:
            characters(as<Octets>(value));
            break;
        case Kind::null:
            text_ += "NULL";
            break;
        case Kind::objectIdentifier:
            identifier(as<OBJECT_IDENTIFIER>(value));
            break;
        case Kind::sequence:
            sequence(type, value);
            break;
        case Kind::choice:
            choice(type, value);
            break;
        case Kind::list:
            list(type, value);
            break;
    }
}

void Printer::sequence(const Type& type, const void* value) {
    std::span<const Unknown::Run> unknown;
    if (const Member* extension = type.extension)
        unknown = as<Unknown>(extension->get(value)).runs();
    std::size_t present = 0;
    for (const Member& member : type.members) present += !member.isExtension() && member.get(value);
    if (present == 0 && unknown.empty()) {
        text_ += "{}";
        return;
    }
    open();
    for (std::size_t row = 0; row <= type.members.size(); ++row) {
        for (; !unknown.empty() && unknown[0].row <= row; unknown = unknown.subspan(1)) {
            newLine();
            comment("unknown", unknown[0].elements);
        }
        if (row == type.members.size()) break;
        const Member& member = type.members[row];
        const void* held = member.isExtension() ? nullptr : member.get(value);
        if (!held) continue;
        newLine();
        text_.append(member.name).append(" ");
        this->value(*member.type, held);
        if (--present != 0) text_ += ",";
    }
    close();
}

void Printer::choice(const Type& type, const void* value) {
    const Member* member = chosen(type, value);
    const void* held = member ? member->get(value) : nullptr;
    if (!held) {
        text_ += "-- nothing selected --";
    } else if (member->isExtension()) {
        comment("unknown alternative", as<OpenData>(held));
    } else {
        text_.append(member->name).append(" : ");
        this->value(*member->type, held);
    }
}

void Printer::list(const Type& type, const void* list) {
    const std::size_t size = type.list->size(list);
    if (size == 0) {
        text_ += "{}";
        return;
    }
    open();
    for (std::size_t i = 0; i < size; ++i) {
        newLine();
        value(*type.element, type.list->at(list, i));
        if (i + 1 != size) text_ += ",";
    }
    close();
}

void Printer::integer(const INTEGER& number) {
    if (!number.fitsInt64()) return hex(number.shortest());
    text_ += std::to_string(number.toInt64());
}

void Printer::enumerated(const Type& type, std::int64_t number) {
    for (const NamedNumber& named : type.names)
        if (named.number == number && number != noNumber) {
            text_ += named.name;
            return;
        }
    text_ += std::to_string(number);
}

void Printer::bits(const Type& type, const BIT_STRING& string) {
    if (!type.names.empty()) return namedBits(type, string);
    if (string.unusedBits() == 0) return hex(string.octets());
    text_ += "'";
    for (std::size_t bit = 0; bit < string.size(); ++bit) text_ += string.test(bit) ? '1' : '0';
    text_ += "'B";
}

void Printer::namedBits(const Type& type, const BIT_STRING& string) {
    const char* separator = "";
    text_ += "{";
    for (std::size_t bit = 0; bit < string.size(); ++bit) {
        if (!string.test(bit)) continue;
        text_ += std::exchange(separator, ", ");
        enumerated(type, static_cast<std::int64_t>(bit));
    }
    text_ += "}";
}

/// Control characters would reach the terminal of whoever looks at a card: C0, DEL, C1.
bool hasControlCharacters(View octets) {
    for (std::size_t i = 0; i < octets.size(); ++i) {
        if (octets[i] < 0x20 || octets[i] == 0x7F) return true;
        if (octets[i] == 0xC2 && i + 1 < octets.size() && octets[i + 1] < 0xA0) return true;
    }
    return false;
}

void Printer::characters(View octets) {
    if (!isUTF8(octets) || hasControlCharacters(octets)) return hex(octets);
    text_ += '"';
    for (std::uint8_t octet : octets) {
        if (octet == '"') text_ += '"';  // X.680: doubled within a string
        text_ += static_cast<char>(octet);
    }
    text_ += '"';
}

void Printer::identifier(const OBJECT_IDENTIFIER& identifier) {
    text_ += "{";
    for (char c : identifier.toString()) text_ += c == '.' ? ' ' : c;
    text_ += "}";
}

void Printer::hex(View octets) {
    static constexpr char digits[] = "0123456789ABCDEF";
    text_ += "'";
    for (std::uint8_t octet : octets) {
        text_ += digits[octet >> 4];
        text_ += digits[octet & 15];
    }
    text_ += "'H";
}

void Printer::comment(std::string_view what, View octets) {
    text_.append("-- ").append(what).append(": ");
    hex(octets);
    text_ += " --";
}

}  // namespace

std::string print(AbstractData value) {
    Printer printer;
    printer.value(value.type(), value.value());
    return std::move(printer).take();
}

}  // namespace ASN1
