#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "tovi/interfaces/Exception.h"

namespace tovi {

/// How the command ends.
enum class ExitCode : int { done = 0, failed = 1, usage = 2, findings = 3, interrupted = 130 };

/// A command line, or a file given on it, that says something impossible. Ends with
/// ExitCode::usage.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An operation of the command itself that failed; the library's failures are tovi::Exception. Ends
/// with ExitCode::failed.
class Failure : public std::runtime_error {
public:
    Failure(const std::string& message, std::string operation, std::int64_t code = 0)
        : std::runtime_error(message), operation_(std::move(operation)), code_(code) {}

    const std::string& operation() const { return operation_; }
    std::int64_t code() const { return code_; }

private:
    std::string operation_;
    std::int64_t code_;
};

/// The user asked to stop. Ends with ExitCode::interrupted.
struct Interrupted {};

/// What a failed command tells: of a library exception, of a Failure, of anything else.
struct ErrorReport {
    std::string message;
    std::string operation;
    std::int64_t code = 0;

    static ErrorReport of(const Exception& exception);
    static ErrorReport of(const std::exception& exception, const std::string& operation);

    /// "message (operation, code 0)": one line, fit for a terminal.
    std::string line() const;
};

}  // namespace tovi
