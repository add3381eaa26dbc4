#pragma once

#include <cstdint>
#include <string>

namespace tovi {

/// How the command line names an object: a record number, or auth:REF.
struct ObjectName {
    bool isAuth = false;
    std::uint64_t number = 0;  ///< record number, or reference of an authentication object
};

/// Throws UsageError for what is neither.
ObjectName parseObjectName(const std::string& text);

}  // namespace tovi
