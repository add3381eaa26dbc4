#include "tovi/platform/StretchCheck.h"

#include <algorithm>

namespace tovi {

bool StretchCheck::see(std::size_t from, std::size_t to) {
    const std::vector<Stretch> stretches = unseen(from, to);
    std::size_t at = 0;
    for (std::size_t i = 0; i < stretches.size();) {
        at = std::max(at, stretches[i].from);
        const std::size_t length = endOfCommand(stretches, i, at) - at;
        const Blob response = reader_.read(at, length);
        const ASN1::View octets = ASN1::View(response).first(std::min(response.size(), length));
        if (!take(at, octets)) return false;
        at += octets.size();
        // The size that the card told is believed until nothing comes any more.
        if (octets.empty()) file_.size = at;
        while (i < stretches.size() && (octets.empty() || stretches[i].to <= at)) ++i;
    }
    file_.isWhole = true;
    seen_.insert(seen_.end(), stretches.begin(), stretches.end());
    return true;
}

/// What is to be read: of the stretch that is known, and all that is not.
std::vector<StretchCheck::Stretch> StretchCheck::unseen(std::size_t from, std::size_t to) const {
    const std::size_t known = file_.octets.size();
    std::vector<Stretch> rest = {{from, std::min(to, known)}};
    for (const Stretch& seen : seen_) {
        std::vector<Stretch> left;
        for (const Stretch& stretch : rest) {
            left.push_back({stretch.from, std::min(stretch.to, seen.from)});
            left.push_back({std::max(stretch.from, seen.to), stretch.to});
        }
        rest = std::move(left);
    }
    if (!file_.isWhole) rest.push_back({known, file_.size});
    std::erase_if(rest, [](const Stretch& stretch) { return stretch.from >= stretch.to; });
    return rest;
}

/// Where a command ends that begins at `from`: as far as one response reaches, it takes the
/// stretches behind with it.
std::size_t StretchCheck::endOfCommand(const std::vector<Stretch>& stretches, std::size_t i,
                                       std::size_t from) const {
    const std::size_t limit = from + reader_.most();
    while (i + 1 < stretches.size() && stretches[i + 1].from < limit) ++i;
    return std::min(stretches[i].to, limit);
}

/// Compares octets with those that are known, and adds those that are not.
bool StretchCheck::take(std::size_t offset, ASN1::View octets) {
    auto& file = file_.octets;
    const std::size_t known = std::min(octets.size(), file.size() - offset);
    if (octets.empty()) return offset == file.size();
    const auto at = file.begin() + static_cast<std::ptrdiff_t>(offset);
    if (!std::equal(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(known), at))
        return false;
    octets = octets.subspan(known);
    file.insert(file.end(), octets.begin(), octets.end());
    return true;
}

}  // namespace tovi
