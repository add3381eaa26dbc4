#pragma once

#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

// Objects of the model from JSON. `fields` is an object of what toJson shows of the kind and an
// object may be given: all but what follows from the rest. Members of the info that it does not
// name stay as they are; `attributes` are added to those there are, null takes a value away. All
// throw UsageError that names the place, for an unknown field and for a value of the wrong kind or
// out of its range; the info is then half set.

/// Which fields an authentication object has follows from its type, which cannot change, and
/// neither can its reference.
template <class Info>
void setFields(PKCS15ObjectInfo<Info>& info, const JsonPlace& fields);
void setFields(PKCS15TokenInfo& info, const JsonPlace& fields);

/// A new object from all of its fields; of an authentication object `type` is one, and `reference`.
template <class Info>
PKCS15ObjectInfo<Info> newObject(const JsonPlace& fields);
template <>
PKCS15ObjectInfo<AuthInfo> newObject<AuthInfo>(const JsonPlace& fields);

/// Refuses what no kind of object with a record number has, or no authentication object.
void checkFieldsOfAnyKind(const JsonPlace& fields);
void checkFieldsOfAnyAuthObject(const JsonPlace& fields);

}  // namespace tovi
