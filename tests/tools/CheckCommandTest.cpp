#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

std::set<std::string> kindsIn(const Json& document) {
    std::set<std::string> kinds;
    for (const Json& finding : document["findings"]) kinds.insert(finding["kind"]);
    return kinds;
}

TEST(Check, ExitsWithZeroWhenThereIsNothingToFind) {
    for (const char* card : {"plain", "linear", "ff-filled", "wrapped-odf"}) {
        const Result result = runJson(card, {"check"});
        EXPECT_EQ(result.exit, 0) << card << result.out;
        EXPECT_EQ(result.json().dump(), R"({"findings":[]})") << card;
    }
    EXPECT_EQ(run({"check", "--card", sampleCard("plain")}).out, "no findings\n");
    EXPECT_EQ(run({"check", "--quiet", "--card", sampleCard("plain")}).out, "");
}

TEST(Check, ExitsWithThreeWhenThereIsAFinding) {
    const Result result = runJson("findings", {"check"});
    EXPECT_EQ(result.exit, 3);
    EXPECT_EQ(result.json().dump(1),
              Json::parse(readFile(TOVI_EXPECTED "/findings.check.json")).dump(1));
}

TEST(Check, GivesEveryFindingTheSameFields) {
    const Json document = runJson("findings", {"check"}).json();
    ASSERT_FALSE(document["findings"].empty());
    for (const Json& finding : document["findings"]) {
        std::vector<std::string> fields;
        for (const auto& [name, value] : finding.items()) fields.push_back(name);
        EXPECT_EQ(fields,
                  (std::vector<std::string>{"kind", "object", "recordNumber", "file", "message"}));
    }
}

TEST(Check, ReportsAnApplicationThatCannotBeRead) {
    for (const char* card : {"no-token-info", "missing-token-info", "two-token-infos",
                             "missing-file", "unreadable-file", "garbage-everywhere"}) {
        const Result result = runJson(card, {"check"});
        EXPECT_EQ(result.exit, 3) << card;
        EXPECT_THAT(kindsIn(result.json()), testing::Contains("unreadable-application")) << card;
    }
}

TEST(Check, FailsForACardWithoutTheApplication) {
    EXPECT_EQ(runJson("no-application", {"check"}).exit, 1);
    EXPECT_EQ(runJson("broken-card", {"check"}).exit, 1);
}

TEST(Check, FindsWhatIsOddAboutCardsInUse) {
    EXPECT_THAT(kindsIn(runJson("card-b", {"check"}).json()), testing::Contains("stale-octets"));
    EXPECT_THAT(kindsIn(runJson("card-e", {"check"}).json()), testing::Contains("stale-octets"));
    EXPECT_THAT(kindsIn(runJson("card-g", {"check"}).json()),
                testing::Contains("undecodable-record"));
    EXPECT_THAT(kindsIn(runJson("card-i", {"check"}).json()),
                testing::Contains("unsupported-record"));
}

TEST(CheckText, CountsTheFindings) {
    const Result result = run({"check", "--card", sampleCard("findings")});
    EXPECT_EQ(result.exit, 3);
    EXPECT_THAT(result.out, HasSubstr(" findings\n"));
    EXPECT_THAT(result.out, HasSubstr("dangling-auth-id"));
    EXPECT_THAT(run({"check", "--card", sampleCard("truncated-record")}).out,
                HasSubstr("undecodable-record"));
}

}  // namespace
}  // namespace tovi::test
