#pragma once

#include <cstddef>

#include "tovi/Export.h"
#include "tovi/card/Apdu.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// What the card behind a channel understands beside short commands; its historical bytes or
/// EF(ATR) say so (ISO/IEC 7816-4).
struct TOVI_API CardCapabilities {
    bool extendedLength = false;   ///< extended length fields
    bool commandChaining = false;  ///< data in several commands, CLA 10
    /// The most octets for one read and one write; 0: as many as the length fields carry, with
    /// chaining 65535.
    std::size_t maxRead = 0;
    std::size_t maxWrite = 0;
};

/// One command with everything that belongs to it: splitting into a chain, GET RESPONSE after 61XX,
/// repetition with the right Le after 6CXX (ISO/IEC 7816-4:2005, 5.1.3). A command behind a chain
/// that a failure of the channel has broken off is sent again where the card answers 6883.
///
/// Sends at most one repetition per command, and GET RESPONSE only as long as each brings data.
class TOVI_API CommandExchange {
public:
    /// `channel` must outlive this object.
    CommandExchange(ICardChannel& channel, const CardCapabilities& capabilities);

    /// Sends `command`, and returns all its data with the last status word.
    ///
    /// Throws SmartcardException with code 0 and `operation` as the operation name: "incomplete
    /// card response" for fewer than two octets, "card response too long" for more data than the
    /// longest response holds; and what the channel throws.
    ResponseApdu send(const CommandApdu& command, const char* operation);

    /// The most octets that one response brings, and that one command carries as data.
    std::size_t maxRead() const { return maxRead_; }
    std::size_t maxWrite() const { return maxWrite_; }

private:
    ResponseApdu sendWhole(const CommandApdu& command, const char* operation);
    ResponseApdu sendChain(const CommandApdu& command, const char* operation);
    ResponseApdu sendOne(CommandApdu command, const char* operation);
    ResponseApdu transmit(const CommandApdu& command, const char* operation);

    ICardChannel& channel_;
    bool extended_;
    bool chaining_;
    std::size_t maxRead_;
    std::size_t maxWrite_;
    bool chainIsOpen_ = false;  // stays true behind an exception
};

}  // namespace tovi
