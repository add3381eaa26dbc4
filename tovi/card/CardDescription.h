#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tovi/Export.h"
#include "tovi/card/CardFolderError.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// What has to hold before a file is read or changed.
struct TOVI_API AccessRule {
    /// Free to all, closed to all, or open after a PIN.
    enum class Kind : std::uint8_t { always, never, pin };
    Kind kind = Kind::always;    ///< what the rule asks for
    std::uint8_t reference = 0;  ///< of the PIN, for Kind::pin: P2 of VERIFY

    friend bool operator==(const AccessRule&, const AccessRule&) = default;
};

/// What a card has of one file, its contents apart.
struct TOVI_API FileDescription {
    /// A DF or the structure of an elementary file (ISO/IEC 7816-4:2005, 5.3).
    enum class Kind : std::uint8_t { df, transparent, linearVariable, linearFixed };

    Blob path;                        ///< from 3F00 on, two octets a step
    Kind kind = Kind::df;             ///< what the file is
    std::size_t size = 0;             ///< transparent: octets; linear: the most records
    std::size_t recordSize = 0;       ///< linear: octets of a record, the most when variable
    Blob aid;                         ///< of a DF; empty: none
    std::optional<std::uint8_t> sfi;  ///< short identifier of an elementary file
    AccessRule read;                  ///< of no effect for a DF, as is `update`
    AccessRule update;                ///< for updating, appending and erasing

    friend bool operator==(const FileDescription&, const FileDescription&) = default;
};

/// A PIN: the value that VERIFY compares with, and how often it may be wrong.
struct TOVI_API PinDescription {
    std::uint8_t reference = 0;  ///< P2 of VERIFY
    Blob value;                  ///< compared octet for octet
    unsigned tries = 3;          ///< wrong values that block it
    unsigned left = 3;           ///< tries left now; 0: blocked

    friend bool operator==(const PinDescription&, const PinDescription&) = default;
};

/// The text file CARD of a card folder: one file of the card, or one PIN, a line.
///
///     # path            structure     size   options
///     3F00              df
///     3F00/5015         df            -      aid=A000000063504B43532D3135
///     3F00/5015/5031    transparent   128    sfi=17
///     3F00/5015/4404    linear        20     record=64 update=pin:1
///     pin 1 31323334 3
///
/// Structures: df, transparent, linear (records of variable size) and linear-fixed. Options:
/// aid=HEX, sfi=N, record=N, read=RULE and update=RULE with RULE always, never or pin:REF. A pin
/// line has reference, value and tries, and `left=N` when not all tries are left. Numbers are
/// decimal or begin with 0x. Blank lines and lines that begin with # stay as they are through every
/// edit.
///
/// Bounds: 16 MiB a file, 64 MiB a card, 254 records of at most 65535 octets, 8 steps a path, 4096
/// files, 1 MiB of text. The master file is always there; any other DF has its line above those of
/// its files.
class TOVI_API CardDescription {
public:
    /// The bounds, in octets or by count.
    static constexpr std::size_t maxFileSize = std::size_t{16} << 20;
    static constexpr std::size_t maxCardSize = std::size_t{64} << 20;
    static constexpr std::size_t maxTextSize = std::size_t{1} << 20;
    static constexpr std::size_t maxFiles = 4096;
    static constexpr std::size_t maxRecords = 254;
    static constexpr std::size_t maxRecordSize = 65535;
    static constexpr std::size_t maxSteps = 8;
    static constexpr unsigned maxTries = 15;

    /// A card that has a master file and nothing else, described by no line.
    CardDescription() = default;

    /// Reads a text. Throws CardFolderError "invalid card description", whose text() begins with
    /// `fileName` and the number of the line, counted from 1.
    static CardDescription parse(std::string_view text, std::string_view fileName);

    /// The text that parse read, with a line end at its end, and what was changed since.
    std::string text() const;

    /// Adds a comment; `comment` without the number sign. Line ends in it become spaces.
    void addComment(std::string_view comment);
    /// Adds a line for `file` or `pin`. Throws CardFolderError "invalid card description" when
    /// parse would not accept it there.
    void add(const FileDescription& file);
    void add(const PinDescription& pin);

    /// Notes how many tries a PIN has left. A reference that is not described is ignored.
    void setTriesLeft(std::uint8_t reference, unsigned left);

    /// In the order of the text; the master file is among them only when a line names it.
    const std::vector<FileDescription>& files() const { return files_; }
    const std::vector<PinDescription>& pins() const { return pins_; }

private:
    std::string reasonAgainst(const FileDescription& file) const;
    std::string reasonAgainst(const PinDescription& pin) const;
    std::string reasonAgainstPlace(const FileDescription& file) const;
    void accept(const FileDescription& file, std::string line);
    void accept(const PinDescription& pin, std::string line);

    std::vector<std::string> lines_;
    std::vector<FileDescription> files_;
    std::vector<PinDescription> pins_;
    std::vector<std::size_t> pinLines_;  ///< for each PIN the index of its line
    std::map<Blob, FileDescription::Kind> kinds_{{Blob{0x3F, 0x00}, FileDescription::Kind::df}};
    std::set<Blob> aids_;
    std::set<std::pair<Blob, std::uint8_t>> sfis_;  ///< with the path of the DF
    bool masterFileNamed_ = false;
    std::size_t cardSize_ = 0;
};

/// "3F00/5015/5031": a path as CARD spells it, and the name of the contents in a card folder.
TOVI_API std::string pathName(ASN1::View path);

}  // namespace tovi
