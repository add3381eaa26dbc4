// SELECT of the virtual card; the source file beside VirtualCard.h of the same name.
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

/// The FID that the card says it selected, or the status word.
std::string selected(VirtualCard& card, const std::string& command) {
    const std::string response = answer(card, command + " 00");
    const std::size_t fid = response.find("8302");
    return fid == std::string::npos ? response : response.substr(fid + 4, 4);
}

TEST(VirtualCardSelect, FindsTheApplicationByItsWholeAndItsTruncatedName) {
    VirtualCard card = smallCard();
    EXPECT_EQ(selected(card, "00A40404 0C A000000063504B43532D3135"), "5015");
    EXPECT_EQ(selected(card, "00A40404 05 A000000063"), "5015");
    EXPECT_EQ(selected(card, "00A40404 05 A000000064"), "6A82");
    EXPECT_EQ(selected(card, "00A40404 0D A000000063504B43532D313500"), "6A82");
    EXPECT_EQ(answer(card, "00A40404"), "6A87");
}

TEST(VirtualCardSelect, FindsApplicationsOneAfterTheOtherByPartOfTheirName) {
    VirtualCard card;
    card.addFolder(octets("3F001001"), octets("A00001"));
    card.addFolder(octets("3F001002"), octets("B00001"));
    card.addFolder(octets("3F001003"), octets("A00002"));
    const std::string first = "00A40404 02 A000", last = "00A40405 02 A000";
    const std::string next = "00A40406 02 A000", previous = "00A40407 02 A000";
    EXPECT_EQ(selected(card, next), "1001");
    EXPECT_EQ(selected(card, next), "1003");
    EXPECT_EQ(selected(card, next), "6A82");
    EXPECT_EQ(selected(card, previous), "1001");
    EXPECT_EQ(selected(card, previous), "6A82");
    EXPECT_EQ(selected(card, last), "1003");
    EXPECT_EQ(selected(card, first), "1001");
    EXPECT_EQ(selected(card, "00A40000 02 3F00"), "3F00");
    EXPECT_EQ(selected(card, previous), "1003");
}

TEST(VirtualCardSelect, FindsFilesByIdentifierAroundTheCurrentDf) {
    VirtualCard card = smallCard();
    card.addFolder(octets("3F006000"));
    card.addTransparent(octets("3F002F00"), 8);
    EXPECT_EQ(selected(card, "00A40004 02 5015"), "5015");  // a child
    EXPECT_EQ(selected(card, "00A40004 02 4401"), "4401");  // a child
    EXPECT_EQ(selected(card, "00A40004 02 5015"), "5015");  // itself
    EXPECT_EQ(selected(card, "00A40004 02 6000"), "6000");  // a sibling DF
    EXPECT_EQ(selected(card, "00A40004 02 2F00"), "6A82");  // no sibling EF
    EXPECT_EQ(selected(card, "00A40004 02 3F00"), "3F00");
    EXPECT_EQ(selected(card, "00A40004 02 4401"), "6A82");
    EXPECT_EQ(selected(card, "00A40804 04 50156F01"), "6F01");
    EXPECT_EQ(selected(card, "00A40004 02 5015"), "5015");  // the parent
    EXPECT_EQ(selected(card, "00A40004"), "3F00");          // no identifier: the master file
    EXPECT_EQ(answer(card, "00A40004 01 3F"), "6A87");
}

TEST(VirtualCardSelect, TellsChildDfsFromElementaryFiles) {
    VirtualCard card = smallCard();
    EXPECT_EQ(selected(card, "00A40104 02 5015"), "5015");
    EXPECT_EQ(selected(card, "00A40104 02 4401"), "6A82");
    EXPECT_EQ(selected(card, "00A40204 02 6F01"), "6A82");
    EXPECT_EQ(selected(card, "00A40204 02 4401"), "4401");
    EXPECT_EQ(selected(card, "00A40104 02 6F01"), "6F01");
    EXPECT_EQ(selected(card, "00A40204 02 4401"), "6A82");  // not below this DF
    EXPECT_EQ(answer(card, "00A40204 01 44"), "6A87");
}

TEST(VirtualCardSelect, GoesUpToTheParent) {
    VirtualCard card = smallCard();
    selected(card, "00A40804 06 50156F014404");
    EXPECT_EQ(selected(card, "00A40304"), "5015");
    EXPECT_EQ(selected(card, "00A40304"), "3F00");
    EXPECT_EQ(selected(card, "00A40304"), "6A82");
    EXPECT_EQ(answer(card, "00A40304 02 3F00"), "6A87");
}

TEST(VirtualCardSelect, FollowsPathsFromTheMasterFileAndTheCurrentDf) {
    VirtualCard card = smallCard();
    EXPECT_EQ(selected(card, "00A40804 06 50156F014404"), "4404");
    EXPECT_EQ(selected(card, "00A40904 02 4404"), "4404");
    EXPECT_EQ(selected(card, "00A40804 02 5015"), "5015");
    EXPECT_EQ(selected(card, "00A40904 04 6F014404"), "4404");
    EXPECT_EQ(selected(card, "00A40904 04 6F014404"), "6A82");
    EXPECT_EQ(selected(card, "00A40804 04 44014404"), "6A82");
    EXPECT_EQ(selected(card, "00A40804 06 501544014404"), "6A82");  // through an EF
    EXPECT_EQ(answer(card, "00A40804"), "6A87");
    EXPECT_EQ(answer(card, "00A40804 03 501544"), "6A87");
    card.settings().selectByPath = false;
    EXPECT_EQ(answer(card, "00A40804 02 5015"), "6A86");
    EXPECT_EQ(answer(card, "00A40904 02 5015"), "6A86");
}

TEST(VirtualCardSelect, StaysWhereItIsWhenNothingIsFound) {
    VirtualCard card = smallCard();
    selected(card, "00A40804 04 50154401");
    EXPECT_EQ(selected(card, "00A40804 04 50159999"), "6A82");
    EXPECT_EQ(answer(card, "00B00000 02"), "01029000");
}

TEST(VirtualCardSelect, TellsWhatIsAskedFor) {
    VirtualCard card = smallCard();
    EXPECT_EQ(answer(card, "00A40804 04 50154401 00"),
              "620E"
              "80020020"
              "820101"
              "83024401"
              "880108"
              "9000");
    EXPECT_EQ(answer(card, "00A40800 04 50154401 00"),
              "6F0E"
              "80020020"
              "820101"
              "83024401"
              "880108"
              "9000");
    EXPECT_EQ(answer(card, "00A4080C 04 50154401"), "9000");
    EXPECT_EQ(answer(card, "00A40804 04 50154401"), "9000");  // no Le: no data
    EXPECT_EQ(answer(card, "00A40804 04 50154403 00"),
              "620B"
              "82050201000400"
              "83024403"
              "9000");
    card.settings().fileControl = false;
    EXPECT_EQ(answer(card, "00A40804 04 50154401 00"), "9000");
}

TEST(VirtualCardSelect, RefusesParametersItDoesNotKnow) {
    VirtualCard card = smallCard();
    EXPECT_EQ(answer(card, "00A40504 02 5015"), "6A86");
    EXPECT_EQ(answer(card, "00A40014 02 5015"), "6A86");
    EXPECT_EQ(answer(card, "00A40008 02 5015"), "6A86");  // FMD
    EXPECT_EQ(answer(card, "00A40006 02 5015"), "6A86");  // next, by identifier
}

}  // namespace
}  // namespace tovi::test
