#pragma once

#include <functional>
#include <utility>

#include "tools/Command.h"
#include "tovi/card/ICardChannel.h"
#include "tovi/card/StatusWord.h"

namespace tovi {

/// Notices that the card refuses a command for want of a PIN. The failure that comes of it does not
/// always say so: a write that the card refuses is "not enough memory".
///
/// A remedy, if there is one, is tried once: a command that the card refused was not performed, and
/// is sent again behind the PIN.
class DenialWatch final : public ICardChannel {
public:
    /// Both must outlive this object.
    DenialWatch(ICardChannel& channel, Invocation& call) : channel_(channel), call_(call) {}

    /// `remedy` presents a PIN, through this channel and without selecting anything. It returns
    /// false when it did not, and may throw.
    void setRemedy(std::function<bool()> remedy) { remedy_ = std::move(remedy); }

    Blob transmit(const Blob& command) override {
        Blob response = channel_.transmit(command);
        if (!isDenied(response)) return response;
        call_.noteDenial();
        const auto remedy = std::exchange(remedy_, nullptr);
        if (!remedy || !remedy()) return response;
        call_.forgetDenial();
        response = channel_.transmit(command);
        if (isDenied(response)) call_.noteDenial();
        return response;
    }

private:
    static bool isDenied(const Blob& response) {
        const std::size_t size = response.size();
        constexpr std::uint16_t denied = StatusWord::securityNotSatisfied;
        return size >= 2 && response[size - 2] == denied >> 8 &&
               response[size - 1] == (denied & 0xFF);
    }

    ICardChannel& channel_;
    Invocation& call_;
    std::function<bool()> remedy_;
};

}  // namespace tovi
