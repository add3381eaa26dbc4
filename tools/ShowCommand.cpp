#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "tools/Login.h"
#include "tools/Command.h"
#include "tools/ObjectName.h"
#include "tools/ObjectText.h"
#include "tools/ValueText.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

/// `tovi show RECORD`, `tovi show auth:REF`: one object, with everything known of it.
class ShowCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    std::string object_;
};

/// An object as it is shown: its JSON, and for people also what else is known.
struct Shown {
    std::string title;
    Json json;
    std::string place;   ///< "PrKDF[2]", its record counted from 0; empty: in no file
    std::string record;  ///< its directory record in value notation; empty: none
};

/// Element i of a list of the model.
template <class Infos, class Raws>
Shown shown(const PKCS15Container& model, const ListKind& kind, const Infos& infos,
            const Raws& raws, std::size_t i) {
    Shown object{nameOf(kind, infos[i]), objectJson(infos[i], stateOf(model, infos[i], raws[i])),
                 fmt::format("{}[{}]", kind.file, i), ""};
    if (raws[i].value != nullptr) object.record = valueText(*raws[i].value);
    return object;
}

Shown shownAuth(const PKCS15Container& model, const AuthName& name) {
    const auto position = findAuth(model, name);
    if (!position) throw noSuchAuthObject("PKCS15Container::getAuthInfo");
    return shown(model, authObjects, model.getAuthInfos(), model.getRawAuthObjects(), *position);
}

std::optional<Shown> findInLists(const PKCS15Container& model, std::uint64_t record) {
    std::optional<Shown> found;
    forEachList(model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        for (std::size_t i = 0; i < infos.size() && !found; ++i) {
            if (infos[i].recordNumber == record) found = shown(model, kind, infos, raws, i);
        }
    });
    for (const auto& info : model.getContainerInfos()) {
        if (found || info.recordNumber != record) continue;
        found = Shown{nameOf(keyContainers, info), toJson(info, {objectTypeOf(model, info), true}),
                      "", ""};
    }
    return found;
}

Shown shownTokenInfo(const PKCS15Container& model) {
    return {"TokenInfo", toJson(model.getTokenInfo()), "TokenInfo[0]",
            valueText(*model.getRawTokenInfos().front().value)};
}

Shown findObject(const PKCS15Container& model, std::uint64_t record) {
    const auto& rows = model.getFATRecords();
    std::optional<Shown> found;
    if (record < rows.size()) {
        found = rows[record].objectType == tokenInfoObject ? shownTokenInfo(model)
                                                           : findInLists(model, record);
    }
    // Nothing has that number, so any lookup fails, and says why.
    if (!found) model.getPrivateKeyInfo(record);
    return std::move(found.value());
}

CLI::App* ShowCommand::declare(CLI::App& app) {
    CLI::App* show = app.add_subcommand("show", "prints one object with all that is known of it");
    show->add_option("object", object_, objectNameHelp)->required()->type_name("RECORD");
    return show;
}

ExitCode ShowCommand::run(Invocation& call) {
    const ObjectName name = parseObjectName(object_);
    CardAccess card(call, CardFolder::Mode::readOnly);
    const ContainerPointer model = readModel(call, card);
    const Shown object =
        name.auth ? shownAuth(*model, *name.auth) : findObject(*model, name.record);
    if (call.options().json) {
        call.printJson(object.json);
        return ExitCode::done;
    }
    const Style style = call.style();
    std::string text = style.heading(object.title) + "\n" + fieldsText(object.json, style);
    if (!object.place.empty()) {
        text += "\n" + style.heading("Record " + object.place) + "\n" + indented(object.record, 2);
    }
    call.printText(text);
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeShowCommand() { return std::make_unique<ShowCommand>(); }

}  // namespace tovi
