#include "tools/EfDir.h"

#include <gtest/gtest.h>

#include "TestCard.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

const Blob directory = {0x3F, 0x00, 0x2F, 0x00};

// 61: AID, label "BELPIC", path 3F00DF00, 73 with an identifier; as a card in use has it.
const Blob belowDF00 =
    *fromHex("61234F0CA000000177504B43532D3135500642454C50494351043F00DF0073050603603802");
// AID of PKCS#15 and path 3F005015.
const Blob belowFifty = *fromHex("61144F0CA000000063504B43532D313551043F005015");

TEST(ApplicationInDirectory, IsFoundByItsIdentifier) {
    TestCard test;
    Blob contents = belowDF00;
    contents.append(belowFifty);
    test.card.addTransparent(directory, 128, contents);
    EXPECT_EQ(applicationInDirectory(test.os, PKCS15_AID), (Blob{0x3F, 0x00, 0x50, 0x15}));
    EXPECT_EQ(applicationInDirectory(test.os, *fromHex("A000000177504B43532D3135")),
              (Blob{0x3F, 0x00, 0xDF, 0x00}));
    EXPECT_EQ(applicationInDirectory(test.os, *fromHex("A000000177")),
              (Blob{0x3F, 0x00, 0xDF, 0x00}))
        << "the beginning is enough";
    EXPECT_EQ(applicationInDirectory(test.os, *fromHex("A1")), Blob{});
}

TEST(ApplicationInDirectory, IsFoundInALinearFile) {
    TestCard test;
    VirtualFile& file =
        test.card.addLinear(directory, FileDescription::Kind::linearVariable, 64, 5);
    file.records = {belowDF00, belowFifty};
    EXPECT_EQ(applicationInDirectory(test.os, PKCS15_AID), (Blob{0x3F, 0x00, 0x50, 0x15}));
}

TEST(ApplicationInDirectory, IsNotFoundWhereThereIsNothing) {
    TestCard test;
    EXPECT_EQ(applicationInDirectory(test.os, PKCS15_AID), Blob{}) << "no such file";
    test.card.addTransparent(directory, 40, *fromHex("61024F00611451"));
    EXPECT_EQ(applicationInDirectory(test.os, PKCS15_AID), Blob{}) << "no whole entry";
}

}  // namespace
}  // namespace tovi::test
