#include "tools/JsonPlace.h"

#include <gtest/gtest.h>

#include "tools/Failure.h"

namespace tovi::test {
namespace {

using Json = JsonPlace::Json;

std::string messageOf(const auto& action) {
    try {
        action();
    } catch (const UsageError& error) {
        return error.what();
    }
    return "none";
}

TEST(JsonPlace, NamesMembersAndElements) {
    const Json json = {{"files", {1, {{"path", 2}}}}};
    const JsonPlace place(json, "card");
    EXPECT_EQ(place.at("files").at(1).at("path").where(), "card.files[1].path");
    EXPECT_EQ(messageOf([&] { place.at("files").at(1).at("path").text(); }),
              "card.files[1].path: expected a text");
    EXPECT_EQ(place.at("files").count(), 2u);
}

TEST(JsonPlace, TakesNumbersUpToTheMost) {
    const Json json = {5, -1, 6, 2.0, "5"};
    const JsonPlace place(json, "n");
    EXPECT_EQ(place.at(std::size_t{0}).number(5), 5u);
    for (std::size_t i = 1; i < json.size(); ++i) {
        EXPECT_EQ(messageOf([&] { place.at(i).number(5); }),
                  "n[" + std::to_string(i) + "]: expected a number from 0 to 5");
    }
}

TEST(JsonPlace, TakesOctetsInHex) {
    const Json json = {"0aFF", "0"};
    const JsonPlace place(json, "h");
    EXPECT_EQ(place.at(std::size_t{0}).octets(), (Blob{0x0A, 0xFF}));
    EXPECT_EQ(messageOf([&] { place.at(1).octets(); }), "h[1]: expected octets in hexadecimal");
}

TEST(JsonPlace, AllowsTheMembersItIsToldAndRemarks) {
    const Json json = {{"a", 1}, {"about", "x"}};
    const JsonPlace place(json, "o");
    EXPECT_EQ(messageOf([&] { place.allow({"a", "b"}); }), "none");
    EXPECT_EQ(messageOf([&] { place.allow({"b"}); }), "o: expected no member 'a'");
    EXPECT_EQ(messageOf([&] { place.at("a").allow({}); }), "o.a: expected an object");
    EXPECT_EQ(messageOf([&] { place.expectArray(); }), "o: expected an array");
}

}  // namespace
}  // namespace tovi::test
