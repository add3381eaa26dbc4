#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace tovi::test {

/// The command as a process of its own, which is killed at the end if it still runs.
class TestProcess {
public:
    /// Starts the command. Its output goes to the descriptors `out` and `err`, or nowhere;
    /// `environment` is added to that of the test, and an empty value takes a variable away.
    explicit TestProcess(const std::vector<std::string>& arguments, int out = -1, int err = -1,
                         const std::map<std::string, std::string>& environment = {});
    ~TestProcess();
    TestProcess(const TestProcess&) = delete;
    TestProcess& operator=(const TestProcess&) = delete;

    /// Waits until the process has a handler for the signal of this number.
    void waitForHandler(int signal) const;
    void signal(int number) const;
    /// Waits for the end. The exit status, or 1000 and the number of the signal that ended it.
    int wait();

private:
    pid_t pid_ = -1;
};

/// A terminal that nobody looks at.
class TestTerminal {
public:
    TestTerminal();
    ~TestTerminal();
    TestTerminal(const TestTerminal&) = delete;
    TestTerminal& operator=(const TestTerminal&) = delete;

    /// What a process has to be given.
    int descriptor() const { return slave_; }
    /// All that was written, once nobody can write any more.
    std::string contents();

private:
    int master_ = -1, slave_ = -1;
};

}  // namespace tovi::test
