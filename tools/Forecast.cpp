#include "tools/Forecast.h"

#include <algorithm>

#include "tovi/pkcs15/PKCS15.h"

namespace tovi {

Forecast::Forecast(const PKCS15Container& model) : model_(&model) {
    takeRows();
    for (const auto& info : model.getAuthInfos()) auths_.push_back({info, {false, auths_.size()}});
    const auto& records = model.getRawTokenInfos();
    if (records.empty() || records.front().value == nullptr) return;
    const auto& algorithms = records.front().value->supportedAlgorithms;
    hasAlgorithms_ = algorithms && !algorithms->empty();
}

void Forecast::takeRows() {
    isKnown_ = true;
    rows_.clear();
    for (const FATInfo& row : model_->getFATRecords()) {
        rows_.push_back({row.objectType, {false, rows_.size()}});
    }
}

std::optional<std::uint8_t> Forecast::objectTypeOf(std::uint64_t recordNumber) const {
    if (!isKnown_ || recordNumber >= rows_.size()) return std::nullopt;
    return rows_[recordNumber].objectType;
}

std::optional<Forecast::Identity> Forecast::identityOf(std::uint64_t recordNumber) const {
    if (objectTypeOf(recordNumber).value_or(freeRow) == freeRow) return std::nullopt;
    return rows_[recordNumber].identity;
}

bool Forecast::hasSameRows(const Forecast& other) const {
    const auto isSame = [](const Row& row, const Row& theirs) {
        return row.objectType == theirs.objectType &&
               (row.objectType == freeRow || row.identity == theirs.identity);
    };
    return std::equal(rows_.begin(), rows_.end(), other.rows_.begin(), other.rows_.end(), isSame);
}

std::size_t Forecast::positionOf(const AuthName& name) const {
    const auto found = std::find_if(auths_.begin(), auths_.end(),
                                    [&](const Auth& auth) { return name.names(auth.object); });
    return static_cast<std::size_t>(found - auths_.begin());
}

const Forecast::AuthObject* Forecast::find(const AuthName& name) const {
    const std::size_t position = positionOf(name);
    return position < auths_.size() ? &auths_[position].object : nullptr;
}

std::optional<Forecast::Identity> Forecast::identityOf(const AuthName& name) const {
    const std::size_t position = positionOf(name);
    if (position == auths_.size()) return std::nullopt;
    return auths_[position].identity;
}

void Forecast::write(std::uint8_t objectType, std::size_t position, std::any object) {
    Row row{objectType, {true, position}, std::move(object)};
    // The row of TokenInfo is never given to another object.
    const auto first = rows_.begin() + (rows_.empty() ? 0 : 1);
    const auto free =
        std::find_if(first, rows_.end(), [](const Row& r) { return r.objectType == freeRow; });
    if (free == rows_.end()) {
        rows_.push_back(std::move(row));
    } else {
        *free = std::move(row);
    }
}

void Forecast::update(std::uint64_t recordNumber, std::any object) {
    if (recordNumber < rows_.size()) rows_[recordNumber].object = std::move(object);
}

void Forecast::erase(std::uint64_t recordNumber) {
    if (recordNumber < rows_.size()) rows_[recordNumber] = Row{};
}

void Forecast::writeAuth(const AuthObject& object, std::size_t position) {
    auths_.push_back({object, {true, position}});
}

void Forecast::updateAuth(const AuthName& name, const AuthObject& object) {
    const std::size_t position = positionOf(name);
    if (position < auths_.size()) auths_[position].object = object;
}

void Forecast::eraseAuth(const AuthName& name) {
    const std::size_t position = positionOf(name);
    if (position < auths_.size())
        auths_.erase(auths_.begin() + static_cast<std::ptrdiff_t>(position));
}

}  // namespace tovi
