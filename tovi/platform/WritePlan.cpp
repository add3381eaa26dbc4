#include "tovi/platform/WritePlan.h"

#include <algorithm>
#include <utility>

#include "tovi/platform/GapMarks.h"
#include "tovi/platform/RunOctets.h"

namespace tovi {
namespace {

using Item = FileLayout::Item;

/// A gap of one value that is shorter than this ends no reading, wherever a response ends.
constexpr std::size_t shortGap = 32;

/// Makes the steps. A run is items `first` to `last`, both included.
class Planner {
public:
    Planner(FileLayout layout, ASN1::View file, std::size_t most)
        : layout_(std::move(layout)),
          items_(layout_.items),
          writes_(file, std::move(layout_.target), most),
          octets_(layout_, writes_),
          most_(most) {}

    WritePlan plan() {
        // Every part ends early when one command can do all that is left.
        writes_.finish() || replaceInPlace() || clearJunk() || moveUp() || moveDown() || clearEnd();
        const std::size_t count = writes_.size();
        return {writes_.take(), effective_.value_or(count), layout_.changed};
    }

private:
    void place(std::size_t first, std::size_t last) {
        for (std::size_t i = first; i <= last; ++i) {
            Item& item = items_[i];
            item.at = item.target;
            item.length = item.octets.size();
            item.isPlaced = true;
            if (i == layout_.changed) effective_ = writes_.size();
        }
    }

    /// A record that is replaced by one of the same length, too long for one command.
    bool replaceInPlace() {
        if (!layout_.keepsPlaces) return false;
        const Item& item = items_[layout_.changed];
        writes_.putLong(item.at, unfinishedMark(item.octets, item.length), item.octets);
        return writes_.finish();
    }

    /// Erased and stale octets behind the last record become padding before anything is written
    /// there.
    bool clearJunk() {
        if (layout_.isWalled) return false;
        return writes_.putBackwards(layout_.oldEnd,
                                    ASN1::View(layout_.cleared).subspan(layout_.oldEnd));
    }

    bool clearEnd() {
        const std::size_t size = layout_.limit - layout_.end;
        if (layout_.isWalled) {
            writes_.put(layout_.end, erasedMark(size));
            if (writes_.finish()) return true;
        }
        return writes_.putBackwards(layout_.end, writes_.target().subspan(layout_.end, size));
    }

    /// Records that make room, beginning with the last one.
    bool moveUp() {
        for (std::size_t last = items_.size(); last-- > 0;) {
            if (!goesUp(last)) continue;
            const std::size_t first = moveRunUp(last);
            place(first, last);
            if (writes_.finish()) return true;
            last = first;
        }
        return false;
    }

    bool goesUp(std::size_t i) const {
        return i > layout_.changed && items_[i].length > 0 && items_[i].target > items_[i].at;
    }

    std::size_t moveRunUp(std::size_t last) {
        const std::size_t end = octets_.endBehind(last, last);
        std::size_t first = last + 1;
        while (first > 0 && goesUp(first - 1) && end - items_[first - 1].at <= most_) --first;
        if (first > last) return moveRunUpInTwo(last);
        mixGapBefore(first);
        Blob octets;
        octets_.appendGapBefore(octets, first);
        octets_.appendRun(octets, first, last);
        octets_.appendBehind(octets, last, last);
        writes_.put(items_[first].at, octets);
        return first;
    }

    /// A gap of one value, as only others leave it, could hide what follows once that moves.
    void mixGapBefore(std::size_t first) {
        const std::size_t from = octets_.endBefore(first);
        const std::size_t to = items_[first].at;
        if (to - from < shortGap || !octets_.isPadding(from, to)) return;
        if (writes_.now()[from] != writes_.now()[from + 1]) return;
        writes_.put(from, Blob{0x00, 0xFF});
    }

    /// Moves a run whose records and gap are too long for one command: what comes to stand in the
    /// gap behind is written first, while that is an erased entry; the next command then makes one
    /// of the gap in front.
    std::size_t moveRunUpInTwo(std::size_t last) {
        const std::size_t gapStart = items_[last].end();
        const std::size_t distance = items_[last].target - items_[last].at;
        const Blob mark = erasedMark(octets_.gapEnd(last) - gapStart);
        const auto canGo = [&](std::size_t first) {
            const std::size_t size = gapStart - items_[first].at + mark.size();
            return distance > 2 && (size <= most_ || size <= distance);
        };
        if (!canGo(last)) return moveLongUp(last);
        std::size_t first = last;
        while (first > 0 && goesUp(first - 1) && items_[first - 1].end() == items_[first].at &&
               items_[first - 1].target - items_[first - 1].at == distance && canGo(first - 1))
            --first;
        mixGapBefore(first);
        const std::size_t start = items_[first].at;
        Blob octets(writes_.now().subspan(start, distance));
        const Blob front = erasedMark(distance);
        std::copy(front.begin(), front.end(), octets.begin());
        octets_.appendRun(octets, first, last);
        octets_.appendBehind(octets, last, last);
        const ASN1::View all = octets;
        writes_.putHidden(gapStart, mark, all.subspan(gapStart - start));
        const std::size_t unwritten = gapStart - start + mark.size();
        writes_.put(start, unwritten > distance ? all.first(unwritten) : ASN1::View(front));
        return first;
    }

    std::size_t moveLongUp(std::size_t last) {
        mixGapBefore(last);
        const Item& item = items_[last];
        Blob octets;
        octets_.appendGapBefore(octets, last);
        octets.append(item.octets);
        octets_.appendBehind(octets, last, last);
        writes_.putLong(item.at, unfinishedMark(item.octets, octets_.gapEnd(last) - item.at),
                        octets);
        return last;
    }

    /// All other records, beginning with the first one; in front of each, all are placed.
    bool moveDown() {
        for (std::size_t first = 0; first < items_.size(); ++first) {
            if (items_[first].isPlaced) continue;
            const std::size_t last = moveRunDown(first);
            place(first, last);
            if (writes_.finish()) return true;
            first = last;
        }
        return false;
    }

    /// The longest run from `first` on that `fits`.
    template <class Fits>
    std::optional<std::size_t> longestRun(std::size_t first, const Fits& fits) const {
        std::optional<std::size_t> last;
        for (std::size_t i = first; i < items_.size() && !items_[i].isPlaced && fits(i); ++i)
            last = i;
        return last;
    }

    std::size_t moveRunDown(std::size_t first) {
        const std::size_t start = items_[first].target;
        const auto fitsWithGap = [&](std::size_t last) {
            return octets_.endBehind(first, last) - start <= most_;
        };
        if (const auto last = longestRun(first, fitsWithGap)) {
            Blob octets;
            octets_.appendRun(octets, first, *last);
            octets_.appendBehind(octets, first, *last);
            writes_.put(start, octets);
            return *last;
        }
        return moveRunDownOverErased(first);
    }

    /// Moves a run whose records and gap are too long for one command: the gap becomes an erased
    /// entry.
    std::size_t moveRunDownOverErased(std::size_t first) {
        const std::size_t start = items_[first].target;
        const auto fitsWithMark = [&](std::size_t last) {
            const std::size_t newEnd = items_[last].targetEnd();
            const std::size_t end = octets_.oldEnd(first, last);
            return end > newEnd && newEnd - start + erasedMark(end - newEnd).size() <= most_;
        };
        const auto last = longestRun(first, fitsWithMark);
        if (!last) return moveLongDown(first);
        Blob octets;
        octets_.appendRun(octets, first, *last);
        const std::size_t newEnd = items_[*last].targetEnd();
        octets.append(erasedMark(octets_.oldEnd(first, *last) - newEnd));
        writes_.put(start, octets);
        return *last;
    }

    std::size_t moveLongDown(std::size_t i) {
        const Item& item = items_[i];
        const std::size_t newEnd = item.targetEnd();
        const std::size_t end = octets_.oldEnd(i, i);
        Blob octets = item.octets;
        const Blob erased = erasedMark(end > newEnd ? end - newEnd : 0);
        if (item.length == 0) {
            octets_.appendBehind(octets, i, i);
            writes_.putLong(item.target, erasedMark(octets_.gapEnd(i) - item.target), octets);
        } else if (i != layout_.changed && newEnd + erased.size() <= item.at) {
            octets.append(erased);
            writes_.putLong(item.target, erasedMark(item.at - item.target), octets);
        } else {
            if (end > newEnd && end - newEnd > most_) {
                octets.append(erased);
            } else {
                octets_.appendBehind(octets, i, i);
            }
            const std::size_t markedEnd = end >= newEnd ? end : octets_.gapEnd(i);
            writes_.putLong(item.target, unfinishedMark(item.octets, markedEnd - item.target),
                            octets);
        }
        return i;
    }

    FileLayout layout_;
    std::vector<Item>& items_;
    PlannedWrites writes_;
    RunOctets octets_;
    std::size_t most_;
    std::optional<std::size_t> effective_;
};

}  // namespace

std::optional<WritePlan> planWriting(ASN1::View file, const RecordChange& change,
                                     std::size_t most) {
    std::optional<FileLayout> layout = FileLayout::of(file, change);
    if (!layout) return std::nullopt;
    return Planner(std::move(*layout), file, most).plan();
}

}  // namespace tovi
