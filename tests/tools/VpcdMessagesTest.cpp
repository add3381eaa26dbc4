#include "tools/VpcdMessages.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tovi::test {
namespace {

TEST(VpcdRequest, IsToldByTheOneOctetOfAControlMessage) {
    EXPECT_EQ(vpcdRequest(Blob{0x00}), VpcdRequest::powerOff);
    EXPECT_EQ(vpcdRequest(Blob{0x01}), VpcdRequest::powerOn);
    EXPECT_EQ(vpcdRequest(Blob{0x02}), VpcdRequest::reset);
    EXPECT_EQ(vpcdRequest(Blob{0x04}), VpcdRequest::atr);
}

TEST(VpcdRequest, IsACommandForWhateverElseComes) {
    EXPECT_EQ(vpcdRequest(Blob{}), VpcdRequest::command);
    EXPECT_EQ(vpcdRequest(Blob{0x03}), VpcdRequest::command);
    EXPECT_EQ(vpcdRequest(Blob{0xFF}), VpcdRequest::command);
    EXPECT_EQ(vpcdRequest(Blob{0x00, 0xA4}), VpcdRequest::command);
    EXPECT_EQ(vpcdRequest(Blob{0x00, 0xA4, 0x00, 0x0C}), VpcdRequest::command);
}

TEST(VpcdMessage, HasItsLengthInFront) {
    EXPECT_EQ(encodeVpcdMessage(Blob{}), (Blob{0x00, 0x00}));
    EXPECT_EQ(encodeVpcdMessage(Blob{0x90, 0x00}), (Blob{0x00, 0x02, 0x90, 0x00}));
    const Blob longest = encodeVpcdMessage(Blob(maxVpcdPayload, 0xAB));
    EXPECT_EQ(longest.size(), 2 + maxVpcdPayload);
    EXPECT_EQ(longest[0], 0xFF);
    EXPECT_EQ(longest[1], 0xFF);
}

TEST(VpcdMessage, IsRefusedWhenItsLengthDoesNotFit) {
    EXPECT_THROW(encodeVpcdMessage(Blob(maxVpcdPayload + 1, 0xAB)), std::length_error);
}

TEST(VpcdDecoder, PutsAMessageTogetherOctetByOctet) {
    VpcdDecoder decoder;
    for (const std::uint8_t octet : Blob{0x00, 0x02, 0x90}) {
        decoder.append(Blob{octet});
        EXPECT_FALSE(decoder.next());
    }
    decoder.append(Blob{0x00});
    EXPECT_EQ(decoder.next(), (Blob{0x90, 0x00}));
    EXPECT_FALSE(decoder.next());
}

TEST(VpcdDecoder, TakesSeveralMessagesFromOnePiece) {
    VpcdDecoder decoder;
    decoder.append(Blob{0x00, 0x01, 0x04, 0x00, 0x01, 0x01, 0x00});
    EXPECT_EQ(decoder.next(), Blob{0x04});
    EXPECT_EQ(decoder.next(), Blob{0x01});
    EXPECT_FALSE(decoder.next());
    decoder.append(Blob{0x01, 0x02});
    EXPECT_EQ(decoder.next(), Blob{0x02});
}

TEST(VpcdDecoder, TakesAMessageWithoutOctets) {
    VpcdDecoder decoder;
    decoder.append(Blob{0x00, 0x00, 0x00, 0x01, 0x04});
    EXPECT_EQ(decoder.next(), Blob{});
    EXPECT_EQ(decoder.next(), Blob{0x04});
}

TEST(VpcdDecoder, TakesTheLongestMessage) {
    VpcdDecoder decoder;
    const Blob payload(maxVpcdPayload, 0x5A);
    Blob message = encodeVpcdMessage(payload);
    const std::uint8_t last = message[message.size() - 1];
    message.resize(message.size() - 1);
    decoder.append(message);
    EXPECT_FALSE(decoder.next());
    decoder.append(Blob{last});
    EXPECT_EQ(decoder.next(), payload);
}

}  // namespace
}  // namespace tovi::test
