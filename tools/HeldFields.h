#pragma once

#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Refuses what would be lost without a word: values of `fields` that the record of such an object
/// does not keep, so that reading gives another one. Values that reading gives where a record says
/// nothing may always be named.
///
/// `object` has got the fields; `before` is what an update changes, null for a new object. Throws
/// UsageError that names the place.
template <class Info>
void checkHeld(const PKCS15ObjectInfo<Info>& object, const PKCS15ObjectInfo<Info>* before,
               const JsonPlace& fields);

}  // namespace tovi
