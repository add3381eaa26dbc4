#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tests/support/CardModel.h"
#include "tests/support/Interruption.h"
#include "tovi/card/CommandExchange.h"

namespace tovi::test {

/// An operation of a container and what the model says of it.
struct ModelledOperation {
    std::function<void(PKCS15Container&, ISCardOS*)> perform;
    std::function<CardModel::Result(CardModel&)> expect;
    std::optional<Directory> kind;  ///< whose files it may leave loose when it is interrupted
};

/// An interruption at a command, counted from 0.
struct Fault {
    Interruption how;
    std::size_t command = 0;
};

/// A card, a container that has read it, and a model that says what both are to hold. After each
/// operation they are compared; the first difference is kept.
class ModelledCard {
public:
    /// Makes the card as the model says. From now on only this object changes the model.
    ModelledCard(CardModel model, const CardCapabilities& capabilities);

    /// Performs an operation, which may end as the model says; when it was interrupted and is
    /// reported as failed, once more. Until then the container holds what it held, and the card
    /// that or what the operation makes of it.
    void perform(const ModelledOperation& operation, const std::optional<Fault>& fault);
    /// Performs one that is in memory only.
    void perform(const std::function<void(PKCS15Container&)>& operation,
                 const std::function<void(CardModel&)>& expect);
    /// Performs one that is to fail with that message and to change nothing.
    void reject(const std::string& message,
                const std::function<void(PKCS15Container&, ISCardOS*)>& operation);
    /// Reads the card again with the same container, if interrupted then once more.
    void readAgain(const std::optional<Fault>& fault);
    /// Looks whether getFreeFID gives the lowest FID from `start` on that the model says is free.
    void compareFreeFIDs(std::uint16_t start);

    const CardModel& model() const { return model_; }
    const PKCS15Container& container() const { return *container_; }
    /// Where they differed first, for people; empty while they never did.
    const std::string& difference() const { return difference_; }
    std::size_t interrupted() const { return interrupted_; }  ///< operations
    std::size_t failed() const { return failed_; }            ///< of those
    std::size_t refused() const { return refused_; }          ///< no room, or no file

private:
    bool interrupt(const std::function<void(PKCS15Container&, ISCardOS*)>& action,
                   const Fault& fault);
    void check(const std::string& when, const std::string& what);
    void compare(const std::string& when);
    void compareInterrupted(const CardModel& after);
    void compareFailure(const ModelledOperation& operation, CardModel::Result expected);

    CardModel model_;
    CardCapabilities capabilities_;
    VirtualCard card_;
    std::unique_ptr<PKCS15Container> container_;
    std::string difference_;
    std::size_t interrupted_ = 0;
    std::size_t failed_ = 0;
    std::size_t refused_ = 0;
};

}  // namespace tovi::test
