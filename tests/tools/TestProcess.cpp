#include "TestProcess.h"

#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace tovi::test {
namespace {

void connect(int descriptor, int wanted) {
    const int used = descriptor >= 0 ? descriptor : ::open("/dev/null", O_WRONLY);
    if (used < 0 || ::dup2(used, wanted) < 0) _exit(127);
}

/// The mask of signals with a handler, as the system tells it.
unsigned long handledSignals(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        unsigned long mask = 0;
        if (word == "SigCgt:" && status >> std::hex >> mask) return mask;
    }
    return 0;
}

}  // namespace

TestProcess::TestProcess(const std::vector<std::string>& arguments, int out, int err,
                         const std::map<std::string, std::string>& environment) {
    std::vector<std::string> words{TOVI_BINARY};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_ = ::fork();
    if (pid_ < 0) throw std::runtime_error("no process");
    if (pid_ > 0) return;
    connect(out, STDOUT_FILENO);
    connect(err, STDERR_FILENO);
    for (const auto& [name, value] : environment) {
        if (value.empty()) {
            ::unsetenv(name.c_str());
        } else {
            ::setenv(name.c_str(), value.c_str(), 1);
        }
    }
    ::execv(pointers[0], pointers.data());
    _exit(127);
}

TestProcess::~TestProcess() {
    if (pid_ < 0) return;
    signal(SIGKILL);
    wait();
}

void TestProcess::waitForHandler(int signal) const {
    const unsigned long bit = 1ul << (signal - 1);
    while ((handledSignals(pid_) & bit) == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void TestProcess::signal(int number) const { ::kill(pid_, number); }

int TestProcess::wait() {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

TestTerminal::TestTerminal() {
    if (::openpty(&master_, &slave_, nullptr, nullptr, nullptr) != 0) {
        throw std::runtime_error("no terminal");
    }
    // Neither end stays open in processes, or the end of the output would never be seen.
    ::fcntl(master_, F_SETFD, FD_CLOEXEC);
    ::fcntl(slave_, F_SETFD, FD_CLOEXEC);
}

TestTerminal::~TestTerminal() {
    ::close(master_);
    if (slave_ >= 0) ::close(slave_);
}

std::string TestTerminal::contents() {
    ::close(slave_);
    slave_ = -1;
    std::string text;
    char part[4096];
    for (ssize_t got; (got = ::read(master_, part, sizeof part)) > 0;) {
        text.append(part, static_cast<std::size_t>(got));
    }
    return text;
}

}  // namespace tovi::test
