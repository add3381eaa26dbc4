#include <CLI/CLI.hpp>

#include "tools/CardAccess.h"
#include "tools/Command.h"
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

Json listJson(const PKCS15Container& model) {
    Json json;
    json["rootPath"] = toHex(model.getRootPath());
    json["tokenInfo"] = toJson(model.getTokenInfo());
    json["fat"] = toJson(model.getFATRecords());
    forEachList(model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        if (&kind == &authObjects) {
            Json& containers = json[keyContainers.key] = Json::array();
            for (const auto& info : model.getContainerInfos()) {
                containers.push_back(toJson(info, {objectTypeOf(model, info), true}));
            }
        }
        Json& list = json[kind.key] = Json::array();
        for (std::size_t i = 0; i < infos.size(); ++i) {
            list.push_back(objectJson(infos[i], stateOf(model, infos[i], raws[i])));
        }
    });
    return json;
}

ExitCode ListCommand::run(Invocation& call) {
    CardAccess card(call, CardFolder::Mode::readOnly);
    const ContainerPointer model = makeContainer(card.applicationPath());
    model->readFromCard(&card.os());
    if (call.options().json) {
        call.printJson(listJson(*model));
    } else {
        call.printText(modelText(*model, call.style()));
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeListCommand() { return std::make_unique<ListCommand>(); }

}  // namespace tovi
