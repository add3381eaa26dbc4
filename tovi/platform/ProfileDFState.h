#pragma once

#include <vector>

#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/platform/DirectoryFiles.h"

namespace tovi {

/// What a handler knows; shared by its reading and its writing side.
struct ProfileDFHandler::State {
    Blob application;           ///< absolute path
    Blob path;                  ///< absolute path of the file that ReadFile takes; empty: none
    std::vector<Blob> records;  ///< of the file read last
    DirectoryFiles files;       ///< those that were read to be written to
};

}  // namespace tovi
