#include <CLI/CLI.hpp>

#include "tools/Login.h"
#include "tools/Command.h"
#include "tools/JsonWriter.h"
#include "tools/ObjectText.h"
#include "tools/Text.h"

namespace tovi {
namespace {

/// `tovi list`: the whole application, every object of it.
class ListCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override {
        return app.add_subcommand("list", "prints every object, grouped by kind");
    }
    ExitCode run(Invocation& call) override;
};

void printList(const PKCS15Container& model, Invocation& call) {
    JsonWriter document(call);
    document.add("rootPath", toHex(model.getRootPath()));
    document.add("tokenInfo", toJson(model.getTokenInfo()));
    document.beginList("fat");
    const auto& rows = model.getFATRecords();
    for (std::size_t i = 0; i < rows.size(); ++i) document.addElement(toJson(rows[i], i));
    document.endList();
    forEachList(model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        if (&kind == &authObjects) {
            document.beginList(keyContainers.key);
            for (const auto& info : model.getContainerInfos()) {
                document.addElement(toJson(info, {objectTypeOf(model, info), true}));
            }
            document.endList();
        }
        document.beginList(kind.key);
        for (std::size_t i = 0; i < infos.size(); ++i) {
            document.addElement(objectJson(infos[i], stateOf(model, infos[i], raws[i])));
        }
        document.endList();
    });
    document.finish();
}

ExitCode ListCommand::run(Invocation& call) {
    CardAccess card(call, CardFolder::Mode::readOnly);
    const ContainerPointer model = readModel(call, card);
    if (call.options().json) {
        printList(*model, call);
    } else {
        call.printText(modelText(*model, call.style()));
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeListCommand() { return std::make_unique<ListCommand>(); }

}  // namespace tovi
