#include "tovi/card/TraceChannel.h"

#include <cstdio>
#include <utility>

#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

constexpr std::size_t headerSize = 4;
constexpr std::size_t statusSize = 2;

std::string hex(ASN1::View octets) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : octets) {
        text += digits[octet >> 4];
        text += digits[octet & 0x0F];
    }
    return text;
}

/// VERIFY, EXTERNAL AUTHENTICATE, CHANGE REFERENCE DATA, DISABLE and ENABLE VERIFICATION, RESET
/// RETRY COUNTER (ISO/IEC 7816-4), with their odd instructions.
bool carriesSecret(std::uint8_t ins) {
    switch (ins & 0xFE) {
        case 0x20:
        case 0x24:
        case 0x26:
        case 0x28:
        case 0x2C:
        case 0x82:
            return true;
        default:
            return false;
    }
}

std::string commandText(ASN1::View command) {
    if (command.size() > headerSize + 1 && carriesSecret(command[1]))
        return hex(command.first(headerSize)) + " (data hidden)";
    return hex(command);
}

std::string responseText(ASN1::View response) {
    if (response.size() < statusSize) return hex(response) + " (incomplete)";
    const std::size_t size = response.size() - statusSize;
    const std::string status = hex(response.subspan(size));
    return size == 0 ? status : hex(response.first(size)) + " " + status;
}

std::chrono::nanoseconds steadyTime() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace

TraceChannel::TraceChannel(ICardChannel& channel, Sink sink, Clock clock)
    : channel_(channel),
      sink_(std::move(sink)),
      clock_(clock ? std::move(clock) : Clock(steadyTime)),
      start_(clock_()) {}

Blob TraceChannel::transmit(const Blob& command) {
    write('>', commandText(command));
    try {
        Blob response = channel_.transmit(command);
        write('<', responseText(response));
        return response;
    } catch (const Exception& failure) {
        const char* message = failure.GetMessage();
        write('!', message == nullptr ? "" : message);
        throw;
    }
}

void TraceChannel::write(char direction, const std::string& text) {
    const std::chrono::duration<double, std::milli> time = clock_() - start_;
    char stamp[48];
    std::snprintf(stamp, sizeof stamp, "%12.3f ms %c ", time.count(), direction);
    sink_(stamp + text);
}

}  // namespace tovi
