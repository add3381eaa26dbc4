#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// What the first octets of a data object in a directory file tell (ISO/IEC 7816-4:2005, 5.2.2).
struct TlvHeader {
    enum class State : std::uint8_t {
        complete,  ///< size and contents hold
        cut,       ///< the octets end inside the header
        invalid    ///< no length that a file may hold, or a tag of more than three octets
    };
    State state = State::cut;
    std::size_t size = 0;        ///< octets of tag and length
    std::uint64_t contents = 0;  ///< octets that follow them

    /// The whole data object, header and contents.
    std::uint64_t total() const { return size + contents; }
};

/// Reads a length field: 00..7F, or 81..84 and as many octets. Its `size` counts the length alone.
TlvHeader readLength(ASN1::View octets);

/// Reads tag and length at the beginning of `octets`.
TlvHeader readTlvHeader(ASN1::View octets);

/// Whether a record may begin with `octet`: its tag says that it is constructed, and it is not FF.
constexpr bool isRecordTag(std::uint8_t octet) { return (octet & 0x20) != 0 && octet != 0xFF; }

/// Whether `octet` stands for nothing where a record could begin.
constexpr bool isPadding(std::uint8_t octet) { return octet == 0x00 || octet == 0xFF; }

}  // namespace tovi
