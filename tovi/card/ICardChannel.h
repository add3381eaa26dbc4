#pragma once

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// The way to a card: one command APDU in, one response APDU out.
///
/// Derive from it to bring a transport of your own. Not thread-safe.
class TOVI_API ICardChannel {
public:
    virtual ~ICardChannel() = default;

    /// Sends `command`, at least four octets, and returns what the card answers, status word
    /// included. The answer is not checked: it may be shorter than a status word.
    ///
    /// Throws SmartcardException with code 0 when the card cannot be reached; whether it performed
    /// the command is then unknown.
    virtual Blob transmit(const Blob& command) = 0;
};

}  // namespace tovi
