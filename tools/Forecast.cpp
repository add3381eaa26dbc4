#include "tools/Forecast.h"

#include <algorithm>

namespace tovi {

Forecast::Forecast(const PKCS15Container& model, AfterFailure afterFailure)
    : isCertain_(afterFailure == AfterFailure::stop), auths_(model.getAuthInfos()) {
    for (const FATInfo& row : model.getFATRecords()) rows_.push_back(row.objectType);
}

std::optional<std::uint8_t> Forecast::objectTypeOf(std::uint64_t recordNumber) const {
    if (recordNumber >= rows_.size()) return std::nullopt;
    return rows_[recordNumber];
}

std::size_t Forecast::positionOf(const AuthName& name) const {
    const auto found = std::find_if(auths_.begin(), auths_.end(),
                                    [&](const AuthObject& object) { return name.names(object); });
    return static_cast<std::size_t>(found - auths_.begin());
}

const Forecast::AuthObject* Forecast::find(const AuthName& name) const {
    const std::size_t position = positionOf(name);
    return position < auths_.size() ? &auths_[position] : nullptr;
}

void Forecast::write(std::uint8_t objectType) {
    if (!isCertain_ || !isKnown_) return;
    // The row of TokenInfo is never given to another object.
    const auto first = rows_.begin() + (rows_.empty() ? 0 : 1);
    const auto free = std::find(first, rows_.end(), freeRow);
    if (free == rows_.end()) {
        rows_.push_back(objectType);
    } else {
        *free = objectType;
    }
}

void Forecast::erase(std::uint64_t recordNumber) {
    if (recordNumber < rows_.size()) rows_[recordNumber] = freeRow;
}

void Forecast::writeAuth(const AuthObject& object) {
    if (isCertain_) auths_.push_back(object);
}

void Forecast::updateAuth(const AuthName& name, const AuthObject& object) {
    const std::size_t position = positionOf(name);
    if (position < auths_.size()) auths_[position] = object;
}

void Forecast::eraseAuth(const AuthName& name) {
    if (!isCertain_) {
        std::erase_if(auths_, [&](const AuthObject& object) { return name.names(object); });
        return;
    }
    const std::size_t position = positionOf(name);
    if (position == auths_.size()) return;
    auths_.erase(auths_.begin() + static_cast<std::ptrdiff_t>(position));
}

}  // namespace tovi
