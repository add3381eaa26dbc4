#include <fmt/format.h>

#include <algorithm>

#include "tools/ReportPage.h"

namespace tovi {
namespace {

/// The columns that hold something in some row.
std::vector<std::size_t> columnsOf(const ObjectTable& table) {
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < table.headings.size(); ++column) {
        const bool isUsed = std::any_of(table.rows.begin(), table.rows.end(),
                                        [&](const auto& row) { return !row[column].empty(); });
        if (isUsed) columns.push_back(column);
    }
    return columns;
}

bool isRecordNumber(const std::string& heading) {
    return heading == "exchange key" || heading == "exchange certificate" ||
           heading == "signature key" || heading == "signature certificate";
}

/// What a cell leads to: the object that its number or identifier names.
const ReportObject* targetOf(const std::string& heading, const std::string& cell,
                             const ReportObject& object, const ReportObjects& objects) {
    if (heading == "auth id") return objects.authObject(object.authId);
    if (isRecordNumber(heading) && !cell.empty()) return objects.withRecord(std::stoull(cell));
    return nullptr;
}

void writeCell(Html& html, const std::string& heading, const std::string& cell,
               const ReportObject& object, const ReportObjects& objects) {
    const std::string text = shortened(cell, cellLength);
    if (const ReportObject* target = targetOf(heading, cell, object, objects)) {
        html.open("td").element("bdi", text).text(" ");
        linkTo(html, *target);
        html.close();
    } else if (heading == "label") {
        html.open("th", {{"scope", "row"}}).element("bdi", text).close();
    } else {
        html.open("td").element("bdi", text).close();
    }
}

void writeTable(Html& html, const ObjectTable& table, const ReportObjects& objects) {
    const auto columns = columnsOf(table);
    const std::string title = fmt::format("{} ({})", table.kind->title, table.rows.size());
    html.element("h3", {{"id", tableId(*table.kind)}}, title);
    std::vector<std::string> headings;
    for (const std::size_t column : columns) headings.push_back(table.headings[column]);
    openTable(html, table.kind->title, headings);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const ReportObject& object = objects.at(*table.kind, i);
        html.open("tr", {{"id", object.anchor}, {"data-object", table.kind->key}});
        for (const std::size_t column : columns) {
            writeCell(html, table.headings[column], table.rows[i][column], object, objects);
        }
        html.close();
    }
    closeTable(html);
}

}  // namespace

std::string tableId(const ListKind& kind) { return std::string("table-") + kind.key; }

void writeObjects(Html& html, const Report& report) {
    const std::size_t count = report.objects.all().size();
    openSection(html, "objects", fmt::format("Objects ({})", count));
    if (count == 0) html.element("p", {{"class", "note"}}, "No objects.");
    for (const ObjectTable& table : report.objects.tables()) {
        if (!table.rows.empty()) writeTable(html, table, report.objects);
    }
    html.close();
}

}  // namespace tovi
