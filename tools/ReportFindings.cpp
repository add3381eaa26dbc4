#include <fmt/format.h>

#include <algorithm>

#include "tools/ReportPage.h"

namespace tovi {
namespace {

constexpr std::size_t messageLength = 500;

std::string_view severityName(Severity severity) {
    switch (severity) {
        case Severity::error:
            return "error";
        case Severity::warning:
            return "warning";
        case Severity::notice:
            return "notice";
    }
    return "";
}

/// "Undecodable record" for "undecodable-record".
std::string titleOf(std::string kind) {
    std::replace(kind.begin(), kind.end(), '-', ' ');
    if (!kind.empty() && kind[0] >= 'a' && kind[0] <= 'z') {
        kind[0] = static_cast<char>(kind[0] - 'a' + 'A');
    }
    return kind;
}

/// What the finding is about, with a link to it.
void writeSubject(Html& html, const Finding& finding, const ReportObjects& objects,
                  const std::map<std::string, std::string>& files) {
    const ReportObject* object = finding.recordNumber ? objects.withRecord(*finding.recordNumber)
                                                      : objects.named(finding.object);
    if (object != nullptr) {
        html.open("a", {{"href", "#" + object->anchor}});
        html.element("bdi", object->title()).close();
    } else if (const auto file = files.find(finding.file); file != files.end()) {
        html.element("a", {{"href", "#" + file->second}}, finding.file);
    } else {
        html.text(shortened(finding.object + finding.file, messageLength));
    }
}

void writeFinding(Html& html, const Finding& finding, const Report& report,
                  const std::map<std::string, std::string>& files) {
    const std::string_view severity = severityName(severityOf(finding));
    html.open("li", {{"data-finding", finding.kind}, {"data-severity", severity}});
    html.open("p").element("span", {{"class", "badge " + std::string(severity)}}, severity).close();
    html.element("h3", titleOf(finding.kind)).open("p");
    writeSubject(html, finding, report.objects, files);
    html.close().element("p", shortened(finding.message, messageLength)).close();
}

}  // namespace

void writeFindings(Html& html, const Report& report) {
    const Findings& findings = report.inspection.findings;
    openSection(html, "findings", fmt::format("Findings ({})", findings.size()));
    if (findings.empty()) {
        html.element("p", {{"class", "note"}}, "Nothing is wrong or odd about this application.");
    } else {
        std::vector<const Finding*> sorted;
        for (const Finding& finding : findings) sorted.push_back(&finding);
        std::stable_sort(sorted.begin(), sorted.end(), [](const Finding* a, const Finding* b) {
            return severityOf(*a) < severityOf(*b);
        });
        const auto files = fileAnchors(report);
        html.open("ul", {{"class", "findings"}});
        for (const Finding* finding : sorted) writeFinding(html, *finding, report, files);
        html.close();
    }
    html.close();
}

}  // namespace tovi
