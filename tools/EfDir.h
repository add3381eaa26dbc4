#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// What EF(DIR) says of an application. An empty path is not said.
struct DirectoryEntry {
    Blob application = {};  ///< from 3F00 on
    // Below the application, or from 3F00 on; where they are not at their usual places.
    Blob odf = {};
    Blob tokenInfo = {};
    Blob unusedSpace = {};
    Blob aid = {};    ///< the application's identifier
    Blob label = {};  ///< UTF-8
};

/// One record of EF(DIR).
struct DirectoryRecord {
    Blob octets;                          ///< as they came
    std::optional<DirectoryEntry> entry;  ///< none when it is no application template
    std::string error = {};  ///< what is wrong with it; an entry may stand all the same
};

/// Reads an application template (ISO/IEC 7816-4:2005, 8.2.1.3), its data objects in any order:
/// 61 with 4F identifier, 50 label, 51 path, and the DDO of PKCS#15 v1.1, 5.4.1, in 73 or 53.
DirectoryRecord directoryRecord(ASN1::View octets);

/// All records of EF(DIR), 3F00 2F00, transparent or linear. Throws what reading it does.
std::vector<DirectoryRecord> readDirectory(ISCardOS& os);

/// The entries of EF(DIR) alone; none where it cannot be read, since a card need not have it.
std::vector<DirectoryEntry> directoryEntries(ISCardOS& os);

/// The first of `entries` whose identifier begins with `aid`; null without one.
const DirectoryEntry* findEntry(const std::vector<DirectoryEntry>& entries, const Blob& aid);

/// The entry of EF(DIR) whose identifier begins with `aid`; an empty one when there is no such
/// file or entry.
DirectoryEntry findInDirectory(ISCardOS& os, const Blob& aid);

}  // namespace tovi
