#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

TEST(FreeFid, PrintsTheLowestThatNoObjectOfTheKindUses) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePrivateKey("01"), writePrivateKey("02")}).exit, 0);
    const auto fid = [&](std::vector<std::string> options) {
        options.insert(options.begin(), "free-fid");
        const Result result = card.run(options);
        EXPECT_EQ(result.exit, 0) << result.err;
        return result.json();
    };
    EXPECT_EQ(fid({"--kind", "privateKey", "--start", "4b01"}).dump(), R"({"fid":"4B03"})");
    EXPECT_EQ(fid({"--kind", "publicKey", "--start", "4B01"})["fid"], "4B01");
    EXPECT_EQ(fid({"--kind", "privateKey"})["fid"], "0001");
    EXPECT_EQ(fid({"--kind", "dataObject", "--start", "5031"})["fid"], "5034");
    for (const char* kind : {"trustedPublicKey", "secretKey", "certificate", "trustedCertificate",
                             "usefulCertificate", "authObject"}) {
        EXPECT_EQ(fid({"--kind", kind, "--start", "8000"})["fid"], "8000") << kind;
    }
    EXPECT_EQ(run({"--card", card.path(), "free-fid", "--kind", "certificate"}).out, "0001\n");
}

TEST(FreeFid, FailsWithTheContainersOwnError) {
    const NewCard card;
    const Result none = card.run({"free-fid", "--kind", "certificate", "--start", "7FFF"});
    EXPECT_EQ(none.exit, 1);
    EXPECT_EQ(none.json()["error"]["message"], "no free FID");
    EXPECT_EQ(none.json()["error"]["operation"], "getNextFreeFID");
    const Result container = card.run({"free-fid", "--kind", "container"});
    EXPECT_EQ(container.exit, 1);
    EXPECT_EQ(container.json()["error"]["message"], "unsupported object type");
}

}  // namespace
}  // namespace tovi::test
