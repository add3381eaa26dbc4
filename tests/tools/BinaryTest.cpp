// The command as a process: what only a process can show.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "TestCommand.h"
#include "TestProcess.h"

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

/// What `list` writes on a terminal. All of it fits into the terminal's own buffer.
std::string listOnTerminal(const std::map<std::string, std::string>& environment) {
    TestTerminal terminal;
    TestProcess process({"--card", sampleCard("plain"), "list"}, terminal.descriptor(), -1,
                        environment);
    EXPECT_EQ(process.wait(), 0);
    return terminal.contents();
}

TEST(Binary, UsesColourOnATerminalUnlessAskedNotTo) {
    EXPECT_THAT(listOnTerminal({{"TERM", "xterm"}, {"NO_COLOR", ""}}), HasSubstr("\x1B[1m"));
    EXPECT_EQ(listOnTerminal({{"TERM", "xterm"}, {"NO_COLOR", "1"}}).find('\x1B'),
              std::string::npos);
    EXPECT_EQ(listOnTerminal({{"TERM", "dumb"}, {"NO_COLOR", ""}}).find('\x1B'), std::string::npos);
}

/// A copy of a sample card that somebody else is writing to.
class BusyCard {
public:
    BusyCard() {
        std::filesystem::copy(sampleCard("plain"), folder_.path() / "card",
                              std::filesystem::copy_options::recursive);
        lock_ = ::open((folder_ / "card").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        EXPECT_EQ(::flock(lock_, LOCK_EX), 0);
    }
    ~BusyCard() { ::close(lock_); }

    std::string path() const { return folder_ / "card"; }
    void release() const { ::flock(lock_, LOCK_UN); }

private:
    TemporaryFolder folder_;
    int lock_ = -1;
};

TEST(Binary, StopsWaitingForACardWhenInterrupted) {
    const BusyCard card;
    TestProcess process({"--card", card.path(), "list"});
    process.waitForHandler(SIGINT);
    process.signal(SIGINT);
    EXPECT_EQ(process.wait(), 130);
}

TEST(Binary, WaitsForACardThatIsInUse) {
    const BusyCard card;
    TestProcess process({"--card", card.path(), "list"});
    process.waitForHandler(SIGINT);
    card.release();
    EXPECT_EQ(process.wait(), 0);
}

TEST(Binary, StopsWaitingForThePinWhenInterrupted) {
    const TemporaryFolder folder;
    const std::string pin = folder / "pin";
    ASSERT_EQ(::mkfifo(pin.c_str(), 0600), 0);
    std::filesystem::copy(sampleCard("plain"), folder.path() / "card",
                          std::filesystem::copy_options::recursive);
    TestProcess process({"--card", folder / "card", "--pin-file", pin, "list"});
    process.waitForHandler(SIGINT);
    // Opens once the process does, and then it waits for what never comes.
    const int writer = ::open(pin.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    process.signal(SIGINT);
    EXPECT_EQ(process.wait(), 130);
    ::close(writer);
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
