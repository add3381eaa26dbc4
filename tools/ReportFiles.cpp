#include <fmt/format.h>

#include <algorithm>

#include "tools/Paths.h"
#include "tools/ReportBar.h"
#include "tools/ReportPage.h"
#include "tools/Text.h"
#include "tovi/asn1/Coding.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

/// What a segment leads to.
struct Target {
    std::string href;
    std::string title;
};

/// Tells which object, or which file, a record describes. The model numbers the objects of a kind
/// through all files of that kind, as far as it reads them.
class Targets {
public:
    explicit Targets(const Report& report) : report_(report), anchors_(pathAnchors(report)) {
        std::map<std::string_view, std::size_t> counts;
        std::map<Blob, std::size_t> recordsOf;
        for (const ApplicationFile& file : report.inspection.files) {
            first_.push_back(counts[file.kind->name]);
            const auto known = recordsOf.emplace(file.file.path, file.readByRecords).first;
            counts[file.kind->name] += known->second;  // a repeated file is not read again
        }
        if (!report.inspection.model) return;
        forEachList(*report.inspection.model, [&](const ListKind& kind, const auto& infos, auto&) {
            // Where the counts differ the card answered differently, and nothing is certain.
            if (counts[kind.file] == infos.size()) lists_[kind.file] = &kind;
        });
    }

    /// Of record `record` of file `index`; nothing for what leads nowhere.
    std::optional<Target> of(std::size_t index, const Segment& segment, std::size_t record) const {
        if (index >= first_.size()) return std::nullopt;
        const ApplicationFile& file = report_.inspection.files[index];
        if (file.kind == &tokenInfoFile) return Target{"summary", "the summary of the token"};
        if (file.kind == &odfFile) return namedFile(segment);
        const auto list = lists_.find(file.kind->name);
        if (list == lists_.end() || record >= file.readByRecords) return std::nullopt;
        const ReportObject& object = report_.objects.at(*list->second, first_[index] + record);
        return Target{object.anchor, object.title()};
    }

private:
    static std::map<Blob, std::size_t> pathAnchors(const Report& report) {
        std::map<Blob, std::size_t> anchors;
        const auto& files = report.inspection.files;
        for (std::size_t i = 0; i < files.size(); ++i) anchors.emplace(files[i].file.path, i);
        return anchors;
    }

    /// The file that an entry of EF(ODF) names.
    std::optional<Target> namedFile(const Segment& segment) const {
        PKCS15::PKCS15Objects entry;
        ASN1::Error error;
        if (!ASN1::decode(segment.octets, entry, error)) return std::nullopt;
        Blob path;
        if (!getPath(entry, path, static_cast<int>(entry.selection()))) return std::nullopt;
        const auto file = anchors_.find(absolutePath(report_.rootPath, path));
        if (file == anchors_.end()) return std::nullopt;
        return Target{fileAnchor(file->second), report_.inspection.files[file->second].name()};
    }

    const Report& report_;
    std::map<Blob, std::size_t> anchors_;
    std::vector<std::size_t> first_;  // index of the first object of each file
    std::map<std::string_view, const ListKind*> lists_;
};

/// A segment, and what the page says of it.
struct Line {
    const Segment* segment;
    std::string id;  ///< of its row
    std::optional<Target> target;
};

std::vector<Line> linesOf(const ApplicationFile& file, std::size_t index, const Targets& targets) {
    std::vector<Line> lines;
    std::size_t record = 0;
    for (const Segment& segment : file.segments) {
        Line line{&segment, fmt::format("{}-{}", fileAnchor(index), lines.size()), std::nullopt};
        if (segment.isRecord()) line.target = targets.of(index, segment, record++);
        lines.push_back(std::move(line));
    }
    return lines;
}

/// In a transparent file an octet is an octet; the records of a linear file are all as wide.
std::size_t weightOf(const ApplicationFile& file, const Segment& segment) {
    if (!file.file.isLinear()) return segment.octets.size();
    constexpr std::size_t widthOfRecord = 1000;
    const std::size_t octets = file.file.slots[segment.slot - 1].size();
    return octets == 0 ? widthOfRecord : segment.octets.size() * widthOfRecord / octets;
}

/// Records that a linear file may still take.
std::size_t unusedRecords(const ApplicationFile& file) {
    const std::size_t slots = file.file.slots.size();
    return file.recordCapacity && *file.recordCapacity > slots ? *file.recordCapacity - slots : 0;
}

void writeMap(Html& html, const ApplicationFile& file, const std::vector<Line>& lines) {
    std::vector<BarCell> cells;
    for (const Line& line : lines) {
        const Segment& segment = *line.segment;
        std::string title = segmentTitle(segment);
        if (line.target) title += ", " + line.target->title;
        cells.push_back({segmentName(segment.kind), weightOf(file, segment), std::move(title),
                         line.target ? line.target->href : line.id});
    }
    if (const std::size_t unused = unusedRecords(file)) {
        cells.push_back({"gap", unused * 1000, counted(unused, "record") + " not in use", ""});
    }
    writeBar(html, "Map of " + file.name(), std::move(cells));
}

void writeLines(Html& html, const std::vector<Line>& lines) {
    html.open("details").element("summary", "In words: " + counted(lines.size(), "part"));
    openTable(html, "Parts of the file", {"Place", "Octets", "What", "Holds"});
    for (const Line& line : lines) {
        const Segment& segment = *line.segment;
        const std::string_view kind = segmentName(segment.kind);
        html.open("tr", {{"id", line.id}, {"data-segment", kind}});
        html.element("td", segment.slot > 0
                               ? fmt::format("record {}, offset {}", segment.slot, segment.offset)
                               : fmt::format("offset {}", segment.offset));
        html.element("td", {{"class", "number"}}, std::to_string(segment.octets.size()));
        html.open("td").element("span", {{"class", "swatch " + std::string(kind)}}, "");
        html.text(" ").text(kind).close().open("td");
        if (line.target) {
            html.open("a", {{"href", "#" + line.target->href}});
            html.element("bdi", line.target->title).close();
        }
        if (line.target && !segment.error.empty()) html.text(": ");
        html.text(shortened(segment.error, cellLength)).close().close();
    }
    closeTable(html);
    html.close();
}

std::string percent(std::size_t part, std::size_t all) {
    if (part > 0 && part * 100 < all) return "less than 1 %";
    return fmt::format("{} %", all == 0 ? 0 : part * 100 / all);
}

/// "512 of 1024 octets used, 50 % full".
std::string fillText(const ApplicationFile& file) {
    const auto text = [](std::size_t used, std::size_t size, const char* unit) {
        return fmt::format("{} of {} {} used, {} full", used, size, unit, percent(used, size));
    };
    const std::size_t records = file.recordCount();
    if (!file.file.isLinear()) {
        const std::size_t size = file.file.octets.size();
        return counted(records, "record") + "; " + text(size - file.octetsFree(), size, "octets");
    }
    if (file.recordCapacity) {
        return text(records, std::max(*file.recordCapacity, records), "records");
    }
    return counted(records, "record") + " used; the card does not tell how many there may be";
}

std::string oddText(const ApplicationFile& file) {
    std::string text;
    for (const auto& [kind, noun] : {std::pair{Segment::Kind::undecodable, "undecodable record"},
                                     std::pair{Segment::Kind::erased, "erased record"},
                                     std::pair{Segment::Kind::stale, "stale part"}}) {
        const std::size_t count = file.count(kind);
        if (count > 0) text += ", " + counted(count, noun);
    }
    return text;
}

void writeFile(Html& html, const ApplicationFile& file, std::size_t index,
               const std::map<std::string, std::string>& anchors, const Targets& targets) {
    const std::string name(file.kind->name);
    html.open(
        "article",
        {{"class", "card file"}, {"id", fileAnchor(index)}, {"data-file", toHex(file.file.path)}});
    html.open("h3").text("EF(" + name + ") ").element("code", spacedPath(file.file.path)).close();
    if (file.isRepeated) {
        html.open("p").text("EF(ODF) names ").open("a", {{"href", "#" + anchors.at(file.name())}});
        html.text("this file").close().text(" again, so that its records count twice.").close();
    } else if (file.error) {
        html.element("p", {{"class", "alert"}}, "Cannot be read: " + file.error->line());
    } else {
        const auto lines = linesOf(file, index, targets);
        html.element("p", {{"class", "fill"}},
                     fmt::format("{}: {}{}", structureName(file.file.info.structure),
                                 fillText(file), oddText(file)));
        if (!lines.empty() || unusedRecords(file) > 0) writeMap(html, file, lines);
        if (!lines.empty()) writeLines(html, lines);
    }
    html.close();
}

void writeLegend(Html& html) {
    html.open("ul", {{"class", "legend"}, {"aria-label", "Legend of the maps"}});
    for (const auto& [kind, words] :
         {std::pair{"record", "record"}, std::pair{"undecodable", "record that does not decode"},
          std::pair{"gap", "padding, free"}, std::pair{"stale", "stale octets, free"},
          std::pair{"erased", "erased record, free"},
          std::pair{"wrapper", "outer SEQUENCE of EF(ODF)"}}) {
        html.open("li").element("span", {{"class", "swatch " + std::string(kind)}}, "");
        html.text(" ").text(words).close();
    }
    html.close();
}

}  // namespace

std::string fileAnchor(std::size_t index) { return fmt::format("file-{}", index); }

std::map<std::string, std::string> fileAnchors(const Report& report) {
    std::map<std::string, std::string> anchors;
    const auto& files = report.inspection.files;
    for (std::size_t i = 0; i < files.size(); ++i) {
        anchors.emplace(files[i].name(), fileAnchor(i));
        if (files[i].kind == &odfFile) anchors.emplace("EF(ODF)", fileAnchor(i));
    }
    return anchors;
}

void writeFiles(Html& html, const Report& report) {
    const auto& files = report.inspection.files;
    openSection(html, "files", fmt::format("Files ({})", files.size() + report.otherFiles.size()));
    html.element("p", {{"class", "note"}},
                 "Each bar is a file from its first octet to its last one. Every part of it tells "
                 "what it is, and leads to the object that it describes.");
    writeLegend(html);
    const auto anchors = fileAnchors(report);
    const Targets targets(report);
    for (std::size_t i = 0; i < files.size(); ++i) writeFile(html, files[i], i, anchors, targets);
    for (std::size_t i = 0; i < report.otherFiles.size(); ++i) {
        writeFile(html, report.otherFiles[i], files.size() + i, anchors, targets);
    }
    html.close();
}

}  // namespace tovi
