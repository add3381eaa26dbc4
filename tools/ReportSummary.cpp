#include <fmt/format.h>

#include <array>

#include "tools/ReportPage.h"
#include "tools/Text.h"

namespace tovi {
namespace {

void writeFact(Html& html, std::string_view name, std::string_view value) {
    if (value.empty()) return;
    html.open("div").element("dt", name).open("dd").element("bdi", value).close().close();
}

std::string flagsText(const PKCS15TokenInfo& info) {
    std::string text = info.readonly ? "read-only" : "can be written";
    text += info.loginRequired ? ", login required" : ", no login required";
    if (info.prnGeneration) text += ", makes random numbers";
    if (info.eidCompliant) text += ", eID compliant";
    return text;
}

/// "2 errors, 1 warning, 3 notices".
std::string findingsText(const Findings& findings) {
    std::array<std::size_t, 3> counts{};
    for (const Finding& finding : findings) {
        ++counts[static_cast<std::size_t>(severityOf(finding))];
    }
    std::string text;
    for (const auto& [noun, count] :
         {std::pair{"error", counts[0]}, std::pair{"warning", counts[1]},
          std::pair{"notice", counts[2]}}) {
        if (count > 0) text += (text.empty() ? "" : ", ") + counted(count, noun);
    }
    return text.empty() ? "nothing to report" : text;
}

std::string worstClass(const Findings& findings) {
    if (findings.empty()) return "tile good";
    bool hasError = false;
    for (const Finding& finding : findings) {
        hasError = hasError || severityOf(finding) == Severity::error;
    }
    return hasError ? "tile error" : "tile warning";
}

/// A number that leads to what it counts.
void writeTile(Html& html, std::string_view key, const std::string& href, std::size_t count,
               std::string_view name, std::string_view look) {
    html.open("li");
    html.open("a", {{"class", look},
                    {"href", "#" + href},
                    {"data-count", key},
                    {"data-value", std::to_string(count)}});
    html.element("strong", std::to_string(count)).text(" ").element("span", name);
    html.close().close();
}

void writeCounts(Html& html, const Report& report) {
    html.open("ul", {{"class", "tiles"}});
    for (const ListKind* kind :
         {&keyContainers, &privateKeys, &publicKeys, &trustedPublicKeys, &secretKeys, &certificates,
          &trustedCertificates, &usefulCertificates, &dataObjects, &authObjects}) {
        const std::size_t count = report.objects.count(*kind);
        const std::string name = count == 1 ? kind->noun : std::string(kind->noun) + "s";
        const std::string href = kind == &keyContainers ? std::string("containers")
                                 : kind == &authObjects ? "guards"
                                 : count > 0            ? tableId(*kind)
                                                        : "objects";
        writeTile(html, kind->key, href, count, name, count > 0 ? "tile" : "tile none");
    }
    const Findings& findings = report.inspection.findings;
    writeTile(html, "findings", "findings", findings.size(),
              (findings.size() == 1 ? "finding: " : "findings: ") + findingsText(findings),
              worstClass(findings));
    html.close();
}

void writeAlgorithms(Html& html, const PKCS15TokenInfo& info) {
    if (info.supportedAlgorithms.empty()) return;
    html.open("details").element(
        "summary", fmt::format("Algorithms of the card ({})", info.supportedAlgorithms.size()));
    openTable(html, "Algorithms of the card", {"Mechanism", "Identifier", "Operations"});
    const Json fields = toJson(info);
    for (const Json& algorithm : fields["supportedAlgorithms"]) {
        html.open("tr");
        for (const char* field : {"algorithm", "algId", "supportedOperations"}) {
            html.element("td", shortened(jsonText(algorithm[field]), cellLength));
        }
        html.close();
    }
    closeTable(html);
    html.close();
}

/// "3 PINs, 1 biometric template".
std::string guardsText(const PKCS15Container& model) {
    std::map<AuthType, std::size_t> counts;
    for (const auto& info : model.getAuthInfos()) ++counts[info.type];
    std::string text;
    for (const auto& [type, noun] :
         {std::pair{AuthType::pin, "PIN"}, std::pair{AuthType::biometric, "biometric template"},
          std::pair{AuthType::authKey, "authentication key"},
          std::pair{AuthType::external, "external authentication"},
          std::pair{AuthType::none, "record that is not understood"}}) {
        if (counts[type] == 0) continue;
        text += (text.empty() ? "" : ", ") +
                (type == AuthType::none && counts[type] > 1
                     ? fmt::format("{} records that are not understood", counts[type])
                     : counted(counts[type], noun));
    }
    return text.empty() ? "none" : text;
}

}  // namespace

void writeSummary(Html& html, const Report& report) {
    openSection(html, "summary", "Summary");
    if (const auto& error = report.inspection.modelError) {
        html.element("p", {{"class", "alert"}, {"role", "note"}},
                     "The application cannot be read, so that its objects are not known: " +
                         error->line() + ". What its files hold stands below.");
    }
    html.open("dl", {{"class", "facts"}});
    if (const auto& model = report.inspection.model) {
        const PKCS15TokenInfo& info = model->getTokenInfo();
        writeFact(html, "Label", shortened(toUtf8(info.info.label), cellLength));
        writeFact(html, "Serial number", shortened(toHex(info.info.serialNumber), cellLength));
        writeFact(html, "Manufacturer", shortened(toUtf8(info.manufacturerID), cellLength));
        writeFact(html, "Token", flagsText(info));
        writeFact(html, "PINs and the like", guardsText(*model));
    }
    writeFact(html, "Application", toHex(report.aid));
    writeFact(html, "Place on the card", spacedPath(report.rootPath));
    html.close();
    writeCounts(html, report);
    if (const auto& model = report.inspection.model) writeAlgorithms(html, model->getTokenInfo());
    html.close();
}

}  // namespace tovi
