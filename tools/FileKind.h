#pragma once

#include <cstddef>
#include <string_view>

#include "tovi/asn1/AbstractData.h"

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

}  // namespace tovi
