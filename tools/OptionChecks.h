#pragma once

#include <string>

namespace tovi {

// Checks of options, as CLI11 takes them: empty when the value is good, else what is expected.

std::string checkedAid(const std::string& text);
/// The path of a DF, from 3F00 on or below it.
std::string checkedPath(const std::string& text);
/// A label or another name of the token.
std::string checkedLabel(const std::string& text);
std::string checkedSerial(const std::string& text);
/// A file identifier.
std::string checkedFid(const std::string& text);
/// The name of an authentication object, which may stand behind "auth:".
std::string checkedLogin(const std::string& text);
/// A whole number of seconds, or nothing.
std::string checkedSeconds(const std::string& text);
std::string checkedNotEmpty(const std::string& text);

}  // namespace tovi
