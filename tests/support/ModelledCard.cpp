#include "tests/support/ModelledCard.h"

#include <algorithm>
#include <utility>

#include "tests/support/Failure.h"
#include "tests/support/Wire.h"

namespace tovi::test {

namespace {

using Result = CardModel::Result;

Failure failureFor(Result result, std::optional<Directory> kind) {
    if (result == Result::noFile) return {smartcardId, "no directory file", "", 0};
    if (result == Result::done) return {};
    if (!kind) return {smartcardId, "update file failed", "", 0};
    // For authentication objects the status word comes without its mark.
    const bool isMarked = *kind != Directory::authObjects;
    return {smartcardId, "not enough memory", "", isMarked ? 0x16A84 : 0x6A84};
}

}  // namespace

ModelledCard::ModelledCard(CardModel model, const CardCapabilities& capabilities)
    : model_(std::move(model)), capabilities_(capabilities), card_(model_.makeCard()) {
    model_.readAgain();
    container_ = readNew(card_, capabilities_);
    compare("read");
}

void ModelledCard::perform(const ModelledOperation& operation, const std::optional<Fault>& fault) {
    CardModel after = model_;
    const Result expected = operation.expect(after);
    refused_ += expected != Result::done;
    if (fault && !interrupt(operation.perform, *fault)) {
        check("interrupted, but done", expected == Result::done ? "" : "there was no room for it");
        model_ = std::move(after);
        if (operation.kind) model_.expectLoose(*operation.kind);
        return compare("interrupted, but done");
    }
    if (fault) compareInterrupted(after);
    compareFailure(operation, expected);
    if (expected == Result::done) model_ = std::move(after);
    compare("done");
}

void ModelledCard::perform(const std::function<void(PKCS15Container&)>& operation,
                           const std::function<void(CardModel&)>& expect) {
    operation(*container_);
    expect(model_);
    compare("done in memory");
}

void ModelledCard::reject(const std::string& message,
                          const std::function<void(PKCS15Container&, ISCardOS*)>& operation) {
    Wire wire(card_, capabilities_);
    const Failure failure = failureOf([&] { operation(*container_, wire.os()); });
    check("rejected", failure.message == message ? "" : failure.message + ", not " + message);
    compare("rejected");
}

void ModelledCard::readAgain(const std::optional<Fault>& fault) {
    container_->clear();
    if (fault) {
        const bool hasFailed = interrupt(
            [](PKCS15Container& container, ISCardOS* os) { container.readFromCard(os); }, *fault);
        const bool agrees = container_->hasBeenRead() != hasFailed;
        check("reading", agrees ? "" : "another state is reported");
        container_->clear();
    }
    Wire wire(card_, capabilities_);
    container_->readFromCard(wire.os());
    model_.readAgain();
    compare("read again");
}

void ModelledCard::compareFreeFIDs(std::uint16_t start) {
    constexpr std::uint16_t bandBegin = 0x5031, bandEnd = 0x5034;
    const ContainerView view = model_.view();
    for (unsigned i = 0; i < directoryCount; ++i) {
        const auto kind = static_cast<Directory>(i);
        const auto& objects = view[kind].objects;
        const auto isTaken = [&](std::uint16_t fid) {
            const bool isReserved = fid >= bandBegin && fid < bandEnd;
            return isReserved || std::any_of(objects.begin(), objects.end(),
                                             [&](const auto& each) { return each.fid == fid; });
        };
        std::uint16_t expected = start;
        while (isTaken(expected)) ++expected;
        const bool hasType = kind != Directory::authObjects;
        const std::uint8_t type = hasType ? objectTypeOf(kind) : std::uint8_t{authObject};
        const std::uint16_t found = container_->getFreeFID(start, type);
        check("free FID", found == expected ? "" : "another one");
    }
}

/// True when the operation is reported as failed.
bool ModelledCard::interrupt(const std::function<void(PKCS15Container&, ISCardOS*)>& action,
                             const Fault& fault) {
    VirtualCardChannel channel(card_);
    InterruptedChannel interrupted(channel, fault.how, fault.command);
    ISO7816CardOS os(interrupted, capabilities_);
    bool hasFailed = true;
    try {
        action(*container_, &os);
        hasFailed = false;
    } catch (const SmartcardException&) {
    } catch (const ForeignFailure&) {
    }
    interrupted_ += interrupted.interrupted();
    failed_ += interrupted.interrupted() && hasFailed;
    if (fault.how.isTear()) card_.reset();
    return hasFailed;
}

void ModelledCard::check(const std::string& when, const std::string& what) {
    if (difference_.empty() && !what.empty()) difference_ = when + ": " + what;
}

void ModelledCard::compare(const std::string& when) {
    check(when + ", in memory", test::difference(viewOf(*container_), model_.view()));
    check(when, contradiction(*container_));
    CardModel read = model_;
    read.readAgain();
    const auto other = readNew(card_, capabilities_);
    check(when + ", on the card", test::difference(viewOf(*other), read.view()));
    check(when, model_.looseness(card_));
}

void ModelledCard::compareInterrupted(const CardModel& after) {
    check("interrupted, in memory", test::difference(viewOf(*container_), model_.view()));
    check("interrupted", contradiction(*container_));
    const ContainerView found = viewOf(*readNew(card_, capabilities_));
    if (recordDifference(found, after.view()).empty()) return;
    check("interrupted, on the card", recordDifference(found, model_.view()));
}

void ModelledCard::compareFailure(const ModelledOperation& operation, Result expected) {
    Wire wire(card_, capabilities_);
    Failure found = failureOf([&] { operation.perform(*container_, wire.os()); });
    found.operation.clear();
    const Failure failure = failureFor(expected, operation.kind);
    if (found == failure) return;
    check("done", "found \"" + found.message + "\", expected \"" + failure.message + "\"");
}

}  // namespace tovi::test
