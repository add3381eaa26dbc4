#include "tools/Forecast.h"

#include <algorithm>

namespace tovi {

Forecast::Forecast(const PKCS15Container& model) {
    for (const FATInfo& row : model.getFATRecords()) rows_.push_back(row.objectType);
    for (const auto& info : model.getAuthInfos()) auths_.emplace_back(info.reference, info.type);
}

std::optional<std::uint8_t> Forecast::objectTypeOf(std::uint64_t recordNumber) const {
    if (!isKnown_ || recordNumber >= rows_.size()) return std::nullopt;
    return rows_[recordNumber];
}

std::vector<Forecast::Auth>::const_iterator Forecast::find(std::uint16_t reference) const {
    return std::find_if(auths_.begin(), auths_.end(),
                        [&](const Auth& auth) { return auth.first == reference; });
}

std::optional<AuthType> Forecast::authTypeOf(std::uint16_t reference) const {
    const auto found = find(reference);
    if (found == auths_.end()) return std::nullopt;
    return found->second;
}

void Forecast::write(std::uint8_t objectType) {
    // The row of TokenInfo is never given to another object.
    const auto first = rows_.begin() + (rows_.empty() ? 0 : 1);
    const auto free = std::find(first, rows_.end(), std::uint8_t{freeRow});
    if (free == rows_.end()) {
        rows_.push_back(objectType);
    } else {
        *free = objectType;
    }
}

void Forecast::erase(std::uint64_t recordNumber) {
    if (recordNumber < rows_.size()) rows_[recordNumber] = freeRow;
}

void Forecast::writeAuth(std::uint16_t reference, AuthType type) {
    auths_.emplace_back(reference, type);
}

void Forecast::eraseAuth(std::uint16_t reference) {
    const auto found = find(reference);
    if (found != auths_.end()) auths_.erase(found);
}

void Forecast::readAgain() { isKnown_ = false; }

}  // namespace tovi
