#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <optional>
#include <ostream>

#include "tools/CardAccess.h"
#include "tools/Command.h"
#include "tools/JsonInput.h"
#include "tools/Login.h"
#include "tools/Model.h"
#include "tools/ObjectKinds.h"
#include "tools/Operation.h"
#include "tools/ProgressBar.h"

namespace tovi {
namespace {

constexpr std::size_t longList = 10;  // operations that people may wait for

/// `tovi apply FILE`: performs a list of operations.
class ApplyCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    Json readList(Invocation& call) const;
    bool isStandardInput() const { return file_ == "-"; }
    std::string nameOfList() const { return isStandardInput() ? "standard input" : file_; }

    std::string file_;
    bool keepGoing_ = false;
};

/// Puts the name of the input in front of what is wrong in it.
template <class Step>
auto within(const std::string& name, Step step) {
    try {
        return step();
    } catch (const UsageError& error) {
        throw UsageError(name + ": " + error.what());
    }
}

/// Performs operations one after the other, and keeps what came of them.
class Performance {
public:
    Performance(Invocation& call, CardAccess& card, PKCS15Container& model)
        : call_(call), card_(card), model_(model) {}

    /// False when the user asked to stop before the end.
    bool performAll(const std::vector<OperationPointer>& operations, bool keepGoing);
    bool hasFailed() const { return hasFailed_; }
    std::size_t count() const { return results_.size(); }
    void print();

private:
    void performEach(const std::vector<OperationPointer>& operations, bool keepGoing,
                     ProgressBar& progress);
    void perform(const Operation& operation, ProgressBar& progress);
    void addFailure(const Operation& operation, const ErrorReport& error, Json& result);

    Invocation& call_;
    CardAccess& card_;
    PKCS15Container& model_;
    Json results_ = Json::array();
    TextTable table_{{"operation", "object", "result"}};
    bool hasFailed_ = false;
};

bool Performance::performAll(const std::vector<OperationPointer>& operations, bool keepGoing) {
    const bool isShown = call_.console().showsProgress && operations.size() >= longList &&
                         !call_.options().quiet && !call_.options().trace;
    ProgressBar progress(call_.console().err, operations.size(), isShown);
    try {
        performEach(operations, keepGoing, progress);
        return true;
    } catch (const Interrupted&) {
        return false;
    }
}

void Performance::performEach(const std::vector<OperationPointer>& operations, bool keepGoing,
                              ProgressBar& progress) {
    // What is begun is finished: the user's wish to stop counts between operations.
    card_.setInterruptible(false);
    for (const OperationPointer& operation : operations) {
        progress.show(count());
        call_.checkInterrupt();
        perform(*operation, progress);
        if (hasFailed() && !keepGoing) return;
    }
    progress.show(count());
}

/// What stands for a new authentication object is its place in the file, not a record number.
std::string resultText(const Operation& operation, const Json& result) {
    if (result["op"] != "write" || !result.contains("recordNumber")) return "done";
    return fmt::format("{} {}", operation.object() == authObjectKind ? "entry" : "record",
                       result["recordNumber"].dump());
}

void Performance::perform(const Operation& operation, ProgressBar& progress) {
    Json result = operation.head();
    std::optional<ErrorReport> error;
    try {
        operation.perform(model_, card_.os(), result);
    } catch (const Exception& exception) {
        error = call_.explained(ErrorReport::of(exception));
    } catch (const std::exception& exception) {
        error = ErrorReport::of(exception, call_.operation());
    }
    if (error) {
        progress.hide();
        addFailure(operation, *error, result);
    } else {
        table_.add({result["op"], operation.object(), resultText(operation, result)});
    }
    results_.push_back(std::move(result));
}

void Performance::addFailure(const Operation& operation, const ErrorReport& error, Json& result) {
    // A refused field names its place itself.
    const std::string place = fmt::format("operations[{}]", count());
    const bool isNamed = error.message.rfind(place, 0) == 0;
    call_.console().err << "tovi: " << (isNamed ? "" : place + ": ") << error.line() << std::endl;
    // An object that was written stands, whatever failed behind it.
    const bool isWritten = result["op"] == "write" && result.contains("recordNumber");
    const std::string written = isWritten ? resultText(operation, result) + ", but " : "";
    table_.add({result["op"], operation.object(), written + "failed: " + error.message});
    result["error"] = {
        {"message", error.message}, {"operation", error.operation}, {"code", error.code}};
    hasFailed_ = true;
}

void Performance::print() {
    if (call_.options().json) {
        call_.printJson(results_);
    } else if (!call_.options().quiet && !table_.empty()) {
        call_.printText(table_.text(call_.style(), 0));
    }
}

CLI::App* ApplyCommand::declare(CLI::App& app) {
    CLI::App* apply = app.add_subcommand("apply", "performs the operations of a JSON list");
    apply->add_option("file", file_, "the list; - for standard input")
        ->required()
        ->type_name("FILE");
    apply->add_flag("--keep-going", keepGoing_, "goes on after an operation that failed");
    return apply;
}

Json ApplyCommand::readList(Invocation& call) const {
    return isStandardInput() ? readJson(call.console().in, nameOfList()) : readJsonFile(file_);
}

ExitCode ApplyCommand::run(Invocation& call) {
    const Json list = readList(call);
    const auto operations = within(nameOfList(), [&] { return operationsFromJson(list); });
    CardAccess card(call, CardFolder::Mode::readWrite);
    const ContainerPointer model = readModel(call, card);
    within(nameOfList(), [&] {
        Forecast forecast(*model,
                          keepGoing_ ? Forecast::AfterFailure::goOn : Forecast::AfterFailure::stop);
        for (const OperationPointer& operation : operations) {
            operation->judge(forecast);
            operation->foretell(forecast);
        }
    });
    Performance performance(call, card, *model);
    const bool isWhole = performance.performAll(operations, keepGoing_);
    call.ignoreInterrupt();
    performance.print();
    if (!isWhole) {
        call.console().err << fmt::format("tovi: {} of {} operations were performed",
                                          performance.count(), operations.size())
                           << std::endl;
        throw Interrupted{};
    }
    return performance.hasFailed() ? ExitCode::failed : ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeApplyCommand() { return std::make_unique<ApplyCommand>(); }

}  // namespace tovi
