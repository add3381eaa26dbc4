#include "tools/ApplicationSearch.h"

#include <gtest/gtest.h>

#include "TestCard.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

const Blob directory = {0x3F, 0x00, 0x2F, 0x00};
const Blob folder = {0x3F, 0x00, 0x4D, 0x00};
const Blob usual = {0x3F, 0x00, 0x50, 0x15};
const Blob cryptographic = *fromHex("E828BD080F01");

// 4D00: PKCS#15's identifier, path and a DDO with odfPath 5131.
const char* const pkcs15Entry =
    "61 20 4F0CA000000063504B43532D3135 51043F004D00 730A06022A03300404025131";

/// A card with EF(DIR), asked through commands alone, as one in a reader is.
struct Card : TestCard {
    explicit Card(const std::string& entries = "") {
        std::string digits;
        for (const char digit : entries) {
            if (digit != ' ') digits += digit;
        }
        if (!digits.empty()) card.addTransparent(directory, 300, *fromHex(digits));
    }
    FoundApplication find(const WantedApplication& wanted = {}) {
        return findApplication(os, nullptr, wanted);
    }
};

TEST(FindApplication, TakesThePathThatTheDirectorySaysOfASelectedApplication) {
    Card test(pkcs15Entry);
    test.card.addFolder(folder, PKCS15_AID);
    const FoundApplication found = test.find();
    EXPECT_EQ(found.path, folder);
    EXPECT_TRUE(found.knowsAid);
    EXPECT_EQ(found.aid, PKCS15_AID);
    EXPECT_EQ(found.entry.odf, (Blob{0x51, 0x31}));
}

TEST(FindApplication, TakesTheIdentifierThatTheCardAnswersWithoutADirectory) {
    Card test;
    test.card.addFolder(folder, PKCS15_AID);
    EXPECT_EQ(test.find().path, folder);
}

TEST(FindApplication, BelievesTheCardMoreThanAStaleDirectory) {
    Card test(pkcs15Entry);
    test.card.addFolder(Blob{0x3F, 0x00, 0x4E, 0x00}, PKCS15_AID);
    EXPECT_EQ(test.find().path, (Blob{0x3F, 0x00, 0x4E, 0x00}));
}

TEST(FindApplication, TakesTheUsualPlaceOfASelectedApplicationOfWhichNothingIsTold) {
    Card test;
    test.card.addFolder(usual, PKCS15_AID);
    test.card.settings().fileControl = false;
    const FoundApplication found = test.find();
    EXPECT_EQ(found.path, usual);
    EXPECT_TRUE(found.knowsAid);
}

TEST(FindApplication, GoesByPathWhereTheCardDoesNotKnowTheIdentifier) {
    Card test(pkcs15Entry);
    test.card.addFolder(folder);
    const FoundApplication found = test.find();
    EXPECT_EQ(found.path, folder);
    EXPECT_FALSE(found.knowsAid);
    EXPECT_EQ(found.entry.odf, (Blob{0x51, 0x31}));
}

TEST(FindApplication, TakesAnApplicationOfISO7816Part15OtherwiseByIdentifier) {
    Card test("610E 4F06E828BD080F01 51043F004D00");
    test.card.addFolder(folder, cryptographic);
    const FoundApplication found = test.find();
    EXPECT_EQ(found.aid, cryptographic);
    EXPECT_EQ(found.path, folder);
    EXPECT_TRUE(found.knowsAid);
}

TEST(FindApplication, TakesAnApplicationOfISO7816Part15OtherwiseByPath) {
    Card test("610E 4F06E828BD080F01 51043F004D00");
    test.card.addFolder(folder);
    const FoundApplication found = test.find();
    EXPECT_EQ(found.aid, cryptographic);
    EXPECT_EQ(found.path, folder);
    EXPECT_FALSE(found.knowsAid);
}

TEST(FindApplication, PrefersThatOfPKCS15) {
    Card test(std::string("610E 4F06E828BD080F01 51043F005015") + pkcs15Entry);
    test.card.addFolder(folder);
    test.card.addFolder(usual, cryptographic);
    EXPECT_EQ(test.find().path, folder);
}

TEST(FindApplication, TakesNoOtherThanTheIdentifierAskedFor) {
    Card test("610E 4F06E828BD080F01 51043F004D00");
    test.card.addFolder(folder, cryptographic);
    const FoundApplication found = test.find({.aid = PKCS15_AID});
    EXPECT_EQ(found.aid, PKCS15_AID);
    EXPECT_EQ(found.path, usual);
    EXPECT_TRUE(found.knowsAid) << "so that selecting it fails";
    EXPECT_EQ(test.find({.aid = cryptographic}).path, folder);
}

TEST(FindApplication, TakesThePathAskedFor) {
    Card test(pkcs15Entry);
    test.card.addFolder(folder);
    const FoundApplication found = test.find({.path = folder});
    EXPECT_EQ(found.path, folder);
    EXPECT_FALSE(found.knowsAid);
    EXPECT_TRUE(found.aid.empty());
    EXPECT_EQ(found.entry.odf, (Blob{0x51, 0x31})) << "the entry of that path";
    EXPECT_TRUE(test.find({.path = usual}).entry.odf.empty());
    const FoundApplication both = test.find({.aid = PKCS15_AID, .path = usual});
    EXPECT_EQ(both.path, usual);
    EXPECT_TRUE(both.knowsAid);
    EXPECT_EQ(both.entry.odf, (Blob{0x51, 0x31})) << "the entry of that identifier";
}

TEST(FindApplication, AsksADescriptionFirst) {
    CardDescription description;
    FileDescription file;
    file.path = Blob{0x3F, 0x00, 0x4E, 0x00};
    file.aid = PKCS15_AID;
    description.add(file);
    Card test;
    EXPECT_EQ(findApplication(test.os, &description, {}).path, file.path);
    EXPECT_EQ(findApplication(test.os, &description, {.aid = Blob{0xA0}}).path, file.path);
    EXPECT_EQ(findApplication(test.os, &description, {.aid = Blob{0xA1}}).path, usual);
}

}  // namespace
}  // namespace tovi::test
