#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "tovi/interfaces/Blob.h"
#include "tovi/interfaces/ISCardOS.h"
#include "tovi/platform/RecordChange.h"

namespace tovi {

/// The most octets that are read from one directory file. Offsets of READ BINARY and UPDATE BINARY
/// go further on no card in use, and a card that never stops answering has to be stopped.
inline constexpr std::size_t maxDirectoryFileSize = 0x800000;

/// The most records of a linear file: numbers 1 to 254 (ISO/IEC 7816-4:2005, 7.3.1).
inline constexpr std::size_t maxDirectoryFileRecords = 254;

/// Padding of one value that fills at least so many octets up to the end of a response ends the
/// reading of a file.
inline constexpr std::size_t paddingThatEndsReading = 64;

/// Where a record stands in its file.
struct RecordPlace {
    std::uint32_t start = 0;   ///< transparent: offset; linear: record number less one
    std::uint32_t length = 0;  ///< octets of the record, without padding
    bool counted = true;       ///< false for one that has no index, such as one of another tag
    /// Written by an operation that then failed, so that nobody counts it.
    bool isOrphan = false;
    /// What the record holds, while a write goes on, or ended early, that may leave it incomplete.
    std::shared_ptr<const Blob> contents = nullptr;

    /// False for a record that is gone though its removal was reported as failed: its index stays.
    bool isOnCard() const { return length > 0; }
};

/// A command that failed in a way that leaves open whether the card performed it.
struct DoubtfulWrite {
    std::size_t start = 0;  ///< transparent: offset; linear: record number less one
    Blob octets;            ///< what it would have written
    RecordChange::Kind effect = RecordChange::Kind::none;  ///< on the records, if performed
    std::size_t place = 0;                                 ///< which the effect has
};

/// A directory file as far as it has been read.
struct DirectoryFile {
    Blob path;      ///< absolute
    FileInfo info;  ///< as the card told, except that `structure` is the one that worked

    /// The octets of a transparent file, from the first one on.
    std::vector<std::uint8_t> octets;
    /// Octets of the whole transparent file; 0 while nobody knows.
    std::size_t size = 0;
    /// The records of a linear file as the card holds them, free ones too, with their padding.
    std::vector<Blob> slots;
    /// Whether `octets` or `slots` are the whole file. Reading ends early where padding begins.
    bool isWhole = false;

    /// The records, in file order. Everything between and behind them is free.
    std::vector<RecordPlace> places;

    /// Set when a write failed: `octets` or `slots` are what the card held before that command.
    std::optional<DoubtfulWrite> doubt;
    /// False when a write ended early: which records are there is as `places` says, in this order,
    /// but where they stand is not.
    bool isSettled = true;

    bool isLinear() const { return info.structure != FileStructure::transparent; }
    /// The octets of a record of this file; valid until the file changes.
    ASN1::View octetsAt(const RecordPlace& place) const;
};

/// How much of a file is read.
enum class ReadExtent : std::uint8_t {
    records,   ///< up to the end of its records, as far as can be told
    wholeFile  ///< every octet of it
};

/// Selects and reads the directory file at the absolute `path`.
///
/// One SELECT, then as few READ BINARY as the card's response size allows, or READ RECORD one after
/// the other. What a transparent file holds is told by RecordScanner; a record of a linear file is
/// one data object and padding, and free when it is empty or does not begin with a constructed tag.
/// A record that is broken is taken with all that follows it in its file or slot, so that it is
/// seen and fails to decode.
///
/// Throws SmartcardException: "unusable file structure" for what is neither transparent nor linear,
/// "directory file too long" behind maxDirectoryFileSize, and whatever `os` throws.
DirectoryFile readDirectoryFile(ISCardOS& os, const Blob& path, ReadExtent extent);

/// Reads the selected transparent `file` on to its end. `places` stay as they are.
///
/// Throws as readDirectoryFile does; what came before is kept.
void readRest(ISCardOS& os, DirectoryFile& file);

/// Octets of the record that stands at the beginning of a record of a linear file; 0 when that is
/// free.
std::size_t recordInSlot(ASN1::View slot);

}  // namespace tovi
