#include "tools/CardSource.h"

#include <chrono>
#include <string_view>

#include "tools/ReaderSource.h"
#include "tovi/card/CardFolderError.h"

namespace tovi {
namespace {

constexpr std::chrono::milliseconds patience{10000};  // with other users of a folder
constexpr std::chrono::milliseconds slice{50};        // of it, between two looks for an interrupt

std::string folderNamed(Invocation& call) {
    const GlobalOptions& options = call.options();
    const std::string& folder = options.card.empty() ? call.console().defaultCard : options.card;
    if (folder.empty()) {
        throw UsageError(
            "no card: name one with --card DIR, TOVI_CARD or --reader NAME; "
            "'tovi init DIR' makes a card folder");
    }
    return folder;
}

bool isInUse(const CardFolderError& error) {
    return std::string_view(error.GetMessage()) == "card folder in use";
}

}  // namespace

std::unique_ptr<CardFolder> openFolder(Invocation& call, const std::string& folder,
                                       CardFolder::Mode mode) {
    CardFolder::Options options;
    options.mode = mode;
    options.patience = slice;
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        call.checkInterrupt();
        try {
            return std::make_unique<CardFolder>(folder, options);
        } catch (const CardFolderError& error) {
            if (!isInUse(error) || std::chrono::steady_clock::now() >= end) throw;
        }
    }
}

FolderSource::FolderSource(Invocation& call, CardFolder::Mode mode)
    : name_(folderNamed(call)), folder_(openFolder(call, name_, mode)), channel_(folder_->card()) {}

std::unique_ptr<CardSource> openCardSource(Invocation& call, CardFolder::Mode mode) {
    if (!call.options().reader.empty()) return std::make_unique<ReaderSource>(call);
    return std::make_unique<FolderSource>(call, mode);
}

}  // namespace tovi
