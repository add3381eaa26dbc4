#include "tovi/platform/PlannedWrites.h"

#include <algorithm>
#include <utility>

namespace tovi {

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

bool PlannedWrites::finish() {
    while (first_ < last_ && now_[first_] == target_[first_]) ++first_;
    while (first_ < last_ && now_[last_ - 1] == target_[last_ - 1]) --last_;
    if (last_ - first_ > most_) return false;
    put(first_, target().subspan(first_, last_ - first_));
    return true;
}

}  // namespace tovi
