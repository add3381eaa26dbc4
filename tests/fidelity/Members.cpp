#include "tests/fidelity/Members.h"

#include <algorithm>
#include <iterator>

#include "tests/support/Der.h"

namespace tovi::test {

namespace {

/// Where member `slot` stands, or would stand.
struct Place {
    std::size_t position = 0;
    bool isThere = false;
};

Place placeOf(const Tlv& sequence, const Tags& tags, std::size_t slot) {
    Place place;
    for (std::size_t i = 0; i <= slot; ++i) {
        if (place.isThere) ++place.position;
        place.isThere = place.position < sequence.members.size() &&
                        sequence.members[place.position].is(tags.at(i));
    }
    return place;
}

std::string hexOf(ASN1::View octets) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string characters;
    for (const std::uint8_t octet : octets) {
        characters += digits[octet >> 4];
        characters += digits[octet & 0x0F];
    }
    return characters;
}

std::string dotted(const Blob& contents) {
    std::string arcs;
    std::uint64_t arc = 0;
    for (const std::uint8_t octet : contents) {
        arc = arc << 7 | (octet & 0x7F);
        if ((octet & 0x80) != 0) continue;
        if (arcs.empty()) {
            const std::uint64_t first = std::min<std::uint64_t>(arc / 40, 2);
            arcs = std::to_string(first);
            arc -= 40 * first;
        }
        arcs += '.' + std::to_string(arc);
        arc = 0;
    }
    return arcs;
}

}  // namespace

const Tlv* member(const Tlv& sequence, const Tags& tags, std::size_t slot) {
    const Place place = placeOf(sequence, tags, slot);
    return place.isThere ? &sequence.members[place.position] : nullptr;
}

Tlv* member(Tlv& sequence, const Tags& tags, std::size_t slot) {
    return const_cast<Tlv*>(member(static_cast<const Tlv&>(sequence), tags, slot));
}

void put(Tlv& sequence, const Tags& tags, std::size_t slot, const Blob& encoded) {
    const Place place = placeOf(sequence, tags, slot);
    const auto at =
        std::next(sequence.members.begin(), static_cast<std::ptrdiff_t>(place.position));
    if (encoded.empty()) {
        if (place.isThere) sequence.members.erase(at);
    } else if (place.isThere) {
        *at = parseTlv(encoded);
    } else {
        sequence.members.insert(at, parseTlv(encoded));
    }
}

std::vector<unsigned> bitsOf(const Blob& contents) {
    std::vector<unsigned> bits;
    for (unsigned i = 0; i + 8 < 8 * contents.size(); ++i)
        if ((contents[1 + i / 8] & 0x80 >> i % 8) != 0) bits.push_back(i);
    return bits;
}

std::vector<unsigned> toggled(std::vector<unsigned> bits, unsigned bit) {
    if (const auto at = std::find(bits.begin(), bits.end(), bit); at != bits.end())
        bits.erase(at);
    else
        bits.insert(std::upper_bound(bits.begin(), bits.end(), bit), bit);
    return bits;
}

std::uint64_t numberOf(const Blob& contents) {
    std::uint64_t number = 0;
    for (const std::uint8_t octet : contents) number = number << 8 | octet;
    return number;
}

std::string inItsWords(const Tlv& element) {
    const Blob& contents = element.contents;
    switch (element.tag.front()) {
        case 0x01:
            return contents == Blob{0x00} ? "FALSE" : "TRUE";
        case 0x02:
        case 0x0A:
        case 0x80:  // all that is varied with this tag are numbers
            return "0x" + hexOf(contents);
        case 0x03: {
            const ASN1::View bits = ASN1::View(contents).subspan(1);
            return '(' + std::to_string(8 * bits.size() - contents[0]) + ')' + hexOf(bits);
        }
        case 0x06:
            return dotted(contents);
        case 0x0C:
        case 0x18:
            return {contents.begin(), contents.end()};
        default:
            return hexOf(contents);
    }
}

}  // namespace tovi::test
