#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "tools/CardAccess.h"
#include "tools/Login.h"
#include "tools/Command.h"
#include "tools/JsonInput.h"
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

    void performAll(const std::vector<OperationPointer>& operations, bool keepGoing);
    bool hasFailed() const { return failures_ > 0; }
    std::size_t count() const { return results_.size(); }
    void print();

private:
    void perform(const Operation& operation);
    void reportFailure(const Operation& operation, const ErrorReport& error);

    Invocation& call_;
    CardAccess& card_;
    PKCS15Container& model_;
    Json results_ = Json::array();
    TextTable table_{{"operation", "object", "result"}};
    std::size_t failures_ = 0;
    ProgressBar* progress_ = nullptr;
};

void Performance::performAll(const std::vector<OperationPointer>& operations, bool keepGoing) {
    const bool isShown = call_.console().showsProgress && operations.size() >= longList &&
                         !call_.options().quiet && !call_.options().trace;
    ProgressBar progress(call_.console().err, operations.size(), isShown);
    progress_ = &progress;
    for (const OperationPointer& operation : operations) {
        progress.show(count());
        call_.checkInterrupt();
        // What is begun is finished: the user's wish to stop counts between operations.
        card_.setInterruptible(false);
        perform(*operation);
        if (hasFailed() && !keepGoing) return;
    }
}

/// What stands for a new authentication object is its place in the file, not a record number.
std::string resultText(const Operation& operation, const Json& result) {
    if (result["op"] != "write") return "done";
    return fmt::format("{} {}", operation.object() == authObjectKind ? "entry" : "record",
                       result["recordNumber"].dump());
}

void Performance::perform(const Operation& operation) {
    try {
        Json result = operation.perform(model_, card_.os());
        table_.add({result["op"], operation.object(), resultText(operation, result)});
        results_.push_back(std::move(result));
    } catch (const Exception& exception) {
        reportFailure(operation, call_.explained(ErrorReport::of(exception)));
    } catch (const std::exception& exception) {
        reportFailure(operation, ErrorReport::of(exception, call_.operation()));
    }
}

void Performance::reportFailure(const Operation& operation, const ErrorReport& error) {
    progress_->hide();
    call_.console().err << fmt::format("tovi: operations[{}]: {}", count(), error.line())
                        << std::endl;
    Json result = operation.head();
    table_.add({result["op"], operation.object(), "failed: " + error.message});
    result["error"] = {
        {"message", error.message}, {"operation", error.operation}, {"code", error.code}};
    results_.push_back(std::move(result));
    ++failures_;
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
        Forecast forecast(*model);
        for (const OperationPointer& operation : operations) operation->foresee(forecast);
    });
    Performance performance(call, card, *model);
    try {
        performance.performAll(operations, keepGoing_);
        performance.print();
    } catch (const Interrupted&) {
        call.console().err << fmt::format("tovi: {} of {} operations were performed",
                                          performance.count(), operations.size())
                           << std::endl;
        throw;
    }
    return performance.hasFailed() ? ExitCode::failed : ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeApplyCommand() { return std::make_unique<ApplyCommand>(); }

}  // namespace tovi
