#pragma once

#include <vector>

#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// What a handler knows; shared by its reading and its writing side.
struct ProfileDFHandler::State {
    Blob application;           ///< absolute path
    Blob path;                  ///< absolute path of the file that ReadFile takes; empty: none
    std::vector<Blob> records;  ///< of the file read last

    /// The files of this kind that were read to be written to, in order of reading. The index of
    /// a record runs through the counted places of all of them.
    std::vector<DirectoryFile> files;
};

}  // namespace tovi
