#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// A stream to another process. No operation waits longer than its `patience`, and a signal ends
/// the wait, too.
class Socket {
public:
    /// How an operation ended.
    enum class Transfer { done, timedOut, closed };

    /// Takes over a connected socket of the system.
    explicit Socket(int descriptor);
    ~Socket();
    Socket(Socket&& other) noexcept;
    Socket& operator=(Socket&& other) noexcept;

    /// Connects by TCP; nothing when that fails, and `reason` says why.
    static std::optional<Socket> connect(const std::string& host, std::uint16_t port,
                                         std::chrono::milliseconds patience, std::string& reason);

    /// Sets `octets` to some that have come, at least one when done.
    Transfer receive(Blob& octets, std::chrono::milliseconds patience);
    /// Sends at least one of `octets`, and takes those sent off the front.
    Transfer send(Blob& octets, std::chrono::milliseconds patience);

private:
    bool waitFor(short event, std::chrono::milliseconds patience) const;

    int descriptor_;
};

}  // namespace tovi
