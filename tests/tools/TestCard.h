#pragma once

#include "tovi/card/ISO7816CardOS.h"
#include "tovi/card/VirtualCard.h"

namespace tovi::test {

/// A card in memory, and the way to it.
struct TestCard {
    VirtualCard card;
    VirtualCardChannel channel{card};
    ISO7816CardOS os{channel};
};

}  // namespace tovi::test
