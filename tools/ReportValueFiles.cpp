#include <fmt/format.h>

#include <algorithm>

#include "tools/ReportBar.h"
#include "tools/ReportPage.h"

namespace tovi {
namespace {

bool isWholeFile(const PKCS15Path& path) { return path.index == 0 && path.length == 0; }

bool isTransparent(const ReferencedFile& file) {
    return !file.error && file.info.structure == FileStructure::transparent;
}

/// "octets 16 to 47", "record 3", "the whole file".
std::string placeText(const ReferencedFile& file, const PKCS15Path& path) {
    if (isWholeFile(path)) return "the whole file";
    if (!file.error && !isTransparent(file)) return fmt::format("record {}", path.index);
    return path.length == 0 ? fmt::format("from octet {} on", path.index)
                            : fmt::format("octets {} to {}", path.index,
                                          std::size_t{path.index} + path.length - 1);
}

std::size_t endOf(const PKCS15Path& path) { return std::size_t{path.index} + path.length; }

/// The parts of a transparent file that its objects name, in file order. One that overlaps those
/// before begins where they end.
void writeMap(Html& html, const ReferencedFile& file) {
    std::vector<const ReportObject*> objects = file.objects;
    std::stable_sort(objects.begin(), objects.end(),
                     [](auto* a, auto* b) { return a->path.index < b->path.index; });
    std::size_t at = 0;
    std::vector<BarCell> cells;
    for (const ReportObject* object : objects) {
        const bool hasEnd = object->path.length > 0;
        const std::size_t end = hasEnd ? endOf(object->path) : std::max(file.info.size, at);
        if (object->path.index > at) {
            cells.push_back({"gap", object->path.index - at, "nothing that an object names", ""});
            at = object->path.index;
        }
        if (end <= at && !cells.empty()) continue;
        cells.push_back({"record", std::max<std::size_t>(end - at, 1),
                         placeText(file, object->path) + ", " + object->title(), object->anchor});
        at = std::max(at, end);
    }
    if (file.info.size > at) {
        cells.push_back({"gap", file.info.size - at, "nothing that an object names", ""});
    }
    writeBar(html, "Map of file " + spacedPath(file.path), std::move(cells));
}

std::string stateText(const ReferencedFile& file) {
    if (file.error) return "cannot be selected: " + file.error->message;
    std::string text(structureName(file.info.structure));
    if (isTransparent(file) && file.info.size > 0) {
        text += fmt::format(", {} octets", file.info.size);
    }
    return text;
}

void writeUsers(Html& html, const ReferencedFile& file) {
    html.open("ul", {{"class", "links"}});
    for (const ReportObject* object : file.objects) {
        html.open("li");
        linkTo(html, *object);
        if (!isWholeFile(object->path)) html.text(" " + placeText(file, object->path));
        html.close();
    }
    html.close();
}

}  // namespace

void writeValueFiles(Html& html, const Report& report) {
    openSection(html, "values", fmt::format("Files of values ({})", report.valueFiles.size()));
    html.element("p", {{"class", "note"}},
                 "Where the objects say that their keys, certificates and data lie. Contents are "
                 "not read.");
    if (!report.valueFiles.empty()) {
        const bool hasMap =
            std::any_of(report.valueFiles.begin(), report.valueFiles.end(), isTransparent);
        std::vector<std::string> headings{"File", "On the card", "Objects"};
        if (hasMap) headings.push_back("Map");
        openTable(html, "Files of values", headings);
        for (const ReferencedFile& file : report.valueFiles) {
            html.open("tr", {{"data-value-file", ""}});
            html.open("td").element("code", spacedPath(file.path)).close();
            html.element("td", stateText(file)).open("td");
            writeUsers(html, file);
            html.close();
            if (hasMap) {
                html.open("td", {{"class", "map"}});
                if (isTransparent(file)) writeMap(html, file);
                html.close();
            }
            html.close();
        }
        closeTable(html);
    }
    html.close();
}

}  // namespace tovi
