#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/Command.h"
#include "tools/Socket.h"
#include "tools/VpcdCard.h"
#include "tools/VpcdMessages.h"

namespace tovi {

/// Where a virtual reader listens for its card.
struct ReaderAddress {
    std::string host;
    std::uint16_t port = 0;

    /// "127.0.0.1:35963"
    std::string text() const;
};

/// Puts a card into a virtual reader and answers what the reader sends.
///
/// All waits end soon after the user asks to stop, with Interrupted.
class ServeLoop {
public:
    /// `call` and `card` must outlive this object. `patience`: how long a reader may be missing.
    ServeLoop(const Invocation& call, VpcdCard& card, ReaderAddress address,
              std::chrono::seconds patience);

    /// Connects, and answers the reader's first message: with that the card is in the reader.
    /// Throws Failure when no reader has taken it in time.
    void insert();
    /// Answers until the reader goes away.
    void serve();

private:
    using Clock = std::chrono::steady_clock;

    bool connect();
    bool waitForFirstMessage(Clock::time_point end);
    bool receive();
    bool answerAll();
    bool send(Blob octets);

    const Invocation& call_;
    VpcdCard& card_;
    ReaderAddress address_;
    std::chrono::seconds patience_;
    std::optional<Socket> socket_;
    VpcdDecoder decoder_;
    std::string reason_;        ///< why the card is not in the reader
    bool isAddressed_ = false;  ///< the reader has sent a whole message
};

}  // namespace tovi
