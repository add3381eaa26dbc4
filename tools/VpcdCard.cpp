#include "tools/VpcdCard.h"

#include <algorithm>
#include <utility>

#include "tools/VpcdMessages.h"

namespace tovi {
namespace {

constexpr std::size_t statusSize = 2;

}  // namespace

VpcdCard::VpcdCard(VirtualCard& card, ICardChannel& channel, Blob atr)
    : card_(card), channel_(channel), atr_(std::move(atr)) {
    std::size_t& longest = card.settings().maxResponse;
    longest = std::min(longest, maxVpcdPayload - statusSize);
}

std::optional<Blob> VpcdCard::answer(const Blob& message) {
    switch (vpcdRequest(message)) {
        case VpcdRequest::command:
            return channel_.transmit(message);
        case VpcdRequest::atr:
            return atr_;
        default:
            reset();
            return std::nullopt;
    }
}

}  // namespace tovi
