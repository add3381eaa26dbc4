#include "tools/CardAccess.h"

#include <ostream>

#include "tools/Paths.h"
#include "tools/PinSource.h"
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

/// A wrong PIN counts, so the card has to be one that can be written to.
CardFolder::Mode modeFor(const Invocation& call, CardFolder::Mode mode) {
    return wantsLogin(call.options()) ? CardFolder::Mode::readWrite : mode;
}

WantedApplication wanted(const GlobalOptions& options) {
    WantedApplication application;
    if (!options.aid.empty()) application.aid = *fromHex(options.aid);
    if (!options.path.empty()) application.path = absolutePath(PKCS15_MF, *fromHex(options.path));
    return application;
}

}  // namespace

CardAccess::CardAccess(Invocation& call, CardFolder::Mode mode)
    : source_(openCardSource(call, modeFor(call, mode))),
      watched_(source_->channel(), call),
      interruptible_(watched_, call),
      trace_(traced(interruptible_, call)),
      outermost_(outermost(trace_, interruptible_)),
      commands_(outermost_),
      found_(findApplication(commands_, source_->description(), wanted(call.options()))),
      application_(commands_, {}),
      files_(commands_, {}) {
    for (ApplicationCardOS* card : {&application_, &files_}) {
        if (found_.knowsAid) card->setAid(found_.aid);
        if (!found_.knowsAid || !call.options().path.empty()) card->setPath(found_.path);
    }
    const ApplicationPlace usual(found_.path), actual = place();
    if (actual.odf != usual.odf) application_.redirect(usual.odf, actual.odf);
    if (actual.tokenInfo != usual.tokenInfo) {
        application_.redirect(usual.tokenInfo, actual.tokenInfo);
    }
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
