#include "tools/CardAccess.h"

#include <ostream>

#include "tools/Paths.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

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
      source_(openCardSource(call, mode)),
      interruptible_(source_->channel(), call),
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
    const CardDescription* card = source_->description();
    if (card == nullptr) return pathInDirectory();
    for (const FileDescription& file : card->files()) {
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
    const CardDescription* card = source_->description();
    if (card == nullptr) return std::nullopt;
    for (const FileDescription& file : card->files()) {
        const bool isLinear = file.kind == Kind::linearFixed || file.kind == Kind::linearVariable;
        if (isLinear && file.path == path) return file.size;
    }
    return std::nullopt;
}

}  // namespace tovi
