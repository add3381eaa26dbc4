#include "tovi/card/CountingChannel.h"

namespace tovi {

Blob CountingChannel::transmit(const Blob& command) {
    ++counts_.commands;
    counts_.octetsToCard += command.size();
    if (command.size() > 1) ++counts_.byInstruction[command[1]];
    Blob response = channel_.transmit(command);
    counts_.octetsFromCard += response.size();
    return response;
}

}  // namespace tovi
