#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// Appends infos to a list and marks those whose value lies in the file of another one.
///
/// An appended object marks every earlier one of the list with the same FID, and itself if there
/// is any. Each object is marked once, so a list of n objects costs n log n.
template <class Info>
class InfoAppender {
public:
    explicit InfoAppender(std::vector<PKCS15ObjectInfo<Info>>& infos) : infos_(infos) {
        for (std::size_t i = 0; i < infos_.size(); ++i)
            if (fid16(infos_[i]) != noFID16) unmarked_[fid16(infos_[i])].push_back(i);
    }

    void append(const PKCS15ObjectInfo<Info>& info) {
        infos_.push_back(info);
        PKCS15Object& added = infos_.back();
        added.sharesFile = false;
        if (fid16(added) == noFID16) return;
        const auto [earlier, isFirst] = unmarked_.try_emplace(fid16(added));
        if (isFirst) {
            earlier->second.push_back(infos_.size() - 1);
            return;
        }
        added.sharesFile = true;
        for (const std::size_t i : earlier->second) infos_[i].sharesFile = true;
        earlier->second.clear();
    }

private:
    std::vector<PKCS15ObjectInfo<Info>>& infos_;
    std::map<std::uint16_t, std::vector<std::size_t>> unmarked_;  // by FID; empty when all are
};

}  // namespace tovi
