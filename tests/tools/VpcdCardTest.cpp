#include "tools/VpcdCard.h"

#include <gtest/gtest.h>

#include "tools/VpcdMessages.h"

namespace tovi::test {
namespace {

const Blob success = {0x90, 0x00};
const Blob wrongLength = {0x67, 0x00};
const Blob powerOff = {0x00}, powerOn = {0x01}, reset = {0x02}, requestAtr = {0x04};
const Blob atr = {0x3B, 0x00};
const Blob selectFile = {0x00, 0xA4, 0x02, 0x0C, 0x02, 0x44, 0x01};
const Blob readFile = {0x00, 0xB0, 0x00, 0x00, 0x02};
const Blob verifyPin = {0x00, 0x20, 0x00, 0x01, 0x02, 0x31, 0x32};
const Blob isVerified = {0x00, 0x20, 0x00, 0x01};

struct VpcdCardTest : testing::Test {
    VpcdCardTest() {
        virtualCard.addTransparent({0x3F, 0x00, 0x44, 0x01}, 65535, {0xAA, 0xBB});
        PinDescription pin;
        pin.reference = 1;
        pin.value = {0x31, 0x32};
        pin.tries = pin.left = 3;
        virtualCard.add(pin);
    }

    VirtualCard virtualCard;
    VirtualCardChannel channel{virtualCard};
    VpcdCard card{virtualCard, channel, atr};
};

TEST_F(VpcdCardTest, AnswersWithItsAtr) { EXPECT_EQ(card.answer(requestAtr), atr); }

TEST_F(VpcdCardTest, AnswersCommands) {
    EXPECT_EQ(card.answer(selectFile), success);
    EXPECT_EQ(card.answer(readFile), (Blob{0xAA, 0xBB, 0x90, 0x00}));
}

TEST_F(VpcdCardTest, AnswersWhatIsNoCommand) {
    EXPECT_EQ(card.answer({}), wrongLength);
    EXPECT_EQ(card.answer({0x03}), wrongLength);
    EXPECT_EQ(card.answer({0x00, 0xA4}), wrongLength);
    EXPECT_EQ(card.answer({0x00, 0xA4, 0x00}), wrongLength);
    EXPECT_EQ(card.answer({0x00, 0xA4, 0x00, 0x0C, 0x05, 0x3F}), wrongLength);
}

TEST_F(VpcdCardTest, ForgetsSelectionAndPinWithPowerOffPowerOnAndReset) {
    for (const Blob& control : {powerOff, powerOn, reset}) {
        ASSERT_EQ(card.answer(selectFile), success);
        ASSERT_EQ(card.answer(verifyPin), success);
        EXPECT_EQ(card.answer(control), std::nullopt);
        EXPECT_EQ(card.answer(readFile), (Blob{0x69, 0x86}));
        EXPECT_EQ(card.answer(isVerified), (Blob{0x63, 0xC3}));
    }
}

TEST_F(VpcdCardTest, KeepsSelectionAndPinWhenOnlyItsAtrIsRead) {
    ASSERT_EQ(card.answer(selectFile), success);
    ASSERT_EQ(card.answer(verifyPin), success);
    card.answer(requestAtr);
    EXPECT_EQ(card.answer(readFile), (Blob{0xAA, 0xBB, 0x90, 0x00}));
    EXPECT_EQ(card.answer(isVerified), success);
}

TEST_F(VpcdCardTest, ForgetsABrokenChainWithReset) {
    ASSERT_EQ(card.answer({0x10, 0xD6, 0x00, 0x00, 0x01, 0x11}), success);
    card.answer(reset);
    EXPECT_EQ(card.answer(selectFile), success);
}

TEST_F(VpcdCardTest, ForgetsThePinWhenItIsPutIntoAReader) {
    ASSERT_EQ(card.answer(verifyPin), success);
    card.reset();
    EXPECT_EQ(card.answer(isVerified), (Blob{0x63, 0xC3}));
}

TEST_F(VpcdCardTest, GivesNoMoreThanFitsIntoAMessage) {
    ASSERT_EQ(card.answer(selectFile), success);
    // READ BINARY with extended length, 65,536 octets: two are left for GET RESPONSE.
    const auto response = card.answer({0x00, 0xB0, 0x00, 0x00, 0x00, 0x00, 0x00});
    ASSERT_TRUE(response);
    EXPECT_EQ(response->size(), maxVpcdPayload);
    EXPECT_EQ(Blob(response->end() - 2, response->end()), (Blob{0x61, 0x02}));
    EXPECT_EQ(card.answer({0x00, 0xC0, 0x00, 0x00, 0x02}), (Blob{0x00, 0x00, 0x90, 0x00}));
}

}  // namespace
}  // namespace tovi::test
