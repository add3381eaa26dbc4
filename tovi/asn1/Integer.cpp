#include "tovi/asn1/Integer.h"

namespace ASN1 {

namespace {

constexpr std::uint8_t zero[] = {0};

}  // namespace

void INTEGER::setSigned(std::int64_t value) {
    std::uint8_t octets[8];
    for (std::size_t i = sizeof octets; i-- > 0; value >>= 8)
        octets[i] = static_cast<std::uint8_t>(value);
    octets_.assign(View(octets));
    octets_ = Octets(shortest());
}

void INTEGER::setUnsigned(std::uint64_t value) {
    std::uint8_t octets[9] = {};
    for (std::size_t i = sizeof octets; i-- > 1; value >>= 8)
        octets[i] = static_cast<std::uint8_t>(value);
    octets_.assign(View(octets));
    octets_ = Octets(shortest());
}

View INTEGER::shortest() const {
    View octets = octets_;
    if (octets.empty()) return zero;
    while (octets.size() > 1 &&
           ((octets[0] == 0x00 && octets[1] < 0x80) || (octets[0] == 0xFF && octets[1] >= 0x80)))
        octets = octets.subspan(1);
    return octets;
}

std::uint64_t INTEGER::toUInt64() const {
    const View octets = shortest();
    std::uint64_t value = isNegative() ? ~std::uint64_t{0} : 0;
    for (std::uint8_t octet : octets.last(std::min<std::size_t>(octets.size(), 8)))
        value = value << 8 | octet;
    return value;
}

}  // namespace ASN1
