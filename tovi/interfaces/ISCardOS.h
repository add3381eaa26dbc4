#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// How an elementary file holds its octets (ISO/IEC 7816-4:2005, 5.3.2).
enum class FileStructure : std::uint8_t { transparent, linearFixed, linearVariable, other };

/// What selecting an elementary file tells. A member that the card leaves out is 0.
struct TOVI_API FileInfo {
    /// How the file holds its octets.
    FileStructure structure = FileStructure::transparent;
    std::size_t size = 0;         ///< octets of a transparent file
    std::size_t recordSize = 0;   ///< octets of a record: exact when fixed, the most when variable
    std::size_t recordCount = 0;  ///< records that the linear file holds now
};

/// A card, as far as the container needs one. Derive from it to bring a card stack of your own.
///
/// Every operation throws SmartcardException when the card refuses (code 0x10000 + status word) or
/// cannot be reached (code 0); what it would have returned is then lost. Offsets and lengths count
/// octets. Not thread-safe.
class TOVI_API ISCardOS {
public:
    virtual ~ISCardOS() = default;

    /// Selects the application named `aid` and returns the card's response, FCI or empty.
    ///
    /// `mode` is P2 of SELECT: 0x0C asks for no response data (ISO/IEC 7816-4:2005, 7.1.1).
    virtual Blob selectApplication(const Blob& aid, unsigned char mode) = 0;

    /// Selects the elementary file at `path`, two octets a step: from the master file on when it
    /// begins with 3F00, else below the application selected last. Later operations go to this file
    /// until the next selection.
    virtual FileInfo selectFile(const Blob& path) = 0;

    /// Reads up to `length` octets of the selected transparent file from `offset` on.
    ///
    /// At most maxRead() octets come back; fewer at the end of the file, none behind it.
    virtual Blob readBinary(std::size_t offset, std::size_t length) = 0;

    /// Overwrites octets of the selected transparent file from `offset` on.
    ///
    /// At most maxWrite() octets: they are one command, which a card performs wholly or not at all.
    virtual void updateBinary(std::size_t offset, ASN1::View octets) = 0;

    /// Reads record `number`, counted from 1, of the selected linear file, wholly.
    ///
    /// Past the last record the status word is 6A83.
    virtual Blob readRecord(std::size_t number) = 0;

    /// Replaces record `number`, counted from 1. Of a fixed-size file the whole record is given.
    virtual void updateRecord(std::size_t number, ASN1::View record) = 0;

    /// Adds a record behind the last one; status word 6A84 when the file is full.
    virtual void appendRecord(ASN1::View record) = 0;

    /// The most octets that one readBinary brings.
    virtual std::size_t maxRead() const = 0;
    /// The most octets that one updateBinary, updateRecord or appendRecord writes atomically.
    virtual std::size_t maxWrite() const = 0;
};

}  // namespace tovi
