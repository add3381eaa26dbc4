#include "tovi/platform/RunOctets.h"

#include <algorithm>
#include <span>

#include "tovi/platform/GapMarks.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {

std::size_t RunOctets::endBefore(std::size_t first) const {
    while (first > 0 && items_[first - 1].length == 0) --first;
    return first == 0 ? 0 : items_[first - 1].end();
}

std::size_t RunOctets::oldEnd(std::size_t first, std::size_t last) const {
    for (std::size_t i = last + 1; i > first; --i)
        if (items_[i - 1].length > 0) return items_[i - 1].end();
    return items_[first].target;
}

/// Where the next record begins behind item `last`, or what ends the room for records.
std::size_t RunOctets::startBehind(std::size_t last) const {
    ++last;
    while (last < items_.size() && items_[last].length == 0) ++last;
    return last == items_.size() ? layout_.limit : items_[last].at;
}

bool RunOctets::hasMoreBehind(std::size_t last) const {
    return startBehind(last) < layout_.limit || layout_.isWalled;
}

std::size_t RunOctets::gapEnd(std::size_t last) const {
    if (hasMoreBehind(last)) return startBehind(last);
    return std::max(layout_.oldEnd, items_[last].targetEnd());
}

bool RunOctets::isPadding(std::size_t from, std::size_t to) const {
    const ASN1::View octets = writes_.now().subspan(from, to - from);
    return std::all_of(octets.begin(), octets.end(), tovi::isPadding);
}

void RunOctets::appendRun(Blob& octets, std::size_t first, std::size_t last) const {
    for (std::size_t i = first; i <= last; ++i) octets.append(items_[i].octets);
}

void RunOctets::appendBehind(Blob& octets, std::size_t first, std::size_t last) const {
    const std::size_t from = items_[last].targetEnd();
    const std::size_t to = oldEnd(first, last);
    if (to > from) {
        appendGapBehind(octets, last, from, to);
    } else if (to < from) {
        octets.append(markOfRest(last));
    }
}

std::size_t RunOctets::endBehind(std::size_t first, std::size_t last) const {
    const std::size_t from = items_[last].targetEnd();
    const std::size_t to = oldEnd(first, last);
    return to < from ? from + markOfRest(last).size() : to;
}

void RunOctets::appendGapBehind(Blob& octets, std::size_t last, std::size_t from,
                                std::size_t to) const {
    const std::size_t size = octets.size();
    octets.resize(size + to - from, layout_.fill);
    if (!hasMoreBehind(last)) return;
    paintGap(std::span(octets.data() + size, to - from));
    // Where the gap goes on, its first two octets differ all the same.
    const bool goesOn = to < startBehind(last);
    if (to - from == 1 && goesOn && writes_.now()[to] == 0xFF) octets.back() = 0x00;
}

Blob RunOctets::markOfRest(std::size_t last) const {
    const std::size_t from = items_[last].targetEnd();
    const std::size_t to = gapEnd(last);
    if (from >= to) return {};
    if (!isPadding(from, to)) return erasedMark(to - from);
    if (!hasMoreBehind(last)) return {};
    Blob mark(std::min<std::size_t>(to - from, 2), 0xFF);
    paintGap(std::span(mark.data(), mark.size()));
    return mark;
}

void RunOctets::appendGapBefore(Blob& octets, std::size_t first) const {
    const FileLayout::Item& item = items_[first];
    const std::size_t size = octets.size();
    const std::size_t length = item.target - item.at;
    octets.resize(size + length);
    paintGap(std::span(octets.data() + size, length));
    // Where it goes on from another gap, two values meet.
    const bool goesOn = endBefore(first) < item.at;
    if (length > 1 && goesOn && writes_.now()[item.at - 1] == 0x00) octets[size] = 0xFF;
}

}  // namespace tovi
