#include "TestCommand.h"

#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tools/Command.h"

namespace tovi::test {

Json Result::json() const { return Json::parse(out); }

Result run(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
    std::istringstream in(surroundings.in);
    std::ostringstream out, err;
    Console console{in,
                    out,
                    err,
                    surroundings.colour,
                    surroundings.defaultCard,
                    surroundings.interrupted,
                    surroundings.showsProgress,
                    surroundings.askSecret};
    console.outIsTerminal = surroundings.outIsTerminal;
    console.pcsc = surroundings.pcsc;
    const int exit = runCommandLine(arguments, console);
    return {exit, out.str(), err.str()};
}

Result runJson(const std::string& card, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--json", "--card", sampleCard(card)});
    return run(arguments);
}

std::string sampleCard(const std::string& name) { return std::string(TOVI_TEST_CARDS "/") + name; }

namespace {

std::filesystem::path parentFolder(TemporaryFolder::Place place) {
    const std::filesystem::path memory = "/dev/shm";
    const bool isUsed = place == TemporaryFolder::inMemory && access(memory.c_str(), W_OK) == 0;
    return isUsed ? memory : std::filesystem::temp_directory_path();
}

}  // namespace

TemporaryFolder::TemporaryFolder(Place place) {
    std::string name = (parentFolder(place) / "tovi-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream contents;
    contents << in.rdbuf();
    if (!in) throw std::runtime_error(file.string() + " cannot be read");
    return contents.str();
}

void writeFile(const std::filesystem::path& file, const std::string& contents) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << contents;
}

}  // namespace tovi::test
