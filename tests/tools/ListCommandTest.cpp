#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class ListOfCard : public testing::TestWithParam<const char*> {};

/// What the document has to be stands in expected/NAME.list.json.
TEST_P(ListOfCard, IsTheExpectedDocument) {
    const std::string name = GetParam();
    const Result result = runJson(name, {"list"});
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json expected =
        Json::parse(readFile(std::string(TOVI_EXPECTED "/") + name + ".list.json"));
    EXPECT_EQ(result.json().dump(1), expected.dump(1)) << "the order of fields counts too";
}

std::string testName(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, ListOfCard,
                         testing::Values("rich", "plain", "linear", "ff-filled", "gaps",
                                         "wrapped-odf", "hostile-labels", "truncated-record",
                                         "garbage", "repeated-file", "findings", "in-ef-dir",
                                         "card-b", "card-c-auth", "card-c-qscd", "card-d", "card-e",
                                         "card-f", "card-g", "card-h", "card-i", "card-j"),
                         testName);

TEST(List, ReadsAnApplicationByTheIdentifierAskedFor) {
    EXPECT_EQ(runJson("card-a", {"list"}).exit, 1);
    const Result result = runJson("card-a", {"list", "--aid", "A000000177504B43532D3135"});
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json expected = Json::parse(readFile(TOVI_EXPECTED "/card-a.list.json"));
    EXPECT_EQ(result.json().dump(1), expected.dump(1));
}

struct BadCard {
    const char* name;
    const char* message;
};
void PrintTo(const BadCard& card, std::ostream* out) { *out << card.name; }

class ListOfBadCard : public testing::TestWithParam<BadCard> {};

TEST_P(ListOfBadCard, FailsWithTheReason) {
    const Result result = runJson(GetParam().name, {"list"});
    EXPECT_EQ(result.exit, 1);
    const Json document = result.json();
    ASSERT_EQ(document.size(), 1u);
    EXPECT_THAT(document["error"]["message"].get<std::string>(), HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(All, ListOfBadCard,
                         testing::Values(BadCard{"no-token-info", "invalid TokenInfo"},
                                         BadCard{"missing-token-info",
                                                 "Failed to decode and validate TokenInfo"},
                                         BadCard{"two-token-infos", "More than one TokenInfo"},
                                         BadCard{"missing-file", "Failed to decode CDF"},
                                         BadCard{"unreadable-file", "Failed to decode CDF"},
                                         BadCard{"pin-to-read", "Failed to decode PrKDF"},
                                         BadCard{"no-application", "Failed to select PKCS15 AID"},
                                         BadCard{"garbage-everywhere", "invalid TokenInfo"},
                                         BadCard{"broken-card", "invalid card description"},
                                         BadCard{"no-such-folder", "card folder not readable"}),
                         [](const auto& test) {
                             std::string name = test.param.name;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(ListOfBrokenCard, NamesFileAndLine) {
    const Result result = run({"--card", sampleCard("broken-card"), "list"});
    EXPECT_THAT(result.err, HasSubstr("CARD:2"));
    EXPECT_THAT(result.err, HasSubstr("tree"));
}

TEST(ListText, ShowsATableForEachKind) {
    const Result result = run({"--card", sampleCard("rich"), "list"});
    EXPECT_EQ(result.exit, 0);
    for (const char* text :
         {"PKCS#15 application 3F005015", "Alice\xE2\x80\x99s card", "Private keys (8)", "RSA 2048",
          "sign, always-authenticate", "consent 1", "Secret keys (7)", "TripleDES",
          "Certificates (5)", "Trusted certificates (1)", "Data objects (5)", "4F01[16+32]",
          "Key containers", "Alice & Alice signature", "Authentication objects (7)", "fingerPrint",
          "not decoded"}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST(ListText, KeepsLabelsFromActingOnTheTerminal) {
    const Result result = run({"--card", sampleCard("hostile-labels"), "list"});
    EXPECT_EQ(result.exit, 0);
    for (const char character : result.out) {
        EXPECT_TRUE(static_cast<unsigned char>(character) >= 0x20 || character == '\n');
        EXPECT_NE(character, '\x7F');
    }
    EXPECT_THAT(result.out, HasSubstr("\\x1B[31mred"));
    EXPECT_THAT(result.out, HasSubstr("\\u202Egnp.exe"));
    EXPECT_THAT(result.out, HasSubstr("two\\x0Alines"));
}

TEST(ListText, IsColouredOnlyWhereAsked) {
    const std::string card = sampleCard("plain");
    EXPECT_THAT(run({"--card", card, "list"}).out, Not(HasSubstr("\x1B")));
    EXPECT_THAT(run({"--card", card, "list"}, {.colour = true}).out, HasSubstr("\x1B[1m"));
    EXPECT_THAT(run({"--json", "--card", card, "list"}, {.colour = true}).out,
                Not(HasSubstr("\x1B")));
}

}  // namespace
}  // namespace tovi::test
