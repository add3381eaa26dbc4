#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// One BER-TLV data object of a command or response. `value` points into the octets it was read
/// from.
struct BerTlv {
    std::uint32_t tag = 0;  ///< identifier octets as a number: 0x62, 0x7F49
    ASN1::View value;

    /// Takes the first data object off `rest`; false at the end and when it is malformed. Octets 00
    /// and FF between data objects are skipped.
    ///
    /// Tags of one to three octets, definite lengths of at most four octets behind the first
    /// (ISO/IEC 7816-4:2005, 5.2.2).
    [[nodiscard]] static bool next(ASN1::View& rest, BerTlv& object);

    /// Finds the first data object with `tag` on this level; false when there is none.
    [[nodiscard]] static bool find(ASN1::View objects, std::uint32_t tag, BerTlv& object);
};

/// Adds a data object with a tag of one octet to `out`. Lengths go up to FFFFFF.
void appendBerTlv(Blob& out, std::uint8_t tag, ASN1::View value);

}  // namespace tovi
