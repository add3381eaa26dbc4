#include "tovi/asn1/ObjectIdentifier.h"

#include <limits>

namespace ASN1 {

namespace {

using Arc = OBJECT_IDENTIFIER::Arc;
constexpr std::uint8_t more = 0x80;
constexpr Arc tooLarge = std::numeric_limits<Arc>::max();

void append(Octets& content, std::uint64_t part) {
    unsigned shift = 63;
    while (shift > 0 && part >> shift == 0) shift -= 7;
    for (; shift > 0; shift -= 7)
        content.push_back(static_cast<std::uint8_t>(more | (part >> shift & 0x7F)));
    content.push_back(static_cast<std::uint8_t>(part & 0x7F));
}

/// The octets of the first subidentifier; takes them off `content`.
View takePart(View& content) {
    std::size_t size = 1;
    while (content[size - 1] & more) ++size;
    const View part = content.first(size);
    content = content.subspan(size);
    return part;
}

bool fits(View part) { return part.size() < 10 || (part.size() == 10 && part[0] == 0x81); }

std::uint64_t valueOf(View part) {
    std::uint64_t value = 0;
    for (std::uint8_t octet : part) value = value << 7 | (octet & 0x7Fu);
    return value;
}

/// The first subidentifier stands for two arcs (X.690 8.19.4).
Arc firstArc(View part) { return fits(part) ? std::min<Arc>(valueOf(part) / 40, 2) : 2; }

std::string hexOf(View part) {
    // Seven bits an octet, low end first, four bits a digit.
    std::string digits;
    unsigned bits = 0, count = 0;
    for (std::size_t i = part.size(); i-- > 0;) {
        bits |= (part[i] & 0x7Fu) << count;
        for (count += 7; count >= 4; count -= 4, bits >>= 4)
            digits += "0123456789ABCDEF"[bits & 15];
    }
    if (count > 0) digits += "0123456789ABCDEF"[bits & 15];
    while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
    return "0x" + std::string(digits.rbegin(), digits.rend());
}

}  // namespace

void OBJECT_IDENTIFIER::setArcs(std::span<const Arc> arcs) {
    content_.clear();
    if (arcs.size() < 2 || arcs[0] > 2 || (arcs[0] < 2 && arcs[1] > 39)) return;
    if (arcs[1] > tooLarge - 80) return;
    Octets content;
    append(content, 40 * arcs[0] + arcs[1]);
    for (Arc arc : arcs.subspan(2)) append(content, arc);
    content_ = std::move(content);
}

std::size_t OBJECT_IDENTIFIER::size() const {
    std::size_t parts = 0;
    for (std::uint8_t octet : content_) parts += (octet & more) == 0;
    return parts == 0 ? 0 : parts + 1;
}

std::vector<Arc> OBJECT_IDENTIFIER::arcs() const {
    std::vector<Arc> arcs;
    for (View rest = content_; !rest.empty();) {
        const View part = takePart(rest);
        Arc value = fits(part) ? valueOf(part) : tooLarge;
        if (arcs.empty()) {
            arcs.push_back(firstArc(part));
            if (fits(part)) value -= 40 * arcs[0];
        }
        arcs.push_back(value);
    }
    return arcs;
}

std::string OBJECT_IDENTIFIER::toString() const {
    std::string text;
    for (View rest = content_; !rest.empty();) {
        const View part = takePart(rest);
        const bool first = text.empty();
        if (first) text = std::to_string(firstArc(part));
        text += '.';
        // Of a first part beyond 64 bits the hex digits keep the 80 that belong to arc 2.
        text += fits(part) ? std::to_string(valueOf(part) - (first ? 40 * firstArc(part) : 0))
                           : hexOf(part);
    }
    return text;
}

bool OBJECT_IDENTIFIER::setContent(View content) {
    bool begins = true;
    for (std::uint8_t octet : content) {
        if (begins && octet == more) return false;
        begins = (octet & more) == 0;
    }
    if (!begins) return false;
    content_.assign(content);
    return true;
}

}  // namespace ASN1
