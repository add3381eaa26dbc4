#include "tovi/asn1/BitString.h"

namespace ASN1 {

void BIT_STRING::set(std::size_t bit, bool value) {
    if (bit >= size()) {
        octets_.resize(bit / 8 + 1);
        unused_ = static_cast<std::uint8_t>(7 - bit % 8);
    }
    const auto mask = static_cast<std::uint8_t>(0x80 >> bit % 8);
    std::uint8_t& octet = octets_[bit / 8];
    octet = static_cast<std::uint8_t>(value ? octet | mask : octet & ~mask);
}

void BIT_STRING::assign(View octets, std::size_t unused) {
    const std::size_t whole = 8 * octets.size();
    const std::size_t bits = whole - std::min(unused, whole);
    octets_.assign(octets.first((bits + 7) / 8));
    unused_ = static_cast<std::uint8_t>(8 * octets_.size() - bits);
    if (unused_ != 0) octets_.back() &= static_cast<std::uint8_t>(0xFF << unused_);
}

void BIT_STRING::trim() {
    while (!octets_.empty() && octets_.back() == 0) octets_.pop_back();
    unused_ = 0;
    while (!octets_.empty() && (octets_.back() >> unused_ & 1) == 0) ++unused_;
}

}  // namespace ASN1
