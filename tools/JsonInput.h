#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>

namespace tovi {

// What is read of JSON that somebody wrote. No description of a card comes near it.
inline constexpr std::size_t maxJsonOctets = std::size_t{32} << 20;
inline constexpr std::size_t maxJsonLevels = 100;
inline constexpr std::size_t maxJsonMembers = 200;  ///< of one object

/// Reads one JSON document, the whole of `in`. Throws UsageError, which begins with `name`, for
/// what is no JSON, goes beyond these limits, or gives a member of an object twice; Failure when
/// `in` cannot be read.
nlohmann::ordered_json readJson(std::istream& in, const std::string& name);

/// The same from a file; its path is the name.
nlohmann::ordered_json readJsonFile(const std::filesystem::path& file);

}  // namespace tovi
