#include "tools/PinSource.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace tovi {
namespace {

/// A descriptor that is closed at the end.
class Descriptor {
public:
    explicit Descriptor(const std::string& file) : number_(::open(file.c_str(), O_RDONLY)) {}
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
void readFile(const std::string& file, const std::string& operation, Secret& pin) {
    const Descriptor descriptor(file);
    std::uint8_t octet = 0;
    ssize_t count = descriptor.number() < 0 ? -1 : 1;
    while (count > 0) {
        count = ::read(descriptor.number(), &octet, 1);
        if (count > 0 && !pin.push_back(octet))
            throw Failure("PIN file " + file + " holds over 255 octets", operation);
    }
    wipe(&octet, 1);
    if (count < 0)
        throw Failure("PIN file " + file + " cannot be read: " + std::strerror(errno), operation);
    dropLineEnd(pin);
    if (pin.text().find('\n') != std::string_view::npos)
        throw Failure("PIN file " + file + " holds more than one line", operation);
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
        readFile(options.pinFile, call.operation(), pin);
    } else if (!options.pinEnvironment.empty()) {
        readEnvironment(options.pinEnvironment, pin);
    } else if (!call.console().askSecret || !call.console().askSecret(prompt, pin)) {
        call.checkInterrupt();
        throw UsageError(
            "no PIN: there is no terminal to ask at; use --pin-file FILE or --pin-env NAME");
    }
}

}  // namespace tovi
