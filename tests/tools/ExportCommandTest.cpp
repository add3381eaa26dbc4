#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "TestApplication.h"
#include "tools/CardPlan.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

Json file(const std::string& path, const Json& more) {
    Json description = {{"path", "3F00/5015/" + path}};
    description.update(more);
    return description;
}

Json octets(const std::string& hex) { return {{"records", Json::array({{{"hex", hex}}})}}; }

/// Records 1 to 3 are data objects, in files of their own or in a shared one.
TestApplication dataObjects() {
    TestApplication card;
    card.add("DODF", "4408",
             Json::array({dataObject("whole", {{"efidOrPath", "4F01"}}),
                          dataObject("part", {{"efidOrPath", "4F01"}, {"index", 2}, {"length", 3}}),
                          dataObject("rest", {{"efidOrPath", "3F0050154F01"}, {"index", 4}})}));
    card.addFile(file("4F01", octets("30020102AABBCC0000")));
    return card;
}

TEST(Export, WritesTheOctetsOfTheWholeFile) {
    TestApplication card = dataObjects();
    const Json json = card.run({"export", "1"}).json();
    EXPECT_EQ(json.dump(), R"({"recordNumber":1,"path":"4F01","index":0,"length":9,)"
                           R"("value":"30020102AABBCC0000"})");
}

TEST(Export, GoesByIndexAndLengthOfThePath) {
    TestApplication card = dataObjects();
    const Json part = card.run({"export", "2"}).json();
    EXPECT_EQ(part["value"], "0102AA");
    EXPECT_EQ(part["index"], 2);
    EXPECT_EQ(part["length"], 3);
    EXPECT_EQ(card.run({"export", "3"}).json()["value"], "AABBCC0000") << "to the end";
}

TEST(Export, CutsPaddingBehindTheFirstElementWhereItIsToldTo) {
    TestApplication card = dataObjects();
    EXPECT_EQ(card.run({"export", "1", "--der"}).json()["value"], "30020102");
    const Result result = card.run({"export", "3", "--der"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("does not begin with a whole DER element"));
}

TEST(Export, TakesTheValueOutOfTheRecordWhereItStandsThere) {
    const Result result = runJson("rich", {"export", "9"});
    ASSERT_EQ(result.exit, 0) << result.err;
    const Json json = result.json();
    EXPECT_EQ(json["path"], nullptr);
    EXPECT_EQ(json["index"], nullptr);
    EXPECT_THAT(json["value"], testing::StartsWith("30"));
    EXPECT_THAT(json["value"].get<std::string>(), HasSubstr("C0FFEE5A5A5A"));
}

/// The same card in a folder, for calls without --json.
struct CardInFolder {
    explicit CardInFolder(const Json& more = Json::array()) {
        Json files = Json::parse(R"([
            {"path": "3F00", "structure": "df"},
            {"path": "3F00/5015", "structure": "df", "aid": "A000000063504B43532D3135"},
            {"path": "3F00/5015/5031", "size": 64, "kind": "ODF", "records": [
                {"dataObjects": {"path": {"efidOrPath": "4408"}}},
                {"authObjects": {"path": {"efidOrPath": "4409"}}}]},
            {"path": "3F00/5015/5032", "size": 64, "kind": "TokenInfo", "records": [
                {"version": 0, "serialNumber": "01", "tokenflags": []}]},
            {"path": "3F00/5015/4F01", "records": [{"hex": "00010D0A1AFF"}]},
            {"path": "3F00/5015/4F02", "read": "pin:1", "records": [{"hex": "AABB"}]}])");
        files.push_back({{"path", "3F00/5015/4408"}, {"size", 500}, {"kind", "DODF"}});
        Json guarded = dataObject("guarded", {{"efidOrPath", "4F02"}});
        guarded["opaqueDO"]["commonObjectAttributes"]["authId"] = "07";
        Json dangling = guarded;
        dangling["opaqueDO"]["commonObjectAttributes"]["authId"] = "08";
        files.back()["records"] =
            Json::array({dataObject("binary", {{"efidOrPath", "4F01"}}),
                         guarded,
                         dangling,
                         dataObject("missing", {{"efidOrPath", "4F03"}}),
                         dataObject("long", {{"efidOrPath", "4F01"}, {"index", 5}, {"length", 2}}),
                         dataObject("odd", {{"efidOrPath", "4F0102"}}),
                         {{"hex", "300100"}},
                         dataObject("unguarded", {{"efidOrPath", "4F02"}})});
        files.push_back({{"path", "3F00/5015/4409"},
                         {"size", 200},
                         {"kind", "AODF"},
                         {"records", {pin("07", 3)}}});
        for (const Json& one : more) files.push_back(one);
        cardPlanFromJson({{"files", files}}).make(path());
    }

    std::string path() const { return folder / "card"; }
    Result run(std::vector<std::string> arguments, const Surroundings& around = {}) const {
        arguments.insert(arguments.begin(), {"--card", path()});
        return test::run(arguments, around);
    }

    TemporaryFolder folder;
};

const std::string binary("\0\1\r\n\x1A\xFF", 6);

TEST(Export, WritesBinaryToStandardOutput) {
    const CardInFolder card;
    const Result result = card.run({"export", "1"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.out, binary);
    EXPECT_EQ(result.err, "");
}

TEST(Export, RefusesToWriteBinaryToATerminal) {
    const CardInFolder card;
    const Result result = card.run({"export", "1"}, {.outIsTerminal = true});
    EXPECT_EQ(result.exit, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("-o"));
    EXPECT_EQ(card.run({"--json", "export", "1"}, {.outIsTerminal = true}).exit, 0);
    EXPECT_EQ(card.run({"export", "1", "-o", card.folder / "out"}, {.outIsTerminal = true}).exit,
              0);
}

TEST(Export, WritesAFileWhole) {
    const CardInFolder card;
    writeFile(card.folder / "out", "something longer than the value");
    const Result result = card.run({"export", "1", "-o", card.folder / "out"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(readFile(card.folder / "out"), binary);
    EXPECT_THAT(result.out, HasSubstr("6 octets"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(card.folder.path()), {}), 2)
        << "the card and the file alone";
}

TEST(Export, LeavesAFileAloneWhenThereIsNoValue) {
    const CardInFolder card;
    writeFile(card.folder / "out", "old");
    EXPECT_EQ(card.run({"export", "4", "-o", card.folder / "out"}).exit, 1);
    EXPECT_EQ(readFile(card.folder / "out"), "old");
    EXPECT_EQ(card.run({"export", "1", "-o", card.folder / "no/such/out"}).exit, 1);
    EXPECT_EQ(card.run({"export", "1", "-o", ""}).exit, 2);
}

TEST(Export, TellsWhichPinGuardsAValue) {
    const CardInFolder card;
    const Result result = card.run({"--json", "export", "2"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()["error"]["code"], 0x16982);
    EXPECT_THAT(result.err, HasSubstr("PIN auth:3 'PIN 07' (authId 07) guards it"));
    EXPECT_THAT(card.run({"export", "3"}).err, HasSubstr("08 names no authentication object"));
    EXPECT_THAT(card.run({"export", "8"}).err, HasSubstr("names no PIN"));
}

TEST(Export, SaysWhatIsWrongWithThePlace) {
    const CardInFolder card;
    const Result missing = card.run({"--json", "export", "4"});
    EXPECT_EQ(missing.exit, 1);
    EXPECT_EQ(missing.json()["error"]["code"], 0x16A82);
    EXPECT_THAT(missing.err, HasSubstr("value file 4F03"));
    EXPECT_THAT(card.run({"export", "5"}).err, HasSubstr("ends at octet 7, the file has 6"));
    EXPECT_THAT(card.run({"export", "6"}).err, HasSubstr("names no file"));
    EXPECT_THAT(card.run({"export", "7"}).err, HasSubstr("does not tell where"));
}

TEST(Export, IsAboutObjectsWithAValue) {
    const CardInFolder card;
    EXPECT_THAT(card.run({"export", "0"}).err, HasSubstr("has no value")) << "TokenInfo";
    const Result none = card.run({"export", "99"});
    EXPECT_EQ(none.exit, 1);
    EXPECT_THAT(none.err, HasSubstr("invalid"));
    EXPECT_EQ(card.run({"export", "auth:3"}).exit, 2);
    EXPECT_EQ(card.run({"export", "certificate"}).exit, 2);
    EXPECT_EQ(card.run({"export"}).exit, 2);
}

TEST(Export, TellsValuesThatLieElsewhere) {
    Json url = dataObject("url", {});
    url["opaqueDO"]["typeAttributes"] = {{"indirect", {{"url", {{"url", "http://x"}}}}}};
    TestApplication card;
    card.add("DODF", "4408", Json::array({url}));
    const Result result = card.run({"export", "1"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("URL"));
}

}  // namespace
}  // namespace tovi::test
