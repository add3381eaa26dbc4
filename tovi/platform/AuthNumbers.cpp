#include "tovi/platform/AuthNumbers.h"

#include <algorithm>
#include <vector>

#include "tovi/records/AuthInfo.h"

namespace tovi {
namespace {

using Arc = ASN1::OBJECT_IDENTIFIER::Arc;

constexpr std::size_t arcSize = 4;

}  // namespace

std::uint32_t toNumber(std::uint64_t value) {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, noAuthValue - 1));
}

std::uint32_t toNumber(const ASN1::INTEGER& value) {
    if (value.isNegative()) return noAuthValue;
    return value.fitsInt64() ? toNumber(value.toUInt64()) : noAuthValue - 1;
}

std::uint32_t toNumber(const ASN1::ENUMERATED& value) {
    return value.value < 0 ? noAuthValue : toNumber(static_cast<std::uint64_t>(value.value));
}

std::uint32_t toFlags(const ASN1::BIT_STRING& bits) {
    std::uint32_t flags = 0;
    for (unsigned bit = 0; bit < 32; ++bit)
        if (bits.test(bit)) flags |= std::uint32_t{1} << bit;
    return flags;
}

Blob toArcs(const ASN1::OBJECT_IDENTIFIER& identifier) {
    Blob octets;
    for (const Arc arc : identifier.arcs()) {
        const std::uint64_t value = std::min<std::uint64_t>(arc, 0xFFFFFFFF);
        for (int shift = 24; shift >= 0; shift -= 8)
            octets.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    return octets;
}

ASN1::OBJECT_IDENTIFIER fromArcs(ASN1::View arcs) {
    if (arcs.size() % arcSize != 0) return {};
    std::vector<Arc> values;
    for (; !arcs.empty(); arcs = arcs.subspan(arcSize)) {
        Arc arc = 0;
        for (const std::uint8_t octet : arcs.first(arcSize)) arc = arc << 8 | octet;
        values.push_back(arc);
    }
    return {values.begin(), values.end()};
}

}  // namespace tovi
