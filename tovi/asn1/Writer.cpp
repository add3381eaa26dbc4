#include "tovi/asn1/Writer.h"

#include <algorithm>
#include <cstring>

namespace ASN1 {

void Writer::octets(View octets) {
    if (!octets.empty()) std::memcpy(room(octets.size()), octets.data(), octets.size());
}

void Writer::grow(std::size_t size) {
    const std::size_t used = this->size();
    const std::size_t capacity = 2 * static_cast<std::size_t>(end_ - begin_) + size;
    std::unique_ptr<std::uint8_t[]> bigger(new std::uint8_t[capacity]);
    std::uint8_t* const end = bigger.get() + capacity;
    std::memcpy(end - used, start_, used);
    heap_ = std::move(bigger);
    begin_ = heap_.get();
    start_ = end - used;
    end_ = end;
}

void Writer::header(Tag tag, bool constructed, std::size_t length) {
    if (length < 0x80) {
        octet(static_cast<std::uint8_t>(length));
    } else {
        std::uint8_t count = 0;
        for (; length != 0; length >>= 8, ++count) octet(static_cast<std::uint8_t>(length));
        octet(static_cast<std::uint8_t>(0x80 | count));
    }
    const auto lead = static_cast<std::uint8_t>(tag.cls() | (constructed ? 0x20 : 0));
    if (tag.number() < 0x1F) return octet(static_cast<std::uint8_t>(lead | tag.number()));
    std::uint8_t more = 0;
    for (std::uint32_t number = tag.number(); number != 0; number >>= 7, more = 0x80)
        octet(static_cast<std::uint8_t>((number & 0x7F) | more));
    octet(static_cast<std::uint8_t>(lead | 0x1F));
}

}  // namespace ASN1
