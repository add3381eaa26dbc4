#include "tests/pkcs15/Records.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/asn1/TestTools.h"
#include "tovi/pkcs15/Module.h"

namespace pkcs15test {

namespace {

using asn1test::hex;

const ASN1::Type* typeNamed(const std::string& name) {
    const ASN1::Type* type = PKCS15::getModule().find(name);
    if (!type) throw std::runtime_error("no type " + name);
    return type;
}

/// What the records of a kind of file are.
const ASN1::Type* typeOfFile(const std::string& kind) {
    static const std::pair<const char*, const char*> types[] = {
        {"ODF", "PKCS15Objects"},   {"PrKDF", "PrivateKeyType"},    {"PuKDF", "PublicKeyType"},
        {"CDF", "CertificateType"}, {"DODF", "DataType"},           {"AODF", "AuthenticationType"},
        {"TokenInfo", "TokenInfo"}, {"UnusedSpace", "UnusedSpace"}, {"DIR", "DIRRecord"},
    };
    for (const auto& [file, type] : types)
        if (kind == file) return typeNamed(type);
    throw std::runtime_error("no kind " + kind);
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("cannot open " + path.string());
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace

std::vector<Sample> readSamples() {
    std::istringstream in(contentOf(TOVI_TEST_DATA "/pkcs15-samples.txt"));
    std::vector<Sample> samples;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream row(line);
        std::string name, type, octets;
        std::getline(row, name, '|');
        std::getline(row, type, '|');
        std::getline(row, octets, '|');
        samples.push_back({name, typeNamed(type), hex(octets)});
    }
    return samples;
}

ASN1::Octets sample(const std::string& name) {
    static const std::vector<Sample> samples = readSamples();
    for (const Sample& candidate : samples)
        if (candidate.name == name) return candidate.octets;
    throw std::runtime_error("no sample " + name);
}

std::vector<Vector> readVectors() {
    std::vector<Vector> vectors;
    for (const auto& entry : std::filesystem::directory_iterator(TOVI_TEST_DATA "/vectors")) {
        if (entry.path().extension() != ".json") continue;
        std::filesystem::path octets = entry.path();
        octets.replace_extension(".hex");
        const auto facts = nlohmann::json::parse(contentOf(entry.path()));
        vectors.push_back(
            {facts.at("name"), typeOfFile(facts.at("kind")), hex(contentOf(octets)), facts});
    }
    std::ranges::sort(vectors, {}, &Vector::name);
    return vectors;
}

}  // namespace pkcs15test
