#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Command.h"
#include "tools/SecretPrompt.h"

namespace {

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

extern "C" void interrupt(int) { interrupted = true; }

/// The first interrupt, or another wish that the process should end, asks to stop behind the
/// current command of the card, so that none is torn; the second one ends the process.
void installHandlers() {
    struct sigaction action = {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);  // and no SA_RESTART: waiting calls return
    for (const int signal : {SIGINT, SIGTERM}) sigaction(signal, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write, which is reported
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool wantsColour() {
    return isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr &&
           environment("TERM") != "dumb";
}

}  // namespace

int main(int argc, char** argv) {
    installHandlers();
    tovi::Console console{std::cin,
                          std::cout,
                          std::cerr,
                          wantsColour(),
                          environment("TOVI_CARD"),
                          &interrupted,
                          isatty(STDERR_FILENO) == 1};
    if (tovi::hasTerminal()) console.askSecret = tovi::askOnTerminal;
    console.outIsTerminal = isatty(STDOUT_FILENO) == 1;
    return tovi::runCommandLine(std::vector<std::string>(argv + (argc > 0), argv + argc), console);
}
