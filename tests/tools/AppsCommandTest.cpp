#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestApplication.h"
#include "tools/CardPlan.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

/// A card with EF(DIR) and DFs.
struct Card {
    Card(const Json& directory, const Json& folders) {
        Json files =
            Json::array({{{"path", "3F00"}, {"structure", "df"}},
                         {{"path", "3F00/2F00"}, {"records", directory}, {"kind", "DIR"}}});
        for (const Json& one : folders) files.push_back(one);
        cardPlanFromJson({{"files", files}}).make(folder.path() / "card");
    }
    Result run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--card", folder / "card"});
        return test::run(arguments);
    }
    Json apps(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"--json", "apps"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments).json()["applications"];
    }

    TemporaryFolder folder;
};

Json df(const std::string& path, const std::string& aid = "") {
    Json json = {{"path", path}, {"structure", "df"}};
    if (!aid.empty()) json["aid"] = aid;
    return json;
}

constexpr const char* pkcs15 = "A000000063504B43532D3135";

TEST(Apps, ListsEveryEntryAndHowItIsSelected) {
    const Card card(Json::array({{{"aid", "A0000001"}, {"label", "Known"}, {"path", "3F004D01"}},
                                 {{"aid", pkcs15},
                                  {"path", "3F004D02"},
                                  {"ddo",
                                   {{"oid", "1.2.3"},
                                    {"odfPath", {{"efidOrPath", "5131"}}},
                                    {"tokenInfoPath", {{"efidOrPath", "5132"}}}}}},
                                 {{"aid", "A0000003"}, {"path", "3F004D03"}},
                                 {{"hex", "61024F00"}}}),
                    Json::array({df("3F00/4D01", "A0000001"), df("3F00/4D02")}));
    const Json apps = card.apps();
    ASSERT_EQ(apps.size(), 4u);
    EXPECT_EQ(apps[0].dump(),
              R"({"aid":"A0000001","label":"Known","path":"3F004D01","odfPath":null,)"
              R"("tokenInfoPath":null,"selectedBy":"aid","isChosen":false,)"
              R"("record":"61134F04A000000150054B6E6F776E51043F004D01","error":null})");
    EXPECT_EQ(apps[1]["selectedBy"], "path");
    EXPECT_EQ(apps[1]["isChosen"], true);
    EXPECT_EQ(apps[1]["odfPath"], "5131");
    EXPECT_EQ(apps[1]["tokenInfoPath"], "5132");
    EXPECT_EQ(apps[2]["selectedBy"], nullptr);
    EXPECT_EQ(apps[3]["aid"], nullptr);
    EXPECT_EQ(apps[3]["record"], "61024F00");
    EXPECT_EQ(apps[3]["error"], "no application identifier");
}

TEST(Apps, ShowsWhichOneOtherCommandsTake) {
    const Card card(Json::array({{{"aid", "A0000001"}, {"path", "3F004D01"}},
                                 {{"aid", "A0000002"}, {"path", "3F004D02"}}}),
                    Json::array({df("3F00/4D01", "A0000001"), df("3F00/4D02")}));
    const auto chosen = [&](const std::vector<std::string>& options) {
        const Json apps = card.apps(options);
        return apps[0]["isChosen"].dump() + " " + apps[1]["isChosen"].dump();
    };
    EXPECT_EQ(chosen({}), "false false");
    EXPECT_EQ(chosen({"--aid", "A0000001"}), "true false");
    EXPECT_EQ(chosen({"--path", "3F004D02"}), "false true");
    EXPECT_EQ(chosen({"--path", "4D02"}), "false true");
}

TEST(Apps, AddsTheOneThatTheDirectoryDoesNotName) {
    const Card card(Json::array(), Json::array({df("3F00/4D01", pkcs15)}));
    const Json apps = card.apps();
    ASSERT_EQ(apps.size(), 1u);
    EXPECT_EQ(apps[0]["aid"], pkcs15);
    EXPECT_EQ(apps[0]["path"], "3F004D01");
    EXPECT_EQ(apps[0]["selectedBy"], "aid");
    EXPECT_EQ(apps[0]["record"], nullptr);
    EXPECT_EQ(card.apps({"--path", "3F004D01"})[0]["selectedBy"], "path");
}

TEST(Apps, FindsNoneOnACardThatHasNone) {
    EXPECT_EQ(runJson("no-application", {"apps"}).json().dump(), R"({"applications":[]})");
    const Result text = run({"--card", sampleCard("no-application"), "apps"});
    EXPECT_EQ(text.exit, 0);
    EXPECT_EQ(text.out, "no applications\n");
}

TEST(Apps, PrintsALineEach) {
    const Result result = run({"--card", sampleCard("in-ef-dir"), "apps"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_THAT(result.out, HasSubstr("*  A000000063504B43532D3135  3F004D00  path"));
}

TEST(Apps, EscapesLabelsThatPlayTricks) {
    const Card card(
        Json::array({{{"aid", "A0000001"}, {"label", "a\x1B[2Jb"}, {"path", "3F004D01"}}}),
        Json::array());
    EXPECT_EQ(card.run({"apps"}).out.find('\x1B'), std::string::npos);
    EXPECT_THAT(card.run({"apps"}).out, HasSubstr("nothing"));
}

TEST(Apps, FailsWhereTheDirectoryIsThereAndCannotBeRead) {
    const TemporaryFolder folder;
    cardPlanFromJson(Json::parse(R"({"files": [{"path": "3F00", "structure": "df"},
        {"path": "3F00/2F00", "size": 10, "read": "never"}]})"))
        .make(folder.path() / "card");
    const Result result = run({"--json", "--card", folder / "card", "apps"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()["error"]["code"], 0x16982);
}

// ---- other commands follow what EF(DIR) says ----

/// TokenInfo and ODF have changed places with each other.
Card movedCard() {
    const Json ddo = {{"oid", "1.2.3"},
                      {"odfPath", {{"efidOrPath", "5032"}}},
                      {"tokenInfoPath", {{"efidOrPath", "3F0050155031"}}}};
    return Card(
        Json::array({{{"aid", pkcs15}, {"path", "3F005015"}, {"ddo", ddo}}}),
        Json::array({df("3F00/5015", pkcs15),
                     {{"path", "3F00/5015/5031"},
                      {"size", 200},
                      {"kind", "TokenInfo"},
                      {"records",
                       {{{"version", 0}, {"serialNumber", "77"}, {"tokenflags", Json::array()}}}}},
                     {{"path", "3F00/5015/5032"},
                      {"size", 64},
                      {"kind", "ODF"},
                      {"records", {{{"dataObjects", {{"path", {{"efidOrPath", "4408"}}}}}}}}},
                     {{"path", "3F00/5015/4408"},
                      {"size", 200},
                      {"kind", "DODF"},
                      {"records", {dataObject("found", {{"efidOrPath", "4F01"}})}}}}));
}

TEST(MovedFiles, AreFollowedByEveryCommand) {
    const Card card = movedCard();
    const Json list = card.run({"--json", "list"}).json();
    EXPECT_EQ(list["tokenInfo"]["serialNumber"], "77");
    EXPECT_EQ(list["dataObjects"][0]["label"], "found");
    EXPECT_EQ(card.run({"--json", "show", "1"}).json()["label"], "found");
    EXPECT_EQ(card.run({"--json", "token-info"}).exit, 0);
    const Json files = card.run({"--json", "dump"}).json()["files"];
    EXPECT_EQ(files[0]["path"], "3F0050155031");
    EXPECT_EQ(files[0]["segments"][0]["kind"], "record");
    EXPECT_EQ(files[1]["path"], "3F0050155032");
    EXPECT_EQ(files[1]["segments"][0]["kind"], "record");
    EXPECT_THAT(card.run({"check"}).out, testing::Not(HasSubstr("undecodable")));
    EXPECT_EQ(card.run({"capture", card.folder / "copy"}).exit, 0);
    EXPECT_EQ(run({"--json", "--card", card.folder / "copy", "list"}).json(), list);
}

TEST(MovedFiles, AreWrittenWhereTheyAre) {
    const Card card = movedCard();
    EXPECT_EQ(card.run({"token-info", "--label", "new label"}).exit, 0);
    EXPECT_EQ(card.run({"--json", "list"}).json()["tokenInfo"]["label"], "new label");
    EXPECT_THAT(readFile(card.folder / "card/3F00/5015/5031"), HasSubstr("new label"));
}

TEST(PathOption, ChoosesAnApplicationWithoutAnIdentifier) {
    const Json list = runJson("in-ef-dir", {"list", "--path", "3F004D00"}).json();
    EXPECT_EQ(list["rootPath"], "3F004D00");
    EXPECT_EQ(list, runJson("in-ef-dir", {"list"}).json());
    EXPECT_EQ(runJson("plain", {"list", "--path", "5015"}).exit, 0);
    EXPECT_EQ(runJson("plain", {"list", "--path", "4D00"}).exit, 1);
    for (const char* wrong :
         {"", "50", "501", "501500", "5G15", "3F0050155015501550155015501550155015"}) {
        EXPECT_EQ(runJson("plain", {"list", "--path", wrong}).exit, 2) << wrong;
    }
}

}  // namespace
}  // namespace tovi::test
