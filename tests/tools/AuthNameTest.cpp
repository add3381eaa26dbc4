#include "tools/AuthName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

Json writeExternal(const std::string& authObjectId) {
    return {{"op", "write"},
            {"kind", "authObject"},
            {"info",
             {{"type", "external"},
              {"label", "external " + authObjectId},
              {"authObjectId", authObjectId},
              {"cha", "0102"}}}};
}
Json label(const Json& auth, const std::string& text) {
    return {{"op", "update"}, {"auth", auth}, {"set", {{"label", text}}}};
}
Json erase(const Json& auth) { return {{"op", "delete"}, {"auth", auth}}; }

std::vector<std::string> labels(const NewCard& card) {
    std::vector<std::string> labels;
    const Json list = card.list();
    for (const Json& object : list["authObjects"]) labels.push_back(object["label"]);
    return labels;
}

TEST(AuthName, FindsObjectsWithoutReferenceByTheirIdentifier) {
    const NewCard card;
    ASSERT_EQ(card.apply({writeExternal("0A"), writeExternal("0B")}).exit, 0);
    const Result shown = card.run({"show", "auth:id=0b"});
    EXPECT_EQ(shown.exit, 0);
    EXPECT_EQ(shown.json()["label"], "external 0B");
    EXPECT_EQ(shown.json()["reference"], nullptr);
    const Result deleted = card.run({"delete", "auth:id=0A"});
    EXPECT_EQ(deleted.exit, 0) << deleted.err;
    EXPECT_EQ(deleted.json().dump(), R"({"op":"delete","auth":"id=0A"})");
    EXPECT_THAT(labels(card), ElementsAre("external 0B"));
}

TEST(AuthName, NamesObjectsInAListOfOperationsAsInTheCommandLine) {
    const NewCard card;
    const Result result = card.apply(
        {writeExternal("0A"), writeExternal("0B"), label("id=0B", "changed"), erase("id=0A")});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.json()[2].dump(), R"({"op":"update","auth":"id=0B"})");
    EXPECT_EQ(result.json()[3].dump(), R"({"op":"delete","auth":"id=0A"})");
    EXPECT_THAT(labels(card), ElementsAre("changed"));
    EXPECT_EQ(card.list()["authObjects"][0]["cha"], "0102");
}

TEST(AuthName, NamesReferencesOfMoreThanAnOctet) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePin("05", 300), writePin("06", 44), writePin("07", 65534)}).exit, 0);
    EXPECT_EQ(card.run({"show", "auth:300"}).json()["label"], "PIN 05");
    EXPECT_EQ(card.apply(Json::array({label(65534, "last")})).exit, 0);
    EXPECT_EQ(card.apply(Json::array({erase(300)})).exit, 0);
    EXPECT_THAT(labels(card), ElementsAre("PIN 06", "last")) << "44 are the low bits of 300";
    EXPECT_EQ(card.run({"delete", "auth:65534"}).exit, 0);
    EXPECT_THAT(labels(card), ElementsAre("PIN 06"));
}

TEST(AuthName, TellsObjectsOfTheSameReferenceApart) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePin("05", 1), writePin("06", 1), writePin("07", 1)}).exit, 0);
    EXPECT_EQ(card.apply({label("id=07", "third"), erase("id=06")}).exit, 0);
    EXPECT_THAT(labels(card), ElementsAre("PIN 05", "third"));
    const Json list = card.list();
    for (const Json& object : list["authObjects"]) EXPECT_EQ(object["reference"], 1);
}

TEST(AuthName, WritesNothingButTheDeletion) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePin("05", 1), writePin("06", 300)}).exit, 0);
    const NewCard other;
    ASSERT_EQ(other.apply({writePin("05", 1), writePin("06", 2)}).exit, 0);
    const auto updates = [](const std::string& trace) {
        std::size_t count = 0;
        for (auto at = trace.find("> 00D6"); at != std::string::npos;
             at = trace.find("> 00D6", at + 1)) {
            ++count;
        }
        return count;
    };
    const std::size_t needed = updates(other.run({"--trace", "delete", "auth:2"}).err);
    EXPECT_GT(needed, 0u);
    EXPECT_EQ(updates(card.run({"--trace", "delete", "auth:300"}).err), needed);
}

TEST(AuthName, KeepsTheNameOfAnObjectThatTheCardDoesNotDelete) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePin("05", 1), writePin("06", 300)}).exit, 0);
    const std::string edit =
        "sed -i '/^3F00\\/5015\\/4409/s/$/ update=never/' " + card.path() + "/CARD";
    ASSERT_EQ(std::system(edit.c_str()), 0);
    const Json list = card.apply({erase(300), erase(0), erase(300)}, {"--keep-going"}).json();
    EXPECT_EQ(list[0]["error"]["message"], "failed to delete auth info");
    EXPECT_EQ(list[1]["error"]["message"], "invalid object reference");
    EXPECT_EQ(card.run({"delete", "auth:300"}).json()["error"]["message"],
              "failed to delete auth info");
}

TEST(AuthName, IsRefusedWhenNothingHasIt) {
    const NewCard card;
    for (const char* name : {"auth:1", "auth:300", "auth:id=01"}) {
        for (const char* command : {"show", "delete"}) {
            const Result result = card.run({command, name});
            EXPECT_EQ(result.exit, 1);
            EXPECT_EQ(result.json()["error"]["message"], "invalid object reference") << name;
        }
    }
    const Json list = card.apply({label("id=01", "x"), erase("id=01")}, {"--keep-going"}).json();
    EXPECT_EQ(list[0]["error"]["operation"], "PKCS15Container::updateAuthInfo");
    EXPECT_EQ(list[1]["error"]["operation"], "PKCS15Container::deleteAuthInfo");
}

TEST(AuthName, IsZeroForAPinThatIsWrittenWithoutReference) {
    const NewCard card;
    Json pin = writePin("05", 1);
    pin["info"]["reference"] = nullptr;
    EXPECT_EQ(card.apply({pin, label(0, "P")}).exit, 0) << "as reading gives it";
    EXPECT_EQ(card.run({"show", "auth:0"}).json()["label"], "P");
    EXPECT_THAT(card.run({"dump", "AODF"}).out, Not(HasSubstr("pinReference")));
}

}  // namespace
}  // namespace tovi::test
