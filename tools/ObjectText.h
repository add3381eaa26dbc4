#pragma once

#include <string>
#include <vector>

#include "tools/Model.h"
#include "tools/TextTable.h"

namespace tovi {

/// The whole model for people: TokenInfo, then a table for each kind that has objects.
std::string modelText(const PKCS15Container& model, const Style& style);

/// The objects of one kind, as cells for people; the columns depend on the kind.
struct ObjectTable {
    const ListKind* kind;
    std::vector<std::string> headings;           ///< "record" and "label" first
    std::vector<std::vector<std::string>> rows;  ///< in the order of the list; UTF-8
};

/// A table for each kind, in the order of EF(ODF)'s alternatives, key containers before the
/// authentication objects.
std::vector<ObjectTable> objectTables(const PKCS15Container& model);

/// A value of an object's JSON in words; "" for null.
std::string jsonText(const Json& value);

/// TokenInfo for people, one field a line.
std::string tokenInfoText(const PKCS15TokenInfo& info, const Style& style);

/// All fields of an object's JSON for people, one a line; those without a value are left out.
std::string fieldsText(const Json& object, const Style& style);

/// "3F0050154B01", with "[16+256]" behind it when the value is a part of the file.
std::string pathText(const PKCS15Path& path);

}  // namespace tovi
