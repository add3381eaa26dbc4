#include "tools/ObjectName.h"

#include <charconv>

#include "tools/Failure.h"

namespace tovi {
namespace {

constexpr std::string_view authPrefix = "auth:";

std::optional<ObjectName> parseRecord(std::string_view digits) {
    ObjectName name;
    const char* end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, name.record);
    if (digits.empty() || rest != end || error != std::errc{}) return std::nullopt;
    return name;
}

std::optional<ObjectName> parseAuth(std::string_view text) {
    const auto auth = parseAuthName(text);
    if (!auth) return std::nullopt;
    return ObjectName{0, auth};
}

}  // namespace

ObjectName parseObjectName(const std::string& text) {
    const std::string_view view = text;
    const bool isAuth = view.substr(0, authPrefix.size()) == authPrefix;
    const auto name = isAuth ? parseAuth(view.substr(authPrefix.size())) : parseRecord(view);
    if (!name) {
        throw UsageError("'" + text + "' is neither a record number nor auth:REF or auth:id=HEX");
    }
    return *name;
}

}  // namespace tovi
