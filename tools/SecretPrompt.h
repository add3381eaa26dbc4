#pragma once

#include <string>

#include "tools/Secret.h"

namespace tovi {

/// Whether this process has a terminal, wherever its input and output go.
bool hasTerminal();

/// Asks the person at the terminal of this process, and shows nothing of what is typed. The
/// terminal is as it was before afterwards, also when the person interrupts.
///
/// False when there is no terminal, when the input ends without a line, is longer than a Secret, or
/// is interrupted by a signal.
bool askOnTerminal(const std::string& prompt, Secret& secret);

}  // namespace tovi
