#pragma once

#include <cstdint>
#include <optional>

#include "tovi/interfaces/Blob.h"

namespace tovi::test {

/// A slot of a virtual reader, on a free port of 127.0.0.1. Nothing waits longer than ten seconds.
class TestReader {
public:
    TestReader();
    ~TestReader();
    TestReader(const TestReader&) = delete;
    TestReader& operator=(const TestReader&) = delete;

    std::uint16_t port() const { return port_; }

    /// Takes the card that waits; false when none comes.
    bool accept();
    /// Lets go of the card.
    void eject();
    /// Sends octets as they are.
    void sendOctets(ASN1::View octets) const;
    /// Sends a message with this payload.
    void send(ASN1::View payload) const;
    /// The payload of the next message of the card; nothing when the card has gone.
    std::optional<Blob> receive() const;
    std::optional<Blob> exchange(ASN1::View payload) const;

private:
    int listener_ = -1, card_ = -1;
    std::uint16_t port_ = 0;
};

}  // namespace tovi::test
