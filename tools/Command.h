#pragma once

#include <chrono>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Console.h"
#include "tools/Failure.h"
#include "tools/TextTable.h"
#include "tovi/interfaces/Blob.h"

namespace CLI {
class App;
}

namespace tovi {

/// The options in front of the command.
struct GlobalOptions {
    std::string card;     ///< card folder; empty when none was named
    std::string reader;   ///< unique part of a PC/SC reader's name
    std::string aid;      ///< hexadecimal; empty: the PKCS#15 application
    std::string path;     ///< of the application's DF, hexadecimal; empty: found by its identifier
    std::string login;    ///< the PIN's authentication object; empty: not named
    std::string pinFile;  ///< file that holds the PIN; empty: none
    std::string pinEnvironment;  ///< environment variable that holds it; empty: none
    bool waits = false;          ///< for a card in the reader
    std::optional<std::chrono::seconds> patience = {};  ///< of that wait; none: without end
    bool json = false;
    bool trace = false;
    bool quiet = false;
};

/// One call of a command: what was asked for, and where its results go.
class Invocation {
public:
    Invocation(const GlobalOptions& options, Console& console, std::string operation)
        : options_(options), console_(console), operation_(std::move(operation)) {}

    const GlobalOptions& options() const { return options_; }
    Console& console() { return console_; }
    Style style() const { return Style(console_.colour && !options_.json); }
    /// The name under which failures of this call are reported, such as "tovi list".
    const std::string& operation() const { return operation_; }

    /// Writes a whole result and makes sure that it went out; Failure when it did not.
    void printText(std::string_view text);
    /// Writes the one JSON document of this call.
    void printJson(const nlohmann::ordered_json& document);
    /// Remembers that the card refused a command for want of a PIN.
    void noteDenial() { wasDenied_ = true; }
    bool wasDenied() const { return wasDenied_; }
    /// A refusal that a PIN is now presented for is not the reason of what fails later.
    void forgetDenial() { wasDenied_ = false; }
    /// Remembers why the card could not be reached, until the next command that it answers: "".
    void noteCardFailure(std::string message) { cardFailure_ = std::move(message); }
    /// The report of a failure, with the reason why the card could not be reached.
    ErrorReport explained(ErrorReport report) const;
    /// Throws Interrupted when the user asked to stop.
    void checkInterrupt() const;
    /// From here on the user's wish to stop counts no more: what was done has to be told.
    void ignoreInterrupt() { ignoresInterrupt_ = true; }

private:
    const GlobalOptions& options_;
    Console& console_;
    std::string operation_;
    std::string cardFailure_;
    bool wasDenied_ = false;
    bool ignoresInterrupt_ = false;
};

/// One command of tovi, such as `list`.
class Command {
public:
    virtual ~Command() = default;
    /// Adds the command with its arguments and options, which land in this object.
    virtual CLI::App* declare(CLI::App& app) = 0;
    /// Performs it. Throws UsageError for arguments that say something impossible, Failure or
    /// tovi::Exception when the operation failed.
    virtual ExitCode run(Invocation& call) = 0;
};

std::unique_ptr<Command> makeReadersCommand();
std::unique_ptr<Command> makeListCommand();
std::unique_ptr<Command> makeShowCommand();
std::unique_ptr<Command> makeDumpCommand();
std::unique_ptr<Command> makeCheckCommand();
std::unique_ptr<Command> makeReportCommand();
std::unique_ptr<Command> makeAppsCommand();
std::unique_ptr<Command> makeExportCommand();
std::unique_ptr<Command> makeCaptureCommand();
std::unique_ptr<Command> makeInitCommand();
std::unique_ptr<Command> makeApplyCommand();
std::unique_ptr<Command> makeDeleteCommand();
std::unique_ptr<Command> makeTokenInfoCommand();
std::unique_ptr<Command> makeFreeFidCommand();
std::unique_ptr<Command> makeServeCommand();

/// Runs the command line `arguments`, which begins behind the program's name. Never throws; returns
/// the exit status of the process.
int runCommandLine(const std::vector<std::string>& arguments, Console& console);

}  // namespace tovi
