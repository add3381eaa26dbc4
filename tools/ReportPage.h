#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/Inspection.h"
#include "tools/ReportObjects.h"

namespace tovi {

/// A file that holds the values of objects, as far as the card lets itself be asked about it.
struct ReferencedFile {
    Blob path;  ///< absolute
    FileInfo info;
    std::optional<ErrorReport> error;  ///< why it cannot be selected
    std::vector<const ReportObject*> objects;
};

/// All that the page shows.
struct Report {
    Blob aid, rootPath;
    Inspection inspection;
    std::vector<ApplicationFile> otherFiles;  ///< those that `check` has no rules for
    ReportObjects objects;
    std::vector<ReferencedFile> valueFiles;
};

/// Reads the card; see inspect() for the failures.
Report makeReport(CardAccess& card);

/// The page: one HTML document that loads nothing and runs nothing.
std::string reportPage(const Report& report);

// ---- its sections ----

void writeSummary(Html& html, const Report& report);
/// Which key container holds which keys and certificates, and those that are in none.
void writeContainers(Html& html, const Report& report);
/// Which authentication object guards what, and what none guards.
void writeGuards(Html& html, const Report& report);
/// How full each elementary file is, and what lies where in it.
void writeFiles(Html& html, const Report& report);
/// The files that the values of objects lie in.
void writeValueFiles(Html& html, const Report& report);
void writeObjects(Html& html, const Report& report);
void writeFindings(Html& html, const Report& report);

/// Ids of the files' parts of the page, by ApplicationFile::name(); "EF(ODF)" names that one too.
std::map<std::string, std::string> fileAnchors(const Report& report);
/// The id of part `index` of the map of files.
std::string fileAnchor(std::size_t index);

/// The id of the table of a kind, which is there when it has objects.
std::string tableId(const ListKind& kind);

/// A section with an id and a heading, which close() ends.
void openSection(Html& html, std::string_view id, std::string_view heading);
/// A table that scrolls within itself where the page is narrow; closeTable ends it.
void openTable(Html& html, std::string_view name, const std::vector<std::string>& headings);
void closeTable(Html& html);
/// A list of links, which is folded when it is long.
void writeLinks(Html& html, const std::vector<const ReportObject*>& objects);

/// "3F00 5015 4401": the file identifiers of a path.
std::string spacedPath(const Blob& path);

}  // namespace tovi
