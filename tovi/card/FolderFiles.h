#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Whole files of one folder, read and replaced. Names are relative, steps divided by `/`, and no
/// step of them may be a symbolic link, so that nothing outside the folder is touched.
///
/// Failures come back as text, "3F00/5015/5031: No such file or directory"; an empty text is
/// success.
class TOVI_API FolderFiles {
public:
    FolderFiles() = default;
    ~FolderFiles();
    FolderFiles(const FolderFiles&) = delete;
    FolderFiles& operator=(const FolderFiles&) = delete;

    /// Opens the folder, which every name counts from, even when it is renamed later.
    [[nodiscard]] std::string open(const std::filesystem::path& folder);

    /// Waits until nobody else, shared: no writer, has the folder locked, and locks it until this
    /// object ends. False when `patience` ran out. True where the file system has no locks.
    [[nodiscard]] bool lock(bool shared, std::chrono::milliseconds patience);

    /// False leaves it to the operating system when written octets reach the disk: the folder is
    /// then safe against the end of the process, and not against the end of the machine.
    void setSync(bool sync) { sync_ = sync; }

    /// Reads the regular file `name` of at most `limit` octets.
    [[nodiscard]] std::string read(const std::string& name, std::size_t limit,
                                   Blob& contents) const;

    /// Puts a file with `contents` in the place of `name`, whose permissions it takes over; folders
    /// on the way are made. At every moment `name` leads to the old file, whole, or to the new one.
    /// A file `name`.new may be left behind when the process ends in between.
    [[nodiscard]] std::string replace(const std::string& name, ASN1::View contents) const;

    /// True when there is anything of that name directly in the folder.
    bool exists(const std::string& name) const;

private:
    int folder_ = -1;
    bool sync_ = true;
};

}  // namespace tovi
