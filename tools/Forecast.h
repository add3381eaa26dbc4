#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// What objects there will be while a list of operations is performed, as far as can be told before
/// the first one: each is taken to succeed.
class Forecast {
public:
    explicit Forecast(const PKCS15Container& model);

    /// The type of a row; none when nobody knows, or there will be no such row.
    std::optional<std::uint8_t> objectTypeOf(std::uint64_t recordNumber) const;
    /// The type of the first authentication object with that reference, in the same way.
    std::optional<AuthType> authTypeOf(std::uint16_t reference) const;

    void write(std::uint8_t objectType);
    void erase(std::uint64_t recordNumber);
    void writeAuth(std::uint16_t reference, AuthType type);
    void eraseAuth(std::uint16_t reference);
    /// The card is read again, which hands out new record numbers.
    void readAgain();

private:
    using Auth = std::pair<std::uint16_t, AuthType>;
    std::vector<Auth>::const_iterator find(std::uint16_t reference) const;

    bool isKnown_ = true;
    std::vector<std::uint8_t> rows_;
    std::vector<Auth> auths_;
};

}  // namespace tovi
