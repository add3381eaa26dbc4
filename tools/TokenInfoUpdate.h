#pragma once

#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Refuses what are no fields of TokenInfo; see setFields.
void checkTokenInfoFields(const JsonPlace& set);

/// Sets fields of EF(TokenInfo), on the card and in the model, which has been read. What `set` does
/// not name stays as it is on the card: the list of algorithms, which an empty one leaves alone
/// too, and a label that is not there.
///
/// Returns TokenInfo as the next read gives it; the model takes over what was asked for, which says
/// nothing of what is left alone. Throws as PKCS15Container::updateTokenInfo does.
PKCS15TokenInfo updateTokenInfo(PKCS15Container& model, ISCardOS& os, const JsonPlace& set);

}  // namespace tovi
