#include <CLI/CLI.hpp>

#include "tools/Login.h"
#include "tools/Command.h"
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
    command->add_option("object", object_, "a record number, or auth:REF")
        ->required()
        ->type_name("RECORD");
    return command;
}

void deleteAuth(PKCS15Container& model, ISCardOS& os, std::uint64_t reference) {
    // No authentication object of a longer reference can be named to the container.
    if (reference > 0xFF) {
        throw SmartcardException("invalid object reference", "PKCS15Container::deleteAuthInfo");
    }
    model.deleteAuthInfo(&os, static_cast<unsigned char>(reference));
}

ExitCode DeleteCommand::run(Invocation& call) {
    const ObjectName name = parseObjectName(object_);
    CardAccess card(call, CardFolder::Mode::readWrite);
    const ContainerPointer model =
        name.isAuth ? readModel(call, card) : readModel(call, card, name.number);
    card.setInterruptible(false);
    if (name.isAuth) {
        deleteAuth(*model, card.os(), name.number);
    } else {
        model->deleteObjectInfo(&card.os(), name.number);
    }
    if (call.options().json) {
        call.printJson({{"op", "delete"}, {name.isAuth ? "auth" : "recordNumber", name.number}});
    } else if (!call.options().quiet) {
        call.printText("deleted " + object_ + "\n");
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeDeleteCommand() { return std::make_unique<DeleteCommand>(); }

}  // namespace tovi
