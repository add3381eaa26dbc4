#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/EfDir.h"
#include "tools/Failure.h"
#include "tools/FileKind.h"
#include "tools/Segment.h"
#include "tovi/interfaces/ISCardOS.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// One elementary file of the application, read to its end.
struct ApplicationFile {
    const FileKind* kind = nullptr;
    DirectoryFile file;
    std::vector<Segment> segments;              ///< in file order; they refer to `file`
    std::optional<ErrorReport> error;           ///< why it could not be read
    std::size_t readByRecords = 0;              ///< records that the reading of the model sees
    std::optional<std::size_t> recordCapacity;  ///< the most records of a linear file, where known
    bool isRepeated = false;                    ///< EF(ODF) named it before

    ApplicationFile() = default;
    ApplicationFile(ApplicationFile&&) = default;  // views and owners move together
    ApplicationFile& operator=(ApplicationFile&&) = default;

    std::size_t count(Segment::Kind kind) const;
    /// Records, decodable or not.
    std::size_t recordCount() const;
    /// Octets that are no record.
    std::size_t octetsFree() const;
    /// "EF(PrKDF) 3F0050154401"
    std::string name() const;
};

/// A file of the application, not read yet.
struct FileLocation {
    const FileKind* kind = nullptr;
    Blob path;                ///< absolute
    bool isRepeated = false;  ///< EF(ODF) named it before
};

/// Where the files lie that EF(ODF) does not name; absolute paths.
struct ApplicationPlace {
    Blob root;         ///< the DF of the application
    Blob odf;          ///< EF(ODF)
    Blob tokenInfo;    ///< EF(TokenInfo)
    Blob unusedSpace;  ///< EF(UnusedSpace), which a card need not have

    /// The usual identifiers 5031, 5032 and 5033 below `root`, where EF(DIR) says nothing else.
    explicit ApplicationPlace(const Blob& root, const DirectoryEntry& entry = {});
};

/// EF(UnusedSpace) and EF(DIR), which EF(ODF) does not name and a card need not have.
std::vector<FileLocation> optionalFiles(const ApplicationPlace& place);
/// Whether it is one of these two and not there.
bool isAbsent(const ApplicationFile& file);

/// "transparent", "linear-fixed", "linear", "other".
std::string_view structureName(FileStructure structure);

/// Selects the application and tells where EF(TokenInfo), EF(ODF) and every directory file lie that
/// EF(ODF) names, in its order. Throws "Failed to select PKCS15 AID" for a card without the
/// application.
std::vector<FileLocation> locateApplicationFiles(ISCardOS& os, const ApplicationPlace& place);

/// Reads one file to its end. A file that cannot be read has an `error` instead of segments; one
/// that is repeated is not read again and has neither.
ApplicationFile readApplicationFile(ISCardOS& os, const FileLocation& location);

/// Locates and reads all of them.
std::vector<ApplicationFile> readApplicationFiles(ISCardOS& os, const ApplicationPlace& place);

}  // namespace tovi
