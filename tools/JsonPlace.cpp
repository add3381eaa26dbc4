#include "tools/JsonPlace.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/Failure.h"
#include "tools/Text.h"

namespace tovi {

void JsonPlace::fail(const std::string& expected) const { refuse("expected " + expected); }

void JsonPlace::refuse(const std::string& reason) const {
    throw UsageError(where_ + ": " + reason);
}

void JsonPlace::allow(std::initializer_list<const char*> names) const {
    if (!json_.is_object()) fail("an object");
    for (const auto& [name, value] : json_.items()) {
        const bool isKnown = std::find(names.begin(), names.end(), name) != names.end();
        if (!isKnown && name != remark) fail("no member '" + name + "'");
    }
}

void JsonPlace::expectArray() const {
    if (!json_.is_array()) fail("an array");
}

JsonPlace JsonPlace::at(std::size_t index) const {
    return {json_[index], fmt::format("{}[{}]", where_, index)};
}

bool JsonPlace::boolean() const {
    if (!json_.is_boolean()) fail("true or false");
    return json_.get<bool>();
}

std::string JsonPlace::text() const {
    if (!json_.is_string()) fail("a text");
    return json_.get<std::string>();
}

std::size_t JsonPlace::number(std::size_t most) const {
    const bool isCount =
        json_.is_number_unsigned() || (json_.is_number_integer() && json_.get<std::int64_t>() >= 0);
    if (!isCount || json_.get<std::uint64_t>() > most) {
        fail(fmt::format("a number from 0 to {}", most));
    }
    return json_.get<std::size_t>();
}

Blob JsonPlace::octets() const {
    const auto octets = fromHex(text());
    if (!octets) fail("octets in hexadecimal");
    return *octets;
}

}  // namespace tovi
