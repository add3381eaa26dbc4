#include "tovi/card/VirtualPins.h"

#include "tovi/card/StatusWord.h"
#include "tovi/card/VirtualCardStorage.h"

namespace tovi {
namespace {

std::uint16_t withTries(unsigned left) {
    if (left == 0) return StatusWord::blocked;
    return static_cast<std::uint16_t>(StatusWord::triesLeft | (left & 0x0F));
}

}  // namespace

void VirtualPins::add(const PinDescription& pin) { pins_[pin.reference] = {pin, false}; }

bool VirtualPins::allows(const AccessRule& rule) const {
    if (rule.kind != AccessRule::Kind::pin) return rule.kind == AccessRule::Kind::always;
    const auto pin = pins_.find(rule.reference);
    return pin != pins_.end() && pin->second.verified;
}

std::uint16_t VirtualPins::verify(std::uint8_t reference, ASN1::View value,
                                  VirtualCardStorage* storage) {
    const auto found = pins_.find(reference);
    if (found == pins_.end()) return StatusWord::referenceNotFound;
    Pin& pin = found->second;
    const unsigned left = pin.description.left;
    pin.verified = false;
    if (left == 0) return StatusWord::blocked;
    if (pin.description.value != Blob(value)) {
        setLeft(pin, left - 1, storage);
        return withTries(left - 1);
    }
    setLeft(pin, pin.description.tries, storage);
    pin.verified = true;
    return StatusWord::success;
}

void VirtualPins::setLeft(Pin& pin, unsigned left, VirtualCardStorage* storage) {
    if (pin.description.left == left) return;
    if (storage != nullptr) storage->storeTriesLeft(pin.description.reference, left);
    pin.description.left = left;
}

std::uint16_t VirtualPins::state(std::uint8_t reference) const {
    const auto found = pins_.find(reference);
    if (found == pins_.end()) return StatusWord::referenceNotFound;
    return found->second.verified ? StatusWord::success : withTries(found->second.description.left);
}

void VirtualPins::reset() {
    for (auto& [reference, pin] : pins_) pin.verified = false;
}

unsigned VirtualPins::left(std::uint8_t reference) const {
    const auto found = pins_.find(reference);
    return found == pins_.end() ? 0 : found->second.description.left;
}

}  // namespace tovi
