#pragma once

#include <atomic>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "tovi/card/IPcscService.h"

namespace tovi {

/// What surrounds one call of the command, so that a test can stand in for the process.
struct Console {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    /// `out` is a terminal that shows colour, and nobody asked for none.
    bool colour = false;
    /// The card folder of calls that name no card: the environment variable TOVI_CARD, or empty.
    std::string defaultCard = {};
    /// Set as soon as the user asks to stop; null when nobody can.
    const std::atomic<bool>* interrupted = nullptr;
    /// `err` is a terminal, where a line may be written over.
    bool showsProgress = false;
    /// The PC/SC service, for calls that use readers.
    std::function<std::shared_ptr<IPcscService>()> pcsc = makePcscService;
};

}  // namespace tovi
