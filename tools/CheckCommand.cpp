#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "tools/CardAccess.h"
#include "tools/Command.h"
#include "tools/Inspection.h"
#include "tools/Login.h"

namespace tovi {
namespace {

/// `tovi check`: everything that is wrong or odd about the application.
class CheckCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override {
        return app.add_subcommand("check", "reports what is wrong or odd about the application");
    }
    ExitCode run(Invocation& call) override;
};

Json findingsJson(const Findings& findings) {
    const auto textOrNull = [](const std::string& text) {
        return text.empty() ? Json(nullptr) : Json(text);
    };
    Json list = Json::array();
    for (const Finding& finding : findings) {
        Json json;
        json["kind"] = finding.kind;
        json["object"] = textOrNull(finding.object);
        json["recordNumber"] = finding.recordNumber ? Json(*finding.recordNumber) : Json(nullptr);
        json["file"] = textOrNull(finding.file);
        json["message"] = finding.message;
        list.push_back(std::move(json));
    }
    return {{"findings", std::move(list)}};
}

std::string findingsText(const Findings& findings, const Style& style) {
    if (findings.empty()) return "no findings\n";
    TextTable table({"finding", "where", "what"});
    for (const Finding& finding : findings) {
        table.add({finding.kind, finding.object + finding.file, finding.message});
    }
    const std::string count =
        findings.size() == 1 ? "1 finding" : fmt::format("{} findings", findings.size());
    return style.warning(count) + "\n" + table.text(style);
}

ExitCode CheckCommand::run(Invocation& call) {
    CardAccess card(call, CardFolder::Mode::readOnly);
    logIn(call, card);
    const Findings findings = inspect(card).findings;
    if (call.options().json) {
        call.printJson(findingsJson(findings));
    } else if (!findings.empty() || !call.options().quiet) {
        call.printText(findingsText(findings, call.style()));
    }
    return findings.empty() ? ExitCode::done : ExitCode::findings;
}

}  // namespace

std::unique_ptr<Command> makeCheckCommand() { return std::make_unique<CheckCommand>(); }

}  // namespace tovi
