// However the stream of a virtual reader is cut, the card finds the same messages in it and answers
// every one that waits for an answer, with what fits into a message.
//
// Input: the size of the pieces in one octet, then the stream.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/require.h"
#include "tools/VpcdCard.h"
#include "tools/VpcdMessages.h"

namespace {

constexpr std::size_t mostMessages = 1000;

std::vector<tovi::Blob> messagesOf(ASN1::View stream, std::size_t piece) {
    tovi::VpcdDecoder decoder;
    std::vector<tovi::Blob> messages;
    while (!stream.empty()) {
        const std::size_t size = std::min(piece, stream.size());
        decoder.append(stream.first(size));
        stream = stream.subspan(size);
        while (auto message = decoder.next()) messages.push_back(*message);
    }
    return messages;
}

void requireAnswers(const std::vector<tovi::Blob>& messages) {
    tovi::VirtualCard card;
    card.addTransparent({0x3F, 0x00, 0x44, 0x01}, 0x10000);
    tovi::VirtualCardChannel channel(card);
    tovi::VpcdCard inserted(card, channel, {0x3B, 0x00});
    for (const tovi::Blob& message : messages) {
        const auto answer = inserted.answer(message);
        const bool isControl = message.size() == 1 && message[0] <= 2;
        require(answer.has_value() != isControl);
        if (answer) require(answer->size() >= 2 && answer->size() <= tovi::maxVpcdPayload);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const ASN1::View stream(data + 1, size - 1);
    const std::vector<tovi::Blob> messages = messagesOf(stream, stream.size());
    require(messagesOf(stream, std::max<std::size_t>(data[0], 1)) == messages);
    tovi::Blob again;
    for (const tovi::Blob& message : messages) again.append(tovi::encodeVpcdMessage(message));
    require(again.size() <= stream.size() &&
            std::equal(again.begin(), again.end(), stream.begin()));
    if (messages.size() <= mostMessages) requireAnswers(messages);
    return 0;
}
