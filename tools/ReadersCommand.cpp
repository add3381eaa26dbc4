#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "tools/Command.h"
#include "tools/Text.h"
#include "tovi/card/PcscReaders.h"

namespace tovi {
namespace {

/// `tovi readers`: the PC/SC readers and what is in them.
class ReadersCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override {
        return app.add_subcommand("readers",
                                  "prints the PC/SC readers and whether they hold a card");
    }
    ExitCode run(Invocation& call) override;
};

const char* nameOf(PcscReader::State state) {
    switch (state) {
        case PcscReader::State::present:
            return "present";
        case PcscReader::State::inUse:
            return "in use";
        case PcscReader::State::mute:
            return "mute";
        default:
            return "empty";
    }
}

void printReadersJson(const std::vector<PcscReader>& readers, Invocation& call) {
    using Json = nlohmann::ordered_json;
    Json list = Json::array();
    for (const PcscReader& reader : readers) {
        list.push_back(
            {{"name", toUtf8(ASN1::View(reinterpret_cast<const std::uint8_t*>(reader.name.data()),
                                        reader.name.size()))},
             {"state", nameOf(reader.state)},
             {"atr", reader.atr.empty() ? Json() : Json(toHex(reader.atr))}});
    }
    call.printJson({{"readers", std::move(list)}});
}

void printReadersText(const std::vector<PcscReader>& readers, Invocation& call) {
    if (readers.empty()) return call.printText("no PC/SC reader\n");
    TextTable table({"reader", "state", "ATR"});
    for (const PcscReader& reader : readers) {
        table.add({reader.name, nameOf(reader.state), toHex(reader.atr)});
    }
    call.printText(table.text(call.style(), 0));
}

ExitCode ReadersCommand::run(Invocation& call) {
    if (!call.options().card.empty() || !call.options().reader.empty()) {
        throw UsageError("readers prints them all; it takes neither --card nor --reader");
    }
    const std::shared_ptr<IPcscService> service = call.console().pcsc();
    PcscReaders readers(*service);
    const std::vector<PcscReader> all = readers.list();
    if (call.options().json) {
        printReadersJson(all, call);
    } else {
        printReadersText(all, call);
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeReadersCommand() { return std::make_unique<ReadersCommand>(); }

}  // namespace tovi
