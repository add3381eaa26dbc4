#pragma once

#include <cstddef>

#include "tovi/platform/FileLayout.h"
#include "tovi/platform/PlannedWrites.h"

namespace tovi {

/// The octets that moving a run writes, and what stands around it now.
///
/// A run is items `first` to `last` of a layout, both included; it is moved when all its items
/// stand where and as they are to stand. `now` of the writes is the file before that.
class RunOctets {
public:
    /// Both must outlive this object; their changes show here.
    RunOctets(const FileLayout& layout, const PlannedWrites& writes)
        : layout_(layout), items_(layout.items), writes_(writes) {}

    /// Where the last record ends that stands in front of item `first`; 0 when there is none.
    std::size_t endBefore(std::size_t first) const;
    /// Where the run's last record ends that the card holds.
    std::size_t oldEnd(std::size_t first, std::size_t last) const;
    /// Whether records stand behind item `last`.
    bool hasMoreBehind(std::size_t last) const;
    /// Where the gap ends that is behind item `last` once that is moved; behind the last record,
    /// where padding begins for certain.
    std::size_t gapEnd(std::size_t last) const;
    bool isPadding(std::size_t from, std::size_t to) const;

    /// Adds the items of the run.
    void appendRun(Blob& octets, std::size_t first, std::size_t last) const;
    /// Adds what follows a run that has been moved: of a gap that it leaves behind it, all octets
    /// where it stood; of one that it grew into, a mark of what is left.
    void appendBehind(Blob& octets, std::size_t first, std::size_t last) const;
    /// Where that ends.
    std::size_t endBehind(std::size_t first, std::size_t last) const;
    /// Adds the gap that item `first` leaves in front of it.
    void appendGapBefore(Blob& octets, std::size_t first) const;

private:
    std::size_t startBehind(std::size_t last) const;
    void appendGapBehind(Blob& octets, std::size_t last, std::size_t from, std::size_t to) const;
    Blob markOfRest(std::size_t last) const;

    const FileLayout& layout_;
    const std::vector<FileLayout::Item>& items_;
    const PlannedWrites& writes_;
};

}  // namespace tovi
