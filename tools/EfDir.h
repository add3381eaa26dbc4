#pragma once

#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// What EF(DIR) says of an application. An empty path is not said.
struct DirectoryEntry {
    Blob application = {};  ///< from 3F00 on
    // Below the application, or from 3F00 on; where they are not at their usual places.
    Blob odf = {};
    Blob tokenInfo = {};
    Blob unusedSpace = {};
};

/// The entry of EF(DIR), 3F00 2F00, whose identifier begins with `aid`; an empty one when there is
/// no such file or entry.
DirectoryEntry findInDirectory(ISCardOS& os, const Blob& aid);

}  // namespace tovi
