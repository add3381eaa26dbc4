#include "tests/fidelity/IndependentDecoder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "tests/support/Der.h"

namespace tovi::test {

namespace {

/// A file with these octets for as long as the object lives.
class TemporaryFile {
public:
    explicit TemporaryFile(const Blob& octets)
        : path_(testing::TempDir() + "tovi-record-" + std::to_string(getpid())) {
        std::ofstream out(path_, std::ios::binary);
        out.write(reinterpret_cast<const char*>(octets.data()),
                  static_cast<std::streamsize>(octets.size()));
    }
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

std::string quoted(const std::string& path) { return '\'' + path + '\''; }

/// What the command prints; throws with that when it fails.
std::string outputOf(const std::string& command) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    std::string output;
    char part[4096];
    while (const std::size_t count = std::fread(part, 1, sizeof part, pipe))
        output.append(part, count);
    if (pclose(pipe) != 0) throw std::runtime_error(output);
    return output;
}

/// One line of the listing: two blanks a level, "name:label  type:UTF8_STR  value:Alice".
struct Line {
    std::size_t level = 0;
    std::string name;
    bool hasValue = false;
    std::string value = {};  ///< a BIT STRING with its length in front: "(3)20"
};

bool parseLine(std::string_view text, Line& line) {
    const std::size_t indent = text.find_first_not_of(' ');
    if (indent == text.npos || !text.substr(indent).starts_with("name:")) return false;
    text.remove_prefix(indent + 5);
    line = {indent / 2, std::string(text.substr(0, text.find("  type:")))};
    const std::size_t value = text.find("  value");
    if (value == text.npos) return true;
    const std::string_view rest = text.substr(value + 7);  // ":Alice" or "(3):20"
    const std::size_t colon = rest.find(':');
    line.hasValue = true;
    line.value = std::string(rest.substr(0, colon)) + std::string(rest.substr(colon + 1));
    return true;
}

/// The values by the names above them. "NULL" names what the listing repeats of a type: the element
/// of a list, a DEFAULT; the root has that name too.
DecodedValues valuesOf(const std::string& listing) {
    DecodedValues values;
    std::vector<std::string> names;
    std::istringstream in(listing);
    Line line;
    for (std::string text; std::getline(in, text);) {
        if (!parseLine(text, line) || line.level == 0) continue;
        names.resize(line.level - 1);
        names.push_back(line.name);
        if (!line.hasValue) continue;
        std::string path;
        bool isOfType = false;
        for (const std::string& name : names) {
            path += (path.empty() ? "" : ".") + name;
            isOfType = isOfType || name == "NULL";
        }
        if (!isOfType) values[path] = line.value;
    }
    return values;
}

}  // namespace

DecodedValues decodedIndependently(const std::string& type, const Blob& record) {
    const TemporaryFile file(record);
    return valuesOf(outputOf(quoted(TOVI_ASN1_DECODING) + " --strict " +
                             quoted(TOVI_TEST_DATA "/records-for-libtasn1.asn1") + ' ' +
                             quoted(file.path()) + " Records." + type));
}

std::vector<DecodedValues> decodedIndependently(const std::string& type,
                                                const std::vector<Blob>& records) {
    std::vector<DecodedValues> values(records.size());
    for (const auto& [name, value] :
         decodedIndependently("ListOf" + type, element(0x30, join(records)))) {
        const std::size_t point = name.find('.');  // "?12.common.label"
        values.at(std::stoul(name.substr(1)) - 1)[name.substr(point + 1)] = value;
    }
    return values;
}

}  // namespace tovi::test
