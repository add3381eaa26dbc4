#pragma once

#include <memory>
#include <string>

#include "tools/Command.h"
#include "tovi/card/CardDescription.h"
#include "tovi/card/CardFolder.h"
#include "tovi/card/ICardChannel.h"

namespace tovi {

/// A card that is open for the length of one call, wherever it comes from.
class CardSource {
public:
    virtual ~CardSource() = default;

    /// The way to the card; it lives as long as this object.
    virtual ICardChannel& channel() = 0;
    /// The files of a card that is described; null where only the card itself can tell.
    virtual const CardDescription* description() const = 0;
    /// What a user calls the card: its folder, or the name of the reader that it is in.
    virtual std::string name() const = 0;
};

/// Opens a card folder as soon as nobody else has it. Throws CardFolderError when it cannot be
/// used, and Interrupted when the user stops waiting for somebody else who uses the card.
std::unique_ptr<CardFolder> openFolder(Invocation& call, const std::string& folder,
                                       CardFolder::Mode mode);

/// A card folder, served by the virtual card.
class FolderSource final : public CardSource {
public:
    /// Opens the folder that the call names as soon as nobody else has it.
    ///
    /// Throws UsageError when no card is named, CardFolderError when it cannot be used, and
    /// Interrupted when the user stops waiting for somebody else who uses the card.
    FolderSource(Invocation& call, CardFolder::Mode mode);

    ICardChannel& channel() override { return channel_; }
    const CardDescription* description() const override { return &folder_->description(); }
    std::string name() const override { return name_; }

private:
    std::string name_;
    std::unique_ptr<CardFolder> folder_;
    VirtualCardChannel channel_;
};

/// Opens the card that the options of the call name; see the classes above for the failures.
std::unique_ptr<CardSource> openCardSource(Invocation& call, CardFolder::Mode mode);

}  // namespace tovi
