#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <utility>

#include "tovi/interfaces/Exception.h"

namespace tovi::test {

/// What an exception says.
struct Failure {
    int id = -1;  ///< GetId(); -1: nothing was thrown
    std::string message = {};
    std::string operation = {};
    std::int64_t code = 0;

    friend bool operator==(const Failure&, const Failure&) = default;
    friend void PrintTo(const Failure& failure, std::ostream* out) {
        if (failure.id == -1)
            *out << "nothing thrown";
        else
            *out << failure.id << " \"" << failure.message << "\" in " << failure.operation
                 << ", code " << failure.code;
    }
};

inline constexpr int smartcardId = 140;

/// A SmartcardException with code 0.
inline Failure smartcardFailure(std::string message, std::string operation) {
    return {smartcardId, std::move(message), std::move(operation), 0};
}

/// The failure of `action`; exceptions outside of the family pass through.
template <class Action>
Failure failureOf(Action action) {
    try {
        action();
    } catch (const Exception& thrown) {
        return {thrown.GetId(), thrown.GetMessage() ? thrown.GetMessage() : "(null)",
                thrown.GetOperation(), thrown.GetCode()};
    }
    return {};
}

}  // namespace tovi::test
