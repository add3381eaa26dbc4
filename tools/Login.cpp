#include "tools/Login.h"

#include <ostream>

#include "tools/PinBlock.h"
#include "tools/PinChoice.h"
#include "tools/PinSource.h"
#include "tools/ReadableCardOS.h"
#include "tovi/card/PinVerification.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

using Pin = PKCS15ObjectInfo<AuthInfo>;

constexpr std::int64_t triesLeftCode = statusWordCode + StatusWord::triesLeft;
constexpr std::int64_t blockedCode = statusWordCode + StatusWord::blocked;

std::string triesText(unsigned tries) {
    return std::to_string(tries) + (tries == 1 ? " try left" : " tries left");
}

/// What the card says of the PIN before it is presented; not every card answers that.
PinState stateBefore(ICardChannel& channel, std::uint8_t reference) {
    try {
        return pinState(channel, reference);
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() < statusWordCode) throw;
        return {};
    }
}

/// P2 of VERIFY.
std::uint8_t referenceOf(const Pin& pin, const std::string& operation) {
    const std::uint64_t reference = pin.reference == noReference ? 0 : pin.reference;
    if (reference > 0xFF)
        throw Failure(nameOfPin(pin) + " has no reference that VERIFY takes", operation);
    return static_cast<std::uint8_t>(reference);
}

/// Makes the DF current in which the PIN is valid.
void selectHome(CardAccess& card, const Pin& pin) {
    card.os().selectApplication(PKCS15_AID, 0x0C);
    if (!pin.path.path.empty()) card.os().selectFile(pin.path.path);
}

void throwIfRefused(const PinState& state, const Pin& pin, const std::string& operation) {
    if (state.isVerified) return;
    if (state.isBlocked) throw Failure(nameOfPin(pin) + " is blocked", operation, blockedCode);
    if (!state.triesLeft) throw Failure("wrong PIN", operation, statusWordCode + 0x6300);
    throw Failure("wrong PIN, " + triesText(*state.triesLeft), operation,
                  triesLeftCode + static_cast<std::int64_t>(*state.triesLeft));
}

void refuseFor(const std::string& reason, const Pin& pin, const std::string& operation) {
    if (!reason.empty()) throw Failure(nameOfPin(pin) + " " + reason, operation);
}

/// Presents the PIN. Nothing is selected, so what was selected stays so.
void present(Invocation& call, CardAccess& card, const Pin& pin) {
    const std::string& operation = call.operation();
    const std::uint8_t reference = referenceOf(pin, operation);
    const PinState before = stateBefore(card.channel(), reference);
    if (before.isBlocked) throwIfRefused(before, pin, operation);
    const std::string name =
        nameOfPin(pin) + (before.triesLeft ? ": " + triesText(*before.triesLeft) : "");
    if (!call.options().quiet) call.console().err << name << std::endl;
    Secret entered, block;
    readPin(call, "PIN: ", entered);
    refuseFor(reasonAgainst(pin, entered), pin, operation);
    encodePin(pin, entered, block);
    throwIfRefused(verifyPin(card.channel(), reference, block.octets()), pin, operation);
}

void verify(Invocation& call, CardAccess& card, const Pin& pin) {
    refuseFor(reasonAgainst(pin), pin, call.operation());
    selectHome(card, pin);
    present(call, card, pin);
}

/// The authId of an object; empty when there is no such object, or nothing guards it.
Blob guardOf(const PKCS15Container& model, std::uint64_t recordNumber) {
    Blob guard;
    forEachList(model, [&](const ListKind&, const auto& infos, const auto&) {
        for (const auto& info : infos)
            if (info.recordNumber == recordNumber) guard = info.authId;
    });
    return guard;
}

/// What can be read of the application without a PIN.
ContainerPointer readOpenPart(CardAccess& card) {
    ReadableCardOS readable(card.os());
    ContainerPointer model = makeContainer(card.applicationPath());
    model->readFromCard(&readable);
    return model;
}

/// None when the card does not let all of it be read.
ContainerPointer readIfOpen(Invocation& call, CardAccess& card) {
    ContainerPointer model = makeContainer(card.applicationPath());
    try {
        model->readFromCard(&card.os());
        return model;
    } catch (const SmartcardException&) {
        if (!call.wasDenied()) throw;
        return nullptr;
    }
}

ContainerPointer read(CardAccess& card) {
    ContainerPointer model = makeContainer(card.applicationPath());
    model->readFromCard(&card.os());
    return model;
}

/// Lets the person be asked for the PIN when the card first refuses something for want of it. With
/// more than one to choose from, it takes --login.
void askWhenRefused(Invocation& call, CardAccess& card, const PKCS15Container& model) {
    const Pin* only = onlyPin(model);
    if (only == nullptr || !reasonAgainst(*only).empty()) return;
    card.setPinRemedy([&call, &card, pin = *only] {
        present(call, card, pin);
        return true;
    });
}

/// Reads, and asks the person for a PIN where the card wants one.
ContainerPointer readAsking(Invocation& call, CardAccess& card) {
    ContainerPointer model = readIfOpen(call, card);
    if (model == nullptr) {
        const ContainerPointer open = readOpenPart(card);
        const Pin* only = onlyPin(*open);
        if (only == nullptr) return read(card);  // and fail as it did
        call.forgetDenial();
        verify(call, card, *only);
        return read(card);
    }
    askWhenRefused(call, card, *model);
    return model;
}

template <class GuardIn>
ContainerPointer readModelFor(Invocation& call, CardAccess& card, GuardIn guardIn) {
    // Unasked only where a person sees what is told.
    const bool canAsk = call.console().askSecret && call.console().showsProgress;
    if (!wantsLogin(call.options())) return canAsk ? readAsking(call, card) : read(card);
    ContainerPointer model = readIfOpen(call, card);
    const bool isOpen = model != nullptr;
    if (!isOpen) model = readOpenPart(card);
    call.forgetDenial();
    // Records that cannot be read yet have no numbers, and those behind them have others.
    const Blob guard = isOpen ? guardIn(*model) : Blob();
    verify(call, card, choosePin(*model, call.options().login, guard));
    return isOpen ? std::move(model) : read(card);
}

}  // namespace

ContainerPointer readModel(Invocation& call, CardAccess& card) {
    return readModelFor(call, card, [](const PKCS15Container&) { return Blob(); });
}

ContainerPointer readModel(Invocation& call, CardAccess& card, std::uint64_t recordNumber) {
    return readModelFor(call, card,
                        [=](const PKCS15Container& model) { return guardOf(model, recordNumber); });
}

void logIn(Invocation& call, CardAccess& card) {
    if (!wantsLogin(call.options())) return;
    const ContainerPointer model = readOpenPart(card);
    call.forgetDenial();
    verify(call, card, choosePin(*model, call.options().login, {}));
}

}  // namespace tovi
