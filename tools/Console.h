#pragma once

#include <atomic>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "tovi/card/IPcscService.h"

namespace tovi {

class Secret;

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
    /// Shows a prompt and takes a line that is not shown; false when the person gives none. Empty
    /// when there is no person to ask.
    std::function<bool(const std::string& prompt, Secret& secret)> askSecret = {};
    /// The PC/SC service, for calls that use readers.
    std::function<std::shared_ptr<IPcscService>()> pcsc = makePcscService;
    /// `out` is a terminal, which is no place for binary data.
    bool outIsTerminal = false;
};

}  // namespace tovi
