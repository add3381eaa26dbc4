#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "tovi/Export.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// Passes commands on and writes down every command and response, one line each:
///
///        0.021 ms > 00A40804045015503100
///        0.214 ms < 620C8002008082010183025031 9000
///
/// Time since the channel was made, direction, octets in hex, and set apart the status word of a
/// response. The data of commands that carry PINs and other secrets is left out: `00200001 (data
/// hidden)`. A failure of the channel is a line with `!` and its message.
class TOVI_API TraceChannel final : public ICardChannel {
public:
    using Sink = std::function<void(const std::string& line)>;  ///< without line end
    /// The time now, from any beginning.
    using Clock = std::function<std::chrono::nanoseconds()>;

    /// `channel` must outlive this object. Without `clock` the steady clock is read.
    TraceChannel(ICardChannel& channel, Sink sink, Clock clock = {});

    Blob transmit(const Blob& command) override;

private:
    void write(char direction, const std::string& text);

    ICardChannel& channel_;
    Sink sink_;
    Clock clock_;
    std::chrono::nanoseconds start_;
};

}  // namespace tovi
