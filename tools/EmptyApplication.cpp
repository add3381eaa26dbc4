#include "tools/EmptyApplication.h"

#include <fmt/format.h>

#include "tools/ApplicationFiles.h"
#include "tools/Text.h"

namespace tovi {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* folder = "3F00/5015";
constexpr const char* folderPath = "3F005015";
constexpr unsigned firstDirectoryFile = 0x4401;
constexpr std::size_t directoryFiles = 9;

// The entries of an empty application are known; what is left is room for longer texts.
constexpr std::size_t smallFile = 128;
constexpr std::size_t tokenInfoRoom = 1024;

constexpr const char* odfAlternatives[directoryFiles] = {
    "privateKeys",         "publicKeys",         "trustedPublicKeys", "secretKeys", "certificates",
    "trustedCertificates", "usefulCertificates", "dataObjects",       "authObjects"};

std::string fileIdentifier(std::size_t choice) {
    return fmt::format("{:04X}", firstDirectoryFile + choice);
}

Json tokenInfo(const NewApplication& application) {
    Json value = {{"version", 0}, {"serialNumber", toHex(application.serial)}};
    if (!application.manufacturer.empty()) value["manufacturerID"] = application.manufacturer;
    if (!application.label.empty()) value["label"] = application.label;
    value["tokenflags"] = Json::array();
    return value;
}

Json odf() {
    Json entries = Json::array();
    for (std::size_t choice = 0; choice < directoryFiles; ++choice) {
        const Json path = {{"path", {{"efidOrPath", fileIdentifier(choice)}}}};
        entries.push_back({{odfAlternatives[choice], path}});
    }
    return entries;
}

Json file(const std::string& path, std::size_t size, std::string_view kind, Json records) {
    return {{"path", path}, {"size", size}, {"kind", kind}, {"records", std::move(records)}};
}

std::string below(const char* fid) { return fmt::format("{}/{}", folder, fid); }

}  // namespace

Json describeEmptyApplication(const NewApplication& application) {
    const std::string aid = toHex(application.aid);
    const Json directoryEntry = {{"aid", aid}, {"path", folderPath}};
    Json files = Json::array();
    files.push_back({{"path", "3F00"}, {"structure", "df"}});
    files.push_back(file("3F00/2F00", smallFile, "DIR", Json::array({directoryEntry})));
    files.push_back({{"path", folder}, {"structure", "df"}, {"aid", aid}});
    files.push_back(file(below("5031"), smallFile, "ODF", odf()));
    files.push_back(
        file(below("5032"), tokenInfoRoom, "TokenInfo", Json::array({tokenInfo(application)})));
    for (std::size_t choice = 0; choice < directoryFiles; ++choice) {
        files.push_back(file(below(fileIdentifier(choice).c_str()), application.fileSize,
                             directoryFileKind(choice).name, Json::array()));
    }
    return {{"about", "path, structure, size, options"}, {"files", std::move(files)}};
}

}  // namespace tovi
