#pragma once

#include <cstddef>
#include <map>

#include "tovi/Export.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// Passes commands on and counts them.
class TOVI_API CountingChannel final : public ICardChannel {
public:
    /// What was counted so far.
    struct Counts {
        std::size_t commands = 0;        ///< including those that the channel failed on
        std::size_t octetsToCard = 0;    ///< headers and length fields included
        std::size_t octetsFromCard = 0;  ///< status words included
        std::map<std::uint8_t, std::size_t> byInstruction;  ///< commands by INS
    };

    /// `channel` must outlive this object.
    explicit CountingChannel(ICardChannel& channel) : channel_(channel) {}

    Blob transmit(const Blob& command) override;

    /// The counts since construction or the last clear().
    const Counts& counts() const { return counts_; }
    void clear() { counts_ = {}; }

private:
    ICardChannel& channel_;
    Counts counts_;
};

}  // namespace tovi
