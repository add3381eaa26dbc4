#pragma once

#include <string>

#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// The PIN that is to be verified: the one with the reference `login`, which may stand behind
/// "auth:"; without that the one whose own identifier is `guard`; without that the only one of the
/// application that VERIFY takes.
///
/// Throws UsageError that names the PINs to choose from.
const PKCS15ObjectInfo<AuthInfo>& choosePin(const PKCS15Container& model, const std::string& login,
                                            const Blob& guard);

/// `PIN "Signature PIN" (auth:2)`: how a person is told of a PIN.
std::string nameOfPin(const PKCS15ObjectInfo<AuthInfo>& pin);

}  // namespace tovi
