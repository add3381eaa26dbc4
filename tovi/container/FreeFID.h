#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// The lowest value from `startFID` on that is not in `used`, reserved bands passed over.
///
/// Throws "no free FID" (operation "getNextFreeFID") when the search reaches 7FFF: that one value
/// is never given out, while values above it are.
std::uint16_t lowestFreeFID(const std::set<std::uint16_t>& used, std::uint16_t startFID);

/// The lowest FID from `startFID` on that no info of the list uses.
template <class Info>
std::uint16_t getNextFreeFID(const std::vector<PKCS15ObjectInfo<Info>>& infos,
                             std::uint16_t startFID) {
    std::set<std::uint16_t> used;
    for (const PKCS15ObjectInfo<Info>& info : infos)
        if (const std::uint16_t fid = fid16(info); fid != noFID16 && fid >= startFID)
            used.insert(fid);
    return lowestFreeFID(used, startFID);
}

}  // namespace tovi
