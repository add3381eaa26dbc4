#include "tools/CardAccess.h"

#include <chrono>
#include <ostream>
#include <string_view>

#include "tools/Paths.h"
#include "tools/Text.h"
#include "tovi/card/CardFolderError.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

constexpr std::chrono::milliseconds patience{10000};  // with other users of a folder
constexpr std::chrono::milliseconds slice{50};        // of it, between two looks for an interrupt

std::string folderNamed(Invocation& call) {
    const GlobalOptions& options = call.options();
    if (!options.reader.empty()) {
        throw Failure("readers are not supported by this build; use --card DIR", call.operation());
    }
    const std::string& folder = options.card.empty() ? call.console().defaultCard : options.card;
    if (folder.empty()) {
        throw UsageError(
            "no card: name one with --card DIR or TOVI_CARD; 'tovi init DIR' makes a card folder");
    }
    return folder;
}

bool isInUse(const CardFolderError& error) {
    return std::string_view(error.GetMessage()) == "card folder in use";
}

/// Opens the folder as soon as nobody else has it; Interrupted when the user gives up before.
std::unique_ptr<CardFolder> openFolder(Invocation& call, CardFolder::Mode mode) {
    const std::string folder = folderNamed(call);
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

std::unique_ptr<TraceChannel> traced(ICardChannel& channel, Invocation& call) {
    if (!call.options().trace) return nullptr;
    std::ostream& err = call.console().err;
    return std::make_unique<TraceChannel>(channel,
                                          [&err](const std::string& line) { err << line << '\n'; });
}

ICardChannel& outermost(const std::unique_ptr<TraceChannel>& trace, ICardChannel& channel) {
    return trace ? static_cast<ICardChannel&>(*trace) : channel;
}

}  // namespace

CardAccess::CardAccess(Invocation& call, CardFolder::Mode mode)
    : aid_(call.options().aid.empty() ? PKCS15_AID : *fromHex(call.options().aid)),
      folder_(openFolder(call, mode)),
      card_(folder_->card()),
      interruptible_(card_, call),
      trace_(traced(interruptible_, call)),
      commands_(outermost(trace_, interruptible_)),
      application_(commands_, aid_),
      path_(findApplication()) {}

Blob CardAccess::rootPath() const {
    Blob path = PKCS15_MF;
    path.append(path_);
    return path;
}

Blob CardAccess::findApplication() {
    // A card may select an application by the beginning of its identifier (ISO/IEC 7816-4:2005,
    // 8.2.1.2), so the first DF that begins so is the one that will be selected.
    for (const FileDescription& file : folder_->description().files()) {
        if (file.kind == FileDescription::Kind::df && !file.aid.empty() &&
            beginsWith(file.aid, aid_)) {
            return Blob(file.path.begin() + 2, file.path.end());
        }
    }
    return pathInDirectory();
}

/// A card whose DF has no identifier may still name it in EF(DIR).
Blob CardAccess::pathInDirectory() {
    const Blob path = findInDirectory(commands_, aid_).application;
    if (path.empty()) return PKCS15_DF;
    application_.setPath(path);
    return Blob(path.begin() + 2, path.end());
}

ApplicationPlace CardAccess::place() {
    return ApplicationPlace(rootPath(), findInDirectory(commands_, aid_));
}

std::optional<std::size_t> CardAccess::recordCapacity(const Blob& path) const {
    using Kind = FileDescription::Kind;
    for (const FileDescription& file : folder_->description().files()) {
        const bool isLinear = file.kind == Kind::linearFixed || file.kind == Kind::linearVariable;
        if (isLinear && file.path == path) return file.size;
    }
    return std::nullopt;
}

}  // namespace tovi
