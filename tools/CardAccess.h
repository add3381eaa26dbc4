#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "tools/ApplicationCardOS.h"
#include "tools/ApplicationFiles.h"
#include "tools/ApplicationSearch.h"
#include "tools/CardSource.h"
#include "tools/Command.h"
#include "tools/DenialWatch.h"
#include "tools/InterruptibleChannel.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/card/TraceChannel.h"

namespace tovi {

/// The card that the command line names, with its application found.
///
/// Throws what openCardSource does. A card without the application is no error here: selecting it
/// will be one.
class CardAccess {
public:
    CardAccess(Invocation& call, CardFolder::Mode mode);

    /// The card as the model needs it: EF(ODF) and EF(TokenInfo) at their usual places, wherever
    /// EF(DIR) says that they are.
    ISCardOS& os() { return application_; }
    /// The same card with every file where it is.
    ISCardOS& files() { return files_; }
    /// The card as it is, without regard to the application.
    ISCardOS& commands() { return commands_; }
    /// The way to the card for commands that ISCardOS has no operation for.
    ICardChannel& channel() { return outermost_; }
    /// What to do when the card first refuses something for want of a PIN; see DenialWatch.
    void setPinRemedy(std::function<bool()> remedy) { watched_.setRemedy(std::move(remedy)); }
    /// Off while several commands have to be performed as one; see InterruptibleChannel.
    void setInterruptible(bool isInterruptible) {
        interruptible_.setInterruptible(isInterruptible);
    }
    /// The card itself, as the command line names it.
    const CardSource& source() const { return *source_; }
    /// The application of this call.
    const FoundApplication& found() const { return found_; }
    /// Its identifier; empty when a path is all that is known.
    const Blob& aid() const { return found_.aid; }
    /// Whether the card selects it by that; else by its path alone.
    bool knowsAid() const { return found_.knowsAid; }
    /// The path of the application below the master file.
    Blob applicationPath() const { return Blob(found_.path.begin() + 2, found_.path.end()); }
    /// The same from 3F00 on.
    const Blob& rootPath() const { return found_.path; }
    /// Where the application's files lie; EF(DIR) may name other places than usual.
    ApplicationPlace place() const { return ApplicationPlace(found_.path, found_.entry); }
    /// How many records a linear file may have, which a card folder knows and no card tells.
    std::optional<std::size_t> recordCapacity(const Blob& path) const;

private:
    std::unique_ptr<CardSource> source_;
    DenialWatch watched_;
    InterruptibleChannel interruptible_;
    std::unique_ptr<TraceChannel> trace_;
    ICardChannel& outermost_;
    ISO7816CardOS commands_;
    FoundApplication found_;
    ApplicationCardOS application_;
    ApplicationCardOS files_;
};

}  // namespace tovi
