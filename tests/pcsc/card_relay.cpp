// Stands between a virtual reader and a served card, and pulls the card at one exact point of a
// write:
//
//     card_relay READER_PORT CUT MODE    prints the port that it waits for the card at
//
// at the CUT-th UPDATE BINARY that the reader sends. With MODE "before" the card does not get that
// command, with "during" the reader is left as soon as the card has it, with "after" when the card
// has answered, which the reader does not learn.
#include <netinet/in.h>
#include <sys/socket.h>

#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "tools/Socket.h"
#include "tools/VpcdMessages.h"

namespace {

using tovi::Blob;
using tovi::Socket;

constexpr std::chrono::milliseconds slice{5}, patience{10000};
constexpr std::uint8_t updateBinary = 0xD6;

/// Waits for the card at a free port.
Socket acceptCard() {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(listener, generic, size) != 0 || ::listen(listener, 1) != 0 ||
        ::getsockname(listener, generic, &size) != 0)
        throw std::runtime_error("no port for the card");
    std::printf("%d\n", ntohs(address.sin_port));
    std::fflush(stdout);
    const int card = ::accept(listener, nullptr, nullptr);
    if (card < 0) throw std::runtime_error("no card");
    return Socket(card);
}

Socket connectToReader(const char* port) {
    std::string reason;
    auto reader =
        Socket::connect("127.0.0.1", static_cast<std::uint16_t>(std::stoi(port)), patience, reason);
    if (!reader) throw std::runtime_error(reason);
    return std::move(*reader);
}

/// What has come, if anything.
Blob receive(Socket& from) {
    Blob octets;
    if (from.receive(octets, slice) == Socket::Transfer::closed)
        throw std::runtime_error("left before the point of the cut");
    return octets;
}

void send(Socket& to, Blob octets) {
    while (!octets.empty())
        if (to.send(octets, patience) != Socket::Transfer::done)
            throw std::runtime_error("not taken");
}

bool isUpdate(const Blob& message) { return message.size() > 4 && message[1] == updateBinary; }

/// Passes everything on in both directions, until the cut.
void relay(Socket& reader, Socket& card, int cut, const std::string& mode) {
    tovi::VpcdDecoder decoder;
    for (;;) {
        send(reader, receive(card));
        decoder.append(receive(reader));
        while (const auto message = decoder.next()) {
            if (isUpdate(*message)) --cut;
            if (cut == 0 && mode == "before") return;
            send(card, tovi::encodeVpcdMessage(*message));
            if (cut > 0) continue;
            while (mode == "after" && receive(card).empty()) {
            }
            return;
        }
    }
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 4) throw std::runtime_error("READER_PORT CUT MODE");
    Socket card = acceptCard();
    Socket reader = connectToReader(argv[1]);
    relay(reader, card, std::stoi(argv[2]), argv[3]);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "card_relay: %s\n", failure.what());
    return 1;
}
