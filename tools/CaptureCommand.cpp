#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>

#include "tools/Capture.h"
#include "tools/Command.h"
#include "tools/JsonInfos.h"
#include "tools/Login.h"
#include "tools/NewFolder.h"
#include "tools/Text.h"

namespace tovi {
namespace {

/// `tovi capture DIR`: what a card lets read, as a card folder.
class CaptureCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    void make(const CardPlan& plan, const std::string& operation) const;
    Json document(const CapturedCard& card) const;

    std::string folder_;
    bool values_ = false, redact_ = false;
};

CLI::App* CaptureCommand::declare(CLI::App& app) {
    CLI::App* command =
        app.add_subcommand("capture", "copies what the card lets read into a card folder");
    command->add_option("folder", folder_, "the folder, which must not be there yet")
        ->required()
        ->type_name("DIR");
    command->add_flag("--values", values_, "the value files of the objects too");
    command->add_flag("--redact", redact_,
                      "blanks labels, serial numbers, names and values; keeps structure");
    return command;
}

bool isRead(const CapturedFile& file) { return !file.error; }

std::size_t octetsOf(const DirectoryFile& file) {
    std::size_t octets = file.octets.size();
    for (const Blob& slot : file.slots) octets += slot.size();
    return octets;
}

/// What the folder does not hold, and what it should perhaps not.
void tellOfGaps(const CapturedCard& card, bool isRedacted, Invocation& call) {
    std::ostream& err = call.console().err;
    const auto tell = [&](const std::string& line) { err << "tovi: " << line << std::endl; };
    if (card.applicationError) tell(card.applicationError->line());
    for (const CapturedFile& file : card.files) {
        if (file.error) tell("not captured: " + file.name() + ": " + file.error->line());
    }
    for (const CapturedFile& file : card.files) {
        if (!file.isSecret || file.error || isRedacted) continue;
        tell("warning: " + file.name() + " holds the value of a private or secret key");
    }
}

Json fileJson(const CapturedFile& file) {
    const bool isTransparent = isRead(file) && !file.file.isLinear();
    Json json;
    json["name"] = file.kind->name.empty() ? Json(nullptr) : Json(file.kind->name);
    json["path"] = toHex(file.file.path);
    json["structure"] =
        isRead(file) ? Json(structureName(file.file.info.structure)) : Json(nullptr);
    json["size"] = isTransparent ? Json(file.file.octets.size()) : Json(nullptr);
    json["records"] = isRead(file) && !isTransparent ? Json(file.file.slots.size()) : Json(nullptr);
    json["error"] = nullptr;
    if (file.error) {
        json["error"] = {{"message", file.error->message},
                         {"operation", file.error->operation},
                         {"code", file.error->code}};
    }
    return json;
}

std::string fileText(const CapturedFile& file) {
    if (!isRead(file)) return fmt::format("{}  not captured\n", file.name());
    std::string text = fmt::format("{}  {}", file.name(), structureName(file.file.info.structure));
    if (file.file.isLinear()) text += fmt::format(", {} records", file.file.slots.size());
    return text + fmt::format(", {} octets\n", octetsOf(file.file));
}

std::string cardText(const CapturedCard& card, const std::string& folder) {
    std::string text;
    for (const CapturedFile& file : card.files) text += fileText(file);
    return text + "made card folder " + forTerminal(folder) + "\n";
}

Json CaptureCommand::document(const CapturedCard& card) const {
    Json json;
    json["card"] = folder_;
    json["redacted"] = redact_;
    json["files"] = Json::array();
    for (const CapturedFile& file : card.files) json["files"].push_back(fileJson(file));
    return json;
}

void CaptureCommand::make(const CardPlan& plan, const std::string& operation) const {
    NewFolder folder(folder_, operation);
    plan.make(folder.path());
    folder.complete();
}

ExitCode CaptureCommand::run(Invocation& call) {
    if (folder_.empty()) throw UsageError("the name of the folder is empty");
    // Before the card is read, which takes a while.
    { const NewFolder possible(folder_, call.operation()); }
    CardAccess access(call, CardFolder::Mode::readOnly);
    logIn(call, access);
    CapturedCard card =
        captureCard(access, values_ ? CaptureExtent::values : CaptureExtent::directories);
    if (std::none_of(card.files.begin(), card.files.end(), isRead)) {
        if (!card.applicationError) throw Failure("no file can be read", call.operation());
        throw Failure(card.applicationError->message, call.operation(),
                      card.applicationError->code);
    }
    if (redact_) redact(card);
    CardPlan plan = planOf(card);
    plan.card.addComment(redact_ ? "read from a card, redacted" : "read from a card");
    call.checkInterrupt();
    make(plan, call.operation());
    tellOfGaps(card, redact_, call);
    if (call.options().json) {
        call.printJson(document(card));
    } else if (!call.options().quiet) {
        call.printText(cardText(card, folder_));
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeCaptureCommand() { return std::make_unique<CaptureCommand>(); }

}  // namespace tovi
