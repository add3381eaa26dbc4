#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Failure.h"
#include "tovi/asn1/AbstractData.h"
#include "tovi/interfaces/ISCardOS.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// The standard's name of an elementary file, and the type of its records.
struct FileKind {
    std::string_view name;  ///< "PrKDF"
    const ASN1::Type* record = nullptr;
};

/// The kind that alternative `choice` of EF(ODF)'s entries names, 0 to 8.
const FileKind& directoryFileKind(std::size_t choice);
extern const FileKind tokenInfoFile, odfFile, unusedSpaceFile, dirFile;
/// A file that is none of these; its records are of no known type.
extern const FileKind otherFile;

/// What a stretch of a file, or of a record of a linear file, is.
struct Segment {
    enum class Kind : std::uint8_t {
        record,
        undecodable,  ///< begins as a record and is no value of the file's type
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
};

/// One elementary file of the application, read to its end.
struct ApplicationFile {
    const FileKind* kind = nullptr;
    DirectoryFile file;
    std::vector<Segment> segments;     ///< in file order; they refer to `file`
    std::optional<ErrorReport> error;  ///< why it could not be read
    std::size_t readByRecords = 0;     ///< records that the reading of the model sees
    bool isRepeated = false;           ///< EF(ODF) named it before

    ApplicationFile() = default;
    ApplicationFile(ApplicationFile&&) = default;  // views and owners move together
    ApplicationFile& operator=(ApplicationFile&&) = default;

    std::size_t count(Segment::Kind kind) const;
    /// "EF(PrKDF) 3F0050154401"
    std::string name() const;
};

/// A file of the application, not read yet.
struct FileLocation {
    const FileKind* kind = nullptr;
    Blob path;                ///< absolute
    bool isRepeated = false;  ///< EF(ODF) named it before
};

/// Selects the application below `rootPath` and tells where EF(TokenInfo), EF(ODF) and every
/// directory file lie that EF(ODF) names, in its order. Throws "Failed to select PKCS15 AID" for a
/// card without the application.
std::vector<FileLocation> locateApplicationFiles(ISCardOS& os, const Blob& rootPath);

/// Reads one file to its end. A file that cannot be read has an `error` instead of segments; one
/// that is repeated is not read again and has neither.
ApplicationFile readApplicationFile(ISCardOS& os, const FileLocation& location);

/// Locates and reads all of them.
std::vector<ApplicationFile> readApplicationFiles(ISCardOS& os, const Blob& rootPath);

/// What a kind of segment is called: "record", "undecodable", "erased", "gap", "stale".
std::string_view segmentName(Segment::Kind kind);

}  // namespace tovi
