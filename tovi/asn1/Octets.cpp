#include "tovi/asn1/Octets.h"

#include <limits>
#include <memory>
#include <stdexcept>

namespace ASN1 {

namespace {

constexpr std::size_t mostOctets = std::numeric_limits<std::uint32_t>::max();

std::size_t roomFor(std::size_t size, std::size_t capacity) {
    if (size > mostOctets) throw std::length_error("Octets");
    // One more than inPlace at least, so that no heap block is taken for octets in place.
    return std::min(mostOctets, std::max({size, capacity + capacity / 2, Octets::inPlace + 8}));
}

}  // namespace

void Octets::grow(std::size_t size) {
    const std::size_t capacity = roomFor(size, capacity_);
    std::uint8_t* const room = new std::uint8_t[capacity];
    if (size_ != 0) std::memcpy(room, data(), size_);
    release();
    room_.heap = room;
    capacity_ = static_cast<std::uint32_t>(capacity);
}

void Octets::replace(View octets) {
    const std::size_t capacity = roomFor(octets.size(), 0);
    std::uint8_t* const room = new std::uint8_t[capacity];
    std::memcpy(room, octets.data(), octets.size());
    release();
    room_.heap = room;
    size_ = static_cast<std::uint32_t>(octets.size());
    capacity_ = static_cast<std::uint32_t>(capacity);
}

void Octets::append(View octets) {
    if (octets.empty()) return;
    const std::size_t old = size_;
    if (octets.size() > capacity_ - old) {
        // The old room has to live until its octets are copied: `octets` may lie in it.
        Octets grown;
        grown.grow(std::max(old + octets.size(),
                            std::min<std::size_t>(2 * std::size_t{capacity_}, mostOctets)));
        if (old != 0) std::memcpy(grown.data(), data(), old);
        std::memcpy(grown.data() + old, octets.data(), octets.size());
        grown.size_ = static_cast<std::uint32_t>(old + octets.size());
        swap(grown);
        return;
    }
    std::memmove(data() + old, octets.data(), octets.size());
    size_ = static_cast<std::uint32_t>(old + octets.size());
}

Octets::iterator Octets::insert(const_iterator at, View octets) {
    const std::size_t offset = static_cast<std::size_t>(at - begin());
    Octets joined;
    joined.reserve(size_ + octets.size());
    joined.append(View(begin(), offset));
    joined.append(octets);
    joined.append(View(begin() + offset, size_ - offset));
    swap(joined);
    return begin() + offset;
}

Octets::iterator Octets::erase(const_iterator first, const_iterator last) {
    const std::size_t offset = static_cast<std::size_t>(first - begin());
    const std::size_t count = static_cast<std::size_t>(last - first);
    if (count != 0) {
        std::memmove(begin() + offset, begin() + offset + count, size_ - offset - count);
        size_ -= static_cast<std::uint32_t>(count);
    }
    return begin() + offset;
}

}  // namespace ASN1
