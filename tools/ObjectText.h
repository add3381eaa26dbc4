#pragma once

#include <string>

#include "tools/Model.h"
#include "tools/TextTable.h"

namespace tovi {

/// The whole model for people: TokenInfo, then a table for each kind that has objects.
std::string modelText(const PKCS15Container& model, const Style& style);

/// TokenInfo for people, one field a line.
std::string tokenInfoText(const PKCS15TokenInfo& info, const Style& style);

/// All fields of an object's JSON for people, one a line; those without a value are left out.
std::string fieldsText(const Json& object, const Style& style);

/// "3F0050154B01", with "[16+256]" behind it when the value is a part of the file.
std::string pathText(const PKCS15Path& path);

}  // namespace tovi
