#pragma once

#include <cstddef>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// A value within a JSON document that somebody wrote, and where it stands: what is expected of it
/// is asked for here, and refused by a UsageError that names the place.
class JsonPlace {
public:
    using Json = nlohmann::ordered_json;

    /// The member that an object may always have: a remark for people.
    static constexpr const char* remark = "about";

    /// `json` must outlive this object.
    JsonPlace(const Json& json, std::string where) : json_(json), where_(std::move(where)) {}

    /// Refuses the value: "files[1].size: expected EXPECTED".
    [[noreturn]] void fail(const std::string& expected) const;
    /// Refuses it for another reason than its form: "files[1].size: REASON".
    [[noreturn]] void refuse(const std::string& reason) const;
    /// Refuses what is no object, and members that are none of these.
    void allow(std::initializer_list<const char*> names) const;
    void expectArray() const;

    bool has(const std::string& name) const { return json_.contains(name); }
    /// A member that is there.
    JsonPlace at(const std::string& name) const { return {json_[name], where_ + "." + name}; }
    /// An element of an array.
    JsonPlace at(std::size_t index) const;
    std::size_t count() const { return json_.size(); }
    const Json& json() const { return json_; }
    const std::string& where() const { return where_; }

    bool isNull() const { return json_.is_null(); }
    bool boolean() const;
    std::string text() const;
    /// A number from 0 to `most`.
    std::size_t number(std::size_t most) const;
    /// Octets in hexadecimal.
    Blob octets() const;

private:
    const Json& json_;
    std::string where_;
};

}  // namespace tovi
