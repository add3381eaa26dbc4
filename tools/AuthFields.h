#pragma once

#include <string>

#include "tools/JsonPlace.h"
#include "tovi/records/AuthInfo.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// Sets a field that authentication objects of the type of `info` have for themselves; false when
/// `name` is none. Throws UsageError for a value that it does not take.
bool setAuthField(AuthInfo& info, const std::string& name, const JsonPlace& value);

/// "pin", "biometric", "authKey" or "external".
AuthType authTypeField(const JsonPlace& value);

}  // namespace tovi
