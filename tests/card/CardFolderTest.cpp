#include "tovi/card/CardFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/card/CardTools.h"
#include "tests/card/TemporaryFolder.h"

namespace tovi::test {
namespace {

constexpr std::string_view description =
    "# a card for tests\n"
    "3F00              df\n"
    "\n"
    "3F00/5015         df            -   aid=A000000063\n"
    "3F00/5015/4401    transparent   8\n"
    "3F00/5015/4402    linear        3   record=4\n"
    "pin 1 31323334 3\n";

const CardFolder::Options reading{CardFolder::Mode::readOnly, std::chrono::milliseconds(0), true};
const CardFolder::Options writing{CardFolder::Mode::readWrite, std::chrono::milliseconds(0), true};

/// A folder with the card above: 4401 holds "abc" and 00, 4402 the records "x" and "".
class CardFolderTest : public testing::Test {
protected:
    CardFolderTest() {
        folder.write("CARD", description);
        folder.write("3F00/5015/4401", "abc");
        folder.write("3F00/5015/4402", std::string_view("\0\1x\0\0", 5));
    }

    /// Message and text of the failure to open the folder; the path of the folder cut off.
    std::pair<std::string, std::string> failure(const CardFolder::Options& options = writing) {
        try {
            CardFolder opened(folder.path(), options);
        } catch (const CardFolderError& error) {
            const std::string start = folder.path().string();
            EXPECT_EQ(error.text().substr(0, start.size()), start);
            return {error.GetMessage(), error.text().substr(start.size())};
        }
        return {};
    }

    TemporaryFolder folder;
};

TEST_F(CardFolderTest, ServesWhatTheFolderHolds) {
    CardFolder opened(folder.path(), writing);
    VirtualCard& card = opened.card();
    EXPECT_EQ(answer(card, "00A4040C 05 A000000063"), "9000");
    EXPECT_EQ(answer(card, "00A4020C 02 4401"), "9000");
    EXPECT_EQ(answer(card, "00B00000 00"), "61626300000000009000");
    EXPECT_EQ(answer(card, "00A4020C 02 4402"), "9000");
    EXPECT_EQ(answer(card, "00B20104 00"), "789000");
    EXPECT_EQ(answer(card, "00B20204 00"), "9000");
    EXPECT_EQ(answer(card, "00200001"), "63C3");
}

TEST_F(CardFolderTest, HasEveryChangeOnDiskBeforeItAnswers) {
    CardFolder opened(folder.path(), writing);
    VirtualCard& card = opened.card();
    answer(card, "00A4080C 04 50154401");
    EXPECT_EQ(answer(card, "00D60001 02 5859"), "9000");
    EXPECT_EQ(folder.read("3F00/5015/4401"), std::string_view("aXY\0\0\0\0\0", 8));
    EXPECT_EQ(answer(card, "000E0000"), "9000");
    EXPECT_EQ(folder.read("3F00/5015/4401"), std::string(8, '\0'));
    answer(card, "00A4080C 04 50154402");
    EXPECT_EQ(answer(card, "00E20000 02 7A7A"), "9000");
    EXPECT_EQ(folder.read("3F00/5015/4402"), std::string_view("\0\1x\0\0\0\2zz", 9));
    EXPECT_EQ(answer(card, "00DC0104 01 79"), "9000");
    EXPECT_EQ(folder.read("3F00/5015/4402"), std::string_view("\0\1y\0\0\0\2zz", 9));
}

TEST_F(CardFolderTest, LeavesTheFolderAloneWhileNothingChanges) {
    const auto before = std::filesystem::last_write_time(folder.path() / "3F00/5015/4401");
    {
        CardFolder opened(folder.path(), writing);
        answer(opened.card(), "00A4080C 04 50154401");
        EXPECT_EQ(answer(opened.card(), "00D60007 02 5859"), "6A84");
    }
    EXPECT_EQ(std::filesystem::last_write_time(folder.path() / "3F00/5015/4401"), before);
    EXPECT_EQ(folder.read("3F00/5015/4401"), "abc");
    EXPECT_EQ(folder.read("CARD"), description);
}

TEST_F(CardFolderTest, KeepsTriesInTheDescriptionAndEverythingElseOfIt) {
    {
        CardFolder opened(folder.path(), writing);
        EXPECT_EQ(answer(opened.card(), "00200001 04 30303030"), "63C2");
        std::string expected(description);
        expected.replace(expected.find("31323334 3"), 10, "31323334 3 left=2");
        EXPECT_EQ(folder.read("CARD"), expected);
        EXPECT_EQ(answer(opened.card(), "00200001 04 30303030"), "63C1");
    }
    CardFolder opened(folder.path(), writing);
    EXPECT_EQ(answer(opened.card(), "00200001"), "63C1");
    EXPECT_EQ(answer(opened.card(), "00200001 04 31323334"), "9000");
    EXPECT_EQ(folder.read("CARD"), description);
}

TEST_F(CardFolderTest, KeepsABlockedPinBlocked) {
    for (int i = 0; i < 3; ++i) {
        CardFolder opened(folder.path(), writing);
        answer(opened.card(), "00200001 04 30303030");
    }
    CardFolder opened(folder.path(), writing);
    EXPECT_EQ(answer(opened.card(), "00200001 04 31323334"), "6983");
}

TEST_F(CardFolderTest, WritesNothingWhenOpenedForReading) {
    CardFolder opened(folder.path(), reading);
    VirtualCard& card = opened.card();
    answer(card, "00A4080C 04 50154401");
    EXPECT_EQ(answer(card, "00D60000 01 58"), "6581");
    EXPECT_EQ(opened.lastFailure(), "3F00/5015/4401: card folder opened for reading only");
    EXPECT_EQ(answer(card, "00B00000 01"), "619000");
    answer(card, "00A4080C 04 50154402");
    EXPECT_EQ(answer(card, "00E20000 02 7A7A"), "6581");
    EXPECT_EQ(answer(card, "00200001 04 30303030"), "63C2");
    EXPECT_EQ(folder.read("3F00/5015/4401"), "abc");
    EXPECT_EQ(folder.read("CARD"), description);
}

TEST_F(CardFolderTest, GoesOnWithWhatItHadWhenTheFolderTakesNothing) {
    CardFolder opened(folder.path(), writing);
    VirtualCard& card = opened.card();
    answer(card, "00A4080C 04 50154401");
    std::filesystem::create_directory(folder.path() / "3F00/5015/4401.new");
    EXPECT_EQ(answer(card, "00D60000 01 58"), "6581");
    EXPECT_EQ(opened.lastFailure(), "3F00/5015/4401.new: File exists");
    EXPECT_EQ(answer(card, "00B00000 01"), "619000");
    EXPECT_EQ(folder.read("3F00/5015/4401"), "abc");
    std::filesystem::remove(folder.path() / "3F00/5015/4401.new");
    EXPECT_EQ(answer(card, "00D60000 01 58"), "9000");
}

TEST_F(CardFolderTest, SaysWhatIsWrongWithTheDescription) {
    folder.write("CARD", "3F00 df\n3F00/4401 tree 5\n");
    EXPECT_EQ(failure(),
              std::pair(std::string("invalid card description"),
                        std::string("/CARD:2: found 'tree', expected df, transparent, linear or "
                                    "linear-fixed")));
    folder.write("CARD", std::string(CardDescription::maxTextSize + 1, '\n'));
    EXPECT_EQ(failure().second, "/CARD: found 1048577 octets, expected at most 1048576");
    std::filesystem::remove(folder.path() / "CARD");
    EXPECT_EQ(failure(), std::pair(std::string("card folder not readable"),
                                   std::string("/CARD: No such file or directory")));
}

TEST_F(CardFolderTest, SaysWhichContentsCannotBeRead) {
    folder.write("3F00/5015/4401", "123456789");
    EXPECT_EQ(failure(),
              std::pair(std::string("card folder not readable"),
                        std::string("/3F00/5015/4401: found 9 octets, expected at most 8")));
    std::filesystem::remove(folder.path() / "3F00/5015/4401");
    EXPECT_EQ(failure().second, "/3F00/5015/4401: No such file or directory");
    std::filesystem::create_symlink("/dev/zero", folder.path() / "3F00/5015/4401");
    EXPECT_EQ(failure().second, "/3F00/5015/4401: is a symbolic link");
    std::filesystem::remove(folder.path() / "3F00/5015/4401");
    folder.write("3F00/5015/4401", "");
    folder.write("3F00/5015/4402", std::string_view("\0\5x", 3));
    EXPECT_EQ(failure().second, "/3F00/5015/4402: record 1: found 5 octets, expected at most 4");
}

TEST_F(CardFolderTest, HasOneWriterAtATime) {
    {
        CardFolder first(folder.path(), writing);
        EXPECT_EQ(failure(writing).first, "card folder in use");
        EXPECT_EQ(failure(reading).first, "card folder in use");
    }
    CardFolder first(folder.path(), reading);
    EXPECT_EQ(failure(reading).first, "");
    EXPECT_EQ(failure(writing).first, "card folder in use");
}

TEST(CardFolder, NeedsAFolder) {
    try {
        CardFolder opened("/nonexistent/card");
        FAIL();
    } catch (const CardFolderError& error) {
        EXPECT_STREQ(error.GetMessage(), "card folder not readable");
        EXPECT_EQ(error.text(), "/nonexistent/card: No such file or directory");
    }
}

CardDescription smallDescription() { return CardDescription::parse(description, "CARD"); }

/// Message and text of the failure to make a card folder.
std::pair<std::string, std::string> creationFailure(
    const std::filesystem::path& folder, const std::map<std::string, FileContents>& contents) {
    try {
        CardFolder::create(folder, smallDescription(), contents);
    } catch (const CardFolderError& error) {
        return {error.GetMessage(), error.text()};
    }
    return {};
}

TEST(CardFolderCreate, MakesAFolderThatCanBeOpened) {
    TemporaryFolder base;
    const std::filesystem::path folder = base.path() / "cards" / "new";
    CardFolder::create(folder, smallDescription(),
                       {{"3F00/5015/4401", {octets("0102"), {}}},
                        {"3F00/5015/4402", {{}, {octets("03"), octets("04")}}}});
    CardFolder opened(folder, writing);
    EXPECT_EQ(opened.description().text(), description);
    answer(opened.card(), "00A4080C 04 50154401");
    EXPECT_EQ(answer(opened.card(), "00B00000 00"), "01020000000000009000");
    answer(opened.card(), "00A4080C 04 50154402");
    EXPECT_EQ(answer(opened.card(), "00B20204 00"), "049000");
}

TEST(CardFolderCreate, LeavesFilesEmptyThatHaveNoContents) {
    TemporaryFolder folder;
    CardFolder::create(folder.path(), smallDescription());
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "3F00/5015/4402"));
    CardFolder opened(folder.path(), writing);
    answer(opened.card(), "00A4080C 04 50154401");
    EXPECT_EQ(answer(opened.card(), "00B00000 00"), "00000000000000009000");
}

TEST(CardFolderCreate, NeverOverwritesACard) {
    TemporaryFolder folder;
    folder.write("CARD", "");
    folder.write("3F00/5015/4401", "precious");
    EXPECT_EQ(creationFailure(folder.path(), {}),
              std::pair(std::string("card folder exists"),
                        folder.path().string() + ": has a card already"));
    EXPECT_EQ(folder.read("3F00/5015/4401"), "precious");
}

TEST(CardFolderCreate, RefusesContentsThatDoNotFitBeforeItWritesAny) {
    TemporaryFolder folder;
    const std::string message = "invalid card description";
    EXPECT_EQ(
        creationFailure(folder.path(), {{"3F00/5015/4401", {filled(9, 1), {}}}}),
        std::pair(message, std::string("3F00/5015/4401: found 9 octets, expected at most 8")));
    EXPECT_EQ(creationFailure(folder.path(), {{"3F00/5015/4401", {{}, {octets("01")}}}}).second,
              "3F00/5015/4401: found records, expected octets");
    EXPECT_EQ(creationFailure(folder.path(), {{"3F00/5015/4402", {octets("01"), {}}}}).second,
              "3F00/5015/4402: found octets, expected records");
    EXPECT_EQ(creationFailure(folder.path(), {{"3F00/5015/4402", {{}, {filled(5, 1)}}}}).second,
              "3F00/5015/4402: record 1: found 5 octets, expected at most 4");
    EXPECT_EQ(creationFailure(folder.path(), {{"../escape", {}}}).second,
              "../escape: expected an elementary file of that path");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(CardFolderCreate, SaysWhereItCannotWrite) {
    TemporaryFolder folder;
    folder.write("file", "x");
    EXPECT_EQ(creationFailure(folder.path() / "file" / "card", {}).first,
              "card folder not writable");
    folder.write("3F00", "in the way");
    EXPECT_EQ(creationFailure(folder.path(), {}),
              std::pair(std::string("card folder not writable"),
                        folder.path().string() + "/3F00: Not a directory"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "CARD"));
}

/// Fills the file with 'A', then 'B', and so on without end, and tells of each change by an octet.
[[noreturn]] void rewriteForEver(const std::filesystem::path& folder, int progress) {
    CardFolder opened(folder, {CardFolder::Mode::readWrite, std::chrono::milliseconds(0), false});
    answer(opened.card(), "00A4080C 02 4401");
    for (std::uint8_t value = 'A';; value = value == 'A' ? 'B' : 'A') {
        const Blob command = CommandApdu{0, 0xD6, 0, 0, filled(60000, value), 0}.encode();
        if (hexOf(opened.card().process(command)) != "9000") ::_exit(1);
        answer(opened.card(), value == 'A' ? "00200001 01 30" : "00200001 01 31");
        if (::write(progress, &value, 1) != 1) ::_exit(2);
    }
}

TEST(CardFolderTear, LeavesEveryFileWholeWhenTheProcessIsKilled) {
    TemporaryFolder folder;
    CardFolder::create(
        folder.path(),
        CardDescription::parse("# kept\n3F00/4401 transparent 60000\npin 1 31 3\n", "CARD"),
        {{"3F00/4401", {filled(60000, 'B'), {}}}});
    for (int round = 1; round <= 20; ++round) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) rewriteForEver(folder.path(), pipe[1]);
        ::close(pipe[1]);
        char last = 0;
        for (int change = 0; change < round; ++change) ASSERT_EQ(::read(pipe[0], &last, 1), 1);
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
        ::close(pipe[0]);
        const std::string contents = folder.read("3F00/4401");
        ASSERT_EQ(contents.size(), 60000u);
        ASSERT_TRUE(contents[0] == 'A' || contents[0] == 'B');
        ASSERT_EQ(contents.find_first_not_of(contents[0]), std::string::npos);
        ASSERT_EQ(CardFolder(folder.path(), writing).description().text().substr(0, 7), "# kept\n");
    }
}

}  // namespace
}  // namespace tovi::test
