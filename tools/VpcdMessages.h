#pragma once

#include <cstddef>
#include <optional>

#include "tovi/interfaces/Blob.h"

namespace tovi {

// What a virtual reader and the card in it say to each other: messages of two octets of length,
// big-endian, and a payload of that many octets, in both directions of a stream.

constexpr std::size_t maxVpcdPayload = 0xFFFF;

/// What a message of the reader asks for.
enum class VpcdRequest {
    powerOff,  ///< not answered
    powerOn,   ///< not answered
    reset,     ///< not answered
    atr,       ///< answered with the answer to reset
    command,   ///< a command APDU, answered with a response APDU
};

/// What a payload of the reader asks for. One octet is a control message; one that has no meaning,
/// or no octet at all, is a command, which is too short, so that it gets an answer.
VpcdRequest vpcdRequest(ASN1::View payload);

/// The message with this payload, of at most maxVpcdPayload octets; std::length_error for more.
Blob encodeVpcdMessage(ASN1::View payload);

/// Puts messages together out of the pieces in which a stream brings them.
class VpcdDecoder {
public:
    /// Takes the next octets of the stream.
    void append(ASN1::View octets);
    /// The payload of the next message, as soon as all of it is there. Take all that there are
    /// before the next append: then no more than one message is ever kept.
    std::optional<Blob> next();

private:
    Blob octets_;
    std::size_t taken_ = 0;  ///< octets of messages that have been returned
};

}  // namespace tovi
