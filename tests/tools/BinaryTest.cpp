// The command as a process: what only a process can show.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

/// Runs a shell command; TOVI stands for the binary.
Result shell(const std::string& command) {
    const TemporaryFolder folder;
    const std::string line = "(" + command + ") >" + folder / "out" + " 2>" + folder / "err";
    setenv("TOVI", TOVI_BINARY, 1);
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(folder / "out"),
            readFile(folder / "err")};
}

const std::string plain = "--card " + sampleCard("plain");

TEST(Binary, PrintsWhatTheCommandPrints) {
    const Result result = shell("$TOVI --json " + plain + " list");
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.out, runJson("plain", {"list"}).out);
    EXPECT_EQ(result.err, "");
}

TEST(Binary, TakesTheCardFromTheEnvironment) {
    EXPECT_EQ(shell("TOVI_CARD=" + sampleCard("plain") + " $TOVI list").exit, 0);
    EXPECT_EQ(shell("unset TOVI_CARD; $TOVI list").exit, 2);
}

TEST(Binary, ExitsWithTheStatusOfTheCommand) {
    EXPECT_EQ(shell("$TOVI").exit, 2);
    EXPECT_EQ(shell("$TOVI --card /nowhere list").exit, 1);
    EXPECT_EQ(shell("$TOVI check --card " + sampleCard("findings")).exit, 3);
}

TEST(Binary, UsesNoColourInAPipe) {
    EXPECT_EQ(shell("$TOVI " + plain + " list").out.find('\x1B'), std::string::npos);
}

TEST(Binary, FailsWhenItsOutputIsClosed) {
    EXPECT_EQ(shell("$TOVI " + plain + " list >&-").exit, 1);
}

TEST(Binary, FailsWhenTheDiskIsFull) {
    const Result result = shell("$TOVI " + plain + " list >/dev/full");
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("the output cannot be written"));
}

}  // namespace
}  // namespace tovi::test
