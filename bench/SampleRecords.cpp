#include "bench/SampleRecords.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tovi/platform/RecordScanner.h"

namespace tovi::bench {
namespace {

ASN1::Octets fromHex(std::string_view text) {
    ASN1::Octets octets;
    for (; text.size() >= 2; text.remove_prefix(2)) {
        std::uint8_t octet = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + 2, octet, 16);
        if (error != std::errc{} || end != text.data() + 2)
            throw std::runtime_error("no hex digits");
        octets.push_back(octet);
    }
    return octets;
}

/// Lines "name|type|octets|remark".
void addSamples(const std::filesystem::path& file, std::vector<SampleRecord>& records) {
    std::ifstream in(file);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line.front() == '#') continue;
        std::istringstream columns(line);
        std::string name, type, hex;
        std::getline(columns, name, '|');
        std::getline(columns, type, '|');
        std::getline(columns, hex, '|');
        records.push_back({name, type, fromHex(hex)});
    }
}

/// The type of the records in a file named "card-a-prkdf" and the like; empty: none of ours.
std::string_view typeInFile(std::string_view name) {
    static constexpr std::pair<std::string_view, std::string_view> types[] = {
        {"prkdf", "PrivateKeyType"},    {"pukdf", "PublicKeyType"}, {"skdf", "SecretKeyType"},
        {"cdf", "CertificateType"},     {"dodf", "DataType"},       {"aodf", "AuthenticationType"},
        {"odf", "PKCS15Objects"},       {"dir", "DIRRecord"},       {"tokeninfo", "TokenInfo"},
        {"unusedspace", "UnusedSpace"},
    };
    for (const auto& [kind, type] : types)
        if (name.find(kind) != name.npos) return type;
    return {};
}

void addFile(const std::filesystem::path& file, std::vector<SampleRecord>& records) {
    const std::string name = file.stem().string();
    std::ifstream in(file);
    std::string hex;
    for (std::string line; in >> line;) hex += line;
    const ASN1::Octets contents = fromHex(hex);
    std::size_t count = 0;
    for (const FileEntry& entry : scanRecords(contents)) {
        if (entry.kind != FileEntry::Kind::record) continue;
        const ASN1::View record = ASN1::View(contents).subspan(entry.offset, entry.length);
        records.push_back({name + "[" + std::to_string(count++) + "]",
                           std::string(typeInFile(name)), ASN1::Octets(record)});
    }
}

}  // namespace

std::vector<SampleRecord> sampleRecords(const std::string& folder) {
    std::vector<SampleRecord> records;
    addSamples(std::filesystem::path(folder) / "pkcs15-samples.txt", records);
    std::vector<std::filesystem::path> files;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(folder) / "vectors"))
        if (entry.path().extension() == ".hex") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) addFile(file, records);
    return records;
}

}  // namespace tovi::bench
