#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "tools/CardPlan.h"
#include "tools/Command.h"
#include "tools/EmptyApplication.h"
#include "tools/OptionChecks.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {
namespace {

constexpr std::size_t usualFileSize = 4096;

/// `tovi init DIR`: makes a card folder.
class InitCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    void checkGlobalOptions(const GlobalOptions& options) const;
    CardPlan plan(const GlobalOptions& options) const;

    std::string folder_;
    std::string label_, serial_ = "01", manufacturer_, from_;
    std::size_t fileSize_ = usualFileSize;
};

CLI::App* InitCommand::declare(CLI::App& app) {
    CLI::App* init = app.add_subcommand("init", "makes a card folder with an empty application");
    init->add_option("folder", folder_, "the folder, which must not hold a card yet")
        ->required()
        ->type_name("DIR");
    auto* label = init->add_option("--label", label_, "label of the token")->check(checkedLabel);
    auto* serial = init->add_option("--serial", serial_, "serial number, in hexadecimal")
                       ->type_name("HEX")
                       ->check(checkedSerial);
    auto* manufacturer =
        init->add_option("--manufacturer", manufacturer_, "name of the manufacturer")
            ->check(checkedLabel);
    auto* size = init->add_option("--file-size", fileSize_, "octets of each directory file")
                     ->check(CLI::Range(std::size_t{1}, maxDirectoryFileSize));
    init->add_option("--from", from_, "makes the card that a JSON file describes")
        ->type_name("FILE")
        ->excludes(label)
        ->excludes(serial)
        ->excludes(manufacturer)
        ->excludes(size);
    return init;
}

void InitCommand::checkGlobalOptions(const GlobalOptions& options) const {
    if (!options.card.empty() || !options.reader.empty()) {
        throw UsageError("init makes the card DIR; it takes neither --card nor --reader");
    }
    if (!options.path.empty()) throw UsageError("init makes the application at 3F005015");
    if (!options.aid.empty() && !from_.empty()) throw UsageError("--aid excludes --from");
    if (folder_.empty()) throw UsageError("the name of the folder is empty");
}

CardPlan InitCommand::plan(const GlobalOptions& options) const {
    if (!from_.empty()) return cardPlanFromFile(from_);
    NewApplication application;
    application.label = label_;
    application.manufacturer = manufacturer_;
    application.serial = *fromHex(serial_);
    application.aid = options.aid.empty() ? PKCS15_AID : *fromHex(options.aid);
    application.fileSize = fileSize_;
    return cardPlanFromJson(describeEmptyApplication(application));
}

ExitCode InitCommand::run(Invocation& call) {
    checkGlobalOptions(call.options());
    const CardPlan plan = this->plan(call.options());
    call.checkInterrupt();
    plan.make(folder_);
    if (call.options().json) {
        nlohmann::ordered_json document;
        document["card"] = folder_;
        document["files"] = plan.card.files().size();
        call.printJson(document);
    } else if (!call.options().quiet) {
        call.printText("made card folder " + forTerminal(folder_) + "\n");
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeInitCommand() { return std::make_unique<InitCommand>(); }

}  // namespace tovi
