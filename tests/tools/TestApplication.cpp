#include "TestApplication.h"

#include <fmt/format.h>

#include <stdexcept>

#include "tools/CardPlan.h"

namespace tovi::test {
namespace {

const std::string root = "3F00/5015/";

const Json alternatives = {{"PrKDF", "privateKeys"},
                           {"PuKDF", "publicKeys"},
                           {"TrustedPuKDF", "trustedPublicKeys"},
                           {"SKDF", "secretKeys"},
                           {"CDF", "certificates"},
                           {"TrustedCDF", "trustedCertificates"},
                           {"UsefulCDF", "usefulCertificates"},
                           {"DODF", "dataObjects"},
                           {"AODF", "authObjects"}};

Json indirect(const std::string& path) {
    return {{"indirect", {{"path", {{"efidOrPath", path}}}}}};
}

Json keyClass(const std::string& id) { return {{"iD", id}, {"usage", Json::array({"sign"})}}; }

Json object(const char* alternative, Json common, Json classes, Json types) {
    return {{alternative,
             {{"commonObjectAttributes", std::move(common)},
              {"classAttributes", std::move(classes)},
              {"typeAttributes", std::move(types)}}}};
}

Json labelled(const std::string& label) { return {{"label", label}}; }

}  // namespace

TestApplication::TestApplication() {
    const Json tokenInfo = {{"version", 0}, {"serialNumber", "01"}, {"tokenflags", Json::array()}};
    files_.push_back({{"path", "3F00"}, {"structure", "df"}});
    files_.push_back(
        {{"path", "3F00/5015"}, {"structure", "df"}, {"aid", "A000000063504B43532D3135"}});
    files_.push_back(
        {{"path", root + "5031"}, {"size", 200}, {"kind", "ODF"}, {"records", Json::array()}});
    files_.push_back({{"path", root + "5032"},
                      {"size", 200},
                      {"kind", "TokenInfo"},
                      {"records", Json::array({tokenInfo})}});
}

Json& TestApplication::file(const std::string& fid) {
    for (Json& file : files_) {
        if (file["path"] == root + fid) return file;
    }
    throw std::out_of_range(fid);
}

TestApplication& TestApplication::add(const std::string& kind, const std::string& fid, Json records,
                                      const Json& more) {
    Json description = {
        {"path", root + fid}, {"size", 2000}, {"kind", kind}, {"records", std::move(records)}};
    description.update(more);
    files_.push_back(std::move(description));
    const Json path = {{"path", {{"efidOrPath", fid}}}};
    Json entry;
    entry[alternatives[kind].get<std::string>()] = path;
    file("5031")["records"].push_back(entry);
    return *this;
}

TestApplication& TestApplication::addFile(const Json& description) {
    files_.push_back(description);
    return *this;
}

TestApplication& TestApplication::replace(const std::string& fid, Json records) {
    file(fid)["records"] = std::move(records);
    return *this;
}

TestApplication& TestApplication::resize(const std::string& fid, std::size_t octets) {
    file(fid)["size"] = octets;
    return *this;
}

Result TestApplication::run(std::vector<std::string> arguments) {
    const TemporaryFolder folder;
    Json description;
    description["files"] = files_;
    cardPlanFromJson(description).make(folder.path() / "card");
    arguments.insert(arguments.begin(), {"--json", "--card", folder / "card"});
    return test::run(arguments);
}

std::vector<std::string> TestApplication::findings() {
    std::vector<std::string> findings;
    const auto text = [](const Json& value) { return value.is_null() ? "-" : value; };
    const Json document = run({"check"}).json();
    for (const Json& finding : document["findings"]) {
        findings.push_back(fmt::format("{} | {} | {} | {}", finding["kind"].get<std::string>(),
                                       text(finding["object"]).get<std::string>(),
                                       text(finding["file"]).get<std::string>(),
                                       finding["message"].get<std::string>()));
    }
    return findings;
}

Json privateKey(const std::string& id, const std::string& path, const std::string& authId) {
    Json common = labelled("key " + id);
    if (!authId.empty()) common["authId"] = authId;
    return object("privateRSAKey", std::move(common), keyClass(id),
                  {{"value", indirect(path)}, {"modulusLength", 2048}});
}

Json publicKey(const std::string& id, const std::string& path) {
    return object("publicRSAKey", labelled("key " + id), keyClass(id),
                  {{"value", indirect(path)}, {"modulusLength", 2048}});
}

Json certificate(const std::string& id, const std::string& path) {
    return object("x509Certificate", labelled("certificate " + id), {{"iD", id}},
                  {{"value", indirect(path)}});
}

Json secretKey(const std::string& id, const std::string& path) {
    return object("genericSecretKey", labelled("key " + id), keyClass(id),
                  {{"value", indirect(path)}});
}

Json dataObject(const std::string& label, const Json& place) {
    const Json value = {{"indirect", {{"path", place}}}};
    return object("opaqueDO", labelled(label), {{"applicationName", "test"}}, value);
}

Json pin(const std::string& authObjectId, unsigned reference, const std::string& path) {
    Json types = {{"pinFlags", Json::array()},
                  {"pinType", "bcd"},
                  {"minLength", 4},
                  {"storedLength", 8},
                  {"pinReference", reference}};
    if (!path.empty()) types["path"] = {{"efidOrPath", path}};
    return object("pin", labelled("PIN " + authObjectId), {{"authId", authObjectId}},
                  std::move(types));
}

}  // namespace tovi::test
