#include "tovi/card/DelayingChannel.h"

#include <thread>

namespace tovi {

Blob DelayingChannel::transmit(const Blob& command) {
    Blob response = channel_.transmit(command);
    const auto octets = static_cast<std::int64_t>(command.size() + response.size());
    std::this_thread::sleep_for(cost_.command + octets * cost_.octet);
    return response;
}

}  // namespace tovi
