#include "tools/Text.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

Blob octets(std::string_view text) { return Blob(text.begin(), text.end()); }

TEST(Hex, IsUpperCaseWithoutSpaces) {
    EXPECT_EQ(toHex(Blob{0x00, 0xA5, 0xFF}), "00A5FF");
    EXPECT_EQ(toHex(Blob{}), "");
}

TEST(Hex, IsReadInEitherCase) {
    EXPECT_EQ(fromHex("00a5Ff"), (Blob{0x00, 0xA5, 0xFF}));
    EXPECT_EQ(fromHex(""), Blob{});
}

TEST(Hex, RefusesHalfOctetsAndOtherCharacters) {
    EXPECT_FALSE(fromHex("123"));
    EXPECT_FALSE(fromHex("0G"));
    EXPECT_FALSE(fromHex("G0"));
    EXPECT_FALSE(fromHex("0 "));
}

TEST(Utf8, KeepsCharactersOfEveryLength) {
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x91";
    EXPECT_EQ(toUtf8(octets(text)), text);
}

TEST(Utf8, ReplacesWhatIsNoCharacter) {
    const std::string r = "\xEF\xBF\xBD";
    EXPECT_EQ(toUtf8(octets("\xFF\x41")), r + "A");
    EXPECT_EQ(toUtf8(octets("\x80\x80")), r + r);
    EXPECT_EQ(toUtf8(octets("\xC0\xAF")), r + r) << "an overlong form";
    EXPECT_EQ(toUtf8(octets("\xE0\x9F\xBF")), r + r + r) << "an overlong form";
    EXPECT_EQ(toUtf8(octets("\xED\xA0\x80")), r + r + r) << "a surrogate";
    EXPECT_EQ(toUtf8(octets("\xF4\x90\x80\x80")), r + r + r + r) << "beyond U+10FFFF";
    EXPECT_EQ(toUtf8(octets("\xF5")), r);
}

TEST(Utf8, ReplacesAnUnfinishedCharacterOnce) {
    const std::string r = "\xEF\xBF\xBD";
    EXPECT_EQ(toUtf8(octets("\xE2\x82")), r);
    EXPECT_EQ(toUtf8(octets("\xF0\x9F\x94")), r);
    EXPECT_EQ(toUtf8(octets("\xE2\x82\x41")), r + "A");
}

TEST(ForTerminal, EscapesControlCharacters) {
    EXPECT_EQ(forTerminal(std::string_view("\x1B[31m\a\0\x7F", 8)), "\\x1B[31m\\x07\\x00\\x7F");
    EXPECT_EQ(forTerminal("\xC2\x9B"
                          "2J"),
              "\\x9B2J")
        << "the one-character form of ESC [";
}

TEST(ForTerminal, EscapesWhatTurnsTheDirectionOfText) {
    EXPECT_EQ(forTerminal("\xE2\x80\xAEgnp"), "\\u202Egnp");
    EXPECT_EQ(forTerminal("a\xE2\x80\x8B"
                          "b"),
              "a\\u200Bb")
        << "a space that is not seen";
}

TEST(ForTerminal, KeepsLinesOnlyWhenAsked) {
    EXPECT_EQ(forTerminal("a\nb"), "a\\x0Ab");
    EXPECT_EQ(forTerminal("a\nb\r", Lines::keep), "a\nb\\x0D");
}

TEST(ForTerminal, LeavesOtherTextAlone) {
    const std::string text = "Zo\xC3\xAB \\ \xE6\x97\xA5";
    EXPECT_EQ(forTerminal(text), text);
}

TEST(JsonForTerminal, EscapesWhatJsonLeavesOpen) {
    EXPECT_EQ(jsonForTerminal("[\"\x7F\xC2\x85\xC3\xA9\"]"), "[\"\\u007f\\u0085\xC3\xA9\"]");
}

TEST(DisplayWidth, CountsColumnsNotOctets) {
    EXPECT_EQ(displayWidth("abc"), 3u);
    EXPECT_EQ(displayWidth("\xC3\xA9"), 1u);
    EXPECT_EQ(displayWidth("\xE6\x97\xA5"), 2u) << "East Asian characters take two columns";
    EXPECT_EQ(displayWidth("e\xCC\x81"), 1u) << "a combining accent takes none";
}

}  // namespace
}  // namespace tovi::test
