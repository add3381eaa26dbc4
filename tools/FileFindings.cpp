#include <fmt/format.h>

#include "tools/Findings.h"
#include "tools/Paths.h"
#include "tools/Text.h"

namespace tovi {
namespace {

void add(Findings& findings, const char* kind, const ApplicationFile& file, std::string message) {
    findings.push_back({.kind = kind, .file = file.name(), .message = std::move(message)});
}

/// "record 3" of a linear file, "offset 120" of a transparent one.
std::string placeOf(const Segment& segment) {
    return segment.slot > 0 ? fmt::format("record {}", segment.slot)
                            : fmt::format("offset {}", segment.offset);
}

bool isDirectory(const ApplicationFile& file) {
    return file.kind != &tokenInfoFile && file.kind != &odfFile;
}

std::size_t recordsIn(const ApplicationFile& file) {
    return file.count(Segment::Kind::record) + file.count(Segment::Kind::undecodable);
}

std::size_t octetsFreeIn(const ApplicationFile& file) {
    std::size_t free = 0;
    for (const Segment& segment : file.segments) {
        const bool isUsed =
            segment.kind == Segment::Kind::record || segment.kind == Segment::Kind::undecodable;
        if (!isUsed) free += segment.octets.size();
    }
    return free;
}

}  // namespace

void findUnreadable(const ApplicationFile& file, Findings& findings) {
    if (file.error) add(findings, "unreadable-file", file, file.error->line());
}

void findUndecodable(const ApplicationFile& file, Findings& findings) {
    for (const Segment& segment : file.segments) {
        if (segment.kind != Segment::Kind::undecodable) continue;
        add(findings, "undecodable-record", file,
            fmt::format("{}, {} octets: {}", placeOf(segment), segment.octets.size(),
                        segment.error));
    }
}

void findInvalid(const ApplicationFile& file, Findings& findings) {
    for (const Segment& segment : file.segments) {
        if (!segment.value) continue;
        const ASN1::AbstractData value(segment.value->type(), segment.value->get());
        if (value.isValid()) continue;
        add(findings, "invalid-record", file,
            placeOf(segment) + ": breaks a size or range of its type");
    }
}

void findStale(const ApplicationFile& file, Findings& findings) {
    for (const Segment& segment : file.segments) {
        if (segment.kind != Segment::Kind::stale) continue;
        add(findings, "stale-octets", file,
            fmt::format("{}: {} octets that are neither a record nor padding", placeOf(segment),
                        segment.octets.size()));
    }
}

void findUnread(const ApplicationFile& file, Findings& findings) {
    const std::size_t all = recordsIn(file);
    if (all <= file.readByRecords) return;
    add(findings, "unread-records", file,
        fmt::format("{} of {} records stand behind a gap in which reading ends",
                    all - file.readByRecords, all));
}

void findNearlyFull(const ApplicationFile& file, Findings& findings) {
    // How many records a linear file may still take, no card tells.
    if (!isDirectory(file) || file.file.isLinear() || recordsIn(file) == 0) return;
    const std::size_t size = file.file.octets.size(), free = octetsFreeIn(file);
    if (free >= (size + 9) / 10) return;
    add(findings, "file-nearly-full", file, fmt::format("{} of {} octets are free", free, size));
}

void findRepeated(const ApplicationFile& file, Findings& findings) {
    if (file.isRepeated) add(findings, "repeated-file", file, "EF(ODF) names the file again");
}

void findFileOutside(const ApplicationFile& file, const Blob& rootPath, Findings& findings) {
    if (beginsWith(file.file.path, rootPath)) return;
    add(findings, "path-outside-application", file,
        "the file does not lie below " + toHex(rootPath));
}

void findTokenInfoCount(const ApplicationFile& file, Findings& findings) {
    const std::size_t count = recordsIn(file);
    if (file.kind != &tokenInfoFile || file.error || count == 1) return;
    add(findings, "token-info", file, fmt::format("{} records, expected one", count));
}

Findings findingsOfFiles(const std::vector<ApplicationFile>& files, const Blob& rootPath) {
    Findings findings;
    for (const ApplicationFile& file : files) {
        for (auto* rule : {findRepeated, findUnreadable, findTokenInfoCount, findUndecodable,
                           findInvalid, findStale, findUnread, findNearlyFull}) {
            rule(file, findings);
        }
        findFileOutside(file, rootPath, findings);
    }
    return findings;
}

}  // namespace tovi
