#include "tovi/card/FileSelector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

constexpr const char* operation = "Test::operation";

/// A selector on a card of which only the answers are known.
struct Selector {
    explicit Selector(std::vector<std::string> answers) : channel(std::move(answers)) {}

    std::uint16_t select(const char* path) {
        return selector.selectFile(octets(path), operation).status;
    }
    void selectApplication() { selector.selectApplication(octets("A0"), 0x0C, operation); }

    ScriptedChannel channel;
    CommandExchange exchange{channel, {}};
    FileSelector selector{exchange};
};

TEST(FileSelector, NamesAnAbsolutePathInOneCommand) {
    Selector card({"9000"});
    EXPECT_EQ(card.select("3F0050155031"), 0x9000);
    EXPECT_THAT(card.channel.commands, ElementsAre("00A40804045015503100"));
}

TEST(FileSelector, SelectsTheMasterFileByIdentifier) {
    Selector card({"9000"});
    EXPECT_EQ(card.select("3F00"), 0x9000);
    EXPECT_THAT(card.channel.commands, ElementsAre("00A40004023F0000"));
}

TEST(FileSelector, NamesRelativePathsByWhatTheyAre) {
    Selector card({"9000"});
    card.select("5031");
    card.select("3FFF5032");
    card.select("6F014404");
    card.select("3FFF");
    EXPECT_THAT(card.channel.commands, ElementsAre("00A4020402503100", "00A4020402503200",
                                                   "00A40904046F01440400", "00A40204023FFF00"));
}

TEST(FileSelector, GoesStepByStepWhereTheCardRefusesPathsAndRemembersIt) {
    for (const char* refused : {"6700", "6A80", "6A81", "6A86", "6A87", "6B00", "6D00"}) {
        Selector card({refused, refused, "9000"});
        EXPECT_EQ(card.select("3F0050155031"), 0x9000) << refused;
        EXPECT_THAT(card.channel.commands,
                    ElementsAre("00A40804045015503100", "00A40800045015503100", "00A40004023F0000",
                                "00A4000402501500", "00A4000402503100"));
        card.channel.commands.clear();
        EXPECT_EQ(card.select("5032"), 0x9000);
        EXPECT_THAT(card.channel.commands, ElementsAre("00A4000402503200"));
    }
}

TEST(FileSelector, AsksForFciWhereTheCardHasNoFcp) {
    Selector card({"6A86", "9000"});
    card.select("3F0050155031");
    card.select("3F0050155032");
    EXPECT_THAT(card.channel.commands, ElementsAre("00A40804045015503100", "00A40800045015503100",
                                                   "00A40800045015503200"));
}

TEST(FileSelector, TriesEveryFormOnceAndReportsTheRefusal) {
    Selector card({"6A86"});
    EXPECT_EQ(card.select("3F0050155031"), 0x6A86);
    EXPECT_EQ(card.channel.commands.size(), 6u);
}

TEST(FileSelector, TakesAMissingFileForWhatItIs) {
    Selector card({"6A82"});
    EXPECT_EQ(card.select("3F0050155031"), 0x6A82);
    EXPECT_EQ(card.select("5031"), 0x6A82);
    EXPECT_EQ(card.channel.commands.size(), 2u);
}

TEST(FileSelector, StopsAtAStepThatIsMissing) {
    Selector card({"6A86", "6A86", "9000", "6A82"});
    EXPECT_EQ(card.select("3F0050155031"), 0x6A82);
    EXPECT_EQ(card.channel.commands.size(), 4u);
}

TEST(FileSelector, SelectsTheApplicationAnewAfterAnotherDfBecameCurrent) {
    Selector card({"9000"});
    card.selectApplication();
    card.select("5031");
    card.select("3F002F00");
    card.select("5031");
    EXPECT_THAT(card.channel.commands,
                ElementsAre("00A4040C01A0", "00A4020402503100", "00A40804022F0000", "00A4040C01A0",
                            "00A4020402503100"));
}

TEST(FileSelector, SelectsTheApplicationAnewAfterAPathThroughItsOwnDf) {
    Selector card({"9000"});
    card.selectApplication();
    card.select("6F014404");
    card.select("5031");
    EXPECT_THAT(card.channel.commands, ElementsAre("00A4040C01A0", "00A40904046F01440400",
                                                   "00A4040C01A0", "00A4020402503100"));
}

TEST(FileSelector, LooksAgainForAFileThatIsGoneSinceTheApplicationWasSelected) {
    Selector card({"9000", "9000", "6A82", "9000", "9000"});
    card.selectApplication();
    card.select("5031");
    EXPECT_EQ(card.select("5032"), 0x9000);
    EXPECT_THAT(card.channel.commands,
                ElementsAre("00A4040C01A0", "00A4020402503100", "00A4020402503200", "00A4040C01A0",
                            "00A4020402503200"));
}

TEST(FileSelector, LooksOnceForAFileRightAfterTheApplication) {
    Selector card({"9000", "6A82"});
    card.selectApplication();
    EXPECT_EQ(card.select("5032"), 0x6A82);
    EXPECT_EQ(card.channel.commands.size(), 2u);
}

TEST(FileSelector, KeepsTheApplicationThatWasSelectedLast) {
    Selector card({"9000", "6A82", "9000"});
    card.selectApplication();
    card.selector.selectApplication(octets("B0"), 0x0C, operation);
    card.channel.commands.clear();
    card.select("5031");
    EXPECT_THAT(card.channel.commands, ElementsAre("00A4040C01A0", "00A4020402503100"));
}

}  // namespace
}  // namespace tovi::test
