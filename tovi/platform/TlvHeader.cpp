#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

constexpr std::size_t longestTag = 3;
constexpr std::uint8_t longestLength = 4;  // octets that follow the first one of a length

using State = TlvHeader::State;

/// Octets of the tag; 0 while it is cut, more than longestTag when it is too long.
std::size_t tagSize(ASN1::View octets) {
    if (octets.empty()) return 0;
    if ((octets[0] & 0x1F) != 0x1F) return 1;
    for (std::size_t i = 1; i < longestTag; ++i) {
        if (i == octets.size()) return 0;
        if ((octets[i] & 0x80) == 0) return i + 1;
    }
    return longestTag + 1;
}

}  // namespace

TlvHeader readLength(ASN1::View octets) {
    if (octets.empty()) return {};
    const std::uint8_t first = octets[0];
    if (first < 0x80) return {State::complete, 1, first};
    const std::size_t count = first & 0x7Fu;
    if (count == 0 || count > longestLength) return {State::invalid};
    if (count >= octets.size()) return {};
    std::uint64_t contents = 0;
    for (const std::uint8_t octet : octets.subspan(1, count)) contents = contents << 8 | octet;
    return {State::complete, 1 + count, contents};
}

TlvHeader readTlvHeader(ASN1::View octets) {
    const std::size_t tag = tagSize(octets);
    if (tag == 0) return {};
    if (tag > longestTag) return {State::invalid};
    TlvHeader header = readLength(octets.subspan(tag));
    if (header.state == State::complete) header.size += tag;
    return header;
}

}  // namespace tovi
