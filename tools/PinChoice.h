#pragma once

#include <string>

#include "tools/AuthName.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// What --login says: REF or id=HEX, which may stand behind "auth:"; none for other texts.
std::optional<AuthName> parseLogin(const std::string& login);

/// The PIN that is to be verified: the one that `login` names; without that the one whose own
/// identifier is `guard`; without that the only one of the application that VERIFY takes.
///
/// Throws UsageError that names the PINs to choose from.
const PKCS15ObjectInfo<AuthInfo>& choosePin(const PKCS15Container& model, const std::string& login,
                                            const Blob& guard);

/// The only PIN of the application that VERIFY takes; null when there is none, or more than one.
const PKCS15ObjectInfo<AuthInfo>* onlyPin(const PKCS15Container& model);

/// `PIN "Signature PIN" (auth:2)`: how a person is told of a PIN.
std::string nameOfPin(const PKCS15ObjectInfo<AuthInfo>& pin);

}  // namespace tovi
