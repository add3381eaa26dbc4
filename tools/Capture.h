#pragma once

#include <optional>
#include <vector>

#include "tools/ApplicationFiles.h"
#include "tools/CardAccess.h"
#include "tools/CardPlan.h"
#include "tools/Redaction.h"

namespace tovi {

/// A file of a card as far as the card let it be read.
struct CapturedFile {
    const FileKind* kind = &otherFile;
    DirectoryFile file;                ///< its path in any case; the rest where there is no error
    std::optional<ErrorReport> error;  ///< why it was not read
    bool isSelected = false;           ///< it is there: reading alone was refused
    bool isSecret = false;             ///< the value of a private or secret key

    /// "EF(PrKDF) 3F0050154401"
    std::string name() const;
};

/// What was read of a card.
struct CapturedCard {
    Blob root;                                    ///< the DF of the application, from 3F00 on
    Blob aid;                                     ///< that selects it; empty: none does
    std::optional<ErrorReport> applicationError;  ///< why the card does not select it
    std::vector<CapturedFile> files;
};

/// Which files are read.
enum class CaptureExtent : std::uint8_t {
    directories,  ///< EF(DIR), TokenInfo, ODF, directory files, UnusedSpace
    values        ///< these, and the files that the objects' values lie in
};

/// Reads every file to its end. What the card refuses is noted and no failure; files that it does
/// not have, and need not have, are left out.
CapturedCard captureCard(CardAccess& card, CaptureExtent extent);

/// Blanks all that was read; see Redaction.
void redact(CapturedCard& card);

/// The card folder that holds what was read. A file that could not be read is there without
/// contents, `read=never`; one that is not even selected is named in a comment.
CardPlan planOf(const CapturedCard& card);

}  // namespace tovi
