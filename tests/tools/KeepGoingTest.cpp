// Behind an operation that failed, numbers name what they name then.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

/// A write that only the container refuses, in time: a key of no type.
Json failingKey() { return {{"op", "write"}, {"kind", "privateKey"}, {"info", {{"id", "09"}}}}; }
Json set(unsigned record, const Json& fields) {
    return {{"op", "update"}, {"recordNumber", record}, {"set", fields}};
}
Json erase(unsigned record) { return {{"op", "delete"}, {"recordNumber", record}}; }
Json erasePin() { return {{"op", "delete"}, {"auth", 1}}; }

class KeepGoing : public testing::Test {
protected:
    /// Applies with --keep-going; the message of each operation, "" for one that was done.
    std::vector<std::string> messages(const Json& list) {
        const Result result = card_.apply(list, {"--keep-going"});
        EXPECT_EQ(result.exit, 1) << result.err;
        std::vector<std::string> messages;
        for (const Json& element : result.json()) {
            const bool isDone = !element.contains("error");
            messages.push_back(isDone ? "" : element["error"]["message"].get<std::string>());
        }
        return messages;
    }
    void neverUpdate(const std::string& file) {
        const std::string edit =
            "sed -i '/^3F00\\/5015\\/" + file + "/s/$/ update=never/' " + card_.path() + "/CARD";
        ASSERT_EQ(std::system(edit.c_str()), 0);
    }

    const NewCard card_;
};

TEST_F(KeepGoing, CountsNoRecordForAnObjectThatWasNotWritten) {
    EXPECT_THAT(messages({failingKey(), writeData("A"), set(1, {{"applicationName", "x"}}),
                          failingKey(), writePublicKey("02"), set(2, {{"label", "y"}})}),
                ElementsAre("invalid key type", "", "", "invalid key type", "", ""));
    const Json list = card_.list();
    EXPECT_EQ(list["dataObjects"][0]["applicationName"], "x");
    EXPECT_EQ(list["publicKeys"][0]["label"], "y");
}

TEST_F(KeepGoing, ChangesAnObjectThatCouldNotBeDeleted) {
    ASSERT_EQ(card_.apply(Json::array({writeData("A")})).exit, 0);
    neverUpdate("4408");
    EXPECT_THAT(messages({erase(1), writePrivateKey("02"), set(2, {{"label", "K"}}), erase(1)}),
                ElementsAre("failed to delete object", "", "", "failed to delete object"));
    EXPECT_EQ(card_.list()["privateKeys"][0]["label"], "K");
}

TEST_F(KeepGoing, GoesOnBehindFieldsThatAnObjectDoesNotHave) {
    EXPECT_THAT(messages({writeData("A"), set(1, {{"keyLength", 8}}), writeData("B")}),
                ElementsAre("", "operations[1].set.keyLength: no such field", ""));
}

TEST_F(KeepGoing, TakesTheFirstAuthenticationObjectThatIsThere) {
    ASSERT_EQ(card_.apply({writePin("05", 1), writePin("06", 1)}).exit, 0);
    const Json label = {{"op", "update"}, {"auth", 1}, {"set", {{"label", "P"}}}};
    EXPECT_THAT(messages({failingKey(), erasePin(), label}),
                ElementsAre("invalid key type", "", ""));
    EXPECT_EQ(card_.list()["authObjects"][0]["label"], "P");
    neverUpdate("4409");
    EXPECT_THAT(messages({erasePin(), erasePin()}),
                ElementsAre("failed to delete auth info", "failed to delete auth info"));
}

}  // namespace
}  // namespace tovi::test
