#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// What a new application is made of.
struct NewApplication {
    std::string label;         ///< of the token; empty: none
    std::string manufacturer;  ///< manufacturerID; empty: none
    Blob serial;
    Blob aid;
    std::size_t fileSize = 0;  ///< octets of each directory file
};

/// The description of a card with an empty application at 3F00/5015, as cardPlanFromJson takes it:
/// EF(DIR), EF(ODF), EF(TokenInfo), and the nine directory files 4401 to 4409.
nlohmann::ordered_json describeEmptyApplication(const NewApplication& application);

}  // namespace tovi
