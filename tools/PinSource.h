#pragma once

#include <string>

#include "tools/Command.h"
#include "tools/Secret.h"

namespace tovi {

/// Whether the call asks for a PIN to be verified before its work.
bool wantsLogin(const GlobalOptions& options);

/// Gets the PIN of a call: the one line of --pin-file, the value of the environment variable
/// --pin-env, or what a person types at `prompt`.
///
/// The variable is wiped; whoever started the process may still hold its value. Throws UsageError
/// when the call names no source and there is no terminal to ask at, or when the variable is not
/// set; Failure when the file cannot be read, or holds more than one line or over 255 octets;
/// Interrupted when the person gives up.
void readPin(Invocation& call, const std::string& prompt, Secret& pin);

}  // namespace tovi
