#include "tovi/platform/PlannedWrites.h"

#include <algorithm>
#include <utility>

#include "tovi/platform/GapMarks.h"

namespace tovi {
namespace {

constexpr std::uint8_t sequenceTag = 0x30;

}  // namespace

PlannedWrites::PlannedWrites(ASN1::View file, std::vector<std::uint8_t> target, std::size_t most)
    : now_(file.begin(), file.end()), target_(std::move(target)), most_(most), last_(now_.size()) {}

void PlannedWrites::put(std::size_t offset, ASN1::View octets) {
    while (!octets.empty() && octets.front() == now_[offset]) {
        octets = octets.subspan(1);
        ++offset;
    }
    while (!octets.empty() && octets.back() == now_[offset + octets.size() - 1])
        octets = octets.first(octets.size() - 1);
    if (octets.empty()) return;
    steps_.push_back({offset, Blob(octets)});
    std::copy(octets.begin(), octets.end(), now_.begin() + static_cast<std::ptrdiff_t>(offset));
    first_ = std::min(first_, offset);
    last_ = std::max(last_, offset + octets.size());
}

void PlannedWrites::putHidden(std::size_t offset, const Blob& mark, ASN1::View octets) {
    Blob hidden = mark;
    hidden.append(octets.subspan(mark.size()));
    const ASN1::View all = hidden;
    for (std::size_t done = 0; done < all.size(); done += most_)
        put(offset + done, all.subspan(done, std::min(most_, all.size() - done)));
}

void PlannedWrites::putLong(std::size_t offset, const Blob& mark, ASN1::View octets) {
    putHidden(offset, mark, octets);
    put(offset, octets.first(mark.size()));
}

/// Whether 00 30 would be left in front of `offset` without what makes an erased record of 48
/// octets of it: then 30 would be a live tag.
bool PlannedWrites::wouldBareSequence(std::size_t offset) const {
    return offset >= 2 && now_[offset - 2] == 0x00 && now_[offset - 1] == sequenceTag;
}

bool PlannedWrites::putBackwards(std::size_t offset, ASN1::View octets) {
    std::size_t end = octets.size();
    while (true) {
        while (end > 0 && now_[offset + end - 1] == octets[end - 1]) --end;
        if (end == 0) return false;
        std::size_t start = end - std::min(end, most_);
        if (start > 0 && end > longestMark) start = std::max(start, longestMark);
        if (start > 0 && wouldBareSequence(offset + start))
            start = end - start > 1 ? start + 1 : start - 1;
        put(offset + start, octets.subspan(start, end - start));
        if (finish()) return true;
        end = start;
    }
}

bool PlannedWrites::finish() {
    while (first_ < last_ && now_[first_] == target_[first_]) ++first_;
    while (first_ < last_ && now_[last_ - 1] == target_[last_ - 1]) --last_;
    if (last_ - first_ > most_) return false;
    put(first_, target().subspan(first_, last_ - first_));
    return true;
}

}  // namespace tovi
