#pragma once

#include <string>

#include "TestCommand.h"

namespace tovi::test {

/// A card folder with one application at 3F00/5015, made of JSON records.
class TestApplication {
public:
    TestApplication();

    /// Adds a directory file that EF(ODF) names. `more` are further members of its description.
    TestApplication& add(const std::string& kind, const std::string& fid, Json records,
                         const Json& more = Json::object());
    /// Adds a file that EF(ODF) does not name.
    TestApplication& addFile(const Json& description);
    /// Replaces the records of EF(TokenInfo) or EF(ODF), 5032 or 5031.
    TestApplication& replace(const std::string& fid, Json records);
    /// Gives one of these two another size.
    TestApplication& resize(const std::string& fid, std::size_t octets);

    /// Makes the card and runs a command on it with --json.
    Result run(std::vector<std::string> arguments);
    /// "kind object file message" of each finding of `check`.
    std::vector<std::string> findings();

private:
    Json& file(const std::string& fid);

    Json files_ = Json::array();
};

// Records with the members that tests vary.
Json privateKey(const std::string& id, const std::string& path, const std::string& authId = "");
Json publicKey(const std::string& id, const std::string& path);
Json certificate(const std::string& id, const std::string& path);
Json secretKey(const std::string& id, const std::string& path);
/// `place` is a Path: {"efidOrPath", "index", "length"}.
Json dataObject(const std::string& label, const Json& place);
Json pin(const std::string& authObjectId, unsigned reference, const std::string& path = "");

}  // namespace tovi::test
