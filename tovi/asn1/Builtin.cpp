#include "tovi/asn1/Builtin.h"

namespace ASN1 {

namespace {

constexpr Tag octetStringTag = universal(4);

bool failValue(const Element& element, Reader& in) {
    return in.fail(Error::badValue, element.whole.data());
}

bool fitsInto64Bits(const Element& e) {
    return !e.constructed && !e.content.empty() && e.content.size() <= 8;
}

/// Joins the segments of a string in constructed form; each is an OCTET STRING
/// (X.690 8.7.3, 8.23.6).
bool join(const Element& e, Octets& out, Reader& in) {
    auto body = in.enter(e);
    if (!body) return false;
    for (Element segment; !body->atEnd();) {
        if (!body->next(segment)) return false;
        if (segment.tag != octetStringTag) return in.failUnexpected(segment, &octetStringType);
        if (!segment.constructed) {
            out.append(segment.content);
        } else if (!join(segment, out, *body)) {
            return false;
        }
    }
    return true;
}

/// Joins the segments of a constructed BIT STRING; only the last may have unused bits
/// (X.690 8.6.4).
bool joinBits(const Element& e, Octets& bits, std::uint8_t& unused, Reader& in) {
    if (!e.constructed) {
        if (e.content.empty() || unused != 0) return failValue(e, in);
        unused = e.content[0];
        bits.append(e.content.subspan(1));
        return true;
    }
    auto body = in.enter(e);
    if (!body) return false;
    for (Element segment; !body->atEnd();) {
        if (!body->next(segment)) return false;
        if (segment.tag != bitStringType.tag) return in.failUnexpected(segment, &bitStringType);
        if (!joinBits(segment, bits, unused, *body)) return false;
    }
    return true;
}

}  // namespace

bool decodeBoolean(const Type&, const Element& e, void* value, Reader& in) {
    if (e.constructed || e.content.size() != 1) return failValue(e, in);
    as<bool>(value) = e.content[0] != 0;
    return true;
}

void encodeBoolean(const Type&, const void* value, Writer& out) {
    out.octet(as<bool>(value) ? 0xFF : 0x00);
}

bool decodeInteger(const Type&, const Element& e, void* value, Reader& in) {
    if (e.constructed || e.content.empty()) return failValue(e, in);
    as<INTEGER>(value).setValue(e.content);
    return true;
}

void encodeInteger(const Type&, const void* value, Writer& out) {
    out.octets(as<INTEGER>(value).shortest());
}

/// Cards forget the leading zero octet of numbers that cannot be negative: the top bit counts as
/// value.
bool decodeUnsigned(const Type&, const Element& e, void* value, Reader& in) {
    Element number = e;
    while (number.content.size() > 1 && number.content[0] == 0)
        number.content = number.content.subspan(1);
    if (!fitsInto64Bits(number)) return failValue(e, in);
    std::uint64_t result = 0;
    for (std::uint8_t octet : number.content) result = result << 8 | octet;
    as<std::uint64_t>(value) = result;
    return true;
}

void encodeUnsigned(const Type&, const void* value, Writer& out) {
    std::uint64_t rest = as<std::uint64_t>(value);
    for (; rest > 0x7F; rest >>= 8) {
        out.octet(static_cast<std::uint8_t>(rest));
        if (rest <= 0xFF) return out.octet(0);
    }
    out.octet(static_cast<std::uint8_t>(rest));
}

bool decodeOctets(const Type&, const Element& e, void* value, Reader& in) {
    if (e.constructed) return join(e, as<Octets>(value), in);
    as<Octets>(value).assign(e.content);
    return true;
}

void encodeOctets(const Type&, const void* value, Writer& out) { out.octets(as<Octets>(value)); }

std::int64_t countOctets(const void* value) {
    return static_cast<std::int64_t>(as<Octets>(value).size());
}

std::int64_t countTextCharacters(const void* value) {
    return static_cast<std::int64_t>(countCharacters(as<Octets>(value)));
}

bool decodeBits(const Type&, const Element& e, void* value, Reader& in) {
    // Cards overstate the unused bits or set them: what is left over counts.
    auto& string = as<BIT_STRING>(value);
    if (!e.constructed) {
        if (e.content.empty()) return failValue(e, in);
        string.assign(e.content.subspan(1), e.content[0]);
        return true;
    }
    Octets bits;
    std::uint8_t unused = 0;
    if (!joinBits(e, bits, unused, in)) return false;
    string.assign(bits, unused);
    return true;
}

void encodeBits(const Type&, const void* value, Writer& out) {
    const auto& string = as<BIT_STRING>(value);
    out.octets(string.octets());
    out.octet(static_cast<std::uint8_t>(string.unusedBits()));
}

bool decodeNull(const Type&, const Element& e, void*, Reader& in) {
    return (!e.constructed && e.content.empty()) || failValue(e, in);
}

void encodeNothing(const Type&, const void*, Writer&) {}

bool decodeObjectIdentifier(const Type&, const Element& e, void* value, Reader& in) {
    return (!e.constructed && as<OBJECT_IDENTIFIER>(value).setContent(e.content)) ||
           failValue(e, in);
}

void encodeObjectIdentifier(const Type&, const void* value, Writer& out) {
    out.octets(as<OBJECT_IDENTIFIER>(value).content());
}

bool decodeOpen(const Type&, const Element& e, void* value, Reader&) {
    as<OpenData>(value).assign(e.whole);
    return true;
}

/// An open value that nobody has filled has no encoding.
void encodeOpen(const Type&, const void* value, Writer& out) {
    if (as<OpenData>(value).empty()) out.fail();
    out.octets(as<OpenData>(value));
}

std::int64_t measureUnsigned(const void* value) {
    constexpr auto highest = static_cast<std::uint64_t>(Bounds::highest);
    return static_cast<std::int64_t>(std::min(as<std::uint64_t>(value), highest));
}

void encodeNamedBits(const Type& type, const void* value, Writer& out) {
    BIT_STRING trimmed = as<BIT_STRING>(value);
    trimmed.trim();
    encodeBits(type, &trimmed, out);
}

bool decodeEnumerated(const Type&, const Element& e, void* value, Reader& in) {
    if (!fitsInto64Bits(e)) return failValue(e, in);
    INTEGER number;
    number.setValue(e.content);
    as<ENUMERATED>(value).value = number.toInt64();
    return true;
}

void encodeEnumerated(const Type&, const void* value, Writer& out) {
    out.octets(INTEGER(as<ENUMERATED>(value).value).shortest());
}

bool decodeOpaque(const Type&, const Element& e, void* value, Reader&) {
    as<Octets>(value).assign(e.content);
    return true;
}

}  // namespace ASN1
