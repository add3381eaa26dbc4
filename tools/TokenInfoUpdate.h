#pragma once

#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Refuses what are no fields of TokenInfo; see setFields.
void checkTokenInfoFields(const JsonPlace& set);

/// Whether a list of algorithms is among the fields that is not empty.
bool namesAlgorithms(const JsonPlace& set);
/// Refuses an empty list of algorithms for a card that has one: no update takes it away.
void checkAlgorithms(const JsonPlace& set, bool cardHasAlgorithms);

/// Sets fields of EF(TokenInfo), on the card and in the model, which has been read. What `set` does
/// not name stays as it is on the card: the list of algorithms, and a label that is not there.
///
/// Returns TokenInfo as the next read gives it; the model takes over what was asked for, which says
/// nothing of what is left alone. Throws as PKCS15Container::updateTokenInfo does, and UsageError
/// as checkAlgorithms does.
PKCS15TokenInfo updateTokenInfo(PKCS15Container& model, ISCardOS& os, const JsonPlace& set);

}  // namespace tovi
