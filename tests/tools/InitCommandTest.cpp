#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

TEST(Init, MakesACardFolderWithAnEmptyApplication) {
    const TemporaryFolder folder;
    const Result made = run({"init", folder / "card", "--label", "New card", "--serial", "0a0B",
                             "--manufacturer", "Maker"});
    EXPECT_EQ(made.exit, 0);
    EXPECT_EQ(made.out, "made card folder " + folder / "card" + "\n");
    const Json list = run({"--json", "list", "--card", folder / "card"}).json();
    EXPECT_EQ(list["rootPath"], "3F005015");
    EXPECT_EQ(list["tokenInfo"]["label"], "New card");
    EXPECT_EQ(list["tokenInfo"]["serialNumber"], "0A0B");
    EXPECT_EQ(list["tokenInfo"]["manufacturerID"], "Maker");
    EXPECT_EQ(list["tokenInfo"]["loginRequired"], false);
    EXPECT_EQ(list["fat"].size(), 1u) << "TokenInfo's row alone";
    for (const char* kind : {"privateKeys", "publicKeys", "trustedPublicKeys", "secretKeys",
                             "certificates", "trustedCertificates", "usefulCertificates",
                             "dataObjects", "containers", "authObjects"}) {
        EXPECT_EQ(list[kind], Json::array()) << kind;
    }
}

TEST(Init, LeavesNothingToFind) {
    const TemporaryFolder folder;
    ASSERT_EQ(run({"init", folder / "card"}).exit, 0);
    const Result check = run({"check", "--card", folder / "card"});
    EXPECT_EQ(check.exit, 0) << check.out;
    EXPECT_EQ(check.out, "no findings\n");
}

TEST(Init, WritesOctetsThatOtherReadersKnow) {
    const TemporaryFolder folder;
    ASSERT_EQ(run({"init", folder / "card", "--label", "A", "--serial", "01"}).exit, 0);
    const auto contents = [&](const char* file) {
        std::string octets = readFile(folder.path() / "card" / file);
        octets.erase(octets.find_last_not_of('\0') + 1);
        return octets;
    };
    EXPECT_EQ(contents("3F00/2F00"),
              std::string("\x61\x14"                    // application
                          "\x4F\x0C\xA0\0\0\0cPKCS-15"  //   AID
                          "\x51\x04\x3F\0\x50\x15",
                          22));  //   path
    EXPECT_EQ(contents("3F00/5015/5032"),
              std::string("\x30\x0C"      // TokenInfo
                          "\x02\x01\0"    //   version v1
                          "\x04\x01\x01"  //   serialNumber
                          "\x80\x01"      //   label
                          "A"
                          "\x03\x01",
                          13));  //   tokenflags, none (their 00 was cut with the padding)
    EXPECT_EQ(contents("3F00/5015/5031").substr(0, 16),
              std::string("\xA0\x06\x30\x04\x04\x02\x44\x01"  // private keys: 4401
                          "\xA1\x06\x30\x04\x04\x02\x44\x02",
                          16));  // public keys: 4402
    EXPECT_EQ(contents("3F00/5015/5031").size(), 9u * 8u);
}

TEST(Init, GivesDirectoryFilesTheSizeAskedFor) {
    const TemporaryFolder folder;
    ASSERT_EQ(run({"init", folder / "card", "--file-size", "77"}).exit, 0);
    const Json dump = run({"--json", "--card", folder / "card", "dump"}).json();
    ASSERT_EQ(dump["files"].size(), 12u) << "EF(DIR) is the last";
    for (std::size_t i = 2; i < 11; ++i) EXPECT_EQ(dump["files"][i]["size"], 77) << i;
}

TEST(Init, MakesAnApplicationWithAnIdentifierOfItsOwn) {
    const TemporaryFolder folder;
    ASSERT_EQ(run({"--aid", "A000000001", "init", folder / "card"}).exit, 0);
    EXPECT_EQ(run({"--card", folder / "card", "list"}).exit, 1);
    EXPECT_EQ(run({"--card", folder / "card", "--aid", "A000000001", "list"}).exit, 0);
}

TEST(Init, MakesAnApplicationOfISO7816Part15ThatNeedsNoNaming) {
    const TemporaryFolder folder;
    ASSERT_EQ(run({"--aid", "E828BD080F", "init", folder / "card"}).exit, 0);
    EXPECT_EQ(run({"--card", folder / "card", "list"}).exit, 0);
}

TEST(Init, TakesNoPath) {
    const TemporaryFolder folder;
    EXPECT_EQ(run({"--path", "5016", "init", folder / "card"}).exit, 2);
}

TEST(Init, RefusesAFolderThatHoldsACard) {
    const TemporaryFolder folder;
    writeFile(folder / "card/CARD", "3F00 df\n");
    const Result result = run({"init", folder / "card"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("card folder exists"));
    EXPECT_EQ(readFile(folder / "card/CARD"), "3F00 df\n");
}

TEST(Init, SaysWhyAFolderCannotBeMade) {
    const TemporaryFolder folder;
    writeFile(folder / "file", "");
    const Result result = run({"--json", "init", folder / "file/card"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.json()["error"]["message"].get<std::string>(),
                HasSubstr("card folder not writable"));
}

TEST(Init, RefusesFilesThatNoCardHolds) {
    const TemporaryFolder folder;
    const Result result = run({"init", folder / "card", "--file-size", "8388608"});
    EXPECT_EQ(result.exit, 2) << "nine of them are more than a card may have";
    EXPECT_FALSE(std::filesystem::exists(folder / "card"));
}

TEST(Init, MakesTheCardOfADescription) {
    const TemporaryFolder folder;
    const std::string description = TOVI_TEST_CARDS "/descriptions/plain.json";
    ASSERT_EQ(run({"init", folder / "card", "--from", description}).exit, 0);
    EXPECT_EQ(run({"--json", "--card", folder / "card", "list"}).out,
              runJson("plain", {"list"}).out);
}

TEST(Init, NamesThePlaceInABadDescription) {
    const TemporaryFolder folder;
    writeFile(folder / "card.json", R"({"files": [{"path": "3F00", "structure": "dff"}]})");
    const Result result = run({"init", folder / "card", "--from", folder / "card.json"});
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.err, HasSubstr("card.json: files[0].structure"));
    EXPECT_EQ(run({"init", folder / "card", "--from", folder / "none.json"}).exit, 1);
}

TEST(Init, TellsWhatItMade) {
    const TemporaryFolder folder;
    const Json expected = {{"card", folder / "a"}, {"files", 14}};
    EXPECT_EQ(run({"--json", "init", folder / "a"}).json(), expected);
    EXPECT_EQ(run({"--quiet", "init", folder / "b"}).out, "");
}

}  // namespace
}  // namespace tovi::test
