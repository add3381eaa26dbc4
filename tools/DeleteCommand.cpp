#include <CLI/CLI.hpp>

#include "tools/Command.h"
#include "tools/Login.h"
#include "tools/Model.h"
#include "tools/ObjectName.h"

namespace tovi {
namespace {

/// `tovi delete RECORD`, `tovi delete auth:REF`: deletes one object.
class DeleteCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    std::string object_;
};

CLI::App* DeleteCommand::declare(CLI::App& app) {
    CLI::App* command = app.add_subcommand("delete", "deletes one object");
    command->add_option("object", object_, objectNameHelp)->required()->type_name("RECORD");
    return command;
}

ExitCode DeleteCommand::run(Invocation& call) {
    const ObjectName name = parseObjectName(object_);
    CardAccess card(call, CardFolder::Mode::readWrite);
    const ContainerPointer model =
        name.auth ? readModel(call, card) : readModel(call, card, name.record);
    card.setInterruptible(false);
    if (name.auth) {
        deleteAuth(*model, card.os(), *name.auth);
    } else {
        model->deleteObjectInfo(&card.os(), name.record);
    }
    if (call.options().json) {
        Json result = {{"op", "delete"}};
        if (name.auth) {
            result["auth"] = name.auth->json();
        } else {
            result["recordNumber"] = name.record;
        }
        call.printJson(result);
    } else if (!call.options().quiet) {
        call.printText("deleted " + object_ + "\n");
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeDeleteCommand() { return std::make_unique<DeleteCommand>(); }

}  // namespace tovi
