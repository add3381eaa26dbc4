#pragma once

#include <string>
#include <vector>

#include "TestCommand.h"

namespace tovi::test {

/// A card folder with an empty application, made by `init`.
class NewCard {
public:
    explicit NewCard(const std::vector<std::string>& initOptions = {});

    std::string path() const { return folder_ / "card"; }
    /// Runs a command on the card with --json.
    Result run(std::vector<std::string> arguments, const Surroundings& surroundings = {}) const;
    /// `apply` of a list.
    Result apply(const Json& list, const std::vector<std::string>& options = {}) const;
    /// `list`.
    Json list() const;

private:
    TemporaryFolder folder_{TemporaryFolder::inMemory};
};

// Operations that write an object, with the fields that tests vary.
Json writePrivateKey(const std::string& id, const Json& more = Json::object());
Json writePublicKey(const std::string& id, const Json& more = Json::object());
Json writeData(const std::string& label, const Json& more = Json::object());
Json writePin(const std::string& authObjectId, unsigned reference,
              const Json& more = Json::object());

}  // namespace tovi::test
