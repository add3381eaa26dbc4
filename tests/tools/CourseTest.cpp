// Behind an operation that failed, numbers may stand for other objects than a list means.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

/// A write that only the container refuses, in time: a key of no type.
Json failingKey() { return {{"op", "write"}, {"kind", "privateKey"}, {"info", {{"id", "09"}}}}; }
Json label(unsigned record, const std::string& text) {
    return {{"op", "update"}, {"recordNumber", record}, {"set", {{"label", text}}}};
}
Json erase(unsigned record) { return {{"op", "delete"}, {"recordNumber", record}}; }
const Json read = {{"op", "clearAndRead"}};

class Course : public testing::Test {
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
    std::vector<std::string> labels(const char* kind) const {
        std::vector<std::string> labels;
        const Json list = card_.list();
        for (const Json& object : list[kind]) labels.push_back(object["label"]);
        return labels;
    }

    const NewCard card_;
};

TEST_F(Course, UpdatesNoOtherObjectForOneThatWasNotWritten) {
    EXPECT_THAT(
        messages({failingKey(), writePrivateKey("02"), label(1, "x"), label(2, "y")}),
        ElementsAre("invalid key type", "", "invalid record number", "invalid record number"))
        << "the second key has got the number of the first one";
    EXPECT_THAT(labels("privateKeys"), ElementsAre("Key 02"));
}

TEST_F(Course, DeletesNoOtherObjectForOneThatWasNotWritten) {
    EXPECT_THAT(messages({failingKey(), writePrivateKey("02"), writePrivateKey("03"), erase(2)}),
                ElementsAre("invalid key type", "", "", "invalid record number"));
    EXPECT_THAT(labels("privateKeys"), ElementsAre("Key 02", "Key 03"));
}

TEST_F(Course, LinksNoOtherObjectForOneThatWasNotWritten) {
    Json key = writePublicKey("09");
    key["privateKey"] = 1;
    EXPECT_THAT(messages({failingKey(), writePrivateKey("02"), key}),
                ElementsAre("invalid key type", "", "invalid record number"));
    EXPECT_THAT(labels("publicKeys"), ElementsAre());
}

TEST_F(Course, LeavesTheLinkToNothingToTheContainer) {
    Json key = writePublicKey("09");
    key["privateKey"] = 1;
    EXPECT_THAT(messages({failingKey(), key}),
                ElementsAre("invalid key type", "invalid object type"));
    EXPECT_THAT(labels("publicKeys"), ElementsAre("Key 09")) << "it is written before it is linked";
}

TEST_F(Course, ChangesNoObjectThatCouldNotBeDeleted) {
    const NewCard& card = card_;
    ASSERT_EQ(card.apply({writeData("A"), writePrivateKey("01")}).exit, 0);
    ASSERT_EQ(
        std::system(
            ("sed -i '/^3F00\\/5015\\/4408/s/$/ update=never/' " + card.path() + "/CARD").c_str()),
        0);
    const Json records = card.list()["fat"];
    ASSERT_EQ(records[1]["objectType"], 1);
    // The data object keeps its number 2, which the list means for the new key.
    EXPECT_THAT(messages({erase(2), writePrivateKey("02"), label(2, "x"), erase(2)}),
                ElementsAre("failed to delete object", "", "invalid record number",
                            "invalid record number"));
    EXPECT_THAT(labels("privateKeys"), ElementsAre("Key 01", "Key 02"));
    EXPECT_THAT(labels("dataObjects"), ElementsAre("A"));
}

TEST_F(Course, KnowsNoRecordNumberOnceTheCardIsReadBehindAFailure) {
    ASSERT_EQ(card_.apply({writeData("A"), writePin("05", 1)}).exit, 0);
    const Json setPin = {{"op", "update"}, {"auth", 1}, {"set", {{"label", "P"}}}};
    EXPECT_THAT(messages({failingKey(), read, label(2, "x"), setPin}),
                ElementsAre("invalid key type", "", "invalid record number", ""));
    EXPECT_THAT(labels("dataObjects"), ElementsAre("A"));
    EXPECT_THAT(labels("authObjects"), ElementsAre("P")) << "whose reference it still is";
}

TEST_F(Course, KnowsTheRecordNumbersOfACardThatIsReadAgain) {
    EXPECT_THAT(messages({writeData("A"), read, label(1, "B"), failingKey(), writeData("C"),
                          label(2, "x"), label(1, "D")}),
                ElementsAre("", "", "", "invalid key type", "", "invalid record number", ""));
    EXPECT_THAT(labels("dataObjects"), ElementsAre("D", "C"));
}

TEST_F(Course, TakesAFailedUpdateForNoChangeOfNumbers) {
    EXPECT_THAT(messages({writeData("A"), label(9, "x"), read, label(1, "B")}),
                ElementsAre("", "invalid record number", "", ""));
    EXPECT_THAT(labels("dataObjects"), ElementsAre("B"));
}

TEST_F(Course, ChangesNoOtherAuthenticationObjectOfTheSameReference) {
    ASSERT_EQ(card_.apply({writePin("05", 1), writePin("06", 1)}).exit, 0);
    ASSERT_EQ(
        std::system(
            ("sed -i '/^3F00\\/5015\\/4409/s/$/ update=never/' " + card_.path() + "/CARD").c_str()),
        0);
    const Json erasePin = {{"op", "delete"}, {"auth", 1}};
    EXPECT_THAT(messages({erasePin, erasePin}),
                ElementsAre("failed to delete auth info", "invalid object reference"))
        << "the second deletion means the second object";
}

}  // namespace
}  // namespace tovi::test
