#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// The directory files of one kind, in order of reading.
///
/// The index of a record counts the records of all files, beginning with the file read first, and
/// leaves out those that are not counted.
class DirectoryFiles {
public:
    /// Where a record stands: `places[place]` of `files()[file]`.
    struct Position {
        std::size_t file = 0;
        std::size_t place = 0;
        friend bool operator==(const Position&, const Position&) = default;
    };

    /// Says that the file at `path` is going to be read: the first path coming again begins a new
    /// round, and all files are forgotten.
    void beginReading(const Blob& path);
    void add(DirectoryFile file);
    void clear() { files_.clear(); }

    std::vector<DirectoryFile>& files() { return files_; }
    const std::vector<DirectoryFile>& files() const { return files_; }

    /// How many records there are.
    std::size_t count() const;
    /// Where the record with `index` stands; none when there are not so many records.
    std::optional<Position> find(std::size_t index) const;
    /// The index of the counted record at `position`.
    std::size_t indexOf(Position position) const;

private:
    std::vector<DirectoryFile> files_;
};

}  // namespace tovi
