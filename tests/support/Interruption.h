#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tovi/card/ICardChannel.h"

namespace tovi::test {

/// What becomes of one command in the midst of an operation.
struct Interruption {
    enum class Kind {
        tearBefore,       ///< the card is pulled out before it gets the command
        tearAfter,        ///< the card performs it and is pulled out before it answers
        status,           ///< the card refuses it and performs all that follow
        unreachable,      ///< the channel throws the library's own exception, once
        foreign,          ///< the channel throws what is no exception of the library, once
        noMemoryOnce,     ///< not a command, but one allocation fails, here or in the card
        noMemoryAnyMore,  ///< that one and all that follow
    };
    Kind kind = Kind::tearBefore;
    std::uint16_t statusWord = 0;

    std::string name() const;
    bool isTear() const { return kind == Kind::tearBefore || kind == Kind::tearAfter; }
    bool isOfMemory() const { return kind == Kind::noMemoryOnce || kind == Kind::noMemoryAnyMore; }
    /// False when the card may do something that the caller cannot know of.
    bool leavesTheCardAlone() const { return kind != Kind::tearAfter && !isOfMemory(); }
};

/// Both ways to pull a card out.
std::vector<Interruption> tears();
/// 6581, 6982, 6A84, 6B00 and 6F00 (ISO/IEC 7816-4).
std::vector<Interruption> refusals();
std::vector<Interruption> exceptions();
std::vector<Interruption> exhaustions();

/// What Kind::foreign throws.
struct ForeignFailure {};

/// Interrupts command number `index`, counted from 0. `channel` must outlive it.
class InterruptedChannel final : public ICardChannel {
public:
    InterruptedChannel(ICardChannel& channel, Interruption how, std::size_t index);
    Blob transmit(const Blob& command) override;
    /// True once the command came.
    bool interrupted() const { return isOver_; }

private:
    ICardChannel& channel_;
    std::unique_ptr<ICardChannel> decorator_;  ///< null for Kind::foreign
    std::size_t left_;
    bool isOver_ = false;
};

}  // namespace tovi::test
