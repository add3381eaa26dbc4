#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

TEST(TokenInfo, ShowsWhatListShows) {
    const Result result = runJson("rich", {"token-info"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.json().dump(), runJson("rich", {"list"}).json()["tokenInfo"].dump());
    EXPECT_THAT(run({"--card", sampleCard("rich"), "token-info"}).out, HasSubstr("serialNumber"));
}

TEST(TokenInfo, ChangesWhatTheOptionsSay) {
    const NewCard card({"--label", "old", "--manufacturer", "M"});
    Json expected = card.list()["tokenInfo"];
    expected["label"] = "new";
    expected["labelHex"] = "6E6577";
    expected["serialNumber"] = "0A0B";
    expected["readonly"] = expected["eidCompliant"] = true;
    const Result result = card.run({"token-info", "--label", "new", "--serial", "0a0b",
                                    "--read-only", "on", "--eid-compliant", "on"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.json(), expected);
    EXPECT_EQ(card.list()["tokenInfo"], expected);
    expected["readonly"] = false;
    expected["loginRequired"] = expected["prnGeneration"] = true;
    expected["manufacturerID"] = "N";
    EXPECT_EQ(card.run({"token-info", "--read-only", "off", "--login-required", "on",
                        "--prn-generation", "on", "--manufacturer", "N"})
                  .json(),
              expected);
}

TEST(TokenInfo, TakesNamesAway) {
    const NewCard card({"--label", "old", "--manufacturer", "M"});
    const Json shown = card.run({"token-info", "--label", "", "--manufacturer", ""}).json();
    EXPECT_EQ(shown["label"], "PKCS#15 Token");
    EXPECT_EQ(shown["manufacturerID"], "");
}

TEST(TokenInfo, KeepsTheAlgorithmsOfTheCard) {
    const NewCard card;
    const Json algorithms = {
        {{"algorithm", 5}, {"algId", "010203"}, {"supportedOperations", {"hash"}}}};
    const Json operation = {{"op", "updateTokenInfo"},
                            {"set", {{"supportedAlgorithms", algorithms}}}};
    ASSERT_EQ(card.apply(Json::array({operation})).exit, 0);
    const Json shown = card.run({"token-info", "--read-only", "on"}).json();
    EXPECT_EQ(shown["readonly"], true);
    EXPECT_EQ(shown["supportedAlgorithms"], algorithms);
}

TEST(TokenInfo, IsShownWithoutReadingTheCardAgain) {
    const NewCard card({"--label", "old", "--manufacturer", "M"});
    const auto selections = [&](const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"--trace", "token-info"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const std::string trace = card.run(arguments).err;
        std::size_t count = 0;
        for (auto at = trace.find("> 00A404"); at != std::string::npos;
             at = trace.find("> 00A404", at + 1)) {
            ++count;
        }
        return count;
    };
    ASSERT_GT(selections({}), 0u);
    EXPECT_EQ(selections({"--label", "new"}), selections({}));
}

TEST(TokenInfo, IsShownAsTheNextReadGivesIt) {
    const NewCard card({"--manufacturer", "M"});
    const Json algorithms = {
        {{"algorithm", 5}, {"algId", "010203"}, {"supportedOperations", {"hash"}}}};
    const Json operation = {{"op", "updateTokenInfo"},
                            {"set", {{"supportedAlgorithms", algorithms}}}};
    ASSERT_EQ(card.apply(Json::array({operation})).exit, 0);
    const std::vector<std::vector<std::string>> changes = {
        {"--read-only", "on"}, {"--label", "new"}, {"--prn-generation", "on"},
        {"--label", ""},       {"--serial", "0A"}, {"--manufacturer", ""}};
    for (std::vector<std::string> change : changes) {
        change.insert(change.begin(), "token-info");
        const std::string shown = card.run(change).json().dump();
        EXPECT_EQ(shown, card.list()["tokenInfo"].dump()) << change[1];
    }
}

TEST(TokenInfo, FailsWhenTheCardRefuses) {
    const TemporaryFolder folder;
    writeFile(folder / "card.json", R"({"files": [
      {"path": "3F00/5015", "structure": "df", "aid": "A000000063504B43532D3135"},
      {"path": "3F00/5015/5031", "size": 16},
      {"path": "3F00/5015/5032", "size": 64, "kind": "TokenInfo", "update": "never",
       "records": [{"version": 0, "serialNumber": "01", "tokenflags": []}]}]})");
    ASSERT_EQ(run({"init", folder / "card", "--from", folder / "card.json"}).exit, 0);
    const Result result = run({"--json", "--card", folder / "card", "token-info", "--label", "x"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()["error"].dump(),
              R"({"message":"update file failed",)"
              R"("operation":"PKCS15Container::encodeTokenInfo","code":0})");
}

}  // namespace
}  // namespace tovi::test
