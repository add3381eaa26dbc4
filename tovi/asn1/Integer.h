#pragma once

#include <concepts>
#include <cstdint>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"

namespace ASN1 {

/// An INTEGER of any size: serial numbers, moduli, and what the module leaves without bounds.
///
/// The octets are big-endian two's complement, as on the wire (X.690 8.3), and are kept as they
/// came; DER writes the fewest that hold the value. No octets at all are the number 0.
class TOVI_API INTEGER {
public:
    INTEGER() = default;
    /// Has the number given.
    template <std::integral Number>
    INTEGER(Number value) {
        setValue(value);
    }
    /// Takes the number given.
    template <std::integral Number>
    INTEGER& operator=(Number value) {
        return setValue(value), *this;
    }

    /// Takes the number given, in the fewest octets.
    template <std::signed_integral Number>
    void setValue(Number value) {
        setSigned(static_cast<std::int64_t>(value));
    }
    template <std::unsigned_integral Number>
    void setValue(Number value) {
        setUnsigned(static_cast<std::uint64_t>(value));
    }
    /// Takes big-endian two's complement octets.
    void setValue(View octets) { octets_.assign(octets); }

    /// The octets as they came.
    const Octets& octets() const { return octets_; }
    /// The octets without those that only repeat the sign, at least one (X.690 8.3.2).
    View shortest() const;
    /// Whether the number is below 0.
    bool isNegative() const { return !octets_.empty() && (octets_[0] & 0x80) != 0; }
    /// Whether toInt64 gives the whole number.
    bool fitsInt64() const { return shortest().size() <= 8; }
    /// The low 64 or 32 bits, with the sign extended.
    std::int64_t toInt64() const { return static_cast<std::int64_t>(toUInt64()); }
    std::uint64_t toUInt64() const;
    std::int32_t toInt32() const { return static_cast<std::int32_t>(toUInt32()); }
    std::uint32_t toUInt32() const { return static_cast<std::uint32_t>(toUInt64()); }
    template <std::integral Number>
    explicit operator Number() const {
        return static_cast<Number>(toUInt64());
    }

    /// The same number, however many octets it was given in.
    friend bool operator==(const INTEGER& a, const INTEGER& b) {
        const View x = a.shortest(), y = b.shortest();
        return std::equal(x.begin(), x.end(), y.begin(), y.end());
    }

private:
    void setSigned(std::int64_t value);
    void setUnsigned(std::uint64_t value);

    Octets octets_;
};

}  // namespace ASN1
