#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestApplication.h"
#include "tools/Text.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> namesIn(const Json& dump) {
    std::vector<std::string> names;
    for (const Json& file : dump["files"]) names.push_back(file["name"].get<std::string>());
    return names;
}

std::vector<std::string> kindsIn(const Json& file) {
    std::vector<std::string> kinds;
    for (const Json& segment : file["segments"]) kinds.push_back(segment["kind"]);
    return kinds;
}

TEST(Dump, ShowsEveryFileOfTheApplicationInTheOrderOfTheODF) {
    EXPECT_THAT(namesIn(runJson("card-b", {"dump"}).json()),
                ElementsAre("TokenInfo", "ODF", "AODF", "PrKDF", "PuKDF", "CDF", "DODF", "DODF",
                            "SKDF", "UnusedSpace"));
    EXPECT_THAT(namesIn(runJson("card-i", {"dump"}).json()),
                ElementsAre("TokenInfo", "ODF", "DODF"))
        << "a card need not have EF(UnusedSpace) and EF(DIR)";
    EXPECT_EQ(namesIn(runJson("plain", {"dump"}).json()).back(), "DIR");
}

TEST(Dump, LosesNoOctetOfAFile) {
    for (const char* card :
         {"rich", "gaps", "garbage", "card-b", "card-e", "card-g", "ff-filled", "wrapped-odf"}) {
        const Json dump = runJson(card, {"dump"}).json();
        ASSERT_GE(dump["files"].size(), 3u) << card;
        for (const Json& file : dump["files"]) {
            std::size_t end = 0;
            std::string octets;
            for (const Json& segment : file["segments"]) {
                EXPECT_EQ(segment["offset"], end) << card << " " << file["path"];
                end += segment["length"].get<std::size_t>();
                octets += segment["hex"].get<std::string>();
            }
            EXPECT_EQ(file["size"], end) << card << " " << file["path"];
            const std::string path = file["path"].get<std::string>();
            std::string name = path.substr(0, 4);
            for (std::size_t i = 4; i < path.size(); i += 4) name += "/" + path.substr(i, 4);
            std::string contents = readFile(std::filesystem::path(sampleCard(card)) / name);
            contents.resize(end);
            EXPECT_EQ(octets, toHex(Blob(contents.begin(), contents.end())));
        }
    }
}

TEST(Dump, TellsRecordsErasedOnesAndGapsApart) {
    const Json dump = runJson("gaps", {"dump", "PrKDF"}).json();
    ASSERT_EQ(dump["files"].size(), 1u);
    EXPECT_THAT(kindsIn(dump["files"][0]), ElementsAre("gap", "record", "erased", "record", "gap",
                                                       "record", "gap", "record", "gap"));
}

TEST(Dump, OpensTheSequenceAroundTheEntriesOfTheODF) {
    const Json file = runJson("wrapped-odf", {"dump", "ODF"}).json()["files"][0];
    EXPECT_THAT(kindsIn(file), ElementsAre("wrapper", "record", "record", "record", "gap"));
    EXPECT_EQ(file["segments"][0]["hex"], "3018");
    EXPECT_EQ(file["segments"][1]["offset"], 2);
    EXPECT_EQ(file["segments"][1]["value"]["privateKeys"]["path"]["efidOrPath"], "4401");
}

TEST(Dump, LooksForTheFilesWhereTheDirectorySays) {
    const TemporaryFolder folder;
    writeFile(folder / "card.json", R"({"files": [
      {"path": "3F00/2F00", "size": 64, "kind": "DIR", "records": [
        {"aid": "A000000063504B43532D3135", "path": "5015", "ddo": {
          "oid": "1.2.3", "odfPath": {"efidOrPath": "5131"},
          "tokenInfoPath": {"efidOrPath": "5132"}, "unusedPath": {"efidOrPath": "5133"}}}]},
      {"path": "3F00/5015", "structure": "df"},
      {"path": "3F00/5015/5131", "size": 16},
      {"path": "3F00/5015/5132", "size": 16},
      {"path": "3F00/5015/5133", "size": 16}]})");
    ASSERT_EQ(run({"init", folder / "card", "--from", folder / "card.json"}).exit, 0);
    const Json files = run({"--json", "--card", folder / "card", "dump"}).json()["files"];
    std::vector<std::string> paths;
    for (const Json& file : files) paths.push_back(file["path"]);
    EXPECT_THAT(paths, ElementsAre("3F0050155132", "3F0050155131", "3F0050155133", "3F002F00"));
}

TEST(Dump, ShowsEachRecordAsValueAndNotation) {
    const Json file = runJson("plain", {"dump", "PrKDF"}).json()["files"][0];
    EXPECT_EQ(file["structure"], "transparent");
    const Json record = file["segments"][0];
    EXPECT_EQ(record["value"]["privateRSAKey"]["commonObjectAttributes"]["label"], "Key");
    EXPECT_EQ(record["value"]["privateRSAKey"]["typeAttributes"]["modulusLength"], 2048);
    EXPECT_THAT(record["notation"].get<std::string>(), HasSubstr("modulusLength 2048"));
    EXPECT_EQ(record["isValid"], true);
    EXPECT_EQ(record["error"], nullptr);
    EXPECT_EQ(record["record"], nullptr);
}

TEST(Dump, SaysWhyARecordDoesNotDecode) {
    const Json record = runJson("rich", {"dump", "PrKDF"}).json()["files"][0]["segments"][2];
    EXPECT_EQ(record["kind"], "undecodable");
    EXPECT_EQ(record["hex"], "30090201073004040200AA");
    EXPECT_EQ(record["value"], nullptr);
    EXPECT_EQ(record["isValid"], nullptr);
    EXPECT_THAT(record["error"].get<std::string>(), HasSubstr("at octet"));
}

TEST(Dump, MarksValuesBeyondTheirRange) {
    const Json segments = runJson("findings", {"dump", "PrKDF"}).json()["files"][0]["segments"];
    EXPECT_EQ(segments[0]["isValid"], true);
    EXPECT_EQ(segments[3]["isValid"], false);
}

TEST(Dump, ShowsRecordsOfLinearFilesWithTheirNumbers) {
    const Json file = runJson("linear", {"dump", "4401"}).json()["files"][0];
    EXPECT_EQ(file["structure"], "linear");
    EXPECT_EQ(file["size"], nullptr);
    EXPECT_THAT(kindsIn(file), ElementsAre("record", "gap", "record", "gap", "record"));
    EXPECT_EQ(file["segments"][2]["record"], 3);
    EXPECT_EQ(file["segments"][2]["offset"], 0);
    const Json fixed = runJson("linear", {"dump", "CDF"}).json()["files"][0];
    EXPECT_EQ(fixed["structure"], "linear-fixed");
    EXPECT_EQ(fixed["segments"][1]["kind"], "gap") << "the padding of the first record";
    EXPECT_EQ(fixed["segments"][1]["record"], 1);
}

TEST(Dump, TakesAFileByNameIdentifierAndPath) {
    const std::string byName = runJson("plain", {"dump", "PrKDF"}).out;
    EXPECT_EQ(runJson("plain", {"dump", "prkdf"}).out, byName);
    EXPECT_EQ(runJson("plain", {"dump", "4401"}).out, byName);
    EXPECT_EQ(runJson("plain", {"dump", "3F0050154401"}).out, byName);
    EXPECT_EQ(runJson("plain", {"dump", "3f00/5015/4401"}).out, byName);
}

TEST(Dump, TakesBothFilesOfOneKind) {
    EXPECT_EQ(runJson("card-b", {"dump", "DODF"}).json()["files"].size(), 2u);
}

TEST(Dump, KnowsFilesThatTheODFDoesNotName) {
    const Json unused = runJson("card-b", {"dump", "UnusedSpace"}).json()["files"][0];
    EXPECT_EQ(unused["path"], "3F0050005033");
    EXPECT_EQ(unused["segments"][1]["value"]["authId"], "81");
    EXPECT_EQ(unused["segments"][2]["value"]["..."], "020103") << "a slot number of its own";
    EXPECT_EQ(runJson("card-b", {"dump", "5033"}).json()["files"][0], unused);
    const Json directory =
        runJson("card-a", {"dump", "DIR", "--aid", "A000000177504B43532D3135"}).json()["files"][0];
    EXPECT_EQ(directory["segments"][0]["value"]["label"], "BELPIC");
}

TEST(Dump, ShowsAFileOfNoKnownKindInHex) {
    TestApplication application;
    application.add("DODF", "4408", Json::array({{{"hex", "A0020500"}}}));
    application.replace("5031", Json::array());
    const Json file = application.run({"dump", "4408"}).json()["files"][0];
    EXPECT_EQ(file["name"], nullptr);
    EXPECT_EQ(file["segments"][0]["kind"], "record");
    EXPECT_EQ(file["segments"][0]["hex"], "A0020500");
    EXPECT_EQ(file["segments"][0]["value"], nullptr);
}

TEST(Dump, FailsForAFileThatIsNotThere) {
    const Result named = runJson("card-i", {"dump", "PrKDF"});
    EXPECT_EQ(named.exit, 1);
    EXPECT_EQ(named.json()["error"]["message"], "EF(ODF) names no PrKDF");
    const Result byPath = runJson("plain", {"dump", "4F4F"});
    EXPECT_EQ(byPath.exit, 1);
    EXPECT_EQ(byPath.json()["error"]["code"], 0x16A82);
    EXPECT_THAT(byPath.json()["error"]["message"].get<std::string>(), HasSubstr("3F0050154F4F"));
}

TEST(Dump, GoesOnBehindAFileThatCannotBeRead) {
    const Result result = runJson("unreadable-file", {"dump"});
    EXPECT_EQ(result.exit, 0);
    const Json files = result.json()["files"];
    ASSERT_EQ(files.size(), 12u);
    EXPECT_EQ(files[6]["error"]["code"], 0x16982);
    EXPECT_EQ(files[6]["segments"], Json::array());
    EXPECT_EQ(files[10]["error"], nullptr);
}

TEST(Dump, NeedsNoTokenInfo) {
    for (const char* card : {"no-token-info", "missing-token-info", "two-token-infos",
                             "garbage-everywhere", "missing-file"}) {
        EXPECT_EQ(runJson(card, {"dump"}).exit, 0) << card;
    }
    EXPECT_EQ(runJson("no-application", {"dump"}).exit, 1);
}

TEST(Dump, ReadsARepeatedFileOnce) {
    const Json files = runJson("repeated-file", {"dump"}).json()["files"];
    EXPECT_EQ(files[5]["name"], "PrKDF");
    EXPECT_EQ(files[5]["isRepeated"], true);
    EXPECT_EQ(files[5]["segments"], Json::array());
}

TEST(DumpText, ShowsOffsetsHexAndNotation) {
    const Result result = run({"--card", sampleCard("gaps"), "dump", "PrKDF"});
    EXPECT_EQ(result.exit, 0);
    for (const char* text : {"EF(PrKDF) 3F0050154401  transparent, 1024 octets\n",
                             "  offset 0, 3 octets: gap of FF\n", "offset 3, ", "octets: record\n",
                             "octets: erased\n", "modulusLength 2048", "octets: gap of 00\n"}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST(DumpText, ShowsErrorsInTheirPlace) {
    EXPECT_THAT(run({"--card", sampleCard("unreadable-file"), "dump"}).out,
                HasSubstr("EF(CDF) 3F0050154405\n  "));
    EXPECT_THAT(run({"--card", sampleCard("rich"), "dump", "4401"}).out,
                HasSubstr("octets: undecodable\n    30090201073004040200AA\n"));
    EXPECT_THAT(run({"--card", sampleCard("findings"), "dump", "4401"}).out,
                HasSubstr("breaks a size or range"));
    EXPECT_THAT(run({"--card", sampleCard("repeated-file"), "dump"}).out, HasSubstr("named again"));
}

TEST(DumpText, KeepsLabelsFromActingOnTheTerminal) {
    const Result result = run({"--card", sampleCard("hostile-labels"), "dump"});
    for (const char character : result.out) {
        EXPECT_TRUE(static_cast<unsigned char>(character) >= 0x20 || character == '\n');
    }
}

}  // namespace
}  // namespace tovi::test
