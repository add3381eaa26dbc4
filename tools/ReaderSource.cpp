#include "tools/ReaderSource.h"

#include <ostream>
#include <string_view>

namespace tovi {
namespace {

PcscReader readerOf(Invocation& call, PcscReaders& readers) {
    const GlobalOptions& options = call.options();
    if (!options.waits) return readers.find(options.reader);
    const bool tells = call.console().showsProgress && !options.quiet;
    unsigned looks = 0;
    return readers.waitForCard(options.reader, options.patience, [&] {
        call.checkInterrupt();
        if (tells && looks++ == 1) call.console().err << "tovi: waiting for a card" << std::endl;
    });
}

std::unique_ptr<PcscChannel> connected(Invocation& call, PcscReaders& readers) {
    // A card that is pushed in slowly may be gone again before it is connected to.
    for (int attempts = call.options().waits ? 3 : 1;; --attempts) {
        const PcscReader reader = readerOf(call, readers);
        try {
            return std::make_unique<PcscChannel>(readers, reader);
        } catch (const PcscError& error) {
            const bool isGone = std::string_view(error.GetMessage()) == "no card in the reader";
            if (!isGone || attempts <= 1) throw;
        }
    }
}

}  // namespace

ReaderSource::ReaderSource(Invocation& call)
    : call_(call),
      service_(call.console().pcsc()),
      readers_(*service_),
      channel_(connected(call, readers_)) {}

Blob ReaderSource::transmit(const Blob& command) {
    try {
        Blob response = channel_->transmit(command);
        call_.noteCardFailure("");
        return response;
    } catch (const PcscError& error) {
        call_.noteCardFailure(ErrorReport::of(error).message);
        throw;
    }
}

}  // namespace tovi
