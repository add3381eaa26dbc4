// A person at a terminal who is asked for a PIN. The command runs as a process whose terminal the
// test holds the other end of.

#include "tools/SecretPrompt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int patience = 20000;  // milliseconds, for a loaded machine

/// `tovi --login 1 list` on a card that wants a PIN to be read.
class AskedPerson {
public:
    AskedPerson() {
        const std::string card = sampleCard("pin-to-read");
        std::filesystem::copy(card, folder_.path() / "card",
                              std::filesystem::copy_options::recursive);
        const std::string copy = folder_ / "card";
        pid_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
        if (pid_ == 0) {
            execl(TOVI_BINARY, TOVI_BINARY, "--card", copy.c_str(), "--login", "1", "list",
                  static_cast<char*>(nullptr));
            _exit(127);
        }
    }
    ~AskedPerson() {
        if (pid_ > 0) kill(pid_, SIGKILL);
        end();
        close(terminal_);
    }
    AskedPerson(const AskedPerson&) = delete;
    AskedPerson& operator=(const AskedPerson&) = delete;

    /// Reads until `text` is shown; false when the terminal falls silent before.
    bool sees(const std::string& text) {
        while (shown_.find(text) == std::string::npos)
            if (!readSome()) return false;
        return true;
    }
    void types(const std::string& keys) const {
        ASSERT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    bool isEchoing() const {
        termios settings = {};
        return tcgetattr(terminal_, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
    }
    /// The exit status, once all is shown.
    int end() {
        while (readSome()) continue;
        int status = 0;
        if (pid_ > 0) waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    const std::string& shown() const { return shown_; }

private:
    bool readSome() {
        pollfd wanted{terminal_, POLLIN, 0};
        char some[4096];
        if (poll(&wanted, 1, patience) <= 0) return false;
        const ssize_t count = read(terminal_, some, sizeof some);
        if (count > 0) shown_.append(some, static_cast<std::size_t>(count));
        return count > 0;
    }

    TemporaryFolder folder_;
    pid_t pid_ = -1;
    int terminal_ = -1;
    std::string shown_;
};

TEST(SecretPrompt, TakesAPinThatItDoesNotShow) {
    AskedPerson person;
    ASSERT_TRUE(person.sees("PIN: ")) << person.shown();
    EXPECT_FALSE(person.isEchoing());
    person.types("1234\n");
    EXPECT_TRUE(person.sees("Private keys")) << person.shown();
    EXPECT_EQ(person.end(), 0);
    EXPECT_THAT(person.shown(), HasSubstr("3 tries left"));
    EXPECT_THAT(person.shown(), Not(HasSubstr("1234")));
}

TEST(SecretPrompt, LeavesTheTerminalAsItWasWhenThePersonInterrupts) {
    AskedPerson person;
    ASSERT_TRUE(person.sees("PIN: ")) << person.shown();
    person.types("12\x03");
    EXPECT_TRUE(person.sees("interrupted")) << person.shown();
    EXPECT_TRUE(person.isEchoing());
    EXPECT_EQ(person.end(), 130);
}

TEST(SecretPrompt, TakesNoPinFromAPersonWhoGivesNone) {
    AskedPerson person;
    ASSERT_TRUE(person.sees("PIN: ")) << person.shown();
    person.types("\x04");
    EXPECT_TRUE(person.sees("no PIN")) << person.shown();
    EXPECT_EQ(person.end(), 2);
}

}  // namespace
}  // namespace tovi::test
