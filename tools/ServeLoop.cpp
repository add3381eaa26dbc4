#include "tools/ServeLoop.h"

#include <fmt/format.h>

#include <thread>
#include <utility>

#include "tools/Text.h"

namespace tovi {
namespace {

constexpr std::chrono::milliseconds slice{100};  // between two looks for an interrupt

}  // namespace

std::string ReaderAddress::text() const {
    const bool isIPv6 = host.find(':') != std::string::npos;
    return fmt::format(fmt::runtime(isIPv6 ? "[{}]:{}" : "{}:{}"), host, port);
}

ServeLoop::ServeLoop(const Invocation& call, VpcdCard& card, ReaderAddress address,
                     std::chrono::seconds patience)
    : call_(call), card_(card), address_(std::move(address)), patience_(patience) {}

void ServeLoop::insert() {
    const auto end = Clock::now() + patience_;
    do {
        call_.checkInterrupt();
        if (connect() && waitForFirstMessage(end)) return;
        std::this_thread::sleep_for(slice);
    } while (Clock::now() < end);
    socket_.reset();
    throw Failure(fmt::format("no virtual reader takes the card at {} within {} s: {}; pcscd has "
                              "one there when the package vsmartcard-vpcd is installed",
                              address_.text(), patience_.count(), reason_),
                  call_.operation());
}

bool ServeLoop::connect() {
    card_.reset();
    decoder_ = {};
    isAddressed_ = false;
    socket_ = Socket::connect(address_.host, address_.port, slice, reason_);
    return socket_.has_value();
}

/// A reader that has a card already lets the next one wait for as long as it likes.
bool ServeLoop::waitForFirstMessage(Clock::time_point end) {
    reason_ = "it does not ask for the card, maybe since another one is in it";
    do {
        call_.checkInterrupt();
        if (!receive() || !answerAll()) {
            reason_ = "the connection was closed";
            return false;
        }
    } while (!isAddressed_ && Clock::now() < end);
    return isAddressed_;
}

void ServeLoop::serve() {
    do call_.checkInterrupt();
    while (receive() && answerAll());
    socket_.reset();
}

/// False when the reader has gone.
bool ServeLoop::receive() {
    Blob octets;
    const Socket::Transfer transfer = socket_->receive(octets, slice);
    decoder_.append(octets);
    return transfer != Socket::Transfer::closed;
}

bool ServeLoop::answerAll() {
    while (const std::optional<Blob> message = decoder_.next()) {
        isAddressed_ = true;
        const std::optional<Blob> answer = card_.answer(*message);
        if (answer && !send(encodeVpcdMessage(*answer))) return false;
    }
    return true;
}

bool ServeLoop::send(Blob octets) {
    while (!octets.empty()) {
        call_.checkInterrupt();
        if (socket_->send(octets, slice) == Socket::Transfer::closed) return false;
    }
    return true;
}

}  // namespace tovi
