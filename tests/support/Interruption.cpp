#include "tests/support/Interruption.h"

#include <cstdio>

#include "tovi/card/FaultyChannels.h"

namespace tovi::test {

namespace {

using Kind = Interruption::Kind;

std::unique_ptr<ICardChannel> decorate(ICardChannel& channel, Interruption how, std::size_t index) {
    switch (how.kind) {
        case Kind::tearBefore:
            return std::make_unique<TearingChannel>(channel, index,
                                                    TearingChannel::Moment::beforeCommand);
        case Kind::tearAfter:
            return std::make_unique<TearingChannel>(channel, index,
                                                    TearingChannel::Moment::beforeResponse);
        case Kind::status:
            return std::make_unique<FailingChannel>(channel, index, how.statusWord);
        case Kind::unreachable:
            return std::make_unique<FailingChannel>(channel, index, FailingChannel::unreachable);
        default:
            return nullptr;
    }
}

}  // namespace

std::string Interruption::name() const {
    switch (kind) {
        case Kind::tearBefore:
            return "pulled out before the command";
        case Kind::tearAfter:
            return "pulled out before the response";
        case Kind::unreachable:
            return "cannot be reached";
        case Kind::foreign:
            return "fails in a way of its own";
        case Kind::noMemoryOnce:
            return "no memory once";
        case Kind::noMemoryAnyMore:
            return "no memory any more";
        default:
            break;
    }
    char digits[5];
    std::snprintf(digits, sizeof digits, "%04X", unsigned{statusWord});
    return std::string("refused with ") + digits;
}

std::vector<Interruption> tears() { return {{Kind::tearBefore}, {Kind::tearAfter}}; }

std::vector<Interruption> refusals() {
    std::vector<Interruption> all;
    for (const int status : {0x6581, 0x6982, 0x6A84, 0x6B00, 0x6F00})
        all.push_back({Kind::status, static_cast<std::uint16_t>(status)});
    return all;
}

std::vector<Interruption> exceptions() { return {{Kind::unreachable}, {Kind::foreign}}; }

std::vector<Interruption> exhaustions() { return {{Kind::noMemoryOnce}, {Kind::noMemoryAnyMore}}; }

InterruptedChannel::InterruptedChannel(ICardChannel& channel, Interruption how, std::size_t index)
    : channel_(channel), decorator_(decorate(channel, how, index)), left_(index) {}

Blob InterruptedChannel::transmit(const Blob& command) {
    const bool isNow = !isOver_ && left_ == 0;
    isOver_ = isOver_ || isNow;
    if (!isOver_) --left_;
    if (decorator_) return decorator_->transmit(command);
    if (isNow) throw ForeignFailure();
    return channel_.transmit(command);
}

}  // namespace tovi::test
