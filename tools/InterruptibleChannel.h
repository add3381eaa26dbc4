#pragma once

#include "tools/Command.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// Passes commands on until the user asks to stop: then no further one is sent, and Interrupted is
/// thrown. A command that the card has begun is always finished.
class InterruptibleChannel final : public ICardChannel {
public:
    /// Both must outlive this object.
    InterruptibleChannel(ICardChannel& channel, const Invocation& call)
        : channel_(channel), call_(call) {}

    /// Whether an interrupt counts; it does at first. One that came while it did not is not lost.
    void setInterruptible(bool isInterruptible) { isInterruptible_ = isInterruptible; }

    Blob transmit(const Blob& command) override {
        if (isInterruptible_) call_.checkInterrupt();
        return channel_.transmit(command);
    }

private:
    ICardChannel& channel_;
    const Invocation& call_;
    bool isInterruptible_ = true;
};

}  // namespace tovi
