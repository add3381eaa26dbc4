#include "tools/Redaction.h"

#include <algorithm>

#include "tools/RedactedElement.h"
#include "tools/Segment.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

constexpr std::size_t longestKeptIdentifier = 2;
constexpr std::uint8_t signaturePrefix = 'S';
constexpr std::uint8_t sequenceTag = 0x30;
constexpr std::uint8_t primitiveTag = 0x80;  // which no record begins with

Octets writable(Blob& octets) { return {octets.data(), octets.size()}; }

/// Octets that make a header invalid: a tag, and what is no length behind it; or a tag that is
/// longer than any.
std::size_t invalidHeaderSize(ASN1::View record) {
    const bool isShortTag = (record[0] & 0x1F) != 0x1F;
    return std::min<std::size_t>(isShortTag ? 2 : 4, record.size());
}

/// A record that does not decode, perhaps because of its contents, and does not afterwards.
Blob withoutContents(ASN1::View record) {
    Blob blanked(record);
    const TlvHeader header = readTlvHeader(record);
    if (header.state == TlvHeader::State::complete) {
        blankOctets(writable(blanked).subspan(std::min(header.size, record.size())));
    } else if (header.state == TlvHeader::State::invalid) {
        // 00 could make the header one of BER.
        const Octets rest = writable(blanked).subspan(invalidHeaderSize(record));
        std::fill(rest.begin(), rest.end(), std::uint8_t{0xFF});
    }
    return blanked;
}

/// 00, length, and contents that are taken for those of an erased record as before.
Blob blankedErased(ASN1::View octets) {
    Blob blanked(octets);
    const std::size_t header = 1 + readLength(octets.subspan(1)).size;
    blankOctets(writable(blanked).subspan(std::min(header, octets.size())));
    // A length that is the tag of a live record tells by its contents that it is a length.
    if (octets[1] == sequenceTag && octets.size() > 2) blanked[2] = sequenceTag;
    return blanked;
}

/// Octets that are neither a record nor padding, and stay that.
Blob blankedStale(ASN1::View octets) {
    Blob blanked(octets);
    blankOctets(writable(blanked));
    const bool isPadded = isPadding(octets[0]);
    blanked[0] = isPadded ? octets[0] : primitiveTag;
    if (isPadded && octets.size() > 1) blanked[1] = 1;
    return blanked;
}

/// A record of 48 octets behind padding: 00 30 30 30 is that, 00 30 30 00 would be an erased one.
void keepLive(ASN1::View record, Blob& blanked) {
    const bool is48 = record.size() > 2 && record[0] == sequenceTag && record[1] == sequenceTag;
    if (is48 && record[2] == sequenceTag) blanked[2] = sequenceTag;
}

Blob blankedRecord(Redaction& redaction, const Segment& segment) {
    Blob blanked = segment.value ? redaction.record(segment.value->type(), segment.octets)
                                 : withoutContents(segment.octets);
    keepLive(segment.octets, blanked);
    return blanked;
}

Blob blankedSegment(Redaction& redaction, const Segment& segment) {
    if (segment.octets.empty()) return {};
    switch (segment.kind) {
        case Segment::Kind::record:
        case Segment::Kind::undecodable:
            return blankedRecord(redaction, segment);
        case Segment::Kind::erased:
            return blankedErased(segment.octets);
        case Segment::Kind::stale:
            return blankedStale(segment.octets);
        case Segment::Kind::wrapper:
        case Segment::Kind::gap:
            break;
    }
    return Blob(segment.octets);
}

void put(DirectoryFile& file, const Segment& segment, const Blob& octets) {
    std::uint8_t* place =
        segment.slot > 0 ? file.slots[segment.slot - 1].data() : file.octets.data();
    std::copy(octets.begin(), octets.end(), place + segment.offset);
}

}  // namespace

DirectoryFile Redaction::file(const FileKind& kind, const DirectoryFile& file) {
    std::vector<Segment> segments = segmentsOf(kind, file);
    if (&kind == &odfFile) openOuterSequence(segments);
    DirectoryFile blanked = file;
    for (const Segment& segment : segments) put(blanked, segment, blankedSegment(*this, segment));
    return blanked;
}

Blob Redaction::value(ASN1::View octets) {
    Blob blanked(octets);
    const BlankedBuffer buffer(writable(blanked));
    ASN1::Error error;
    ASN1::View rest = buffer.view();
    while (!rest.empty()) {
        if (isPadding(rest[0])) {
            rest = rest.subspan(1);
            continue;
        }
        const ASN1::Reader in(rest, error);
        ASN1::Element element;
        if (rest[0] != sequenceTag || !in.peek(element)) {
            blankOctets(buffer.writable(rest));
            break;
        }
        buffer.blankAny(element, in);
        rest = rest.subspan(element.whole.size());
    }
    return blanked;
}

Blob Redaction::identifier(const Blob& whole) {
    // A signature key may go by the identifier of its exchange key with an S in front.
    const auto begin = std::find_if(whole.begin(), whole.end(),
                                    [](std::uint8_t octet) { return octet != signaturePrefix; });
    Blob identifier(whole.begin(), begin);
    identifier.append(plainIdentifier(Blob(begin, whole.end())));
    return identifier;
}

Blob Redaction::plainIdentifier(const Blob& id) {
    if (id.size() <= longestKeptIdentifier) return id;
    const auto [place, isNew] = identifiers_.emplace(id, Blob(id.size(), 0));
    if (!isNew) return place->second;
    std::uint64_t number = ++lastNumbers_[id.size()];
    for (std::size_t at = id.size(); at > 0 && number > 0; number >>= 8) {
        place->second[--at] = static_cast<std::uint8_t>(number);
    }
    return place->second;
}

}  // namespace tovi
