#include "tovi/card/BerTlv.h"

namespace tovi {
namespace {

/// Takes one octet off the front; false when there is none.
bool take(ASN1::View& rest, std::uint8_t& octet) {
    if (rest.empty()) return false;
    octet = rest[0];
    rest = rest.subspan(1);
    return true;
}

bool takeTag(ASN1::View& rest, std::uint32_t& tag) {
    std::uint8_t octet = 0;
    if (!take(rest, octet)) return false;
    tag = octet;
    if ((octet & 0x1F) != 0x1F) return true;
    for (int further = 0; further < 2; ++further) {
        if (!take(rest, octet)) return false;
        tag = tag << 8 | octet;
        if ((octet & 0x80) == 0) return true;
    }
    return false;  // more than three octets
}

bool takeLength(ASN1::View& rest, std::size_t& length) {
    std::uint8_t first = 0;
    if (!take(rest, first)) return false;
    length = first;
    if (first < 0x80) return true;
    // 80 and 85..FF are no first length octets (ISO/IEC 7816-4:2005, 5.2.2).
    if (first == 0x80 || first > 0x84) return false;
    std::uint32_t value = 0;
    for (int further = first & 0x0F; further > 0; --further) {
        std::uint8_t octet = 0;
        if (!take(rest, octet)) return false;
        value = value << 8 | octet;
    }
    length = value;
    return true;
}

}  // namespace

bool BerTlv::next(ASN1::View& rest, BerTlv& object) {
    while (!rest.empty() && (rest[0] == 0x00 || rest[0] == 0xFF)) rest = rest.subspan(1);
    ASN1::View ahead = rest;
    std::uint32_t tag = 0;
    std::size_t length = 0;
    if (!takeTag(ahead, tag) || !takeLength(ahead, length) || length > ahead.size()) return false;
    object.tag = tag;
    object.value = ahead.first(length);
    rest = ahead.subspan(length);
    return true;
}

bool BerTlv::find(ASN1::View objects, std::uint32_t tag, BerTlv& object) {
    while (next(objects, object))
        if (object.tag == tag) return true;
    return false;
}

void appendBerTlv(Blob& out, std::uint8_t tag, ASN1::View value) {
    const std::size_t length = value.size();
    out.push_back(tag);
    if (length > 0xFFFF) {
        out.push_back(0x83);
        out.push_back(static_cast<std::uint8_t>(length >> 16));
    } else if (length > 0xFF) {
        out.push_back(0x82);
    } else if (length > 0x7F) {
        out.push_back(0x81);
    }
    if (length > 0xFF) out.push_back(static_cast<std::uint8_t>(length >> 8));
    out.push_back(static_cast<std::uint8_t>(length));
    out.append(value);
}

}  // namespace tovi
