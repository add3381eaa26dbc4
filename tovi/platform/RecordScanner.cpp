#include "tovi/platform/RecordScanner.h"

#include <algorithm>

#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

using Kind = FileEntry::Kind;

constexpr std::uint8_t sequenceTag = 0x30;

/// Whether `rest`, 00 30 ..., is an erased record of 48 octets rather than padding before a live
/// SEQUENCE. The contents of every record begin with the 30 of the common attributes, and what is
/// 48 octets long does not hold another 48: 00 30 30 xx, and xx is not 30.
bool isErased48(ASN1::View rest) {
    return rest.size() >= 4 && rest[2] == sequenceTag && rest[3] != sequenceTag;
}

}  // namespace

bool RecordScanner::scan(ASN1::View octets, std::size_t fileSize) {
    if (octets.size() > fileSize) octets = octets.first(fileSize);
    while (!done_) {
        const std::size_t room = fileSize - position_;
        const ASN1::View rest = octets.subspan(position_);
        const Step next = room == 0 ? Step::done : step(rest, room);
        if (next == Step::moreNeeded) return false;
        if (next == Step::taken) continue;
        closePadding();
        done_ = true;
    }
    return true;
}

RecordScanner::Step RecordScanner::step(ASN1::View rest, std::size_t room) {
    if (rest.empty()) return Step::moreNeeded;
    if (rest[0] == 0xFF) return filler(rest[0]);
    if (rest[0] == 0x00) return atZero(rest, room);
    if (isRecordTag(rest[0])) return atRecord(rest, room);
    return lastEntry(Kind::stale, room == unknownSize - position_ ? rest.size() : room);
}

RecordScanner::Step RecordScanner::atZero(ASN1::View rest, std::size_t room) {
    const bool wholeFile = rest.size() == room;
    if (rest.size() < 2) return wholeFile ? filler(0) : Step::moreNeeded;
    if (rest[1] == 0x00) return filler(0);
    if (rest[1] == sequenceTag) {
        if (rest.size() < 4 && !wholeFile) return Step::moreNeeded;
        if (!isErased48(rest)) return filler(0);
    }
    // The tags of live records, A0 and above, and FF are no lengths.
    const TlvHeader length = readLength(rest.subspan(1));
    if (length.state == TlvHeader::State::cut && !wholeFile) return Step::moreNeeded;
    if (length.state != TlvHeader::State::complete) return filler(0);
    const std::uint64_t erased = 1 + length.total();
    if (erased > room) return filler(0);
    if (erased > rest.size()) return Step::moreNeeded;
    add(Kind::erased, static_cast<std::size_t>(erased));
    return Step::taken;
}

RecordScanner::Step RecordScanner::atRecord(ASN1::View rest, std::size_t room) {
    const bool wholeFile = rest.size() == room;
    const TlvHeader header = readTlvHeader(rest);
    if (header.state == TlvHeader::State::complete && header.total() <= room) {
        if (header.total() > rest.size()) return Step::moreNeeded;
        add(Kind::record, static_cast<std::size_t>(header.total()));
        return Step::taken;
    }
    if (!wholeFile) return Step::moreNeeded;
    return lastEntry(Kind::broken, room);
}

RecordScanner::Step RecordScanner::lastEntry(Kind kind, std::size_t length) {
    add(kind, length);
    return Step::done;
}

RecordScanner::Step RecordScanner::filler(std::uint8_t octet) {
    if (paddingStart_ == position_) {
        paddingValue_ = octet;
        paddingIsMixed_ = false;
    }
    paddingIsMixed_ = paddingIsMixed_ || octet != paddingValue_;
    ++position_;
    return Step::taken;
}

void RecordScanner::add(Kind kind, std::size_t length) {
    closePadding();
    entries_.push_back(
        {kind, static_cast<std::uint32_t>(position_), static_cast<std::uint32_t>(length)});
    position_ += length;
    paddingStart_ = position_;
}

void RecordScanner::closePadding() {
    if (paddingStart_ == position_) return;
    entries_.push_back({Kind::padding, static_cast<std::uint32_t>(paddingStart_),
                        static_cast<std::uint32_t>(position_ - paddingStart_)});
    paddingStart_ = position_;
}

std::optional<std::size_t> RecordScanner::uniformPadding(ASN1::View octets) const {
    if (done_ || position_ == paddingStart_ || paddingIsMixed_) return std::nullopt;
    // Octets that wait for more may be padding too: a 00 at the end, of which nothing is known yet.
    const ASN1::View rest = octets.subspan(position_);
    const bool filled = std::all_of(rest.begin(), rest.end(),
                                    [this](std::uint8_t octet) { return octet == paddingValue_; });
    return filled ? std::optional(paddingStart_) : std::nullopt;
}

std::vector<FileEntry> scanRecords(ASN1::View file) {
    RecordScanner scanner;
    scanner.scan(file, file.size());
    return scanner.entries();
}

}  // namespace tovi
