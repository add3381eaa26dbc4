#pragma once

#include <any>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "tools/AuthName.h"
#include "tools/ObjectKinds.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// What objects there will be while a list of operations is performed, as far as can be told before
/// the first one.
class Forecast {
public:
    using AuthObject = PKCS15ObjectInfo<AuthInfo>;
    /// What an object is known by, whatever number it has: whether the list writes it, and the
    /// position of the operation in the list or its place in the model.
    using Identity = std::pair<bool, std::size_t>;

    /// `model` must outlive this object, and is asked by find().
    explicit Forecast(const PKCS15Container& model);

    /// Whether record numbers are known, as they are until the card is read again.
    bool knowsRecords() const { return isKnown_; }
    /// The type of a row; none when nobody knows, or there will be no such row.
    std::optional<std::uint8_t> objectTypeOf(std::uint64_t recordNumber) const;
    /// The object of a row; none when there is none, or nobody knows.
    std::optional<Identity> identityOf(std::uint64_t recordNumber) const;
    /// The object that a row of that kind stands for; null when it will be of another kind.
    template <class Info>
    const PKCS15ObjectInfo<Info>* find(const ObjectKind<Info>& kind,
                                       std::uint64_t recordNumber) const;
    /// The first authentication object of that name, in the same way.
    const AuthObject* find(const AuthName& name) const;
    std::optional<Identity> identityOf(const AuthName& name) const;
    /// EF(TokenInfo) will have a list of algorithms.
    bool hasAlgorithms() const { return hasAlgorithms_; }
    /// Whether the same objects have the same record numbers.
    bool hasSameRows(const Forecast& other) const;

    /// `position` is that of the operation in its list.
    void write(std::uint8_t objectType, std::size_t position, std::any object);
    void update(std::uint64_t recordNumber, std::any object);
    void erase(std::uint64_t recordNumber);
    void writeAuth(const AuthObject& object, std::size_t position);
    void updateAuth(const AuthName& name, const AuthObject& object);
    void eraseAuth(const AuthName& name);
    void setAlgorithms() { hasAlgorithms_ = true; }
    /// The card is read again, which hands out new record numbers.
    void readAgain() { isKnown_ = false; }
    /// Takes the record numbers of the model, which has been read again.
    void takeRows();

private:
    struct Row {
        std::uint8_t objectType = freeRow;
        Identity identity;
        std::any object = {};  // an info; empty: as it is in the model
    };
    struct Auth {
        AuthObject object;
        Identity identity;
    };
    std::size_t positionOf(const AuthName& name) const;

    const PKCS15Container* model_;
    bool isKnown_ = true;
    bool hasAlgorithms_ = false;
    std::vector<Row> rows_;
    std::vector<Auth> auths_;
};

template <class Info>
const PKCS15ObjectInfo<Info>* Forecast::find(const ObjectKind<Info>& kind,
                                             std::uint64_t recordNumber) const {
    if (objectTypeOf(recordNumber) != kind.objectType) return nullptr;
    const std::any& object = rows_[recordNumber].object;
    if (!object.has_value()) return &(model_->*kind.get)(recordNumber);
    return std::any_cast<PKCS15ObjectInfo<Info>>(&object);
}

}  // namespace tovi
