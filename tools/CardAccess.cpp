#include "tools/CardAccess.h"

#include <ostream>

#include "tools/EfDir.h"
#include "tools/Paths.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

std::unique_ptr<CardFolder> openFolder(Invocation& call, CardFolder::Mode mode) {
    const GlobalOptions& options = call.options();
    if (!options.reader.empty()) {
        throw Failure("readers are not supported by this build; use --card DIR", call.operation());
    }
    const std::string& folder = options.card.empty() ? call.console().defaultCard : options.card;
    if (folder.empty()) {
        throw UsageError(
            "no card: name one with --card DIR or TOVI_CARD; 'tovi init DIR' makes a card folder");
    }
    CardFolder::Options folderOptions;
    folderOptions.mode = mode;
    return std::make_unique<CardFolder>(folder, folderOptions);
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
    return findInDirectory();
}

/// A card whose DF has no identifier may still name it in EF(DIR).
Blob CardAccess::findInDirectory() {
    const Blob path = applicationInDirectory(commands_, aid_);
    if (!beginsWith(path, PKCS15_MF)) return PKCS15_DF;
    application_.setPath(path);
    return Blob(path.begin() + 2, path.end());
}

}  // namespace tovi
