#pragma once

#include "tovi/interfaces/ProfileDFHandler.h"

namespace tovi {

/// Whether the infos of a kind stand for its raw records, one for one, and no record of its files
/// is missing among them. After a read that failed in between, or clear(), an index of the one is
/// no index of the other.
template <class Infos, class Raws>
bool inStep(const Infos& infos, const Raws& raws, const ProfileDFHandler& handler) {
    return infos.size() == raws.size() && handler.RecordCount() <= raws.size();
}

}  // namespace tovi
