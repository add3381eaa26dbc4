#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "tools/ApplicationCardOS.h"
#include "tools/ApplicationFiles.h"
#include "tools/CardSource.h"
#include "tools/Command.h"
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

    ISCardOS& os() { return application_; }
    /// Off while several commands have to be performed as one; see InterruptibleChannel.
    void setInterruptible(bool isInterruptible) {
        interruptible_.setInterruptible(isInterruptible);
    }
    /// The card itself, as the command line names it.
    const CardSource& source() const { return *source_; }
    /// The identifier of the application.
    const Blob& aid() const { return aid_; }
    /// The path of the application below the master file.
    const Blob& applicationPath() const { return path_; }
    /// The same from 3F00 on.
    Blob rootPath() const;
    /// Where the application's files lie; reads EF(DIR), which may name other places than usual.
    ApplicationPlace place();
    /// How many records a linear file may have, which a card folder knows and no card tells.
    std::optional<std::size_t> recordCapacity(const Blob& path) const;

private:
    Blob findApplication();
    Blob pathInDirectory();

    Blob aid_;
    std::unique_ptr<CardSource> source_;
    InterruptibleChannel interruptible_;
    std::unique_ptr<TraceChannel> trace_;
    ISO7816CardOS commands_;
    ApplicationCardOS application_;
    Blob path_;
};

}  // namespace tovi
