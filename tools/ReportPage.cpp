#include "tools/ReportPage.h"

#include <fmt/format.h>

#include "tools/ReportStyle.h"
#include "tools/Text.h"

namespace tovi {
namespace {

constexpr std::size_t fewLinks = 24;

std::vector<ApplicationFile> readOtherFiles(CardAccess& card) {
    std::vector<ApplicationFile> files;
    for (const FileLocation& location : optionalFiles(card.place())) {
        ApplicationFile file = readApplicationFile(card.files(), location);
        if (!isAbsent(file)) files.push_back(std::move(file));
    }
    return files;
}

/// The files that the values lie in, by path. Authentication objects have no value: their path is
/// that of a folder.
std::vector<ReferencedFile> findValueFiles(ISCardOS& os, const ReportObjects& objects) {
    std::map<Blob, std::vector<const ReportObject*>> users;
    for (const ReportObject& object : objects.all()) {
        if (object.kind == &authObjects || object.path.path.empty()) continue;
        users[object.path.path].push_back(&object);
    }
    std::vector<ReferencedFile> files;
    for (auto& [path, inFile] : users) {
        ReferencedFile file{path, {}, {}, std::move(inFile)};
        try {
            file.info = os.selectFile(path);
        } catch (const Exception& exception) {
            file.error = ErrorReport::of(exception);
        }
        files.push_back(std::move(file));
    }
    return files;
}

void writeHead(Html& html, const std::string& title) {
    html.open("head");
    html.empty("meta", {{"charset", "utf-8"}});
    // Nothing is loaded and nothing runs; the bars need styles of their own.
    html.empty("meta", {{"http-equiv", "Content-Security-Policy"},
                        {"content",
                         "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; "
                         "form-action 'none'"}});
    html.empty("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
    html.empty("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
    html.empty("meta", {{"name", "referrer"}, {"content", "no-referrer"}});
    html.element("title", title).style(reportStyle).close();
}

std::string titleOf(const Report& report) {
    if (!report.inspection.model) return "Application " + toHex(report.rootPath);
    const Blob& label = report.inspection.model->getTokenInfo().info.label;
    return label.empty() ? "Card without a label" : shortened(toUtf8(label), cellLength);
}

void writeContents(Html& html) {
    html.open("nav", {{"aria-label", "Parts of this page"}}).open("ul");
    for (const auto& [id, name] :
         {std::pair{"containers", "Key containers"}, std::pair{"guards", "PINs"},
          std::pair{"files", "Files"}, std::pair{"values", "Values"},
          std::pair{"objects", "Objects"}, std::pair{"findings", "Findings"}}) {
        html.open("li").element("a", {{"href", "#" + std::string(id)}}, name).close();
    }
    html.close().close();
}

}  // namespace

Report makeReport(CardAccess& card) {
    Report report;
    report.aid = card.aid();
    report.rootPath = card.rootPath();
    report.inspection = inspect(card);
    report.otherFiles = readOtherFiles(card);
    if (report.inspection.model) report.objects = ReportObjects(*report.inspection.model);
    report.valueFiles = findValueFiles(card.files(), report.objects);
    return report;
}

std::string reportPage(const Report& report) {
    const std::string title = titleOf(report);
    Html html;
    html.open("html", {{"lang", "en"}});
    writeHead(html, title);
    html.open("body").element("a", {{"class", "skip"}, {"href", "#main"}}, "Skip to the contents");
    html.open("header").element("p", {{"class", "kicker"}}, "PKCS#15 application");
    html.open("h1").element("bdi", title).close();
    writeContents(html);
    html.close().open("main", {{"id", "main"}});
    writeSummary(html, report);
    writeContainers(html, report);
    writeGuards(html, report);
    writeFiles(html, report);
    writeValueFiles(html, report);
    writeObjects(html, report);
    writeFindings(html, report);
    html.close().open("footer").element("p", "Made by tovi report. This page loads nothing.");
    return html.finish();
}

void openSection(Html& html, std::string_view id, std::string_view heading) {
    const std::string headingId = std::string(id) + "-heading";
    html.open("section", {{"id", id}, {"aria-labelledby", headingId}});
    html.element("h2", {{"id", headingId}}, heading);
}

void openTable(Html& html, std::string_view name, const std::vector<std::string>& headings) {
    html.open("div",
              {{"class", "scroll"}, {"role", "region"}, {"tabindex", "0"}, {"aria-label", name}});
    html.open("table").open("thead").open("tr");
    for (const std::string& heading : headings) html.element("th", {{"scope", "col"}}, heading);
    html.close().close().open("tbody");
}

void closeTable(Html& html) { html.close().close().close(); }

void writeLinks(Html& html, const std::vector<const ReportObject*>& objects) {
    const bool isLong = objects.size() > fewLinks;
    if (isLong) {
        html.open("details").element("summary", fmt::format("Show all {}", objects.size()));
    }
    html.open("ul", {{"class", "links"}});
    for (const ReportObject* object : objects) {
        html.open("li");
        linkTo(html, *object);
        html.close();
    }
    html.close();
    if (isLong) html.close();
}

std::string spacedPath(const Blob& path) {
    const std::string digits = toHex(path);
    std::string spaced;
    for (std::size_t i = 0; i < digits.size(); i += 4) {
        spaced += (i > 0 ? " " : "") + digits.substr(i, 4);
    }
    return spaced;
}

}  // namespace tovi
