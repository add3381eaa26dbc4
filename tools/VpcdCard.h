#pragma once

#include <optional>

#include "tovi/card/ICardChannel.h"
#include "tovi/card/VirtualCard.h"

namespace tovi {

/// A virtual card as a virtual reader deals with it: message in, answer out.
///
/// Power on, power off and reset all do what a reset does to a card (ISO/IEC 7816-4): the master
/// file is current and nothing is verified; what is stored stays.
class VpcdCard {
public:
    /// Commands go to `card` by way of `channel`; both must outlive this object. Responses of the
    /// card are limited to what fits into a message; the rest is behind 61XX.
    VpcdCard(VirtualCard& card, ICardChannel& channel, Blob atr);

    /// To be called when the card is put into a reader, where it has been without power before.
    void reset() { card_.reset(); }

    /// What the reader gets for the payload of its message; nothing where it waits for nothing.
    std::optional<Blob> answer(const Blob& message);

private:
    VirtualCard& card_;
    ICardChannel& channel_;
    Blob atr_;
};

}  // namespace tovi
