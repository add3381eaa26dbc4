#pragma once

#include <chrono>

#include "tovi/Export.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// Passes commands on and takes as long as a card on a slow line would.
class TOVI_API DelayingChannel final : public ICardChannel {
public:
    /// The time that the line takes.
    struct Cost {
        std::chrono::nanoseconds command{};  ///< for each command
        std::chrono::nanoseconds octet{};    ///< for each octet in either direction
    };

    /// `channel` must outlive this object.
    DelayingChannel(ICardChannel& channel, Cost cost) : channel_(channel), cost_(cost) {}

    Blob transmit(const Blob& command) override;

private:
    ICardChannel& channel_;
    Cost cost_;
};

}  // namespace tovi
