#pragma once

#include <string>

#include "tools/Secret.h"
#include "tovi/records/AuthInfo.h"

namespace tovi {

/// Why no PIN at all can be presented for the object; "" when one can.
std::string reasonAgainst(const AuthInfo& pin);

/// Why a PIN cannot be presented; "" when it can. No try is lost on what the card would refuse.
///
/// `entered` is the PIN as a person types it, in UTF-8. Its length is held against minLength and
/// maxLength in characters; a type of digits takes digits only; and what is stored may not be
/// longer than storedLength (PKCS#15 v1.1, 6.8.2).
std::string reasonAgainst(const AuthInfo& pin, const Secret& entered);

/// Makes of a PIN that nothing speaks against the octets that the card compares: in the coding of
/// pinType, in upper case unless the PIN is case-sensitive, and filled with padChar up to
/// storedLength when it needs padding.
///
/// Where half an octet is left over in packed digits, it is the low half of padChar, F without one.
void encodePin(const AuthInfo& pin, const Secret& entered, Secret& block);

}  // namespace tovi
