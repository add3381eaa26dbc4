#include "TestReader.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

#include "tools/VpcdMessages.h"

namespace tovi::test {
namespace {

constexpr int patience = 10000;

bool isReadable(int descriptor) {
    pollfd wanted = {descriptor, POLLIN, 0};
    return ::poll(&wanted, 1, patience) > 0;
}

std::optional<Blob> receiveExactly(int descriptor, std::size_t size) {
    Blob octets(size, 0);
    for (std::size_t got = 0; got < size;) {
        if (!isReadable(descriptor)) return std::nullopt;
        const ssize_t more = ::recv(descriptor, octets.data() + got, size - got, 0);
        if (more <= 0) return std::nullopt;
        got += static_cast<std::size_t>(more);
    }
    return octets;
}

}  // namespace

TestReader::TestReader() {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 1) != 0 ||
        ::getsockname(listener_, generic, &size) != 0)
        throw std::runtime_error("no port for the reader");
    port_ = ntohs(address.sin_port);
}

TestReader::~TestReader() {
    eject();
    ::close(listener_);
}

bool TestReader::accept() {
    eject();
    if (isReadable(listener_)) card_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    return card_ >= 0;
}

void TestReader::eject() {
    if (card_ >= 0) ::close(std::exchange(card_, -1));
}

void TestReader::sendOctets(ASN1::View octets) const {
    static_cast<void>(::send(card_, octets.data(), octets.size(), MSG_NOSIGNAL));
}

void TestReader::send(ASN1::View payload) const { sendOctets(encodeVpcdMessage(payload)); }

std::optional<Blob> TestReader::receive() const {
    const auto length = receiveExactly(card_, 2);
    if (!length) return std::nullopt;
    return receiveExactly(card_, static_cast<std::size_t>((*length)[0] << 8 | (*length)[1]));
}

std::optional<Blob> TestReader::exchange(ASN1::View payload) const {
    send(payload);
    return receive();
}

}  // namespace tovi::test
