#include <CLI/CLI.hpp>
#include <string_view>

#include "tools/Command.h"
#include "tools/Login.h"
#include "tools/Model.h"
#include "tools/ObjectText.h"
#include "tools/OptionChecks.h"
#include "tools/TokenInfoUpdate.h"

namespace tovi {
namespace {

/// `tovi token-info`: shows or updates TokenInfo.
class TokenInfoCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    Json fields() const;

    /// An option, the field that it sets, and what stands behind it on the command line.
    struct Setting {
        const char* option;
        const char* field;
        const char* help;
        std::string value = {};
        CLI::Option* found = nullptr;
    };

    Setting texts_[3] = {{"--label", "label", "label of the token; empty: none"},
                         {"--serial", "serialNumber", "serial number, in hexadecimal"},
                         {"--manufacturer", "manufacturerID", "name of the maker; empty: none"}};
    Setting switches_[4] = {
        {"--read-only", "readonly", "nothing may be written"},
        {"--login-required", "loginRequired", "a PIN comes before anything else"},
        {"--prn-generation", "prnGeneration", "the card makes random numbers"},
        {"--eid-compliant", "eidCompliant",
         "the card follows the profile for electronic identity"}};
};

CLI::App* TokenInfoCommand::declare(CLI::App& app) {
    CLI::App* command = app.add_subcommand("token-info", "shows or updates TokenInfo");
    for (Setting& text : texts_) {
        const bool isSerial = std::string_view(text.field) == "serialNumber";
        text.found = command->add_option(text.option, text.value, text.help)
                         ->type_name(isSerial ? "HEX" : "TEXT")
                         ->check(isSerial ? checkedSerial : checkedLabel);
    }
    for (Setting& option : switches_) {
        option.found = command->add_option(option.option, option.value, option.help)
                           ->type_name("on|off")
                           ->check(CLI::IsMember({"on", "off"}));
    }
    return command;
}

/// What the options say, as an operation has it.
Json TokenInfoCommand::fields() const {
    Json fields = Json::object();
    for (const Setting& text : texts_) {
        if (text.found->count() > 0) fields[text.field] = text.value;
    }
    for (const Setting& option : switches_) {
        if (option.found->count() > 0) fields[option.field] = option.value == "on";
    }
    return fields;
}

ExitCode TokenInfoCommand::run(Invocation& call) {
    const Json set = fields();
    const bool isUpdate = !set.empty();
    CardAccess card(call, isUpdate ? CardFolder::Mode::readWrite : CardFolder::Mode::readOnly);
    const ContainerPointer model = readModel(call, card);
    PKCS15TokenInfo info = model->getTokenInfo();
    if (isUpdate) {
        card.setInterruptible(false);
        info = updateTokenInfo(*model, card.os(), JsonPlace(set, "token-info"));
    }
    if (call.options().json) {
        call.printJson(toJson(info));
    } else if (!isUpdate || !call.options().quiet) {
        call.printText(tokenInfoText(info, call.style()));
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeTokenInfoCommand() { return std::make_unique<TokenInfoCommand>(); }

}  // namespace tovi
