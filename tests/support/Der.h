#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "tovi/asn1/Coding.h"
#include "tovi/interfaces/Blob.h"

/// DER put together by hand (X.690), so that the octets in tests owe nothing to the encoder that is
/// tested. Each function returns one whole element.
namespace tovi::test {

/// Octets from hex digits; blanks are skipped. Throws std::invalid_argument for anything else.
Blob hex(std::string_view digits);
/// The characters of a text, without an end mark.
Blob text(std::string_view characters);
/// The same octet `count` times.
Blob times(std::size_t count, std::uint8_t octet);
Blob join(std::initializer_list<Blob> parts);
Blob join(const std::vector<Blob>& parts);

Blob element(std::uint8_t tag, const Blob& content);

template <class... Parts>
Blob sequence(const Parts&... parts) {
    return element(0x30, join({parts...}));
}
/// [number], constructed: explicit around one element, implicit around several members.
template <class... Parts>
Blob context(unsigned number, const Parts&... parts) {
    return element(static_cast<std::uint8_t>(0xA0 + number), join({parts...}));
}
/// [number] IMPLICIT in front of a primitive type.
Blob contextPrimitive(unsigned number, const Blob& content);

Blob integer(std::int64_t value);
Blob boolean(bool value);
Blob null();
Blob enumerated(std::uint8_t value);
Blob octetString(const Blob& octets);
Blob utf8String(std::string_view characters);
Blob objectIdentifier(std::initializer_list<std::uint64_t> arcs);
Blob bitString(const Blob& octets, unsigned unusedBits);
/// A BIT STRING with just these bits set, as short as possible.
Blob namedBits(const std::vector<unsigned>& bits);

/// The element with a tag in place of its own.
Blob retagged(std::uint8_t tag, Blob encoded);

/// A value of an ASN.1 type from its encoding; the test fails where that does not decode.
template <class T>
T decoded(const Blob& encoded) {
    T value;
    ASN1::Error error;
    if (!ASN1::decode(encoded, value, error)) throw error;
    return value;
}

}  // namespace tovi::test
