#include "tools/CardPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCommand.h"
#include "tools/Failure.h"
#include "tools/Text.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

const Json masterFile = {{"path", "3F00"}, {"structure", "df"}};

/// The plan of a card with the master file and `file`.
CardPlan planOf(const Json& file) { return cardPlanFromJson({{"files", {masterFile, file}}}); }

/// What 3F00/5031 holds when it is made of `records`.
std::string octetsOf(const Json& records, const Json& more = Json::object()) {
    Json file = {{"path", "3F00/5031"}, {"size", 20}, {"kind", "ODF"}, {"records", records}};
    file.update(more);
    return toHex(planOf(file).contents.at("3F00/5031").octets);
}

const Json entry = {{"privateKeys", {{"path", {{"efidOrPath", "4401"}}}}}};

TEST(CardPlan, EncodesRecordsOneBehindTheOther) {
    EXPECT_EQ(octetsOf({entry, entry}), "A006300404024401A006300404024401");
}

TEST(CardPlan, TakesOctetsAsTheyAre) {
    EXPECT_EQ(octetsOf({{{"hex", "800102"}, {"about", "stale"}}, entry}), "800102A006300404024401");
}

TEST(CardPlan, LeavesGapsOfEitherPadding) {
    EXPECT_EQ(octetsOf({{{"gap", 2}}, {{"gap", 3}, {"with", "FF"}}}), "0000FFFFFF");
}

TEST(CardPlan, ErasesATagAndKeepsWhatFollows) {
    EXPECT_EQ(octetsOf({{{"erased", entry}}}), "0006300404024401");
}

TEST(CardPlan, CutsARecord) { EXPECT_EQ(octetsOf({{{"cut", 3}, {"of", entry}}}), "A00630"); }

TEST(CardPlan, FillsTheRestOfAFile) {
    EXPECT_EQ(octetsOf(Json::array({entry}), {{"fill", "FF"}}),
              "A006300404024401FFFFFFFFFFFFFFFFFFFFFFFF");
}

TEST(CardPlan, GivesAFileWithoutSizeRoomForItsRecords) {
    const CardPlan plan =
        planOf({{"path", "3F00/5031"}, {"kind", "ODF"}, {"records", {entry, entry}}});
    EXPECT_EQ(plan.card.files().back().size, 16u);
}

TEST(CardPlan, KeepsRecordsOfALinearFileApart) {
    const CardPlan plan = planOf({{"path", "3F00/5031"},
                                  {"structure", "linear"},
                                  {"size", 3},
                                  {"record", 20},
                                  {"kind", "ODF"},
                                  {"records", {entry, {{"gap", 0}}, {{"hex", "00"}}}}});
    const std::vector<Blob> expected = {*fromHex("A006300404024401"), Blob{}, Blob{0x00}};
    EXPECT_EQ(plan.contents.at("3F00/5031").records, expected);
}

TEST(CardPlan, TakesEveryOptionOfAFile) {
    const CardPlan plan = planOf({{"path", "3F005031"},
                                  {"structure", "linear-fixed"},
                                  {"size", 5},
                                  {"record", 16},
                                  {"sfi", 17},
                                  {"read", "pin:129"},
                                  {"update", "never"}});
    FileDescription expected;
    expected.path = Blob{0x3F, 0x00, 0x50, 0x31};
    expected.kind = FileDescription::Kind::linearFixed;
    expected.size = 5;
    expected.recordSize = 16;
    expected.sfi = 17;
    expected.read = {AccessRule::Kind::pin, 129};
    expected.update = {AccessRule::Kind::never, 0};
    EXPECT_EQ(plan.card.files().back(), expected);
}

TEST(CardPlan, TakesPinsAndRemarks) {
    const CardPlan plan = cardPlanFromJson(
        {{"about", {"one", "two"}},
         {"pins",
          {{{"reference", 1}, {"value", "31323334"}},
           {{"reference", 2}, {"value", "35"}, {"tries", 5}, {"left", 1}, {"about", "SO"}}}}});
    ASSERT_EQ(plan.card.pins().size(), 2u);
    const PinDescription first{1, *fromHex("31323334"), 3, 3}, second{2, Blob{0x35}, 5, 1};
    EXPECT_EQ(plan.card.pins()[0], first);
    EXPECT_EQ(plan.card.pins()[1], second);
    EXPECT_THAT(plan.card.text(), HasSubstr("# one\n# two\n"));
}

struct Refusal {
    const char* name;
    Json json;
    const char* message;
};
void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }

class CardPlanRefusals : public testing::TestWithParam<Refusal> {};

TEST_P(CardPlanRefusals, NameThePlace) {
    try {
        cardPlanFromJson(GetParam().json);
        FAIL() << "accepted";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), HasSubstr(GetParam().message));
    }
}

Json card(const Json& file) { return {{"files", {masterFile, file}}}; }
Json records(const Json& entries) {
    return card({{"path", "3F00/5031"}, {"size", 20}, {"kind", "ODF"}, {"records", entries}});
}

INSTANTIATE_TEST_SUITE_P(
    All, CardPlanRefusals,
    testing::Values(
        Refusal{"noObject", Json::array(), "card description: expected an object"},
        Refusal{"unknownMember", {{"file", 1}}, "no member 'file'"},
        Refusal{"filesNoArray", {{"files", 1}}, "card description.files: expected an array"},
        Refusal{"noPath", card({{"size", 1}}), "files[1]: expected 'path'"},
        Refusal{"badPath", card({{"path", "3F00/50x1"}}), "files[1].path: expected a path"},
        Refusal{"numericPath", card({{"path", 5031}}), "files[1].path: expected a text"},
        Refusal{"unknownOption", card({{"path", "3F005031"}, {"sizes", 1}}), "'sizes'"},
        Refusal{"structure", card({{"path", "3F005031"}, {"structure", "tree"}}), "linear-fixed"},
        Refusal{"negativeSize", card({{"path", "3F005031"}, {"size", -1}}), "files[1].size"},
        Refusal{"hugeSize", card({{"path", "3F005031"}, {"size", 99999999999}}), "a number from 0"},
        Refusal{"rule", card({{"path", "3F005031"}, {"read", "sometimes"}}), "pin:REF"},
        Refusal{"ruleNumber", card({{"path", "3F005031"}, {"read", "pin:256"}}), "pin:REF"},
        Refusal{"kind", card({{"path", "3F005031"}, {"kind", "XDF"}}), "a kind of file"},
        Refusal{"noKind", card({{"path", "3F005031"}, {"records", Json::array({entry})}}),
                "'kind'"},
        Refusal{"sameFile",
                {{"files",
                  {masterFile,
                   {{"path", "3F005031"}, {"size", 1}},
                   {{"path", "3F005031"}, {"size", 1}}}}},
                "files[2]: "},
        Refusal{"orphan",
                {{"files", {masterFile, {{"path", "3F0050155031"}, {"size", 1}}}}},
                "files[1]: "},
        Refusal{"recordsNoArray", records(3), "files[1].records: expected an array"},
        Refusal{"badRecord", records({entry, {{"privateKey", 1}}}), "files[1].records[1]"},
        Refusal{"badHex", records({{{"hex", "0"}}}), "files[1].records[0].hex"},
        Refusal{"hexAndMore", records({{{"hex", "00"}, {"gap", 1}}}), "no member 'gap'"},
        Refusal{"badGap", records({{{"gap", "x"}}}), "files[1].records[0].gap"},
        Refusal{"badPadding", records({{{"gap", 1}, {"with", "0000"}}}), "one octet"},
        Refusal{"tooMuch",
                card({{"path", "3F005031"},
                      {"size", 15},
                      {"kind", "ODF"},
                      {"records", Json::array({entry, entry})}}),
                "files[1].records: expected records that fit"},
        Refusal{"muchTooMuch",
                card({{"path", "3F005031"},
                      {"kind", "ODF"},
                      {"records", Json::array({{{"gap", 16777216}}, {{"gap", 1}}})}}),
                "files[1].records: expected records that fit"},
        Refusal{"noEncoding", records({{{"...", ""}}}), "files[1].records[0]: has no encoding"},
        Refusal{"noReadableEncoding",
                records({entry,
                         {{"privateKeys", {{"path", {{"efidOrPath", {{"otherForm", "05"}}}}}}}}}),
                "files[1].records[1]: its encoding does not read back: "},
        Refusal{"erasedNothing", records({{{"erased", {{"...", ""}}}}}), "has no encoding"},
        Refusal{"cutNothing", records({{{"cut", 1}}}), "'of'"},
        Refusal{"cutTooMuch", records({{{"cut", 9}, {"of", entry}}}), "a number from 0 to 8"},
        Refusal{"pinWithoutValue", {{"pins", {{{"reference", 1}}}}}, "'value'"},
        Refusal{
            "pinReference", {{"pins", {{{"reference", 256}, {"value", ""}}}}}, "pins[0].reference"},
        Refusal{"pinLeft",
                {{"pins", {{{"reference", 1}, {"value", "31"}, {"tries", 3}, {"left", 4}}}}},
                "pins[0].left"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(CardPlan, RefusesMoreThanACardHolds) {
    Json files = Json::array({masterFile});
    for (const char* path : {"3F005001", "3F005002", "3F005003", "3F005004", "3F005005"}) {
        files.push_back({{"path", path}, {"records", Json::array({{{"gap", 16777216}}})}});
    }
    files.erase(files.begin() + 5);
    EXPECT_EQ(cardPlanFromJson({{"files", files}}).contents.size(), 4u);
    files.push_back({{"path", "3F005005"}, {"records", Json::array({{{"gap", 1}}})}});
    EXPECT_THROW(cardPlanFromJson({{"files", files}}), UsageError);
}

TEST(CardPlanFile, NamesTheFileInItsErrors) {
    const TemporaryFolder folder;
    writeFile(folder / "card.json", R"({"files": [{"path": 1}]})");
    try {
        cardPlanFromFile(folder / "card.json");
        FAIL() << "accepted";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), HasSubstr("card.json: files[0].path: expected a text"));
    }
    EXPECT_THROW(cardPlanFromFile(folder / "none.json"), Failure);
}

}  // namespace
}  // namespace tovi::test
