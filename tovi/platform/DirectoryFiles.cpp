#include "tovi/platform/DirectoryFiles.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tovi {
namespace {

std::size_t countedAmong(std::span<const RecordPlace> places) {
    return static_cast<std::size_t>(std::count_if(places.begin(), places.end(),
                                                  [](const auto& place) { return place.counted; }));
}

/// The place of the counted record `index` of one file that has it.
std::size_t placeOf(const DirectoryFile& file, std::size_t index) {
    std::size_t place = 0;
    while (!file.places[place].counted || index-- > 0) ++place;
    return place;
}

}  // namespace

void DirectoryFiles::beginReading(const Blob& path) {
    if (!files_.empty() && files_.front().path == path) files_.clear();
}

void DirectoryFiles::add(DirectoryFile file) { files_.push_back(std::move(file)); }

std::size_t DirectoryFiles::count() const {
    std::size_t count = 0;
    for (const DirectoryFile& file : files_) count += countedAmong(file.places);
    return count;
}

std::optional<DirectoryFiles::Position> DirectoryFiles::find(std::size_t index) const {
    for (std::size_t i = 0; i < files_.size(); ++i) {
        const std::size_t count = countedAmong(files_[i].places);
        if (index < count) return Position{i, placeOf(files_[i], index)};
        index -= count;
    }
    return std::nullopt;
}

std::size_t DirectoryFiles::indexOf(Position position) const {
    std::size_t index = 0;
    for (std::size_t i = 0; i < position.file; ++i) index += countedAmong(files_[i].places);
    return index + countedAmong(std::span(files_[position.file].places).first(position.place));
}

}  // namespace tovi
