#pragma once

#include <memory>

#include "tools/CardSource.h"
#include "tovi/card/PcscChannel.h"

namespace tovi {

/// The card in a PC/SC reader, kept from others for the length of the call.
class ReaderSource final : public CardSource, private ICardChannel {
public:
    /// Opens the card in the reader that the call names, and waits for one before that if the call
    /// says so.
    ///
    /// Throws PcscError when it cannot be reached, SmartcardException in a build without PC/SC, and
    /// Interrupted when the user stops waiting.
    explicit ReaderSource(Invocation& call);

    ICardChannel& channel() override { return *this; }
    const CardDescription* description() const override { return nullptr; }
    std::string name() const override { return channel_->reader(); }

private:
    /// Tells the call why the card failed: the library's operations have messages of their own.
    Blob transmit(const Blob& command) override;

    Invocation& call_;
    std::shared_ptr<IPcscService> service_;
    PcscReaders readers_;
    std::unique_ptr<PcscChannel> channel_;
};

}  // namespace tovi
