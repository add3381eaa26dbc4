#pragma once

#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Refuses what are no fields of TokenInfo; see setFields.
void checkTokenInfoFields(const JsonPlace& set);

/// Sets fields of EF(TokenInfo), on the card and in the model, which has been read. What `set` does
/// not name stays as it is on the card: the list of algorithms, and a label that is not there.
///
/// Throws as PKCS15Container::updateTokenInfo does, and UsageError for a list of algorithms that
/// would have to be removed, which the update of a card does not do.
void updateTokenInfo(PKCS15Container& model, ISCardOS& os, const JsonPlace& set);

}  // namespace tovi
