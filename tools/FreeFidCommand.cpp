#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "tools/Login.h"
#include "tools/Command.h"
#include "tools/Model.h"
#include "tools/ObjectKinds.h"
#include "tools/OptionChecks.h"
#include "tools/Text.h"

namespace tovi {
namespace {

/// `tovi free-fid --kind KIND`: the lowest file identifier that no object of a kind uses.
class FreeFidCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    std::string kind_, start_ = "0001";  // 0000 names no file
};

/// The type that getFreeFID knows the kind by; none for what is no kind.
std::optional<std::uint8_t> objectTypeOf(const std::string& name) {
    std::optional<std::uint8_t> type;
    if (name == authObjectKind) type = authObject;
    const auto compare = [&](const auto& kind) {
        if (name == kind.name) type = kind.objectType;
    };
    forEachObjectKind(compare);
    return type;
}

std::string checkedKind(const std::string& text) {
    return objectTypeOf(text) ? "" : "'" + text + "' is no kind of object such as privateKey";
}

CLI::App* FreeFidCommand::declare(CLI::App& app) {
    CLI::App* command =
        app.add_subcommand("free-fid", "prints the lowest free file identifier for a kind");
    command->add_option("--kind", kind_, "privateKey, certificate, dataObject and so on")
        ->required()
        ->type_name("KIND")
        ->check(checkedKind);
    command->add_option("--start", start_, "the first identifier that may be taken")
        ->type_name("HEX")
        ->check(checkedFid);
    return command;
}

ExitCode FreeFidCommand::run(Invocation& call) {
    const Blob start = *fromHex(start_);
    CardAccess card(call, CardFolder::Mode::readOnly);
    const ContainerPointer model = readModel(call, card);
    const std::string fid = fmt::format(
        "{:04X}", model->getFreeFID(static_cast<std::uint16_t>(start[0] << 8 | start[1]),
                                    *objectTypeOf(kind_)));
    if (call.options().json) {
        call.printJson({{"fid", fid}});
    } else {
        call.printText(fid + "\n");
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeFreeFidCommand() { return std::make_unique<FreeFidCommand>(); }

}  // namespace tovi
