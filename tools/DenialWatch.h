#pragma once

#include "tools/Command.h"
#include "tovi/card/ICardChannel.h"
#include "tovi/card/StatusWord.h"

namespace tovi {

/// Notices that the card refuses a command for want of a PIN. The failure that comes of it does not
/// always say so: a write that the card refuses is "not enough memory".
class DenialWatch final : public ICardChannel {
public:
    /// Both must outlive this object.
    DenialWatch(ICardChannel& channel, Invocation& call) : channel_(channel), call_(call) {}

    Blob transmit(const Blob& command) override {
        Blob response = channel_.transmit(command);
        const std::size_t size = response.size();
        constexpr std::uint16_t denied = StatusWord::securityNotSatisfied;
        if (size >= 2 && response[size - 2] == denied >> 8 && response[size - 1] == (denied & 0xFF))
            call_.noteDenial();
        return response;
    }

private:
    ICardChannel& channel_;
    Invocation& call_;
};

}  // namespace tovi
