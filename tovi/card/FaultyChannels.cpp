#include "tovi/card/FaultyChannels.h"

#include <utility>

#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

[[noreturn]] void cardGone(const char* operation) {
    throw SmartcardException("card cannot be reached", operation);
}

FailingChannel::Choice countTo(std::size_t index) {
    return [left = index](const Blob&) mutable { return left-- == 0; };
}

}  // namespace

FailingChannel::FailingChannel(ICardChannel& channel, std::size_t index, std::uint16_t status)
    : FailingChannel(channel, countTo(index), status) {}

FailingChannel::FailingChannel(ICardChannel& channel, Choice choice, std::uint16_t status)
    : channel_(channel), choice_(std::move(choice)), status_(status) {}

Blob FailingChannel::transmit(const Blob& command) {
    if (!choice_(command)) return channel_.transmit(command);
    failed_ = true;
    if (status_ == unreachable) cardGone("FailingChannel::transmit");
    return {static_cast<std::uint8_t>(status_ >> 8), static_cast<std::uint8_t>(status_)};
}

TearingChannel::TearingChannel(ICardChannel& channel, std::size_t index, Moment moment)
    : channel_(channel), remaining_(index), moment_(moment) {}

Blob TearingChannel::transmit(const Blob& command) {
    constexpr const char* operation = "TearingChannel::transmit";
    if (torn_) cardGone(operation);
    if (remaining_ > 0) {
        --remaining_;
        return channel_.transmit(command);
    }
    torn_ = true;
    if (moment_ == Moment::beforeResponse) channel_.transmit(command);
    cardGone(operation);
}

}  // namespace tovi
