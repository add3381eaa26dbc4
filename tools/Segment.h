#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/FileKind.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// What a stretch of a file, or of a record of a linear file, is.
struct Segment {
    enum class Kind : std::uint8_t {
        record,
        undecodable,  ///< begins as a record and is no value of the file's type
        wrapper,      ///< tag and length of a SEQUENCE around the entries of EF(ODF)
        erased,       ///< a record whose tag was overwritten with 00
        gap,          ///< padding, 00 or FF
        stale         ///< octets that belong to no record
    };
    Kind kind = Kind::gap;
    std::size_t slot = 0;  ///< number of the record of a linear file, from 1; else 0
    std::size_t offset = 0;
    ASN1::View octets = {};
    std::string error = {};                    ///< undecodable: why
    std::optional<ASN1::AnyValue> value = {};  ///< of a record whose type is known

    /// Whether it is a record, decodable or not.
    bool isRecord() const { return kind == Kind::record || kind == Kind::undecodable; }
};

/// All of a file that was read to its end, in file order. The segments refer to `file`.
std::vector<Segment> segmentsOf(const FileKind& kind, const DirectoryFile& file);

/// Cuts the first record of EF(ODF), where it is an outer SEQUENCE, into the entries within, as the
/// reading of the model does. Returns how many records there are in its place; 1 when it is none.
std::size_t openOuterSequence(std::vector<Segment>& segments);

/// What a kind of segment is called: "record", "undecodable", "wrapper" and so on.
std::string_view segmentName(Segment::Kind kind);

/// Whether all its octets are the same.
bool isUniform(const Segment& segment);
/// "record 1, offset 44, 20 octets: gap of 00", without the record in a transparent file.
std::string segmentTitle(const Segment& segment);

}  // namespace tovi
