#include "tools/SecretPrompt.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "tools/SignalsWhileWaiting.h"

namespace tovi {
namespace {

/// The terminal of this process, with its echo off as long as this object lives.
class SilentTerminal {
public:
    SilentTerminal() : descriptor_(::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (descriptor_ < 0 || ::tcgetattr(descriptor_, &before_) != 0) return;
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
        silent.c_lflag |= ICANON | ISIG;
        isSilent_ = ::tcsetattr(descriptor_, TCSAFLUSH, &silent) == 0;
    }
    ~SilentTerminal() {
        if (isSilent_) {
            write("\n");
            ::tcsetattr(descriptor_, TCSAFLUSH, &before_);
        }
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;

    bool isSilent() const { return isSilent_; }

    void write(const std::string& text) {
        // A prompt that cannot be shown is no reason not to read the answer.
        [[maybe_unused]] const ssize_t written = ::write(descriptor_, text.data(), text.size());
    }

    /// Reads one line without its end.
    bool readLine(Secret& line) {
        std::uint8_t octet = 0;
        bool fits = true;
        while (fits && signals_.waitFor(descriptor_) && ::read(descriptor_, &octet, 1) == 1) {
            if (octet == '\n') return true;
            fits = line.push_back(octet);
        }
        wipe(&octet, 1);
        return false;
    }

private:
    SignalsWhileWaiting signals_;
    int descriptor_;
    bool isSilent_ = false;
    termios before_ = {};
};

}  // namespace

bool hasTerminal() {
    const int descriptor = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (descriptor >= 0) ::close(descriptor);
    return descriptor >= 0;
}

bool askOnTerminal(const std::string& prompt, Secret& secret) {
    SilentTerminal terminal;
    if (!terminal.isSilent()) return false;
    terminal.write(prompt);
    if (terminal.readLine(secret)) return true;
    secret.clear();
    return false;
}

}  // namespace tovi
