#pragma once

#include "tools/CardAccess.h"
#include "tools/Command.h"
#include "tools/Model.h"

namespace tovi {

/// Reads the application. Where the call asks for a PIN (--login, --pin-file, --pin-env), that is
/// verified first as far as the card lets its authentication objects be read without it. Where it
/// does not, and a person is there, that one is asked for the card's only PIN as soon as the card
/// refuses something for want of it.
///
/// `guard` is the authId of the object that the call is about; without --login its PIN is the one
/// that is verified, and where it has none, the only PIN of the card. So it is where the card does
/// not let all of the application be read without a PIN: record numbers say nothing until then.
///
/// Tells on stderr how many tries the PIN has left. Throws UsageError when it is not clear which
/// PIN is meant, or there is none to present; Failure when the PIN is blocked, cannot be right, or
/// is wrong (code 0x163C0 + tries left); Interrupted; and what reading throws.
ContainerPointer readModel(Invocation& call, CardAccess& card);

/// The same; the object is the one with that record number.
ContainerPointer readModel(Invocation& call, CardAccess& card, std::uint64_t recordNumber);

/// The same for a call that reads the card without a model.
void logIn(Invocation& call, CardAccess& card);

}  // namespace tovi
