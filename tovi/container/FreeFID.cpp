#include "tovi/container/FreeFID.h"

#include "tovi/interfaces/Exception.h"

namespace tovi {

namespace {

struct Band {
    std::uint16_t first, last;
    bool holds(std::uint16_t fid) const { return first <= fid && fid <= last; }
};

// EF(ODF), EF(TokenInfo) and EF(UnusedSpace) (PKCS#15 v1.1, 5.6), and three FIDs kept out of use.
constexpr Band reservedBands[] = {{0x5031, 0x5033}, {0x6376, 0x6378}};
constexpr std::uint16_t neverGiven = 0x7FFF;

}  // namespace

std::uint16_t lowestFreeFID(const std::set<std::uint16_t>& used, std::uint16_t startFID) {
    std::uint16_t candidate = startFID;
    for (auto next = used.lower_bound(startFID); next != used.end() && *next == candidate; ++next)
        ++candidate;
    for (const Band& band : reservedBands)
        if (band.holds(candidate))
            return lowestFreeFID(used, static_cast<std::uint16_t>(band.last + 1));
    if (candidate == neverGiven) throw SmartcardException("no free FID", "getNextFreeFID");
    return candidate;
}

}  // namespace tovi
