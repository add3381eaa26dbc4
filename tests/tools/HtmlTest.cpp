#include "tools/Html.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

TEST(Html, EscapesTextsAndAttributes) {
    Html html;
    html.element("p", {{"title", "\"<&>'"}}, "\"<&>'");
    EXPECT_EQ(
        html.finish(),
        "<!DOCTYPE html>\n<p title=\"&quot;&lt;&amp;&gt;&#39;\">&quot;&lt;&amp;&gt;&#39;</p>");
}

TEST(Html, MakesControlCharactersVisible) {
    Html html;
    html.text("a\nb\x1B\xFF");
    EXPECT_EQ(html.finish(), "<!DOCTYPE html>\na\\x0Ab\\x1B\xEF\xBF\xBD");
}

TEST(Html, ClosesWhatIsOpen) {
    Html html;
    html.open("ul").open("li", {{"id", "x"}}).text("a").close().open("li");
    EXPECT_EQ(html.finish(), "<!DOCTYPE html>\n<ul><li id=\"x\">a</li>\n<li></li>\n</ul>\n");
}

TEST(Shortened, LeavesWhatIsShortAsItIs) {
    EXPECT_EQ(shortened("", 3), "");
    EXPECT_EQ(shortened("abc", 3), "abc");
    EXPECT_EQ(shortened("\xC3\xA9\xC3\xA9\xC3\xA9", 3), "\xC3\xA9\xC3\xA9\xC3\xA9");
}

TEST(Shortened, CutsBetweenCharacters) {
    EXPECT_EQ(shortened("\xC3\xA9\xC3\xA9\xC3\xA9", 2),
              "\xC3\xA9\xC3\xA9\xE2\x80\xA6 (3 characters)");
    EXPECT_EQ(shortened("abcd", 3), "abc\xE2\x80\xA6 (4 characters)");
}

TEST(Counted, KnowsThePlural) {
    EXPECT_EQ(counted(0, "record"), "0 records");
    EXPECT_EQ(counted(1, "record"), "1 record");
    EXPECT_EQ(counted(2, "record"), "2 records");
}

}  // namespace
}  // namespace tovi::test
