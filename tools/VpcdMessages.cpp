#include "tools/VpcdMessages.h"

#include <stdexcept>

namespace tovi {
namespace {

constexpr std::size_t lengthSize = 2;

}  // namespace

VpcdRequest vpcdRequest(ASN1::View payload) {
    if (payload.size() != 1) return VpcdRequest::command;
    switch (payload[0]) {
        case 0x00:
            return VpcdRequest::powerOff;
        case 0x01:
            return VpcdRequest::powerOn;
        case 0x02:
            return VpcdRequest::reset;
        case 0x04:
            return VpcdRequest::atr;
        default:
            return VpcdRequest::command;
    }
}

Blob encodeVpcdMessage(ASN1::View payload) {
    const std::size_t size = payload.size();
    if (size > maxVpcdPayload) throw std::length_error("message for the virtual reader too long");
    Blob message = {static_cast<std::uint8_t>(size >> 8), static_cast<std::uint8_t>(size & 0xFF)};
    message.append(payload);
    return message;
}

void VpcdDecoder::append(ASN1::View octets) {
    octets_.erase(octets_.begin(), octets_.begin() + taken_);
    taken_ = 0;
    octets_.append(octets);
}

std::optional<Blob> VpcdDecoder::next() {
    const ASN1::View rest = ASN1::View(octets_).subspan(taken_);
    if (rest.size() < lengthSize) return std::nullopt;
    const auto size = static_cast<std::size_t>(rest[0] << 8 | rest[1]);
    if (size > rest.size() - lengthSize) return std::nullopt;
    taken_ += lengthSize + size;
    return Blob(rest.subspan(lengthSize, size));
}

}  // namespace tovi
