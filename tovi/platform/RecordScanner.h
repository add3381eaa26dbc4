#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// A stretch of a transparent directory file.
struct FileEntry {
    enum class Kind : std::uint8_t {
        record,   ///< a data object with a constructed tag
        broken,   ///< begins as a record and has no valid length, or one that runs past the file
        erased,   ///< a record whose tag was overwritten with 00
        padding,  ///< octets 00 and FF
        stale     ///< what begins with a primitive tag, which no record has; free, as padding is
    };
    Kind kind = Kind::padding;
    std::uint32_t offset = 0;  ///< from the first octet of the file on
    std::uint32_t length = 0;  ///< in octets

    /// Whether it is a record, broken or not.
    bool isRecord() const { return kind == Kind::record || kind == Kind::broken; }

    friend bool operator==(const FileEntry&, const FileEntry&) = default;
};

/// Tells records, erased records and padding of a transparent directory file apart.
///
/// Records stand back to back, or with padding before, between and after them: the octets 00 and
/// FF are no tags (ISO/IEC 7816-4:2005, 5.2.2). An octet 00 is also what removal of a record may
/// leave in the place of its tag; length and contents then follow as they were. The two are told
/// apart by the next octet: it begins a length that fits into the file, and it cannot be the tag
/// of a live record. A broken record and stale octets reach to the end of the file.
///
/// The file may be given bit by bit as it comes from the card. Work and memory are linear in its
/// octets, whatever they are.
class RecordScanner {
public:
    /// A file whose end is not known yet.
    static constexpr std::size_t unknownSize = std::numeric_limits<std::size_t>::max();

    /// Goes on through `octets`, the file from its first octet on as far as it has been read.
    ///
    /// Returns true when no more octets are needed: the end of the file or stale octets are
    /// reached. `fileSize` is the size of the whole file, `octets` at most as long; once known, it
    /// stays. A file must be shorter than 4 GiB.
    bool scan(ASN1::View octets, std::size_t fileSize);

    /// What has been found, in file order and without gaps; padding only up to the last other
    /// entry until scan() has returned true.
    const std::vector<FileEntry>& entries() const { return entries_; }

    /// Where the padding begins that fills `octets`, as given to scan(), to their end with one
    /// value, all 00 or all FF; none when they end otherwise.
    std::optional<std::size_t> uniformPadding(ASN1::View octets) const;

private:
    enum class Step : std::uint8_t { taken, moreNeeded, done };

    Step step(ASN1::View rest, std::size_t room);
    Step atZero(ASN1::View rest, std::size_t room);
    Step atRecord(ASN1::View rest, std::size_t room);
    Step lastEntry(FileEntry::Kind kind, std::size_t length);
    Step filler(std::uint8_t octet);
    void add(FileEntry::Kind kind, std::size_t length);
    void closePadding();

    std::vector<FileEntry> entries_;
    std::size_t position_ = 0;      // everything before it is decided
    std::size_t paddingStart_ = 0;  // where the padding before position_ begins
    std::uint8_t paddingValue_ = 0;
    bool paddingIsMixed_ = false;
    bool done_ = false;
};

/// The entries of a whole file.
std::vector<FileEntry> scanRecords(ASN1::View file);

}  // namespace tovi
