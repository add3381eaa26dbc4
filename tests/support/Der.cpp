#include "tests/support/Der.h"

#include <algorithm>
#include <stdexcept>

namespace tovi::test {

namespace {

unsigned digitValue(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
    throw std::invalid_argument("not a hex digit");
}

/// Octets of a number, most significant first, without leading zeros; none for 0.
Blob bigEndian(std::uint64_t number) {
    Blob octets;
    for (int shift = 56; shift >= 0; shift -= 8) {
        const auto octet = static_cast<std::uint8_t>(number >> shift);
        if (octet != 0 || !octets.empty()) octets.push_back(octet);
    }
    return octets;
}

void appendArc(Blob& content, std::uint64_t arc) {
    Blob groups;
    do {
        groups.push_back(static_cast<std::uint8_t>(arc & 0x7F));
        arc >>= 7;
    } while (arc != 0);
    for (std::size_t i = groups.size(); i-- > 0;)
        content.push_back(static_cast<std::uint8_t>(groups[i] | (i > 0 ? 0x80 : 0)));
}

}  // namespace

Blob hex(std::string_view digits) {
    Blob octets;
    bool isHalf = false;
    for (const char digit : digits) {
        if (digit == ' ') continue;
        const unsigned value = digitValue(digit);
        if (isHalf)
            octets.back() = static_cast<std::uint8_t>(unsigned{octets.back()} << 4 | value);
        else
            octets.push_back(static_cast<std::uint8_t>(value));
        isHalf = !isHalf;
    }
    if (isHalf) throw std::invalid_argument("half an octet");
    return octets;
}

Blob text(std::string_view characters) { return Blob(characters.begin(), characters.end()); }

Blob times(std::size_t count, std::uint8_t octet) { return Blob(count, octet); }

Blob join(std::initializer_list<Blob> parts) { return join(std::vector<Blob>(parts)); }

Blob join(const std::vector<Blob>& parts) {
    Blob joined;
    for (const Blob& part : parts) joined.append(ASN1::View(part));
    return joined;
}

Blob element(std::uint8_t tag, const Blob& content) {
    Blob encoded = {tag};
    if (content.size() < 0x80) {
        encoded.push_back(static_cast<std::uint8_t>(content.size()));
    } else {
        const Blob length = bigEndian(content.size());
        encoded.push_back(static_cast<std::uint8_t>(0x80 + length.size()));
        encoded.append(ASN1::View(length));
    }
    encoded.append(ASN1::View(content));
    return encoded;
}

Blob contextPrimitive(unsigned number, const Blob& content) {
    return element(static_cast<std::uint8_t>(0x80 + number), content);
}

Blob integer(std::int64_t value) {
    Blob octets;
    for (int shift = 56; shift >= 0; shift -= 8)
        octets.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> shift));
    const std::uint8_t sign = value < 0 ? 0xFF : 0;
    while (octets.size() > 1 && octets[0] == sign && ((octets[1] ^ sign) & 0x80) == 0)
        octets.erase(octets.begin());
    return element(0x02, octets);
}

Blob boolean(bool value) { return element(0x01, {static_cast<std::uint8_t>(value ? 0xFF : 0)}); }

Blob null() { return element(0x05, {}); }

Blob enumerated(std::uint8_t value) { return element(0x0A, {value}); }

Blob octetString(const Blob& octets) { return element(0x04, octets); }

Blob utf8String(std::string_view characters) { return element(0x0C, text(characters)); }

Blob objectIdentifier(std::initializer_list<std::uint64_t> arcs) {
    Blob content;
    appendArc(content, 40 * arcs.begin()[0] + arcs.begin()[1]);
    std::for_each(arcs.begin() + 2, arcs.end(), [&](auto arc) { appendArc(content, arc); });
    return element(0x06, content);
}

Blob bitString(const Blob& octets, unsigned unusedBits) {
    return element(0x03, join({Blob{static_cast<std::uint8_t>(unusedBits)}, octets}));
}

Blob namedBits(const std::vector<unsigned>& bits) {
    if (bits.empty()) return bitString({}, 0);
    const unsigned last = *std::max_element(bits.begin(), bits.end());
    Blob octets = times(last / 8 + 1, 0);
    for (const unsigned bit : bits)
        octets[bit / 8] = static_cast<std::uint8_t>(octets[bit / 8] | 0x80 >> bit % 8);
    return bitString(octets, 7 - last % 8);
}

Blob retagged(std::uint8_t tag, Blob encoded) {
    encoded[0] = tag;
    return encoded;
}

}  // namespace tovi::test
