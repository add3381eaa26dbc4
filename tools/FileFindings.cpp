#include <fmt/format.h>

#include <algorithm>

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

/// Of `size` octets or records `free` are free.
void reportIfNearlyFull(const ApplicationFile& file, std::size_t size, std::size_t free,
                        const char* unit, Findings& findings) {
    if (free >= (size + 9) / 10) return;
    add(findings, "file-nearly-full", file, fmt::format("{} of {} {} are free", free, size, unit));
}

}  // namespace

Severity severityOf(const Finding& finding) {
    for (const char* kind : {"unreadable-application", "unreadable-file", "undecodable-record",
                             "unread-records", "token-info", "dangling-auth-id"}) {
        if (finding.kind == kind) return Severity::error;
    }
    for (const char* kind : {"file-nearly-full", "stale-octets", "shared-file",
                             "key-without-certificate", "certificate-without-key"}) {
        if (finding.kind == kind) return Severity::notice;
    }
    return Severity::warning;
}

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
    const std::size_t all = file.recordCount();
    if (all <= file.readByRecords) return;
    add(findings, "unread-records", file,
        fmt::format("{} of {} records stand behind a gap in which reading ends",
                    all - file.readByRecords, all));
}

void findNearlyFull(const ApplicationFile& file, Findings& findings) {
    const std::size_t records = file.recordCount();
    if (records == 0) return;
    if (!file.file.isLinear()) {
        reportIfNearlyFull(file, file.file.octets.size(), file.octetsFree(), "octets", findings);
    } else if (file.recordCapacity && file.kind != &tokenInfoFile) {  // which has one record only
        const std::size_t size = std::max(*file.recordCapacity, records);
        reportIfNearlyFull(file, size, size - records, "records", findings);
    }
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
    const std::size_t count = file.recordCount();
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
