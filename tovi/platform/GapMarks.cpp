#include "tovi/platform/GapMarks.h"

#include <algorithm>

namespace tovi {
namespace {

constexpr std::uint8_t sequenceTag = 0x30;

/// Adds a length field with which a data object, of which `object` is the tag, has `total` octets.
/// It is not always the shortest one: with that, some totals cannot be had.
void appendLength(Blob& object, std::size_t total) {
    std::size_t count = 1;
    while (count < sizeof(std::uint32_t) && (total - 2 - count) >> (8 * count) != 0) ++count;
    const std::size_t contents = total - 2 - count;
    object.push_back(static_cast<std::uint8_t>(0x80 | count));
    for (std::size_t i = count; i-- > 0;)
        object.push_back(static_cast<std::uint8_t>(contents >> (8 * i)));
}

/// The shortest length; but 00 30 could also be padding and a live SEQUENCE, and 00 30 30 an erased
/// record of 48 octets, so that length is longer.
void appendClearLength(Blob& object, std::size_t total) {
    if (total - 2 > 0x7F || total - 2 == sequenceTag) return appendLength(object, total);
    object.push_back(static_cast<std::uint8_t>(total - 2));
}

std::uint8_t shortTag(ASN1::View record) {
    const bool isLong = (record[0] & 0x1F) == 0x1F;
    return isLong ? sequenceTag : record[0];
}

}  // namespace

void paintGap(std::span<std::uint8_t> gap) {
    std::fill(gap.begin(), gap.end(), std::uint8_t{0xFF});
    if (gap.size() > 1) gap[0] = 0x00;
}

Blob erasedMark(std::size_t length) {
    if (length == 0) return {};
    if (length == 1) return {0xFF};
    if (length == 2) return {0x00, 0xFF};
    Blob mark = {0x00};
    appendClearLength(mark, length);
    return mark;
}

Blob unfinishedMark(ASN1::View record, std::size_t length) {
    Blob mark = {shortTag(record)};
    appendClearLength(mark, length);
    mark.push_back(0x00);
    return mark;
}

}  // namespace tovi
