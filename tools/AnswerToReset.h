#pragma once

#include <string>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// The answer to reset of a virtual card (ISO/IEC 7816-3): protocol T=1, and historical bytes that
/// tell what the card can do (ISO/IEC 7816-4).
Blob virtualCardAtr();

/// Why the octets are no answer to reset: initial character, interface and historical bytes and
/// check character have to agree. Empty when they do.
std::string findAtrFault(ASN1::View atr);

}  // namespace tovi
