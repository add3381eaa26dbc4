#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tovi/card/IPcscService.h"

namespace tovi {
class Secret;
}

namespace tovi::test {

using Json = nlohmann::ordered_json;

/// What a call of the command left behind.
struct Result {
    int exit = -1;
    std::string out;
    std::string err;

    /// `out` as the one JSON document that it has to be.
    Json json() const;
};

/// What a call finds around it besides its arguments.
struct Surroundings {
    std::string in = {};
    std::string defaultCard = {};  ///< TOVI_CARD
    bool colour = false;
    const std::atomic<bool>* interrupted = nullptr;
    bool showsProgress = false;
    std::function<bool(const std::string&, Secret&)> askSecret = {};
    bool outIsTerminal = false;
    std::function<std::shared_ptr<IPcscService>()> pcsc = makePcscService;
};

/// Runs the command in this process.
Result run(const std::vector<std::string>& arguments, const Surroundings& surroundings = {});

/// Runs `tovi --json --card CARD ARGUMENTS` on a sample card.
Result runJson(const std::string& card, std::vector<std::string> arguments);

/// The folder of a sample card.
std::string sampleCard(const std::string& name);

/// A folder of the test's own, removed at its end.
class TemporaryFolder {
public:
    /// Where the system has files in memory, for tests that write a lot; on its disk otherwise.
    enum Place { onDisk, inMemory };
    explicit TemporaryFolder(Place place = onDisk);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string operator/(const std::string& name) const { return (path_ / name).string(); }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& contents);

}  // namespace tovi::test
