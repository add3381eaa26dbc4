#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"

namespace tovi {

/// The library's byte buffer. Empty means "no value" in optional fields. Short contents, as
/// identifiers, labels and paths have, are kept in place.
using Blob = ASN1::Octets;

/// A run of octets as callers hand it in; the same buffer under the name of its role.
using byte_array = Blob;

/// Octets that must not outlive their use, such as a PIN: overwritten before they are released.
class TOVI_API MBlob {
public:
    MBlob() = default;
    /// Copies the octets; the caller wipes its own.
    explicit MBlob(ASN1::View octets) : octets_(octets.begin(), octets.end()) {}
    MBlob(const MBlob&) = default;
    MBlob(MBlob&& other) noexcept { octets_.swap(other.octets_); }
    MBlob& operator=(MBlob other) noexcept {
        octets_.swap(other.octets_);
        return *this;
    }
    ~MBlob() { wipe(); }

    /// The octets, to look at or change in place.
    std::uint8_t* data() { return octets_.data(); }
    std::size_t size() const { return octets_.size(); }
    bool empty() const { return octets_.empty(); }
    operator ASN1::View() const { return octets_; }

    /// Overwrites the octets and leaves the buffer empty.
    void wipe() {
        volatile std::uint8_t* octet = octets_.data();
        for (std::size_t i = 0; i < octets_.size(); ++i) octet[i] = 0;
        octets_.clear();
    }

private:
    std::vector<std::uint8_t> octets_;  // never grows, so no copy is left behind
};

}  // namespace tovi
