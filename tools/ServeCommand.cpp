#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/AnswerToReset.h"
#include "tools/CardSource.h"
#include "tools/Command.h"
#include "tools/OptionChecks.h"
#include "tools/ServeLoop.h"
#include "tools/Text.h"
#include "tovi/card/StatusWord.h"
#include "tovi/card/TraceChannel.h"

namespace tovi {
namespace {

constexpr unsigned usualPort = 35963, highestPort = 65535;
constexpr unsigned longestPatience = 7 * 24 * 3600;

/// The card of a folder. A change that the folder does not take is told here, since the user of the
/// card hears no more than 6581.
class ServedFolder final : public ICardChannel {
public:
    ServedFolder(CardFolder& folder, std::ostream& err) : folder_(folder), err_(err) {}

    Blob transmit(const Blob& command) override {
        Blob response = folder_.card().process(command);
        const auto size = response.size();
        if (size == 2 && (response[0] << 8 | response[1]) == StatusWord::memoryFailure)
            err_ << "tovi: " << forTerminal(folder_.lastFailure()) << std::endl;
        return response;
    }

private:
    CardFolder& folder_;
    std::ostream& err_;
};

/// `tovi serve DIR`: puts a card folder into a virtual reader, for any program that uses PC/SC.
class ServeCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    void checkOptions(const GlobalOptions& options) const;
    ReaderAddress address() const;
    void announce(Invocation& call) const;

    std::string folder_, host_ = "127.0.0.1", atr_ = toHex(virtualCardAtr());
    unsigned port_ = usualPort, slot_ = 0, patience_ = 10;
    bool once_ = false;
};

std::string checkedAtr(const std::string& text) {
    const std::optional<Blob> atr = fromHex(text);
    return findAtrFault(atr ? *atr : Blob());
}

CLI::App* ServeCommand::declare(CLI::App& app) {
    CLI::App* serve = app.add_subcommand(
        "serve", "puts a card folder into the virtual reader of pcscd, until interrupted");
    serve->add_option("folder", folder_, "the card folder")
        ->required()
        ->type_name("DIR")
        ->check(checkedNotEmpty);
    serve->add_option("--host", host_, "where the virtual reader listens")
        ->capture_default_str()
        ->check(checkedNotEmpty);
    serve->add_option("--port", port_, "the port of its first slot")
        ->capture_default_str()
        ->check(CLI::Range(1u, highestPort));
    serve->add_option("--slot", slot_, "the slot; each has the port behind that of the one before")
        ->capture_default_str()
        ->check(CLI::Range(0u, 1u));
    serve->add_option("--atr", atr_, "the answer to reset of the card")
        ->capture_default_str()
        ->type_name("HEX")
        ->check(checkedAtr);
    serve->add_option("--patience", patience_, "seconds to wait for a reader that is not there")
        ->capture_default_str()
        ->check(CLI::Range(1u, longestPatience));
    serve->add_flag("--once", once_, "ends when the reader goes away, instead of waiting for it");
    return serve;
}

void ServeCommand::checkOptions(const GlobalOptions& options) const {
    if (!options.card.empty() || !options.reader.empty() || !options.aid.empty())
        throw UsageError("serve takes the card DIR, and neither --card nor --reader nor --aid");
    if (port_ + slot_ > highestPort) throw UsageError("--port: no port is left for the slot");
}

ReaderAddress ServeCommand::address() const {
    return {host_, static_cast<std::uint16_t>(port_ + slot_)};
}

void ServeCommand::announce(Invocation& call) const {
    if (call.options().json) {
        nlohmann::ordered_json document;
        document["card"] = folder_;
        document["reader"] = address().text();
        document["atr"] = toHex(*fromHex(atr_));
        call.printJson(document);
    } else if (!call.options().quiet) {
        call.printText(forTerminal(fmt::format("card {} is in the reader at {}, ATR {}", folder_,
                                               address().text(), toHex(*fromHex(atr_)))) +
                       "\n");
    }
}

ExitCode ServeCommand::run(Invocation& call) {
    checkOptions(call.options());
    std::ostream& err = call.console().err;
    const std::unique_ptr<CardFolder> folder =
        openFolder(call, folder_, CardFolder::Mode::readWrite);
    ServedFolder card(*folder, err);
    TraceChannel trace(card, [&err](const std::string& line) { err << line << std::endl; });
    VpcdCard inserted(folder->card(),
                      call.options().trace ? static_cast<ICardChannel&>(trace) : card,
                      *fromHex(atr_));
    ServeLoop loop(call, inserted, address(), std::chrono::seconds(patience_));
    loop.insert();
    announce(call);
    for (;;) {
        loop.serve();
        if (once_) return ExitCode::done;
        if (!call.options().quiet) err << "tovi: the reader has gone; waiting for it" << std::endl;
        loop.insert();
        if (!call.options().quiet) err << "tovi: the card is in the reader again" << std::endl;
    }
}

}  // namespace

std::unique_ptr<Command> makeServeCommand() { return std::make_unique<ServeCommand>(); }

}  // namespace tovi
