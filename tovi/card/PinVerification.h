#pragma once

#include <cstdint>
#include <optional>

#include "tovi/Export.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// What a card says of a PIN (ISO/IEC 7816-4:2005, 7.5.6).
struct PinState {
    bool isVerified = false;            ///< the card has accepted it since it was last reset
    bool isBlocked = false;             ///< no try is left
    std::optional<unsigned> triesLeft;  ///< none when the card does not tell
};

/// Presents a PIN by VERIFY. `reference` is P2; `pin` is the PIN as the card compares it, 1 to 255
/// octets. A wrong PIN is no exception: it is a state that is not verified, and has cost a try.
///
/// Throws SmartcardException "invalid PIN length" with code 0; "VERIFY refused" with code 0x10000 +
/// status word when the card did not compare at all (6A88: it knows no such PIN); "incomplete card
/// response" with code 0; and what the channel throws. The copy of the PIN that goes to the channel
/// is wiped in any case.
TOVI_API PinState verifyPin(ICardChannel& channel, std::uint8_t reference, ASN1::View pin);

/// Asks for the state of a PIN by VERIFY without data, which costs no try. Throws as verifyPin().
TOVI_API PinState pinState(ICardChannel& channel, std::uint8_t reference);

}  // namespace tovi
