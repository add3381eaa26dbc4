#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "tovi/Export.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// Answers one chosen command itself, with a status word or as if the card could not be reached.
/// The card never sees that command; it sees all others.
class TOVI_API FailingChannel final : public ICardChannel {
public:
    /// Picks the commands that fail.
    using Choice = std::function<bool(const Blob& command)>;
    static constexpr std::uint16_t unreachable = 0;  ///< instead of a status word: throws, code 0

    /// Fails command number `index`, counted from 0. `channel` must outlive this object.
    FailingChannel(ICardChannel& channel, std::size_t index, std::uint16_t status);
    /// Fails every command that `choice` picks.
    FailingChannel(ICardChannel& channel, Choice choice, std::uint16_t status);

    Blob transmit(const Blob& command) override;

    /// True once a command was failed.
    bool failed() const { return failed_; }

private:
    ICardChannel& channel_;
    Choice choice_;
    std::uint16_t status_;
    bool failed_ = false;
};

/// A card pulled out at one chosen command: that one and every later one throws with code 0.
class TOVI_API TearingChannel final : public ICardChannel {
public:
    /// When the card comes out.
    enum class Moment {
        beforeCommand,   ///< the chosen command is not performed
        beforeResponse,  ///< it is performed, but the response is lost
    };

    /// Tears at command number `index`, counted from 0. `channel` must outlive this object.
    TearingChannel(ICardChannel& channel, std::size_t index, Moment moment);

    Blob transmit(const Blob& command) override;

    /// True once the card is out.
    bool torn() const { return torn_; }

private:
    ICardChannel& channel_;
    std::size_t remaining_;
    Moment moment_;
    bool torn_ = false;
};

}  // namespace tovi
