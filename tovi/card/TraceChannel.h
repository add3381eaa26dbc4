#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "tovi/card/ICardChannel.h"

namespace tovi {

/// Passes commands on and writes down every command and response, one line each:
///
///     [     0.021 ms] > 00A4080404 50155031 00
///     [     0.214 ms] < 620A82010180020080 9000
///
/// Time since the channel was made, direction, octets in hex, and last, apart, the status word of a
/// response. The data of commands that carry PINs or other secrets is never shown.
class TraceChannel final : public ICardChannel {
public:
    using Sink = std::function<void(const std::string& line)>;  ///< line without line end
    using Clock = std::function<std::chrono::nanoseconds()>;

    /// `channel` must outlive this object. Without a `clock` the steady clock is read.
    TraceChannel(ICardChannel& channel, Sink sink, Clock clock = {});

    /// A failure of the inner channel is written down as `! ` and its message, and passed on.
    Blob transmit(const Blob& command) override;

private:
    void write(char direction, const std::string& text);

    ICardChannel& channel_;
    Sink sink_;
    Clock clock_;
    std::chrono::nanoseconds start_;
};

}  // namespace tovi
