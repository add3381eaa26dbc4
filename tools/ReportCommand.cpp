#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "tools/CardAccess.h"
#include "tools/Command.h"
#include "tools/Login.h"
#include "tools/OptionChecks.h"
#include "tools/ReportPage.h"
#include "tools/Text.h"
#include "tools/WholeFile.h"

namespace tovi {
namespace {

/// `tovi report [-o FILE]`: the application as a page for people who would rather look than read.
class ReportCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    void tellWhatWasWritten(const Report& report, Invocation& call) const;

    std::string file_;
};

CLI::App* ReportCommand::declare(CLI::App& app) {
    CLI::App* report = app.add_subcommand("report", "shows the application as a page of HTML");
    report->add_option("-o,--output", file_, "where the page goes (default: standard output)")
        ->type_name("FILE")
        ->check(checkedNotEmpty);
    return report;
}

void ReportCommand::tellWhatWasWritten(const Report& report, Invocation& call) const {
    if (call.options().json) {
        call.printJson({{"file", file_},
                        {"objects", report.objects.all().size()},
                        {"findings", report.inspection.findings.size()}});
    } else if (!call.options().quiet) {
        call.printText("wrote " + forTerminal(file_) + "\n");
    }
}

ExitCode ReportCommand::run(Invocation& call) {
    if (call.options().json && file_.empty()) {
        throw UsageError("the page is no JSON document; with --json, name a file with -o FILE");
    }
    CardAccess card(call, CardFolder::Mode::readOnly);
    logIn(call, card);
    const Report report = makeReport(card);
    const std::string page = reportPage(report);
    call.checkInterrupt();
    if (file_.empty()) {
        call.printText(page);
    } else {
        writeWholeFile(file_, page, call.operation());
        tellWhatWasWritten(report, call);
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeReportCommand() { return std::make_unique<ReportCommand>(); }

}  // namespace tovi
