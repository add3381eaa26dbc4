#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Reading and replacing whole files of a folder, and nothing outside of it: paths are relative to
/// the folder, and no step of them may be a symbolic link.
///
/// Failures are reported as text, "3F00/5015/5031: No such file or directory"; empty text is
/// success. The folder may be renamed while it is open.
class FolderFiles {
public:
    FolderFiles() = default;
    ~FolderFiles();
    FolderFiles(const FolderFiles&) = delete;
    FolderFiles& operator=(const FolderFiles&) = delete;

    [[nodiscard]] std::string open(const std::filesystem::path& folder);

    /// Waits up to `milliseconds` until nobody else holds the folder; shared: until no writer does.
    /// False when that did not happen. Where the file system knows no locks: true.
    [[nodiscard]] bool lock(bool shared, unsigned milliseconds);

    /// Reads the regular file `name`, of at most `limit` octets.
    [[nodiscard]] std::string read(const std::string& name, std::size_t limit, Blob& contents);

    /// Puts a file with these contents in the place of `name`: at every moment the name leads to
    /// the old file whole or to the new one whole, also after a loss of power. Makes the folders on
    /// the way to it.
    [[nodiscard]] std::string replace(const std::string& name, ASN1::View contents);

    /// True when there is anything of that name.
    bool exists(const std::string& name) const;

private:
    int folder_ = -1;
};

}  // namespace tovi
