#include "tools/Segment.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "tovi/asn1/Coding.h"
#include "tovi/platform/OuterSequence.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {
namespace {

/// Decodes the octets of a record; without a type they are shown as they are.
Segment record(const FileKind& kind, Segment segment) {
    segment.kind = Segment::Kind::record;
    if (kind.record == nullptr) return segment;
    ASN1::AnyValue value(*kind.record);
    ASN1::Error error;
    if (ASN1::decode(segment.octets, ASN1::AbstractData(value.type(), value.get()), error)) {
        segment.value = std::move(value);
    } else {
        segment.kind = Segment::Kind::undecodable;
        segment.error = ASN1::toString(error);
    }
    return segment;
}

Segment::Kind freeKind(FileEntry::Kind kind) {
    switch (kind) {
        case FileEntry::Kind::erased:
            return Segment::Kind::erased;
        case FileEntry::Kind::stale:
            return Segment::Kind::stale;
        default:
            return Segment::Kind::gap;
    }
}

/// The stretch that `entry` is of `octets`.
Segment segmentOf(const FileKind& kind, const FileEntry& entry, ASN1::View octets) {
    Segment segment{.kind = freeKind(entry.kind),
                    .offset = entry.offset,
                    .octets = octets.subspan(entry.offset, entry.length)};
    return entry.isRecord() ? record(kind, std::move(segment)) : segment;
}

bool isUniformPadding(ASN1::View octets) {
    return std::all_of(octets.begin(), octets.end(),
                       [](std::uint8_t octet) { return octet == 0x00 || octet == 0xFF; });
}

/// A record of a linear file: the data object, and what stands behind it.
void addSlot(const FileKind& kind, std::size_t slot, ASN1::View octets, std::size_t recordLength,
             std::vector<Segment>& segments) {
    if (recordLength > 0) {
        segments.push_back(
            record(kind, Segment{.slot = slot + 1, .octets = octets.first(recordLength)}));
    }
    const ASN1::View rest = octets.subspan(recordLength);
    if (rest.empty() && recordLength > 0) return;
    segments.push_back({.kind = isUniformPadding(rest) ? Segment::Kind::gap : Segment::Kind::stale,
                        .slot = slot + 1,
                        .offset = recordLength,
                        .octets = rest});
}

}  // namespace

std::vector<Segment> segmentsOf(const FileKind& kind, const DirectoryFile& file) {
    std::vector<Segment> segments;
    if (!file.isLinear()) {
        for (const FileEntry& entry : scanRecords(file.octets)) {
            segments.push_back(segmentOf(kind, entry, file.octets));
        }
        return segments;
    }
    std::vector<std::size_t> lengths(file.slots.size());
    for (const RecordPlace& place : file.places) lengths[place.start] = place.length;
    for (std::size_t slot = 0; slot < lengths.size(); ++slot) {
        addSlot(kind, slot, file.slots[slot], lengths[slot], segments);
    }
    return segments;
}

std::size_t openOuterSequence(std::vector<Segment>& segments) {
    const auto outer = std::find_if(segments.begin(), segments.end(),
                                    [](const Segment& segment) { return segment.isRecord(); });
    if (outer == segments.end()) return 1;
    const auto entries = entriesInOuterSequence(outer->octets);
    if (entries.empty()) return 1;
    std::vector<Segment> inner = {{.kind = Segment::Kind::wrapper,
                                   .slot = outer->slot,
                                   .offset = outer->offset,
                                   .octets = outer->octets.first(entries.front().offset)}};
    for (const FileEntry& entry : entries) {
        Segment segment = segmentOf(odfFile, entry, outer->octets);
        segment.slot = outer->slot;
        segment.offset += outer->offset;
        inner.push_back(std::move(segment));
    }
    const auto place = segments.erase(outer);
    segments.insert(place, std::make_move_iterator(inner.begin()),
                    std::make_move_iterator(inner.end()));
    return static_cast<std::size_t>(std::count_if(
        entries.begin(), entries.end(), [](const FileEntry& entry) { return entry.isRecord(); }));
}

std::string_view segmentName(Segment::Kind kind) {
    switch (kind) {
        case Segment::Kind::record:
            return "record";
        case Segment::Kind::undecodable:
            return "undecodable";
        case Segment::Kind::wrapper:
            return "wrapper";
        case Segment::Kind::erased:
            return "erased";
        case Segment::Kind::gap:
            return "gap";
        case Segment::Kind::stale:
            return "stale";
    }
    return "";
}

bool isUniform(const Segment& segment) {
    return std::all_of(segment.octets.begin(), segment.octets.end(),
                       [&](std::uint8_t octet) { return octet == segment.octets.front(); });
}

std::string segmentTitle(const Segment& segment) {
    std::string title = segment.slot > 0 ? fmt::format("record {}, ", segment.slot) : "";
    title += fmt::format("offset {}, {} octets: {}", segment.offset, segment.octets.size(),
                         segmentName(segment.kind));
    if (segment.kind == Segment::Kind::gap && !segment.octets.empty()) {
        // A mixed one is shown octet for octet.
        title += isUniform(segment) ? fmt::format(" of {:02X}", segment.octets.front())
                                    : " of 00 and FF";
    }
    return title;
}

}  // namespace tovi
