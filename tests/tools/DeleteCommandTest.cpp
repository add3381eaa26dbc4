#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

TEST(Delete, DeletesAnObjectByItsRecordNumber) {
    const NewCard card;
    ASSERT_EQ(card.apply({writeData("A"), writeData("B")}).exit, 0);
    const Result result = card.run({"delete", "1"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.json().dump(), R"({"op":"delete","recordNumber":1})");
    const Json objects = card.list()["dataObjects"];
    ASSERT_EQ(objects.size(), 1u);
    EXPECT_EQ(objects[0]["label"], "B");
}

TEST(Delete, DeletesAnAuthenticationObjectByItsReference) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePin("05", 1), writePin("06", 2)}).exit, 0);
    const Result result = card.run({"delete", "auth:1"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.json().dump(), R"({"op":"delete","auth":1})");
    const Json objects = card.list()["authObjects"];
    ASSERT_EQ(objects.size(), 1u);
    EXPECT_EQ(objects[0]["reference"], 2);
}

TEST(Delete, TellsPeopleWhatItDeleted) {
    const NewCard card;
    ASSERT_EQ(card.apply({writeData("A"), writeData("B")}).exit, 0);
    EXPECT_EQ(run({"--card", card.path(), "delete", "1"}).out, "deleted 1\n");
    EXPECT_EQ(run({"--card", card.path(), "--quiet", "delete", "1"}).out, "");
}

TEST(Delete, FailsWithTheContainersOwnError) {
    const NewCard card;
    const auto error = [&](const char* object) {
        const Result result = card.run({"delete", object});
        EXPECT_EQ(result.exit, 1) << object;
        const Json found = result.json()["error"];
        return found["message"].get<std::string>() + " | " + found["operation"].get<std::string>();
    };
    EXPECT_EQ(error("0"), "object is the TokenInfo | PKCS15Container::deleteObjectInfo");
    EXPECT_EQ(error("1"), "invalid record number | PKCS15Container::deleteObjectInfo");
    EXPECT_EQ(error("18446744073709551615"),
              "invalid record number | PKCS15Container::deleteObjectInfo");
    EXPECT_EQ(error("auth:1"), "invalid object reference | PKCS15Container::deleteAuthInfo");
    EXPECT_EQ(error("auth:257"), "invalid object reference | PKCS15Container::deleteAuthInfo");
}

}  // namespace
}  // namespace tovi::test
