// The example card, and the commands around it as the README has them.

#include <gtest/gtest.h>

#include <cstdlib>

#include "NewCard.h"

namespace tovi::test {
namespace {

const std::string personalise = TOVI_EXAMPLES "/personalise.json";

TEST(Personalise, MakesACardWithNothingToFind) {
    const NewCard card;
    const Result applied = card.run({"apply", personalise});
    EXPECT_EQ(applied.exit, 0) << applied.err;
    const Result check = card.run({"check"});
    EXPECT_EQ(check.exit, 0) << check.out;
}

TEST(Personalise, JoinsTheKeysOfTheHolderToOneContainer) {
    const NewCard card;
    ASSERT_EQ(card.run({"apply", personalise}).exit, 0);
    const Json list = card.list();
    ASSERT_EQ(list["containers"].size(), 1u);
    const Json& container = list["containers"][0];
    EXPECT_EQ(container["exchangeKeyRecord"], 1);
    EXPECT_EQ(container["exchangeCertificateRecord"], 5);
    EXPECT_EQ(container["signatureKeyRecord"], 2);
    EXPECT_EQ(container["signatureCertificateRecord"], 6);
    EXPECT_EQ(container["logonCertificate"], true);
    EXPECT_EQ(list["privateKeys"][0]["publicKey"], 3);
    EXPECT_EQ(list["privateKeys"][1]["publicKey"], 4);
}

TEST(Personalise, MakesObjectsWithTheFlagsThatItNames) {
    const NewCard card;
    ASSERT_EQ(card.run({"apply", personalise}).exit, 0);
    const Json list = card.list();
    std::size_t compared = 0;
    for (const Json& operation : Json::parse(readFile(personalise))) {
        if (operation["op"] != "write") continue;
        const std::string kind = operation["kind"];
        const Json& info = operation["info"];
        for (const Json& object : list[kind + "s"]) {
            if (object["fid"] != nullptr && kind != "authObject" &&
                object["path"]["path"] != info["path"]["path"]) {
                continue;
            }
            if (kind == "authObject" && object["authObjectId"] != info["authObjectId"]) continue;
            EXPECT_EQ(object["isModifiable"], info["isModifiable"]) << info["label"];
            EXPECT_EQ(object["isPrivate"], info.value("isPrivate", false)) << info["label"];
            ++compared;
        }
    }
    EXPECT_EQ(compared, 12u);
}

TEST(Personalise, GoesThroughTheRoundOfTheReadme) {
    const TemporaryFolder folder;
    std::filesystem::create_directory_symlink(TOVI_EXAMPLES, folder.path() / "examples");
    const std::filesystem::path binary = TOVI_BINARY;
    const std::string line = "cd " + folder.path().string() +
                             " && PATH=" + binary.parent_path().string() +
                             ":$PATH sh -e " TOVI_EXAMPLES "/personalise.sh >out 2>&1";
    EXPECT_EQ(std::system(line.c_str()), 0) << readFile(folder / "out");
    const Json list = run({"--json", "--card", folder / "my-card", "list"}).json();
    EXPECT_EQ(list["tokenInfo"]["label"], "Staff card of Alice Example");
    ASSERT_EQ(list["dataObjects"].size(), 1u) << "the other one was deleted";
    EXPECT_EQ(list["dataObjects"][0]["label"], "Name and staff number");
}

}  // namespace
}  // namespace tovi::test
