#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "NewCard.h"
#include "TestApplication.h"
#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string pageOf(const std::string& card) {
    const Result result = run({"--card", sampleCard(card), "report"});
    EXPECT_EQ(result.exit, 0) << card << result.err;
    return result.out;
}

std::string pageOf(TestApplication application) {
    const TemporaryFolder folder;
    const Result result = application.run({"report", "-o", folder / "page.html"});
    EXPECT_EQ(result.exit, 0) << result.err;
    return readFile(folder / "page.html");
}

std::size_t count(const std::string& page, const std::string& text) {
    std::size_t found = 0;
    for (std::size_t at = page.find(text); at != std::string::npos; at = page.find(text, at + 1)) {
        ++found;
    }
    return found;
}

/// The values of an attribute, in the order of the page.
std::vector<std::string> values(const std::string& page, const std::string& attribute) {
    std::vector<std::string> found;
    const std::string begin = " " + attribute + "=\"";
    for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
        at += begin.size();
        found.push_back(page.substr(at, page.find('"', at) - at));
    }
    return found;
}

/// The first element that is opened and not closed, or closed and not opened; "" when there is
/// none.
std::string unbalanced(const std::string& page) {
    static const std::set<std::string> empty{"meta"};
    std::vector<std::string> open;
    for (std::size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1)) {
        const bool isEnd = page[at + 1] == '/';
        const std::size_t begin = at + (isEnd ? 2 : 1);
        const std::string tag = page.substr(begin, page.find_first_of(" >", begin) - begin);
        if (tag[0] == '!' || empty.count(tag) > 0) continue;
        if (!isEnd) {
            open.push_back(tag);
        } else if (open.empty() || open.back() != tag) {
            return "/" + tag;
        } else {
            open.pop_back();
        }
    }
    return open.empty() ? "" : open.back();
}

const char* const readableCards[] = {"card-c-auth", "ff-filled",    "findings",       "gaps",
                                     "garbage",     "linear",       "hostile-labels", "rich",
                                     "wrapped-odf", "repeated-file"};

TEST(Report, IsOneDocumentThatLoadsAndRunsNothing) {
    const std::string page = pageOf("rich");
    EXPECT_THAT(page, StartsWith("<!DOCTYPE html>\n<html lang=\"en\">"));
    EXPECT_THAT(page, HasSubstr("content=\"default-src &#39;none&#39;; "));
    for (const char* outside : {"<script", "<link", "<img", " src=", "url(", "@import",
                                "http:", "https:", "javascript:", " onclick"}) {
        EXPECT_THAT(page, Not(HasSubstr(outside)));
    }
}

TEST(Report, IsWellFormedForEveryCard) {
    for (const char* card : readableCards) {
        const std::string page = pageOf(card);
        EXPECT_EQ(unbalanced(page), "") << card;
        const auto ids = values(page, "id");
        const std::set<std::string> known(ids.begin(), ids.end());
        EXPECT_EQ(known.size(), ids.size()) << card;
        for (const std::string& href : values(page, "href")) {
            EXPECT_EQ(href.substr(0, 1), "#") << card;
            EXPECT_EQ(known.count(href.substr(1)), 1u) << card << ' ' << href;
        }
    }
}

TEST(Report, CountsWhatListCounts) {
    for (const char* card : readableCards) {
        const std::string page = pageOf(card);
        const Json list = runJson(card, {"list"}).json();
        for (const auto& [key, objects] : list.items()) {
            if (!objects.is_array() || key == "fat") continue;
            EXPECT_EQ(count(page, "data-object=\"" + key + "\""), objects.size()) << card << key;
            EXPECT_THAT(page, HasSubstr("data-count=\"" + key + "\" data-value=\"" +
                                        std::to_string(objects.size()) + "\""))
                << card;
        }
        EXPECT_EQ(values(page, "data-container").size(), list["containers"].size()) << card;
        EXPECT_EQ(values(page, "data-auth").size(), list["authObjects"].size()) << card;
    }
}

TEST(Report, ShowsEveryFindingOfCheckAndEndsWellAllTheSame) {
    for (const char* card : {"findings", "garbage", "rich", "plain", "unreadable-file"}) {
        std::vector<std::string> expected;
        const Json document = runJson(card, {"check"}).json();
        for (const Json& finding : document["findings"]) expected.push_back(finding["kind"]);
        const std::string page = pageOf(card);
        EXPECT_THAT(values(page, "data-finding"), testing::UnorderedElementsAreArray(expected))
            << card;
        const auto severities = values(page, "data-severity");
        EXPECT_TRUE(std::is_sorted(severities.begin(), severities.end(),
                                   [](const std::string& a, const std::string& b) {
                                       const std::string order = "error warning notice";
                                       return order.find(a) < order.find(b);
                                   }))
            << card;
    }
    EXPECT_THAT(pageOf("plain"), HasSubstr("Nothing is wrong or odd"));
}

TEST(Report, ShowsWhatDumpShows) {
    for (const char* card : readableCards) {
        std::vector<std::string> files, segments;
        const Json dump = runJson(card, {"dump"}).json();
        for (const Json& file : dump["files"]) {
            files.push_back(file["path"]);
            for (const Json& segment : file["segments"]) segments.push_back(segment["kind"]);
        }
        const std::string page = pageOf(card);
        EXPECT_EQ(values(page, "data-file"), files) << card;
        EXPECT_EQ(values(page, "data-segment"), segments) << card;
    }
}

TEST(Report, LinksEveryRecordOfAFileToItsObject) {
    const std::string page = pageOf("rich");
    const std::size_t file = page.find("data-file=\"3F0050154401\"");
    const std::string map = page.substr(file, page.find("<details>", file) - file);
    EXPECT_THAT(values(map, "href"), testing::Contains("#privateKeys-0").Times(1));
    for (int i = 0; i < 8; ++i) {
        EXPECT_THAT(map, HasSubstr("href=\"#privateKeys-" + std::to_string(i) + "\""));
    }
    EXPECT_THAT(map, HasSubstr("record, private key 1: Alice\""));
}

TEST(Report, GivesEachPartOfAFileItsShareOfTheBar) {
    const std::string page = pageOf("rich");
    const Json dump = runJson("rich", {"dump", "PrKDF"}).json();
    const std::size_t file = page.find("data-file=\"3F0050154401\"");
    const std::string map = page.substr(file, page.find("<details>", file) - file);
    std::vector<std::string> shares;
    for (const Json& segment : dump["files"][0]["segments"]) {
        shares.push_back("flex-grow:" + std::to_string(segment["length"].get<int>()));
    }
    EXPECT_EQ(values(map, "style"), shares);
}

TEST(Report, LinksTheEntriesOfTheOdfToTheirFiles) {
    const std::string page = pageOf("wrapped-odf");
    const std::size_t file = page.find("id=\"file-1\"");
    EXPECT_THAT(page.substr(file, page.find("<details>", file) - file),
                HasSubstr("href=\"#file-2\""));
}

TEST(Report, SaysInWordsHowFullAFileIs) {
    const std::string page = pageOf(TestApplication()
                                        .add("PrKDF", "4401", Json::array())
                                        .add("PuKDF", "4402", Json::array(),
                                             {{"structure", "linear"}, {"size", 4}, {"record", 64}})
                                        .addFile({{"path", "3F00/2F00"}, {"size", 64}}));
    EXPECT_THAT(page, HasSubstr("0 records; 0 of 2000 octets used, 0 % full"));
    EXPECT_THAT(page, HasSubstr("0 of 4 records used, 0 % full"));
    EXPECT_THAT(page, HasSubstr("1 record; 11 of 200 octets used, 5 % full"));
}

TEST(Report, TellsThatAFileIsNamedAgain) {
    const std::string page = pageOf("repeated-file");
    EXPECT_THAT(page, HasSubstr("again, so that its records count twice."));
}

TEST(Report, TellsWhatEachPinGuards) {
    const std::string page =
        pageOf(TestApplication()
                   .add("AODF", "4409", Json::array({pin("01", 1), pin("02", 2)}))
                   .add("PrKDF", "4401",
                        Json::array({privateKey("A1", "4B01", "01"), privateKey("A2", "4B02", "01"),
                                     privateKey("A3", "4B03", "09"), privateKey("A4", "4B04")}))
                   .add("PuKDF", "4402", Json::array({publicKey("A1", "4C01")})));
    EXPECT_EQ(values(page, "data-guards"), (std::vector<std::string>{"2"}));
    EXPECT_EQ(count(page, "Guards nothing."), 1u);
    EXPECT_THAT(page, HasSubstr("data-group=\"free\" data-value=\"2\""));
    EXPECT_THAT(page, HasSubstr("data-group=\"dangling\" data-value=\"1\""));
    EXPECT_THAT(page, Not(HasSubstr("data-group=\"unknown\"")));
}

TEST(Report, ListsWhatAPinGuardsOnlyOnceWhenTwoHaveItsIdentifier) {
    const std::string page =
        pageOf(TestApplication()
                   .add("AODF", "4409", Json::array({pin("01", 1), pin("01", 2)}))
                   .add("PrKDF", "4401", Json::array({privateKey("A1", "4B01", "01")})));
    EXPECT_EQ(values(page, "data-guards"), (std::vector<std::string>{"1"}));
    EXPECT_THAT(page, HasSubstr("too, where what it guards stands."));
}

TEST(Report, ShowsTheFilesOfAnApplicationThatCannotBeRead) {
    const std::string page = pageOf("unreadable-file");
    EXPECT_THAT(page, HasSubstr("The application cannot be read"));
    EXPECT_THAT(page, HasSubstr("Cannot be read: "));
    EXPECT_THAT(values(page, "data-file"), Not(testing::IsEmpty()));
    EXPECT_EQ(unbalanced(page), "");
}

TEST(Report, FailsWithoutAPageForACardWithoutTheApplication) {
    const Result result = run({"--card", sampleCard("no-application"), "report"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.out, "");
}

// ---- hostile texts ----

std::string pageWithLabel(const Json& label) {
    Json object = dataObject("", {{"efidOrPath", "4F01"}});
    object["opaqueDO"]["commonObjectAttributes"]["label"] = label;
    return pageOf(TestApplication().add("DODF", "4408", Json::array({object}), {{"size", 200000}}));
}

TEST(ReportEscaping, MakesNoMarkupOfALabel) {
    const std::string page = pageWithLabel("</bdi><script>alert(1)</script>\"'&amp;<!--");
    EXPECT_THAT(page, HasSubstr("&lt;/bdi&gt;&lt;script&gt;alert(1)&lt;/script&gt;&quot;&#39;"
                                "&amp;amp;&lt;!--"));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("<!--")));
    EXPECT_EQ(unbalanced(page), "");
}

TEST(ReportEscaping, MakesControlCharactersAndTurnsOfDirectionVisible) {
    const std::string page =
        pageWithLabel(std::string("a\0b\x1B[31m\r\n", 10) + "\xE2\x80\xAEgpj\xE2\x80\x8B\xC2\x85");
    EXPECT_THAT(page, HasSubstr("a\\x00b\\x1B[31m\\x0D\\x0A\\u202Egpj\\u200B\\x85"));
}

TEST(ReportEscaping, ReplacesWhatIsNotUtf8) {
    const std::string page = pageWithLabel({{"hex", "FF41E282FE42"}});
    EXPECT_THAT(page, HasSubstr("\xEF\xBF\xBD"
                                "A\xEF\xBF\xBD\xEF\xBF\xBD"
                                "B"));
    EXPECT_THAT(page, Not(HasSubstr("\xFF")));
}

std::string longLabel(std::size_t characters) {
    std::string label;
    for (std::size_t i = 0; i < characters; ++i) label += "\xC3\xA9";
    return label;
}

TEST(ReportEscaping, CutsALongLabelBetweenCharacters) {
    EXPECT_THAT(pageWithLabel(longLabel(255)), HasSubstr("\xC3\xA9\xE2\x80\xA6 (255 characters)"));
}

TEST(ReportEscaping, KeepsALabelOf64KibOutOfThePage) {
    const std::string page = pageWithLabel(longLabel(32768));
    EXPECT_THAT(page, HasSubstr("not decoded"));
    EXPECT_THAT(values(page, "data-finding"), testing::ElementsAre("invalid-record"));
    EXPECT_LT(page.size(), 30000u);
}

TEST(ReportEscaping, EscapesTheTextsOfTheToken) {
    const NewCard card({"--label", "<b>\"&'", "--manufacturer", "<i>"});
    const std::string page = run({"--card", card.path(), "report"}).out;
    EXPECT_THAT(page, HasSubstr("<title>&lt;b&gt;&quot;&amp;&#39;</title>"));
    EXPECT_THAT(page, Not(HasSubstr("<b>")));
    EXPECT_THAT(page, Not(HasSubstr("<i>")));
}

TEST(Report, GrowsWithTheNumberOfObjects) {
    const auto sizeWith = [](std::size_t count) {
        Json objects = Json::array();
        for (std::size_t i = 0; i < count; ++i) {
            objects.push_back(dataObject("object " + std::to_string(i),
                                         {{"efidOrPath", "4F01"}, {"index", i}, {"length", 1}}));
        }
        return pageOf(TestApplication().add("DODF", "4408", objects, {{"size", 400000}})).size();
    };
    const std::size_t none = sizeWith(0), some = sizeWith(300), many = sizeWith(3000);
    EXPECT_LT(many - none, 11 * (some - none));
    EXPECT_LT(many, 6000000u);
}

// ---- where the page goes ----

TEST(ReportOutput, IsTheSameInAFile) {
    const TemporaryFolder folder;
    const Result result = run({"--card", sampleCard("rich"), "report", "-o", folder / "page.html"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.out, "wrote " + (folder / "page.html") + "\n");
    EXPECT_EQ(readFile(folder / "page.html"), pageOf("rich"));
    EXPECT_EQ(
        run({"--quiet", "--card", sampleCard("rich"), "report", "-o", folder / "page.html"}).out,
        "");
}

TEST(ReportOutput, TellsWithJsonWhatWasWritten) {
    const TemporaryFolder folder;
    const Result result = runJson("findings", {"report", "-o", folder / "page.html"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.json()["file"], folder / "page.html");
    EXPECT_EQ(result.json()["findings"], 16);
}

TEST(ReportOutput, WantsAFileWithJson) {
    const Result result = runJson("rich", {"report"});
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.err, HasSubstr("-o FILE"));
    EXPECT_TRUE(result.json().contains("error"));
}

TEST(ReportOutput, LeavesTheOldFileWhenTheCardCannotBeRead) {
    const TemporaryFolder folder;
    writeFile(folder / "page.html", "old");
    EXPECT_EQ(
        run({"--card", sampleCard("no-application"), "report", "-o", folder / "page.html"}).exit,
        1);
    EXPECT_EQ(readFile(folder / "page.html"), "old");
}

TEST(ReportOutput, FailsWhereNoFileCanBeWritten) {
    const TemporaryFolder folder;
    for (const std::string& file : {folder / "none/page.html", folder.path().string()}) {
        const Result result = run({"--card", sampleCard("rich"), "report", "-o", file});
        EXPECT_EQ(result.exit, 1) << file;
        EXPECT_THAT(result.err, HasSubstr(file));
        EXPECT_EQ(result.out, "");
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

}  // namespace
}  // namespace tovi::test
