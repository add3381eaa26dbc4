#include "tovi/platform/OuterSequence.h"

#include <algorithm>

#include "tovi/interfaces/CardProfile.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

constexpr std::uint8_t firstContextTag = 0xA0;

}  // namespace

std::vector<FileEntry> entriesInOuterSequence(ASN1::View record) {
    if (record.empty() || record[0] != SEQUENCE_TAG) return {};
    const TlvHeader header = readTlvHeader(record);
    if (header.state != TlvHeader::State::complete || header.total() != record.size()) return {};
    std::vector<FileEntry> entries = scanRecords(record.subspan(header.size));
    const auto first = std::find_if(entries.begin(), entries.end(),
                                    [](const FileEntry& entry) { return entry.isRecord(); });
    if (first == entries.end() || record[header.size + first->offset] < firstContextTag) return {};
    for (FileEntry& entry : entries) entry.offset += static_cast<std::uint32_t>(header.size);
    return entries;
}

}  // namespace tovi
