#include "tools/Socket.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

namespace tovi {
namespace {

constexpr std::size_t largestPiece = 65536;

struct FreeAddresses {
    void operator()(addrinfo* addresses) const { ::freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses findAddresses(const std::string& host, std::uint16_t port, std::string& reason) {
    addrinfo wanted = {};
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found);
    if (error != 0) reason = ::gai_strerror(error);
    return Addresses(error == 0 ? found : nullptr);
}

std::string textOf(int error) { return std::generic_category().message(error); }

void setOption(int descriptor, int option) {
    const int on = 1;
    // On what is no TCP socket this fails, and is not needed.
    static_cast<void>(::setsockopt(descriptor, IPPROTO_TCP, option, &on, sizeof on));
}

/// Whether a failed call may well succeed later.
bool isPassing(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

Socket::Socket(int descriptor) : descriptor_(descriptor) {
    ::fcntl(descriptor_, F_SETFL, ::fcntl(descriptor_, F_GETFL) | O_NONBLOCK);
    ::fcntl(descriptor_, F_SETFD, FD_CLOEXEC);
    setOption(descriptor_, TCP_NODELAY);
}

Socket::~Socket() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

Socket::Socket(Socket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

std::optional<Socket> Socket::connect(const std::string& host, std::uint16_t port,
                                      std::chrono::milliseconds patience, std::string& reason) {
    const Addresses addresses = findAddresses(host, port, reason);
    for (const addrinfo* address = addresses.get(); address != nullptr;
         address = address->ai_next) {
        const int descriptor = ::socket(address->ai_family, address->ai_socktype, 0);
        if (descriptor < 0) {
            reason = textOf(errno);
            continue;
        }
        Socket socket(descriptor);
        int error = ::connect(descriptor, address->ai_addr, address->ai_addrlen) == 0 ? 0 : errno;
        if (error == EINPROGRESS) {
            error = ETIMEDOUT;
            socklen_t size = sizeof error;
            if (socket.waitFor(POLLOUT, patience))
                ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
        }
        if (error == 0) return socket;
        reason = textOf(error);
    }
    return std::nullopt;
}

bool Socket::waitFor(short event, std::chrono::milliseconds patience) const {
    pollfd wanted = {descriptor_, event, 0};
    return ::poll(&wanted, 1, static_cast<int>(patience.count())) > 0;
}

Socket::Transfer Socket::receive(Blob& octets, std::chrono::milliseconds patience) {
    octets.clear();
    if (!waitFor(POLLIN, patience)) return Transfer::timedOut;
#ifdef TCP_QUICKACK
    // The reader sends length and payload apart, and holds the second back until the first is
    // acknowledged: 40 ms a command if that is left to the system. The option does not last.
    setOption(descriptor_, TCP_QUICKACK);
#endif
    octets.resize(largestPiece);
    const ssize_t got = ::recv(descriptor_, octets.data(), octets.size(), 0);
    octets.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    if (got > 0) return Transfer::done;
    return got < 0 && isPassing(errno) ? Transfer::timedOut : Transfer::closed;
}

Socket::Transfer Socket::send(Blob& octets, std::chrono::milliseconds patience) {
    if (!waitFor(POLLOUT, patience)) return Transfer::timedOut;
    const ssize_t sent = ::send(descriptor_, octets.data(), octets.size(), MSG_NOSIGNAL);
    if (sent < 0) return isPassing(errno) ? Transfer::timedOut : Transfer::closed;
    octets.erase(octets.begin(), octets.begin() + sent);
    return Transfer::done;
}

}  // namespace tovi
