#include "tovi/card/CardLine.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

using Kind = FileDescription::Kind;

FileDescription file(std::string_view text) {
    CardLine line;
    EXPECT_EQ(parseCardLine(text, line), "");
    EXPECT_TRUE(std::holds_alternative<FileDescription>(line)) << text;
    return std::get<FileDescription>(line);
}

PinDescription pin(std::string_view text) {
    CardLine line;
    EXPECT_EQ(parseCardLine(text, line), "");
    EXPECT_TRUE(std::holds_alternative<PinDescription>(line)) << text;
    return std::get<PinDescription>(line);
}

std::string reason(std::string_view text) {
    CardLine line;
    return parseCardLine(text, line);
}

TEST(CardLine, SaysNothingWhenBlankOrAComment) {
    for (const char* text : {"", "  \t", "\r", "# 3F00 df", "   # indented", "#"}) {
        CardLine line = FileDescription();
        EXPECT_EQ(parseCardLine(text, line), "") << text;
        EXPECT_TRUE(std::holds_alternative<std::monostate>(line)) << text;
    }
}

TEST(CardLine, DescribesADf) {
    for (const char* text : {"3F00 df", "3F00 df -", "  3F00\tdf   -  \r"}) {
        EXPECT_EQ(file(text).kind, Kind::df) << text;
        EXPECT_EQ(hexOf(file(text).path), "3F00") << text;
    }
    EXPECT_EQ(hexOf(file("3F00/5015 df - aid=A00000Ff").aid), "A00000FF");
    EXPECT_EQ(hexOf(file("3F00/5015 df aid=A0").aid), "A0");
}

TEST(CardLine, DescribesElementaryFiles) {
    const FileDescription transparent =
        file("3F00/5015/4401 transparent 512 sfi=17 read=never update=pin:1");
    EXPECT_EQ(hexOf(transparent.path), "3F0050154401");
    EXPECT_EQ(transparent.kind, Kind::transparent);
    EXPECT_EQ(transparent.size, 512u);
    EXPECT_EQ(transparent.sfi, 17);
    EXPECT_EQ(transparent.read, (AccessRule{AccessRule::Kind::never, 0}));
    EXPECT_EQ(transparent.update, (AccessRule{AccessRule::Kind::pin, 1}));
    const FileDescription linear = file("3F00/4404 linear 20 record=0x40 read=always");
    EXPECT_EQ(linear.kind, Kind::linearVariable);
    EXPECT_EQ(linear.size, 20u);
    EXPECT_EQ(linear.recordSize, 64u);
    EXPECT_EQ(linear.read, AccessRule());
    EXPECT_EQ(file("3F00/4404 linear-fixed 20 record=64").kind, Kind::linearFixed);
}

TEST(CardLine, DescribesPins) {
    EXPECT_EQ(pin("pin 0x81 31323334 5"), (PinDescription{0x81, octets("31323334"), 5, 5}));
    EXPECT_EQ(pin("pin 1 aB 3 left=0"), (PinDescription{1, octets("AB"), 3, 0}));
}

TEST(CardLine, SaysWhatWasFoundAndWhatExpected) {
    const std::string path = "expected pin, or a path in upper-case hex such as 3F00/5015";
    EXPECT_EQ(reason("3F0 df"), "found '3F0', " + path);
    EXPECT_EQ(reason("3f00 df"), "found '3f00', " + path);
    EXPECT_EQ(reason("3F00/ df"), "found '3F00/', " + path);
    EXPECT_EQ(reason("3F00//5015 df"), "found '3F00//5015', " + path);
    EXPECT_EQ(reason("/3F00 df"), "found '/3F00', " + path);
    EXPECT_EQ(reason("3F00/../5015 df"), "found '3F00/../5015', " + path);
    EXPECT_EQ(reason("3F005015 df"), "found '3F005015', " + path);
    EXPECT_EQ(reason("3F00"),
              "found the end of the line, expected df, transparent, linear or linear-fixed");
    EXPECT_EQ(reason("3F00 tree"),
              "found 'tree', expected df, transparent, linear or linear-fixed");
    EXPECT_EQ(reason("3F00/4401 transparent"), "found the end of the line, expected a size");
    EXPECT_EQ(reason("3F00/4401 transparent -1"), "found '-1', expected a size");
    EXPECT_EQ(reason("3F00/4401 transparent 12x"), "found '12x', expected a size");
    EXPECT_EQ(reason("3F00/4401 transparent 0x"), "found '0x', expected a size");
    EXPECT_EQ(reason("3F00/4401 transparent 99999999999999999999"),
              "found '99999999999999999999', expected a size");
}

TEST(CardLine, TakesOnlyTheOptionsOfTheStructure) {
    EXPECT_EQ(reason("3F00/4401 transparent 1 record=4"),
              "found 'record=4', expected sfi=, read= or update=");
    EXPECT_EQ(reason("3F00/4401 linear 1 aid=A0"),
              "found 'aid=A0', expected record=, sfi=, read= or update=");
    EXPECT_EQ(reason("3F00 df - sfi=1"), "found 'sfi=1', expected aid=, read= or update=");
    EXPECT_EQ(reason("3F00 df 12"), "found '12', expected aid=, read= or update=");
    EXPECT_EQ(reason("3F00/4401 transparent 1 sfi"),
              "found 'sfi', expected sfi=, read= or update=");
    EXPECT_EQ(reason("3F00/4401 transparent 1 sfi=1 sfi=2"),
              "found 'sfi=2', expected each option once");
}

TEST(CardLine, ReadsTheValuesOfOptionsStrictly) {
    const std::string rule = "expected always, never or pin: and a number up to 255";
    const std::string start = "3F00/4401 transparent 1 ";
    EXPECT_EQ(reason(start + "read=pin"), "found 'read=pin', " + rule);
    EXPECT_EQ(reason(start + "read="), "found 'read=', " + rule);
    EXPECT_EQ(reason(start + "update=pin:256"), "found 'update=pin:256', " + rule);
    EXPECT_EQ(reason(start + "update=pin:"), "found 'update=pin:', " + rule);
    EXPECT_EQ(reason(start + "sfi=256"), "found 'sfi=256', expected a short identifier, 1 to 30");
    EXPECT_EQ(reason("3F00 df - aid=A"), "found 'aid=A', expected an AID in hex");
    EXPECT_EQ(reason("3F00 df - aid="), "found 'aid=', expected an AID in hex");
    EXPECT_EQ(reason("3F00 df - aid=GG"), "found 'aid=GG', expected an AID in hex");
    EXPECT_EQ(reason("3F00/4401 linear 1 record=x"),
              "found 'record=x', expected a number of octets");
}

TEST(CardLine, RefusesPinLinesWithoutTellingTheValue) {
    EXPECT_EQ(reason("pin"), "found the end of the line, expected a reference, 0 to 255");
    EXPECT_EQ(reason("pin 1"), "found the end of the line, expected a value in hex");
    EXPECT_EQ(reason("pin 1 31"), "found the end of the line, expected a number of tries");
    EXPECT_EQ(reason("pin 256 31 3"), "found '256', expected a reference, 0 to 255");
    EXPECT_EQ(reason("pin 1 secret 3"), "found something else than a value in hex");
    EXPECT_EQ(reason("pin 1 31 many"), "found 'many', expected a number of tries");
    EXPECT_EQ(reason("pin 1 31 3 2"), "found '2', expected left= and a number");
    EXPECT_EQ(reason("pin 1 31 3 left=2 x"), "found 'x', expected the end of the line");
}

TEST(CardLine, QuotesWhatWasFoundShortAndPrintable) {
    EXPECT_EQ(inQuotes("a\x1B[2J\n"), "'a?[2J?'");
    EXPECT_EQ(inQuotes(std::string(100, 'x')), "'" + std::string(40, 'x') + "...'");
}

TEST(CardLine, FormatsWhatItReads) {
    for (const char* text :
         {"3F00              df            -", "3F00/5015         df            - aid=A000",
          "3F00/5015/4401    transparent   512 sfi=17 read=never update=pin:1",
          "3F00/5015/4404    linear        20 record=64",
          "3F00/5015/4404    linear-fixed  20 record=64"})
        EXPECT_EQ(formatCardLine(file(text)), text);
    for (const char* text : {"pin 129 31323334 5", "pin 1 AB 3 left=0"})
        EXPECT_EQ(formatCardLine(pin(text)), text);
}

}  // namespace
}  // namespace tovi::test
