#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// Control parameters of a file (ISO/IEC 7816-4), as SELECT returns them in an FCP
/// template 62 or an FCI template 6F.
struct FileControl {
    std::optional<std::size_t> dataSize;       ///< 80: octets of data
    std::optional<std::size_t> allocatedSize;  ///< 81: octets with structural information
    std::optional<std::uint8_t> descriptor;    ///< first octet of 82
    std::optional<std::size_t> recordSize;     ///< 82, third octet on
    std::optional<std::size_t> recordCount;    ///< 82, after the record size
    std::optional<std::uint16_t> fid;          ///< 83
    Blob name;                                 ///< 84: name of a DF, its AID
    std::optional<std::uint8_t> sfi;           ///< 88: short identifier, 1..30

    /// Reads what a card answered. Anything else than a template, and every member that is
    /// malformed, counts as absent; sizes beyond what fits are the largest that fits.
    static FileControl parse(ASN1::View response);

    /// The template with `tag` 62 or 6F around the members that are present.
    Blob encode(std::uint8_t tag) const;

    /// The members that reading and writing the file depend on.
    FileInfo info() const;
};

/// The first octet of 82 for a working EF of that structure, and for a DF.
std::uint8_t fileDescriptor(FileStructure structure);
inline constexpr std::uint8_t folderDescriptor = 0x38;

}  // namespace tovi
