#pragma once

#include <cstdint>
#include <span>

#include "tovi/asn1/Reader.h"

namespace tovi {

using Octets = std::span<std::uint8_t>;

// What blanking leaves of the contents of a value.
void blankText(Octets octets);
void blankInteger(Octets octets);
void blankTime(Octets octets);
/// The first octet says how many bits are unused and stays.
void blankBits(Octets octets);
void blankOctets(Octets octets);

/// Octets that are blanked where they lie, while readers walk over them.
class BlankedBuffer {
public:
    explicit BlankedBuffer(Octets octets) : octets_(octets) {}

    ASN1::View view() const { return octets_; }
    /// The part of the buffer that a reader of it saw.
    Octets writable(ASN1::View part) const {
        return octets_.subspan(static_cast<std::size_t>(part.data() - octets_.data()), part.size());
    }
    /// Blanks an element of no known type: what is in it by universal tags, all else as octets.
    /// Object identifiers stay. `in` is a reader of this buffer, on the element's level.
    void blankAny(const ASN1::Element& element, const ASN1::Reader& in) const;
    /// The same for all elements in a constructed one.
    void blankContents(const ASN1::Element& element, const ASN1::Reader& in) const;

private:
    void blankPrimitive(const ASN1::Element& element) const;

    Octets octets_;
};

}  // namespace tovi
