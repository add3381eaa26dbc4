#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>

#include "TestApplication.h"
#include "tools/CardPlan.h"
#include "tools/Text.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

/// All cards of which anything can be read.
std::vector<std::string> sampleCards() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(TOVI_TEST_CARDS)) {
        const std::string name = entry.path().filename().string();
        const bool isReadable = name != "broken-card" && name != "no-application";
        if (entry.is_directory() && name != "descriptions" && isReadable) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Arguments that choose the application on a sample card.
std::vector<std::string> chosen(const std::string& name) {
    if (name != "card-a") return {};
    return {"--aid", "A000000177504B43532D3135"};
}

Result runOn(const std::string& folder, const std::string& name,
             const std::vector<std::string>& command) {
    std::vector<std::string> arguments = {"--json", "--card", folder};
    for (const std::string& argument : chosen(name)) arguments.push_back(argument);
    arguments.insert(arguments.end(), command.begin(), command.end());
    return run(arguments);
}

class Captured : public testing::TestWithParam<std::string> {
protected:
    void capture(const std::vector<std::string>& options) {
        std::vector<std::string> command = {"capture", copy_};
        command.insert(command.end(), options.begin(), options.end());
        result_ = runOn(sampleCard(GetParam()), GetParam(), command);
        ASSERT_EQ(result_.exit, 0) << result_.err;
    }
    Result original(const std::vector<std::string>& command) const {
        return runOn(sampleCard(GetParam()), GetParam(), command);
    }
    Result copy(const std::vector<std::string>& command) const {
        return runOn(copy_, GetParam(), command);
    }

    TemporaryFolder folder_{TemporaryFolder::inMemory};
    std::string copy_ = folder_ / "copy";
    Result result_;
};

TEST_P(Captured, IsListedAsTheOriginal) {
    capture({});
    EXPECT_EQ(copy({"list"}).exit, original({"list"}).exit);
    EXPECT_EQ(copy({"list"}).out, original({"list"}).out);
}

TEST_P(Captured, IsDumpedAsTheOriginal) {
    capture({"--values"});
    const Json expected = original({"dump"}).json(), found = copy({"dump"}).json();
    // A file that the card refuses is there all the same, and refuses as well.
    EXPECT_EQ(found.dump(1), expected.dump(1));
}

TEST_P(Captured, IsReadableByEveryCommand) {
    capture({"--values"});
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"check"}, {"apps"}, {"show", "0"}, {"token-info"}}) {
        EXPECT_EQ(copy(command).exit, original(command).exit) << command[0];
    }
    EXPECT_EQ(copy({"apps"}).out, original({"apps"}).out);
}

/// What blanking changes in a list of the model, taken out of it.
void forget(Json& value) {
    constexpr std::array blanked = {
        "label",           "labelHex", "serialNumber",  "manufacturerID",
        "applicationName", "id",       "authId",        "authObjectId",
        "authKeyId",       "cha",      "lastPinChange", "lastChange",
        "algorithmName"};
    if (value.is_object()) {
        for (const char* name : blanked) {
            if (!value.contains(name) || !value[name].is_string()) continue;
            const std::string text = value[name].get<std::string>();
            // Identifiers and octets keep their length.
            value[name] = std::string(name) == "id" ? std::to_string(text.size()) : "";
        }
    }
    if (value.is_structured()) {
        for (Json& inner : value) forget(inner);
    }
}

TEST_P(Captured, KeepsTheStructureWhenItIsRedacted) {
    capture({"--redact", "--values"});
    Json expected = original({"list"}).json(), found = copy({"list"}).json();
    forget(expected);
    forget(found);
    EXPECT_EQ(found.dump(1), expected.dump(1));
    const auto pieces = [](Json dump) {
        std::vector<std::string> all;
        if (!dump.contains("files")) return all;
        for (const Json& file : dump["files"]) {
            for (const Json& segment : file["segments"]) {
                all.push_back(file["path"].dump() + segment["kind"].dump() +
                              segment["record"].dump() + segment["offset"].dump() +
                              segment["length"].dump() + segment["isValid"].dump());
            }
        }
        return all;
    };
    EXPECT_EQ(pieces(copy({"dump"}).json()), pieces(original({"dump"}).json()));
}

/// Texts of four characters or more that stand in a list.
void collect(const Json& value, std::vector<std::string>& texts) {
    constexpr std::array secret = {"labelHex", "serialNumber", "applicationName", "manufacturerID"};
    for (const auto& [name, inner] : value.items()) {
        const bool isSecret = std::find(secret.begin(), secret.end(), name) != secret.end();
        if (inner.is_structured()) collect(inner, texts);
        if (!isSecret || !inner.is_string()) continue;
        const std::string text = inner.get<std::string>();
        const auto octets = fromHex(text);
        texts.push_back(octets ? std::string(octets->begin(), octets->end()) : text);
    }
}

TEST_P(Captured, HoldsNoTextOfTheOriginalWhenItIsRedacted) {
    capture({"--redact", "--values"});
    const Result list = original({"list"});
    std::vector<std::string> texts;
    if (list.exit == 0) collect(list.json(), texts);
    for (const auto& entry : fs::recursive_directory_iterator(copy_)) {
        if (!entry.is_regular_file()) continue;
        const std::string contents = readFile(entry.path());
        for (const std::string& text : texts) {
            if (text.size() < 4) continue;
            EXPECT_EQ(contents.find(text), std::string::npos) << text << " in " << entry.path();
        }
    }
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, Captured, testing::ValuesIn(sampleCards()), testName);

// ---- the command ----

/// A card of JSON files in a folder.
struct CardInFolder {
    explicit CardInFolder(const Json& more) {
        Json files = Json::parse(R"([
            {"path": "3F00", "structure": "df"},
            {"path": "3F00/5015", "structure": "df", "aid": "A000000063504B43532D3135"},
            {"path": "3F00/5015/5031", "size": 64, "kind": "ODF", "records": [
                {"privateKeys": {"path": {"efidOrPath": "4401"}}},
                {"dataObjects": {"path": {"efidOrPath": "4408"}}}]},
            {"path": "3F00/5015/5032", "size": 64, "kind": "TokenInfo", "records": [
                {"version": 0, "serialNumber": "01", "tokenflags": []}]}])");
        for (const Json& file : more) files.push_back(file);
        cardPlanFromJson({{"files", files}}).make(folder.path() / "card");
    }

    Result run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--card", folder / "card"});
        return test::run(arguments);
    }
    Result capture(std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"capture", folder / "copy"});
        return run(options);
    }
    Result onCopy(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--json", "--card", folder / "copy"});
        return test::run(arguments);
    }
    std::string file(const std::string& path) const { return readFile(folder / ("copy/" + path)); }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
    }

    TemporaryFolder folder;
};

Json directory(const std::string& fid, const std::string& kind, const Json& records) {
    return {{"path", "3F00/5015/" + fid}, {"size", 400}, {"kind", kind}, {"records", records}};
}

Json valueFile(const std::string& fid, const std::string& hex) {
    return {{"path", "3F00/5015/" + fid}, {"records", Json::array({{{"hex", hex}}})}};
}

Json twoObjects() {
    return Json::array({directory("4401", "PrKDF", Json::array({privateKey("01", "4B01")})),
                        directory("4408", "DODF",
                                  Json::array({dataObject("one", {{"efidOrPath", "4F01"}}),
                                               dataObject("two", {{"efidOrPath", "4F02"}})})),
                        valueFile("4B01", "30030C0141"),
                        valueFile("4F01", "00FF00FF416C69636500")});
}

TEST(Capture, ReadsFilesToTheirEnd) {
    Json files = twoObjects();
    files[1]["size"] = 3000;
    files[1]["records"].push_back({{"gap", 2000}});
    files[1]["records"].push_back({{"hex", "AB02AABB"}});
    const CardInFolder card(files);
    ASSERT_EQ(card.capture().exit, 0);
    const std::string contents = card.file("3F00/5015/4408");
    EXPECT_EQ(contents.size(), 3000u);
    EXPECT_THAT(contents.substr(2000), HasSubstr("\xAB\x02\xAA\xBB"));
}

TEST(Capture, TakesValueFilesWhenItIsToldTo) {
    const CardInFolder card(twoObjects());
    ASSERT_EQ(card.capture().exit, 0);
    EXPECT_FALSE(fs::exists(card.folder / "copy/3F00/5015/4F01"));
    fs::remove_all(card.folder / "copy");
    const Result result = card.capture({"--values"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(card.file("3F00/5015/4F01"), std::string("\0\xFF\0\xFF"
                                                       "Alice\0",
                                                       10));
    EXPECT_THAT(result.err, HasSubstr("warning: EF 3F0050154B01 holds the value of a private"));
    EXPECT_THAT(result.err, HasSubstr("not captured: EF 3F0050154F02"));
    EXPECT_EQ(card.onCopy({"export", "2"}).json()["value"], "00FF00FF416C69636500");
}

TEST(Capture, BlanksValuesAndWarnsOfNoneWhenItRedacts) {
    const CardInFolder card(twoObjects());
    const Result result = card.capture({"--values", "--redact"});
    EXPECT_THAT(result.err, Not(HasSubstr("warning")));
    EXPECT_EQ(card.file("3F00/5015/4F01"), std::string("\0\xFF\0\xFF\0\0\0\0\0\0", 10));
    EXPECT_EQ(card.file("3F00/5015/4B01"), "\x30\x03\x0C\x01x");
}

TEST(Capture, TellsOfFilesThatTheCardRefuses) {
    Json files = twoObjects();
    files[0]["read"] = "pin:1";
    const CardInFolder card(files);
    const Result result = card.capture();
    EXPECT_EQ(result.exit, 0);
    EXPECT_THAT(result.err, HasSubstr("not captured: EF(PrKDF) 3F0050154401: READ BINARY refused"));
    const std::string text = readFile(card.folder / "copy/CARD");
    EXPECT_THAT(text, HasSubstr("# EF(PrKDF) 3F0050154401: not captured"));
    EXPECT_THAT(text, HasSubstr("read=never"));
    EXPECT_EQ(card.onCopy({"list"}).exit, 1) << "as on the card";
}

TEST(Capture, TellsOfFilesThatAreNotThere) {
    Json files = twoObjects();
    files.erase(0);
    const CardInFolder card(files);
    const Result result = card.capture();
    EXPECT_EQ(result.exit, 0);
    EXPECT_THAT(result.err, HasSubstr("not captured: EF(PrKDF) 3F0050154401"));
    EXPECT_THAT(result.err, Not(HasSubstr("UnusedSpace"))) << "which no card needs";
    EXPECT_FALSE(fs::exists(card.folder / "copy/3F00/5015/4401"));
}

TEST(Capture, PrintsOneDocument) {
    Json files = twoObjects();
    files[0]["read"] = "never";
    const CardInFolder card(files);
    const Result result =
        test::run({"--json", "--card", card.folder / "card", "capture", card.folder / "copy"});
    const Json json = result.json();
    EXPECT_EQ(json["card"], card.folder / "copy");
    EXPECT_EQ(json["redacted"], false);
    ASSERT_EQ(json["files"].size(), 4u);
    EXPECT_EQ(json["files"][0].dump(), R"({"name":"TokenInfo","path":"3F0050155032",)"
                                       R"("structure":"transparent","size":64,"records":null,)"
                                       R"("error":null})");
    EXPECT_EQ(json["files"][2]["error"]["code"], 0x16982);
}

TEST(Capture, RefusesAFolderThatIsThere) {
    const CardInFolder card(twoObjects());
    fs::create_directory(card.folder / "copy");
    const Result result = card.capture();
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("exists already"));
    EXPECT_TRUE(fs::is_empty(card.folder / "copy"));
}

TEST(Capture, LeavesNothingWhenItFails) {
    const CardInFolder card(twoObjects());
    const std::atomic<bool> interrupted = true;
    const Result result =
        test::run({"--card", card.folder / "card", "capture", card.folder / "copy"},
                  {.interrupted = &interrupted});
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(card.entries(), 1u) << "the card alone";
    EXPECT_EQ(test::run({"--card", card.folder / "none", "capture", card.folder / "copy"}).exit, 1);
    EXPECT_EQ(card.entries(), 1u);
}

TEST(Capture, OfACardWithoutAnythingFails) {
    const TemporaryFolder folder;
    cardPlanFromJson(Json::parse(R"({"files": [{"path": "3F00", "structure": "df"}]})"))
        .make(folder.path() / "card");
    const Result result = run({"--card", folder / "card", "capture", folder / "copy"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("Failed to select PKCS15 AID"));
    EXPECT_FALSE(fs::exists(folder / "copy"));
}

TEST(Capture, KeepsKeysAndCertificatesTogetherWhenItRedacts) {
    const std::string id = "0102030405060708", other = "53" + id;
    const CardInFolder card(Json::array({directory(
        "4401", "PrKDF", Json::array({privateKey(id, "4B01"), privateKey(other, "4B02")}))}));
    ASSERT_EQ(card.capture({"--redact"}).exit, 0);
    std::string file = card.file("3F00/5015/4401");
    EXPECT_EQ(file.find("\x01\x02\x03\x04\x05"), std::string::npos);
    EXPECT_NE(file.find(std::string("\0\0\0\0\0\0\0\1", 8)), std::string::npos);
    EXPECT_NE(file.find(std::string("S\0\0\0\0\0\0\0\1", 9)), std::string::npos);
}

}  // namespace
}  // namespace tovi::test
