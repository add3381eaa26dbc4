#pragma once

#include <memory>

#include "tests/support/CardBuilder.h"
#include "tovi/card/CommandExchange.h"

namespace tovi::test {

/// A connection to a card in memory, which must outlive it.
class Wire {
public:
    explicit Wire(VirtualCard& card, const CardCapabilities& capabilities = {})
        : channel_(card), os_(channel_, capabilities) {}
    ISCardOS* os() { return &os_; }

private:
    VirtualCardChannel channel_;
    ISO7816CardOS os_;
};

/// A container that has read the card just now.
inline std::unique_ptr<PKCS15Container> readNew(VirtualCard& card,
                                                const CardCapabilities& capabilities = {}) {
    Wire wire(card, capabilities);
    auto container = makeContainer();
    container->readFromCard(wire.os());
    return container;
}

}  // namespace tovi::test
