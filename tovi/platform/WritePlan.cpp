#include "tovi/platform/WritePlan.h"

#include <algorithm>
#include <utility>

#include "tovi/platform/GapMarks.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

using Item = FileLayout::Item;

/// A gap of one value that is shorter than this ends no reading, wherever a response ends.
constexpr std::size_t shortGap = 32;

/// Makes the steps. A run is items `first` to `last`, both included; moving it puts all its items
/// where and as they are to stand.
class Planner {
public:
    Planner(FileLayout layout, ASN1::View file, std::size_t most)
        : layout_(std::move(layout)),
          items_(layout_.items),
          writes_(file, std::move(layout_.target), most),
          most_(most) {}

    WritePlan plan() {
        // Every part ends early when one command can do all that is left.
        finish() || replaceInPlace() || clearJunk() || moveUp() || moveDown() || clearEnd();
        return {writes_.take(), effective_.value_or(0), layout_.changed};
    }

private:
    bool finish() {
        if (!writes_.finish()) return false;
        if (!effective_) effective_ = writes_.size();
        return true;
    }

    // What stands around a run.
    std::size_t endBefore(std::size_t first) const {
        while (first > 0 && items_[first - 1].length == 0) --first;
        return first == 0 ? 0 : items_[first - 1].end();
    }
    std::size_t startBehind(std::size_t last) const {
        ++last;
        while (last < items_.size() && items_[last].length == 0) ++last;
        return last == items_.size() ? layout_.limit : items_[last].at;
    }
    bool hasMoreBehind(std::size_t last) const {
        return startBehind(last) < layout_.limit || layout_.isWalled;
    }
    /// Where the gap behind a run ends once that is moved; behind the last record, what may not be
    /// padding there.
    std::size_t gapEnd(std::size_t last) const {
        if (hasMoreBehind(last)) return startBehind(last);
        return std::max(layout_.oldEnd, items_[last].targetEnd());
    }
    /// Where the last record of the run ends that the card holds.
    std::size_t oldEnd(std::size_t first, std::size_t last) const {
        for (std::size_t i = last + 1; i > first; --i)
            if (items_[i - 1].length > 0) return items_[i - 1].end();
        return items_[first].target;
    }
    bool isPadding(std::size_t from, std::size_t to) const {
        const ASN1::View octets = writes_.now().subspan(from, to - from);
        return std::all_of(octets.begin(), octets.end(), tovi::isPadding);
    }

    // The octets of which a step consists.
    void appendRun(Blob& octets, std::size_t first, std::size_t last) const {
        for (std::size_t i = first; i <= last; ++i) octets.append(items_[i].octets);
    }

    /// The beginning of a gap that a run leaves behind it, so far as the run stood there.
    void appendGapBehind(Blob& octets, std::size_t last, std::size_t from, std::size_t to) const {
        if (to == from) return;
        const std::size_t size = octets.size();
        octets.resize(size + to - from, layout_.fill);
        if (!hasMoreBehind(last)) return;
        paintGap(std::span(octets.data() + size, to - from));
        // Where the gap goes on behind, two values shall meet.
        const bool goesOn = to < startBehind(last);
        if (to - from == 1 && goesOn && writes_.now()[to] == 0xFF) octets.back() = 0x00;
    }

    /// The mark of what is left of a gap that a run grows into.
    Blob markOfRest(std::size_t last) const {
        const std::size_t from = items_[last].targetEnd();
        const std::size_t to = gapEnd(last);
        if (from >= to) return {};
        if (!isPadding(from, to)) return erasedMark(to - from);
        if (!hasMoreBehind(last)) return {};
        Blob mark(std::min<std::size_t>(to - from, 2), 0xFF);
        paintGap(std::span(mark.data(), mark.size()));
        return mark;
    }

    /// What stands behind a run that has been moved: the beginning of a new gap or of the rest of
    /// one.
    void appendBehind(Blob& octets, std::size_t first, std::size_t last) const {
        const std::size_t from = items_[last].targetEnd();
        const std::size_t to = oldEnd(first, last);
        if (to > from) {
            appendGapBehind(octets, last, from, to);
        } else if (to < from) {
            octets.append(markOfRest(last));
        }
    }

    /// The gap that a run leaves in front of it.
    void appendGapBefore(Blob& octets, std::size_t first) const {
        const Item& item = items_[first];
        const std::size_t size = octets.size();
        octets.resize(size + item.target - item.at);
        paintGap(std::span(octets.data() + size, octets.size() - size));
        const bool goesOn = endBefore(first) < item.at && item.target - item.at > 1;
        if (goesOn && writes_.now()[item.at - 1] == 0x00) octets[size] = 0xFF;
    }

    void place(std::size_t first, std::size_t last) {
        for (std::size_t i = first; i <= last; ++i) {
            Item& item = items_[i];
            item.at = item.target;
            item.length = item.octets.size();
            item.isPlaced = true;
            if (i == layout_.changed) effective_ = writes_.size();
        }
    }

    /// Writes all but the first octets of `octets`, where `mark` stands and stays.
    void hideAndPut(std::size_t offset, const Blob& mark, ASN1::View octets) {
        Blob beginning = mark;
        beginning.append(octets.subspan(mark.size()));
        const ASN1::View all = beginning;
        for (std::size_t done = 0; done < all.size(); done += most_)
            writes_.put(offset + done, all.subspan(done, std::min(most_, all.size() - done)));
    }

    /// Writes more than one command can. Until the last step, `mark` makes one entry of it, which
    /// reaches as far as the mark says.
    void putLong(std::size_t offset, const Blob& mark, ASN1::View octets) {
        hideAndPut(offset, mark, octets);
        writes_.put(offset, octets.first(mark.size()));
    }

    /// A record that is replaced by one of the same length, too long for one command.
    bool replaceInPlace() {
        if (!layout_.keepsPlaces) return false;
        const Item& item = items_[layout_.changed];
        putLong(item.at, unfinishedMark(item.octets, item.length), item.octets);
        return finish();
    }

    /// Makes `octets` stand at `offset`, from their end on: of what they replace, the beginning
    /// says how it is to be read.
    bool clearBackwards(std::size_t offset, ASN1::View octets) {
        std::size_t end = octets.size();
        while (true) {
            while (end > 0 && writes_.now()[offset + end - 1] == octets[end - 1]) --end;
            if (end == 0) return false;
            std::size_t start = end - std::min(end, most_);
            if (start > 0 && end > longestMark) start = std::max(start, longestMark);
            writes_.put(offset + start, octets.subspan(start, end - start));
            if (finish()) return true;
            end = start;
        }
    }

    /// Erased and stale octets behind the last record become padding before anything is written
    /// there.
    bool clearJunk() {
        if (layout_.isWalled) return false;
        return clearBackwards(layout_.oldEnd, ASN1::View(layout_.cleared).subspan(layout_.oldEnd));
    }

    bool clearEnd() {
        const std::size_t size = layout_.limit - layout_.end;
        if (layout_.isWalled) {
            writes_.put(layout_.end, erasedMark(size));
            if (finish()) return true;
        }
        return clearBackwards(layout_.end, writes_.target().subspan(layout_.end, size));
    }

    /// Records that make room, beginning with the last one.
    bool moveUp() {
        for (std::size_t last = items_.size(); last-- > 0;) {
            if (!goesUp(last)) continue;
            const std::size_t first = moveRunUp(last);
            place(first, last);
            if (finish()) return true;
            last = first;
        }
        return false;
    }

    bool goesUp(std::size_t i) const {
        return i > layout_.changed && items_[i].length > 0 && items_[i].target > items_[i].at;
    }

    std::size_t moveRunUp(std::size_t last) {
        const std::size_t rest = markOfRest(last).size();
        const std::size_t end = items_[last].targetEnd() + rest;
        std::size_t first = last + 1;
        while (first > 0 && goesUp(first - 1) && end - items_[first - 1].at <= most_) --first;
        if (first > last) return moveRunUpInTwo(last);
        mixGapBefore(first);
        Blob octets;
        appendGapBefore(octets, first);
        appendRun(octets, first, last);
        octets.append(markOfRest(last));
        writes_.put(items_[first].at, octets);
        return first;
    }

    /// A gap of one value, as only others leave it, could hide what follows once that moves.
    void mixGapBefore(std::size_t first) {
        const std::size_t from = endBefore(first);
        const std::size_t to = items_[first].at;
        if (to - from < shortGap || !isPadding(from, to)) return;
        if (writes_.now()[from] != writes_.now()[from + 1]) return;
        writes_.put(from, Blob{0x00, 0xFF});
    }

    /// Moves a run whose records and gap are too long for one command: what comes to stand in the
    /// gap behind is written first, while that is an erased entry; the next command then makes one
    /// of the gap in front.
    std::size_t moveRunUpInTwo(std::size_t last) {
        const std::size_t gapStart = items_[last].end();
        const std::size_t distance = items_[last].target - items_[last].at;
        const Blob mark = erasedMark(gapEnd(last) - gapStart);
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
        appendRun(octets, first, last);
        octets.append(markOfRest(last));
        const ASN1::View all = octets;
        hideAndPut(gapStart, mark, all.subspan(gapStart - start));
        const std::size_t unwritten = gapStart - start + mark.size();
        writes_.put(start, unwritten > distance ? all.first(unwritten) : ASN1::View(front));
        return first;
    }

    std::size_t moveLongUp(std::size_t last) {
        mixGapBefore(last);
        const Item& item = items_[last];
        Blob octets;
        appendGapBefore(octets, last);
        octets.append(item.octets);
        octets.append(markOfRest(last));
        putLong(item.at, unfinishedMark(item.octets, gapEnd(last) - item.at), octets);
        return last;
    }

    /// All other records, beginning with the first one; in front of each, all are placed.
    bool moveDown() {
        for (std::size_t first = 0; first < items_.size(); ++first) {
            if (items_[first].isPlaced) continue;
            const std::size_t last = moveRunDown(first);
            place(first, last);
            if (finish()) return true;
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
            const std::size_t newEnd = items_[last].targetEnd();
            const std::size_t end = oldEnd(first, last);
            const std::size_t rest = newEnd > end ? markOfRest(last).size() : 0;
            return std::max(newEnd + rest, end) - start <= most_;
        };
        if (const auto last = longestRun(first, fitsWithGap)) {
            Blob octets;
            appendRun(octets, first, *last);
            appendBehind(octets, first, *last);
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
            const std::size_t end = oldEnd(first, last);
            return end > newEnd && newEnd - start + erasedMark(end - newEnd).size() <= most_;
        };
        const auto last = longestRun(first, fitsWithMark);
        if (!last) return moveLongDown(first);
        Blob octets;
        appendRun(octets, first, *last);
        const std::size_t newEnd = items_[*last].targetEnd();
        octets.append(erasedMark(oldEnd(first, *last) - newEnd));
        writes_.put(start, octets);
        return *last;
    }

    std::size_t moveLongDown(std::size_t i) {
        const Item& item = items_[i];
        const std::size_t newEnd = item.targetEnd();
        const std::size_t end = oldEnd(i, i);
        Blob octets = item.octets;
        const Blob erased = erasedMark(end > newEnd ? end - newEnd : 0);
        if (item.length == 0) {
            octets.append(markOfRest(i));
            putLong(item.target, erasedMark(gapEnd(i) - item.target), octets);
        } else if (i != layout_.changed && newEnd + erased.size() <= item.at) {
            octets.append(erased);
            putLong(item.target, erasedMark(item.at - item.target), octets);
        } else {
            if (end > newEnd && end - newEnd > most_) {
                octets.append(erased);
            } else {
                appendBehind(octets, i, i);
            }
            const std::size_t markedEnd = end >= newEnd ? end : gapEnd(i);
            putLong(item.target, unfinishedMark(item.octets, markedEnd - item.target), octets);
        }
        return i;
    }

    FileLayout layout_;
    std::vector<Item>& items_;
    PlannedWrites writes_;
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
