#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"

namespace ASN1 {

/// A string of bits; bit 0 is the most significant bit of the first octet (X.690 8.6.2).
class TOVI_API BIT_STRING {
public:
    BIT_STRING() = default;
    /// Only the named bits set: BIT_STRING{0, 6} is '1000001'B.
    BIT_STRING(std::initializer_list<std::size_t> bits) {
        for (std::size_t bit : bits) set(bit);
    }

    /// Length in bits.
    std::size_t size() const { return 8 * octets_.size() - unused_; }
    /// Whether it has no bits.
    bool empty() const { return octets_.empty(); }
    /// False for a bit beyond the end.
    bool test(std::size_t bit) const {
        return bit / 8 < octets_.size() && (octets_[bit / 8] & 0x80 >> bit % 8) != 0;
    }
    /// Sets or clears one bit. A string that ends before it grows by zero bits first.
    void set(std::size_t bit, bool value = true);
    /// Removes all bits.
    void clear() {
        octets_.clear();
        unused_ = 0;
    }
    /// The bits in whole octets; the unused ones behind the last bit are zero.
    const Octets& octets() const { return octets_; }
    /// Zero bits behind the last one in the last octet, 0 to 7.
    unsigned unusedBits() const { return unused_; }
    /// Takes all bits of `octets` but the last `unused`, which may be any number: more than there
    /// are gives an empty string.
    void assign(View octets, std::size_t unused = 0);
    /// Drops zero bits at the end, as DER asks of strings with named bits (X.690 11.2.2).
    void trim();

    friend bool operator==(const BIT_STRING&, const BIT_STRING&) = default;

private:
    Octets octets_;
    std::uint8_t unused_ = 0;
};

}  // namespace ASN1
