#include "tools/PinSource.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "tools/SignalsWhileWaiting.h"

namespace tovi {
namespace {

/// A descriptor that is closed at the end.
class Descriptor {
public:
    explicit Descriptor(const std::string& file)
        : number_(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }

private:
    int number_;
};

void dropLineEnd(Secret& pin) {
    if (!pin.empty() && pin[pin.size() - 1] == '\n') pin.pop_back();
    if (!pin.empty() && pin[pin.size() - 1] == '\r') pin.pop_back();
}

/// Octet by octet, so that no buffer keeps a copy.
void readFile(const Invocation& call, Secret& pin) {
    const std::string& file = call.options().pinFile;
    const auto fail = [&](const std::string& reason) {
        call.checkInterrupt();
        throw Failure("PIN file " + file + " " + reason, call.operation());
    };
    const Descriptor descriptor(file);
    const int opening = errno;
    const SignalsWhileWaiting signals;  // a pipe may let wait
    call.checkInterrupt();
    std::uint8_t octet = 0;
    ssize_t count = descriptor.number() < 0 ? -1 : 1;
    while (count > 0) {
        const bool isReady = signals.waitFor(descriptor.number());
        count = isReady ? ::read(descriptor.number(), &octet, 1) : -1;
        if (count > 0 && !pin.push_back(octet)) fail("holds over 255 octets");
    }
    const int error = descriptor.number() < 0 ? opening : errno;
    wipe(&octet, 1);
    if (count < 0) fail("cannot be read: " + std::generic_category().message(error));
    dropLineEnd(pin);
    if (pin.text().find('\n') != std::string_view::npos) fail("holds more than one line");
}

void readEnvironment(const std::string& name, Secret& pin) {
    char* const value = std::getenv(name.c_str());
    if (value == nullptr) throw UsageError("the environment variable " + name + " is not set");
    const std::size_t size = std::strlen(value);
    bool fits = true;
    for (std::size_t i = 0; i < size && fits; ++i)
        fits = pin.push_back(static_cast<std::uint8_t>(value[i]));
    wipe(value, size);
    if (!fits) throw UsageError("the environment variable " + name + " holds over 255 octets");
}

}  // namespace

bool wantsLogin(const GlobalOptions& options) {
    return !options.login.empty() || !options.pinFile.empty() || !options.pinEnvironment.empty();
}

void readPin(Invocation& call, const std::string& prompt, Secret& pin) {
    const GlobalOptions& options = call.options();
    pin.clear();
    if (!options.pinFile.empty()) {
        readFile(call, pin);
    } else if (!options.pinEnvironment.empty()) {
        readEnvironment(options.pinEnvironment, pin);
    } else if (!call.console().askSecret || !call.console().askSecret(prompt, pin)) {
        call.checkInterrupt();
        throw UsageError(
            "no PIN was entered; without a terminal, use --pin-file FILE or --pin-env NAME");
    }
}

}  // namespace tovi
