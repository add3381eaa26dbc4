#pragma once

#include <string>

#include "tools/JsonPlace.h"
#include "tovi/records/PKCS15TokenInfo.h"

namespace tovi {

/// Sets a field of TokenInfo but the label; false when `name` is none. Throws UsageError that names
/// the place, for a value that the field does not take.
bool setTokenInfoField(PKCS15TokenInfo& info, const std::string& name, const JsonPlace& value);

}  // namespace tovi
