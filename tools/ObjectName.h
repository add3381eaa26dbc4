#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/AuthName.h"

namespace tovi {

/// How the command line names an object: a record number, auth:REF or auth:id=HEX.
struct ObjectName {
    std::uint64_t record = 0;
    std::optional<AuthName> auth = {};  ///< an authentication object, which has no record number
};

/// Throws UsageError for what is neither.
ObjectName parseObjectName(const std::string& text);

/// What the argument is called in help.
inline constexpr const char* objectNameHelp = "a record number, auth:REF or auth:id=HEX";

}  // namespace tovi
