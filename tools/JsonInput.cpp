#include "tools/JsonInput.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <set>
#include <vector>

#include "tools/Failure.h"

namespace tovi {
namespace {

using Json = nlohmann::ordered_json;

/// All of a stream, but no more than one octet beyond the limit.
std::string textOf(std::istream& in, const std::string& name) {
    std::string text;
    std::array<char, 65536> part;
    while (in && text.size() <= maxJsonOctets) {
        in.read(part.data(), static_cast<std::streamsize>(part.size()));
        text.append(part.data(), static_cast<std::size_t>(in.gcount()));
    }
    if (in.bad() || (in.fail() && !in.eof())) {
        throw Failure(name + ": cannot be read", "tovi::readJson");
    }
    if (text.size() > maxJsonOctets) {
        throw UsageError(fmt::format("{}: more than {} octets", name, maxJsonOctets));
    }
    return text;
}

/// Looks at a document while it is parsed; what it refuses has not been stored yet.
class Limits {
public:
    bool operator()(int depth, Json::parse_event_t event, const Json& found) {
        if (depth > static_cast<int>(maxJsonLevels)) {
            throw UsageError(fmt::format("more than {} levels", maxJsonLevels));
        }
        if (event == Json::parse_event_t::object_start) names_.emplace_back();
        if (event == Json::parse_event_t::object_end) names_.pop_back();
        if (event == Json::parse_event_t::key) add(found.get_ref<const std::string&>());
        return true;
    }

private:
    void add(const std::string& name) {
        if (!names_.back().insert(name).second) {
            throw UsageError("member '" + name + "' stands twice in one object");
        }
        // Each further member is compared with all before it.
        if (names_.back().size() > maxJsonMembers) {
            throw UsageError(fmt::format("more than {} members in one object", maxJsonMembers));
        }
    }

    std::vector<std::set<std::string>> names_;  // of the objects that are open
};

}  // namespace

Json readJson(std::istream& in, const std::string& name) {
    const std::string text = textOf(in, name);
    Limits limits;
    try {
        return Json::parse(text, [&](int depth, Json::parse_event_t event, Json& found) {
            return limits(depth, event, found);
        });
    } catch (const Json::exception& exception) {
        throw UsageError(name + ": " + exception.what());
    } catch (const UsageError& error) {
        throw UsageError(name + ": " + error.what());
    }
}

Json readJsonFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw Failure(file.string() + ": cannot be read", "tovi::readJson");
    return readJson(in, file.string());
}

}  // namespace tovi
