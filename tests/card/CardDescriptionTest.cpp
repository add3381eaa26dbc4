#include "tovi/card/CardDescription.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

constexpr const char* sample =
    "# a card\n"
    "\n"
    "3F00              df\n"
    "3F00/5015         df            -      aid=A000000063504B43532D3135\n"
    "3F00/5015/5031    transparent   128    sfi=17\r\n"
    "  # linear\n"
    "3F00/5015/4404    linear        20     record=64 update=pin:1\n"
    "pin 1 31323334 3\r\n";

CardDescription parse(const std::string& text) { return CardDescription::parse(text, "CARD"); }

/// The text of the failure without the name of the file.
std::string reason(const std::string& text) {
    try {
        parse(text);
    } catch (const CardFolderError& error) {
        EXPECT_STREQ(error.GetMessage(), "invalid card description");
        EXPECT_STREQ(error.GetOperation(), "CardDescription::parse");
        EXPECT_EQ(error.text().substr(0, 5), "CARD:");
        return error.text().substr(5);
    }
    return "";
}

FileDescription transparent(const char* path, std::size_t size) {
    FileDescription file;
    file.path = octets(path);
    file.kind = FileDescription::Kind::transparent;
    file.size = size;
    return file;
}

TEST(CardDescription, ReadsFilesAndPinsInTheirOrder) {
    const CardDescription card = parse(sample);
    ASSERT_EQ(card.files().size(), 4u);
    EXPECT_EQ(hexOf(card.files()[0].path), "3F00");
    EXPECT_EQ(card.files()[1].aid.size(), 12u);
    EXPECT_EQ(card.files()[2].sfi, 17);
    EXPECT_EQ(card.files()[3].recordSize, 64u);
    ASSERT_EQ(card.pins().size(), 1u);
    EXPECT_EQ(card.pins()[0].tries, 3u);
}

TEST(CardDescription, KeepsTheTextAsItWas) {
    EXPECT_EQ(parse(sample).text(), sample);
    EXPECT_EQ(parse("").text(), "");
    EXPECT_EQ(parse("\n\n").text(), "\n\n");
    EXPECT_EQ(parse("# no line end").text(), "# no line end\n");
}

TEST(CardDescription, ChangesOnlyTheLineOfThePin) {
    CardDescription card = parse(sample);
    card.setTriesLeft(1, 2);
    card.setTriesLeft(9, 2);
    std::string expected = sample;
    expected.replace(expected.find("31323334 3"), 10, "31323334 3 left=2");
    EXPECT_EQ(card.text(), expected);
    EXPECT_EQ(card.pins()[0].left, 2u);
    EXPECT_EQ(parse(card.text()).pins()[0].left, 2u);
    card.setTriesLeft(1, 3);
    EXPECT_EQ(card.text(), sample);
}

TEST(CardDescription, NamesFileAndLine) {
    EXPECT_EQ(reason("# x\n\n3F00 tree\n"),
              "3: found 'tree', expected df, transparent, linear or linear-fixed");
    EXPECT_EQ(reason("3F00 df\n3F00 df"), "2: expected each path once");
}

TEST(CardDescription, KeepsPathsBelowTheMasterFile) {
    EXPECT_EQ(reason("5015 df"), "1: expected a path that begins with 3F00");
    EXPECT_EQ(reason("3F00/5015 df\n3F00/5015/3F00 df"),
              "2: expected no 3F00, 3FFF or FFFF below the master file");
    EXPECT_EQ(reason("3F00/3FFF df"), "1: expected no 3F00, 3FFF or FFFF below the master file");
    EXPECT_EQ(reason("3F00/FFFF df"), "1: expected no 3F00, 3FFF or FFFF below the master file");
    EXPECT_EQ(reason("3F00/1/2"),
              "1: found '3F00/1/2', expected pin, or a path in upper-case hex "
              "such as 3F00/5015");
    EXPECT_EQ(reason("3F00/0001/0002/0003/0004/0005/0006/0007/0008 df"),
              "1: expected a path of at most 8 steps");
    EXPECT_EQ(reason("3F00 transparent 5"), "1: expected df for the master file");
}

TEST(CardDescription, WantsTheFolderOfAFileAbove) {
    EXPECT_EQ(reason("3F00/5015/4401 transparent 8\n3F00/5015 df"),
              "1: expected a line for 3F00/5015 above");
    EXPECT_EQ(reason("3F00/5015 transparent 8\n3F00/5015/4401 transparent 8"),
              "2: expected 3F00/5015 to be a df");
    EXPECT_EQ(reason("3F00/4401 transparent 8"), "");  // the master file is always there
}

TEST(CardDescription, WantsPathsNamesAndReferencesOnce) {
    EXPECT_EQ(reason("3F00/4401 transparent 8\n3F00/4401 linear 1 record=1"),
              "2: expected each path once");
    EXPECT_EQ(reason("3F00/5015 df - aid=A0\n3F00/5016 df - aid=a0"), "2: expected each AID once");
    EXPECT_EQ(reason("3F00/4401 transparent 8 sfi=1\n3F00/4402 transparent 8 sfi=1"),
              "2: expected each short identifier once in a df");
    EXPECT_EQ(reason("3F00/5015 df\n3F00/4401 transparent 8 sfi=1\n"
                     "3F00/5015/4401 transparent 8 sfi=1"),
              "");
    EXPECT_EQ(reason("pin 1 31 3\npin 0x01 32 3"), "2: expected each PIN reference once");
}

TEST(CardDescription, BoundsSizes) {
    EXPECT_EQ(reason("3F00/4401 transparent 16777216"), "");
    EXPECT_EQ(reason("3F00/4401 transparent 16777217"),
              "1: expected a file of at most 16777216 octets");
    EXPECT_EQ(reason("3F00/4401 linear 254 record=65535"), "");
    EXPECT_EQ(reason("3F00/4401 linear 255 record=1"), "1: expected at most 254 records");
    EXPECT_EQ(reason("3F00/4401 linear 1"), "1: expected record= and 1 to 65535 octets");
    EXPECT_EQ(reason("3F00/4401 linear 1 record=65536"),
              "1: expected record= and 1 to 65535 octets");
    const std::string large = " transparent 16777216\n";
    EXPECT_EQ(reason("3F00/0001" + large + "3F00/0002" + large + "3F00/0003" + large + "3F00/0004" +
                     large + "3F00/0005 transparent 1"),
              "5: expected a card of at most 67108864 octets");
    EXPECT_EQ(reason("3F00/4401 transparent 1 sfi=31"),
              "1: expected a short identifier of 1 to 30");
    EXPECT_EQ(reason("3F00/4401 transparent 1 sfi=0"), "1: expected a short identifier of 1 to 30");
    EXPECT_EQ(reason("3F00/5015 df - aid=" + std::string(32, 'A')), "");
    EXPECT_EQ(reason("3F00/5015 df - aid=" + std::string(34, 'A')),
              "1: expected an AID of at most 16 octets");
}

TEST(CardDescription, BoundsPins) {
    EXPECT_EQ(reason("pin 1 31 0"), "1: expected 1 to 15 tries");
    EXPECT_EQ(reason("pin 1 31 16"), "1: expected 1 to 15 tries");
    EXPECT_EQ(reason("pin 1 31 3 left=4"), "1: expected no more tries left than there are");
    EXPECT_EQ(reason("pin 1 " + std::string(512, '3') + " 3"),
              "1: expected a value of 1 to 255 octets");
}

TEST(CardDescription, BoundsTheTextAndTheNumberOfFiles) {
    EXPECT_EQ(reason(std::string(CardDescription::maxTextSize + 1, '\n')),
              "1: expected a text of at most 1048576 octets");
    std::string text;
    for (std::size_t i = 0; i <= CardDescription::maxFiles; ++i)
        text += pathName(Blob{0x3F, 0x00, static_cast<std::uint8_t>(i >> 8),
                              static_cast<std::uint8_t>(i)}) +
                " transparent 0\n";
    EXPECT_EQ(reason(text), "4097: expected at most 4096 files");
}

TEST(CardDescription, WritesWhatWasAdded) {
    CardDescription card;
    card.addComment("made\nfor a test");
    FileDescription folder;
    folder.path = octets("3F005015");
    folder.aid = octets("A000");
    card.add(folder);
    card.add(transparent("3F0050155031", 128));
    card.add(PinDescription{1, octets("31"), 3, 3});
    EXPECT_EQ(card.text(),
              "# made for a test\n"
              "3F00/5015         df            - aid=A000\n"
              "3F00/5015/5031    transparent   128\n"
              "pin 1 31 3\n");
    const CardDescription again = parse(card.text());
    EXPECT_EQ(again.files(), card.files());
    EXPECT_EQ(again.pins(), card.pins());
}

TEST(CardDescription, RefusesToAddWhatCouldNotBeRead) {
    CardDescription card;
    const auto reasonAgainst = [&card](const auto& description) -> std::string {
        try {
            card.add(description);
        } catch (const CardFolderError& error) {
            EXPECT_STREQ(error.GetOperation(), "CardDescription::add");
            return error.text();
        }
        return "";
    };
    EXPECT_EQ(reasonAgainst(transparent("3F0050155031", 1)),
              "3F00/5015/5031: expected a line for 3F00/5015 above");
    EXPECT_EQ(reasonAgainst(transparent("", 1)), ": expected a path that begins with 3F00");
    FileDescription file = transparent("3F004401", 1);
    file.recordSize = 5;
    EXPECT_EQ(reasonAgainst(file), "3F00/4401: expected no record size for a transparent file");
    file.recordSize = 0;
    file.aid = octets("A0");
    EXPECT_EQ(reasonAgainst(file), "3F00/4401: expected an AID for a df only");
    file = transparent("3F004401", 1);
    file.kind = FileDescription::Kind::df;
    EXPECT_EQ(reasonAgainst(file), "3F00/4401: expected no size for a df");
    file.size = 0;
    file.sfi = 1;
    EXPECT_EQ(reasonAgainst(file),
              "3F00/4401: expected a short identifier for an elementary file only");
    EXPECT_EQ(reasonAgainst(PinDescription{1, {}, 3, 3}),
              "pin 1: expected a value of 1 to 255 octets");
    EXPECT_TRUE(card.files().empty() && card.pins().empty() && card.text().empty());
}

TEST(CardFolderError, KeepsItsTextThroughCloneAndThrow) {
    const CardFolderError error("card folder in use", "Test::operation", "somewhere");
    const std::unique_ptr<CardFolderError> copy(error.Clone());
    try {
        static_cast<const Exception&>(*copy).Throw();
        FAIL();
    } catch (const CardFolderError& thrown) {
        EXPECT_EQ(thrown.text(), "somewhere");
        EXPECT_EQ(thrown.GetId(), smartcardId);
    }
}

}  // namespace
}  // namespace tovi::test
