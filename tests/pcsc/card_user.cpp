// Another user of the readers, which does what a scenario needs besides the command:
//
//     card_user readers                  prints the names of the readers
//     card_user wait READER STATE        until the reader is "present" or "empty", at most 10 s
//     card_user hold READER              takes the card for itself, until its input ends
//     card_user reset READER TIMES       resets the card as often, every 20 ms
//     card_user send READER COMMAND...   prints the responses to commands in hex; "reset" resets
#include <winscard.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Words = std::vector<std::string>;
using Octets = std::vector<unsigned char>;

void check(LONG code, const char* operation) {
    if (code == SCARD_S_SUCCESS) return;
    char text[64];
    std::snprintf(text, sizeof text, "%s: %08lX", operation, static_cast<unsigned long>(code));
    throw std::runtime_error(text);
}

class Context {
public:
    Context() {
        check(SCardEstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &context_), "context");
    }
    ~Context() { SCardReleaseContext(context_); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    operator SCARDCONTEXT() const { return context_; }

private:
    SCARDCONTEXT context_ = 0;
};

class Card {
public:
    Card(const std::string& reader, DWORD mode) {
        check(SCardConnect(context_, reader.c_str(), mode, anyProtocol, &card_, &protocol_),
              "connect");
    }
    ~Card() { SCardDisconnect(card_, SCARD_LEAVE_CARD); }
    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;

    void reset() {
        const LONG code =
            SCardReconnect(card_, SCARD_SHARE_SHARED, anyProtocol, SCARD_RESET_CARD, &protocol_);
        // Somebody else is in a transaction: then it is not reset this time.
        if (code != static_cast<LONG>(SCARD_E_SHARING_VIOLATION)) check(code, "reset");
    }
    Octets transmit(const Octets& command) const {
        Octets response(65538);
        DWORD size = static_cast<DWORD>(response.size());
        const SCARD_IO_REQUEST* const protocol =
            protocol_ == SCARD_PROTOCOL_T0 ? SCARD_PCI_T0 : SCARD_PCI_T1;
        check(SCardTransmit(card_, protocol, command.data(), static_cast<DWORD>(command.size()),
                            nullptr, response.data(), &size),
              "transmit");
        response.resize(size);
        return response;
    }

private:
    static constexpr DWORD anyProtocol = SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1;

    Context context_;
    SCARDHANDLE card_ = 0;
    DWORD protocol_ = 0;
};

void readers(const Words&) {
    const Context context;
    std::vector<char> names(4096);
    DWORD size = static_cast<DWORD>(names.size());
    check(SCardListReaders(context, nullptr, names.data(), &size), "list");
    for (const char* name = names.data(); *name != 0; name += std::string(name).size() + 1)
        std::puts(name);
}

void wait(const Words& words) {
    const Context context;
    const DWORD wanted = words.at(1) == "present" ? SCARD_STATE_PRESENT : SCARD_STATE_EMPTY;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    SCARD_READERSTATE state = {};
    state.szReader = words.at(0).c_str();
    while (std::chrono::steady_clock::now() < end) {
        const LONG code = SCardGetStatusChange(context, 500, &state, 1);
        if (code != static_cast<LONG>(SCARD_E_TIMEOUT)) check(code, "wait");
        if ((state.dwEventState & wanted) != 0) return;
        state.dwCurrentState = state.dwEventState;
    }
    throw std::runtime_error("wait: no change");
}

void hold(const Words& words) {
    const Card card(words.at(0), SCARD_SHARE_EXCLUSIVE);
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
}

void reset(const Words& words) {
    Card card(words.at(0), SCARD_SHARE_SHARED);
    for (int i = std::atoi(words.at(1).c_str()); i > 0; --i) {
        card.reset();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

Octets fromHex(const std::string& text) {
    Octets octets;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2)
        octets.push_back(static_cast<unsigned char>(std::stoul(text.substr(at, 2), nullptr, 16)));
    return octets;
}

void send(const Words& words) {
    Card card(words.at(0), SCARD_SHARE_SHARED);
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i] == "reset") {
            card.reset();
            continue;
        }
        for (const unsigned octet : card.transmit(fromHex(words[i]))) std::printf("%02X", octet);
        std::puts("");
    }
}

const std::map<std::string, std::function<void(const Words&)>> actions = {
    {"readers", readers}, {"wait", wait}, {"hold", hold}, {"reset", reset}, {"send", send}};

}  // namespace

int main(int argc, char** argv) try {
    Words words(argv + 1, argv + argc);
    const std::string action = words.at(0);
    words.erase(words.begin());
    actions.at(action)(words);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "card_user: %s\n", failure.what());
    return 1;
}
