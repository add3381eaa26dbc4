#include "tools/JsonInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "TestCommand.h"
#include "tools/Failure.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Json read(const std::string& text) {
    std::istringstream in(text);
    return readJson(in, "input");
}

std::string failureOf(const std::string& text) {
    try {
        read(text);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(ReadJson, ReadsADocument) {
    EXPECT_EQ(read(R"({"b": [1, {"b": 2}], "a": {"b": 3}})").dump(),
              R"({"b":[1,{"b":2}],"a":{"b":3}})");
    EXPECT_EQ(read(" [] \n"), Json::array());
}

TEST(ReadJson, RefusesWhatIsNoJson) {
    for (const char* text : {"", "{\"files\": [", "[1] 2", "{'a': 1}", "[1e999]", "\"\xFF\""}) {
        EXPECT_THAT(failureOf(text), StartsWith("input: ")) << text;
    }
}

TEST(ReadJson, RefusesManyLevels) {
    const auto nested = [](std::size_t levels) {
        return std::string(levels, '[') + std::string(levels, ']');
    };
    EXPECT_EQ(failureOf(nested(100)), "accepted");
    EXPECT_THAT(failureOf(nested(102)), HasSubstr("more than 100 levels"));
    EXPECT_THAT(failureOf(std::string(1000000, '[')), HasSubstr("more than 100 levels"));
}

TEST(ReadJson, RefusesManyMembersOfOneObject) {
    std::string text = "{";
    for (int i = 0; i < 200; ++i) text += "\"" + std::to_string(i) + "\": 0, ";
    EXPECT_EQ(failureOf("[" + text.substr(0, text.size() - 2) + "}, {\"x\": 0}]"), "accepted");
    EXPECT_THAT(failureOf(text + "\"x\": 0}"), HasSubstr("more than 200 members"));
}

TEST(ReadJson, RefusesAMemberThatStandsTwice) {
    EXPECT_EQ(failureOf(R"({"a": 1, "b": {"a": 1}, "a": 2})"),
              "input: member 'a' stands twice in one object");
}

TEST(ReadJson, RefusesMoreOctetsThanAnyCardNeeds) {
    EXPECT_THAT(failureOf(std::string(maxJsonOctets, ' ') + "1"), HasSubstr("octets"));
}

TEST(ReadJsonFile, RefusesEndlessOnes) { EXPECT_THROW(readJsonFile("/dev/zero"), UsageError); }

TEST(ReadJsonFile, FailsForOneThatCannotBeRead) {
    const TemporaryFolder folder;
    EXPECT_THROW(readJsonFile(folder / "none.json"), Failure);
    EXPECT_THROW(readJsonFile(folder.path()), Failure);
    writeFile(folder / "card.json", "[1]");
    EXPECT_EQ(readJsonFile(folder / "card.json"), Json::array({1}));
}

}  // namespace
}  // namespace tovi::test
