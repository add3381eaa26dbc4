#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/Command.h"
#include "tools/OptionChecks.h"
#include "tools/Text.h"

namespace tovi {
namespace {

constexpr const char* version = "tovi " TOVI_VERSION;

struct Entry {
    std::unique_ptr<Command> command;
    CLI::App* app = nullptr;
};

/// The whole command line: its options, its commands, and what was found on it.
class CommandLine {
public:
    CommandLine();
    /// Throws CLI::ParseError.
    void parse(std::vector<std::string> arguments);
    const Entry& chosen() const;
    CLI::App& app() { return app_; }
    const GlobalOptions& options() const { return options_; }

private:
    void declareOptions();
    void setWait(const std::string& seconds);

    CLI::App app_{"Reads and changes the PKCS#15 application of a smart card", "tovi"};
    GlobalOptions options_;
    std::vector<Entry> entries_;
};

CommandLine::CommandLine() {
    declareOptions();
    for (auto make : {makeListCommand, makeShowCommand, makeDumpCommand, makeCheckCommand,
                      makeReportCommand, makeAppsCommand, makeExportCommand, makeCaptureCommand,
                      makeInitCommand, makeApplyCommand, makeDeleteCommand, makeTokenInfoCommand,
                      makeFreeFidCommand, makeReadersCommand, makeServeCommand}) {
        Entry& entry = entries_.emplace_back(Entry{make(), nullptr});
        entry.app = entry.command->declare(app_);
    }
}

void CommandLine::declareOptions() {
    auto* card = app_.add_option("--card", options_.card, "a card folder (default: $TOVI_CARD)")
                     ->type_name("DIR")
                     ->check(checkedNotEmpty);
    auto* reader =
        app_.add_option("--reader", options_.reader, "a PC/SC reader, by a unique part of its name")
            ->type_name("NAME")
            ->check(checkedNotEmpty)
            ->excludes(card);
    app_.add_option_function<std::string>(
            "--wait", [this](const std::string& seconds) { setWait(seconds); },
            "waits for a card in the reader, SECONDS at most")
        ->expected(0, 1)
        ->default_str("")
        ->type_name("[SECONDS]")
        ->check(checkedSeconds)
        ->needs(reader);
    app_.add_option("--aid", options_.aid, "the application's identifier (default: PKCS#15's)")
        ->type_name("HEX")
        ->check(checkedAid);
    app_.add_option("--path", options_.path, "the application's DF (default: found by its AID)")
        ->type_name("HEX")
        ->check(checkedPath);
    app_.add_option("--login", options_.login, "the authentication object whose PIN is verified")
        ->type_name("REF")
        ->check(checkedLogin);
    auto* pinFile = app_.add_option("--pin-file", options_.pinFile, "a file that holds the PIN")
                        ->type_name("FILE")
                        ->check(checkedNotEmpty);
    app_.add_option("--pin-env", options_.pinEnvironment,
                    "an environment variable that holds the PIN")
        ->type_name("NAME")
        ->check(checkedNotEmpty)
        ->excludes(pinFile);
    app_.add_flag("--json", options_.json, "one JSON document on standard output");
    app_.add_flag("--trace", options_.trace, "every command of the card on standard error");
    app_.add_flag("--quiet", options_.quiet, "nothing but results and errors");
    app_.set_version_flag("--version", version);
    app_.require_subcommand(0, 1);  // none is reported below, behind words that are no command
    app_.fallthrough();
}

void CommandLine::setWait(const std::string& seconds) {
    options_.waits = true;
    if (!seconds.empty()) options_.patience = std::chrono::seconds(std::stol(seconds));
}

void CommandLine::parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    app_.parse(std::move(arguments));
    if (app_.get_subcommands().empty()) throw CLI::RequiredError("a command");
}

const Entry& CommandLine::chosen() const {
    return *std::find_if(entries_.begin(), entries_.end(),
                         [](const Entry& entry) { return entry.app->parsed(); });
}

/// Prints what went wrong, as text and with --json also as the one document of the call.
void report(const ErrorReport& error, bool json, const std::string& line, Console& console) {
    console.err << "tovi: " << line << std::endl;
    if (!json) return;
    const nlohmann::ordered_json document = {
        {"error",
         {{"message", error.message}, {"operation", error.operation}, {"code", error.code}}}};
    using Json = nlohmann::ordered_json;
    console.out << jsonForTerminal(document.dump(2, ' ', false, Json::error_handler_t::replace))
                << std::endl;
}

ExitCode reportUsage(const std::string& message, bool json, Console& console) {
    report({message, "tovi", 0}, json, forTerminal(message), console);
    return ExitCode::usage;
}

ExitCode reportFailure(const ErrorReport& error, bool json, Console& console) {
    report(error, json, error.line(), console);
    return ExitCode::failed;
}

/// What to do about a card that refused something for want of a PIN.
void hintAtPin(const Invocation& call, Console& console) {
    if (!call.wasDenied() || call.options().quiet) return;
    console.err << "tovi: the card wants a PIN first: name it with --login REF, and give it with "
                   "--pin-file FILE, --pin-env NAME or at the terminal"
                << std::endl;
}

ExitCode perform(Invocation& call, const Entry& entry, Console& console) {
    const bool json = call.options().json;
    try {
        return entry.command->run(call);
    } catch (const Interrupted&) {
        console.err << "tovi: interrupted" << std::endl;
        return ExitCode::interrupted;
    } catch (const UsageError& error) {
        return reportUsage(error.what(), json, console);
    } catch (const Exception& exception) {
        return reportFailure(call.explained(ErrorReport::of(exception)), json, console);
    } catch (const std::exception& exception) {
        return reportFailure(ErrorReport::of(exception, call.operation()), json, console);
    }
}

/// --help and --version end the parsing as errors do.
ExitCode endOfParsing(const CLI::ParseError& error, CommandLine& line, bool json,
                      Console& console) {
    if (error.get_exit_code() == 0) {
        line.app().exit(error, console.out, console.err);
        console.out.flush();
        return console.out ? ExitCode::done : ExitCode::failed;
    }
    return reportUsage(error.what() + std::string("; see 'tovi --help'"), json, console);
}

}  // namespace

int runCommandLine(const std::vector<std::string>& arguments, Console& console) {
    try {
        CommandLine line;
        try {
            line.parse(arguments);
        } catch (const CLI::ParseError& error) {
            const bool json =
                std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
            return static_cast<int>(endOfParsing(error, line, json, console));
        }
        const Entry& entry = line.chosen();
        Invocation call(line.options(), console, "tovi " + entry.app->get_name());
        const ExitCode exit = perform(call, entry, console);
        if (exit == ExitCode::failed) hintAtPin(call, console);
        return static_cast<int>(exit);
    } catch (const std::exception& exception) {
        console.err << "tovi: " << forTerminal(exception.what()) << std::endl;
    } catch (...) {
        console.err << "tovi: unknown failure" << std::endl;
    }
    return static_cast<int>(ExitCode::failed);
}

}  // namespace tovi
