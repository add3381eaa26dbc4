#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/AuthName.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// What kinds of objects there will be while a list of operations is performed, as far as can be
/// told before the first one.
class Forecast {
public:
    using AuthObject = PKCS15ObjectInfo<AuthInfo>;

    /// Whether operations behind one that fails are performed. Then nobody knows beforehand which
    /// numbers new objects get, and whether an object is still there that was to be deleted.
    enum class AfterFailure { stop, goOn };

    Forecast(const PKCS15Container& model, AfterFailure afterFailure);

    /// The type of a row, freeRow for one that is free; none when nobody knows, or there will be no
    /// such row.
    std::optional<std::uint8_t> objectTypeOf(std::uint64_t recordNumber) const;
    /// The first authentication object of that name; null when there is none, or nobody knows.
    const AuthObject* find(const AuthName& name) const;

    void write(std::uint8_t objectType);
    void erase(std::uint64_t recordNumber);
    void writeAuth(const AuthObject& object);
    void updateAuth(const AuthName& name, const AuthObject& object);
    void eraseAuth(const AuthName& name);
    /// The card is read again, which hands out new record numbers.
    void readAgain() { rows_.clear(), isKnown_ = false; }

private:
    std::size_t positionOf(const AuthName& name) const;

    bool isCertain_;
    bool isKnown_ = true;  // what record numbers stand for
    std::vector<std::uint8_t> rows_;
    std::vector<AuthObject> auths_;
};

}  // namespace tovi
