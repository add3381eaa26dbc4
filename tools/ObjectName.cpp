#include "tools/ObjectName.h"

#include <charconv>

#include "tools/Failure.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

ObjectName parseObjectName(const std::string& text) {
    ObjectName name;
    name.isAuth = text.rfind("auth:", 0) == 0;
    const std::string digits = name.isAuth ? text.substr(5) : text;
    const char* end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, name.number);
    if (digits.empty() || rest != end || error != std::errc{} ||
        (name.isAuth && name.number >= noReference)) {
        throw UsageError("'" + text + "' is neither a record number nor auth:REF");
    }
    return name;
}

}  // namespace tovi
