#include "tovi/card/VirtualPins.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

const Blob right = octets("31323334");
const Blob wrong = octets("31323335");

VirtualPins onePin(unsigned tries = 2) {
    VirtualPins pins;
    pins.add({.reference = 7, .value = right, .tries = tries, .left = tries});
    return pins;
}

TEST(VirtualPins, CountsDownAndBlocks) {
    VirtualPins pins = onePin();
    EXPECT_EQ(pins.verify(7, wrong, nullptr), 0x63C1);
    EXPECT_EQ(pins.verify(7, wrong, nullptr), 0x6983);
    EXPECT_EQ(pins.verify(7, right, nullptr), 0x6983);
    EXPECT_EQ(pins.state(7), 0x6983);
    EXPECT_EQ(pins.left(7), 0u);
}

TEST(VirtualPins, CountsFromTheStartAfterTheRightValue) {
    VirtualPins pins = onePin();
    pins.verify(7, wrong, nullptr);
    EXPECT_EQ(pins.verify(7, right, nullptr), 0x9000);
    EXPECT_EQ(pins.left(7), 2u);
    EXPECT_EQ(pins.state(7), 0x9000);
}

TEST(VirtualPins, TakesAWrongValueForTheEndOfTheVerification) {
    VirtualPins pins = onePin();
    pins.verify(7, right, nullptr);
    EXPECT_EQ(pins.verify(7, wrong, nullptr), 0x63C1);
    EXPECT_FALSE(pins.allows({AccessRule::Kind::pin, 7}));
}

TEST(VirtualPins, ComparesTheWholeValue) {
    VirtualPins pins = onePin(15);
    EXPECT_EQ(pins.verify(7, octets("313233"), nullptr), 0x63CE);
    EXPECT_EQ(pins.verify(7, octets("3132333400"), nullptr), 0x63CD);
}

TEST(VirtualPins, AllowsWhatARuleSays) {
    VirtualPins pins = onePin();
    const AccessRule always{}, never{AccessRule::Kind::never}, pin{AccessRule::Kind::pin, 7};
    EXPECT_TRUE(pins.allows(always));
    EXPECT_FALSE(pins.allows(never));
    EXPECT_FALSE(pins.allows(pin));
    EXPECT_FALSE(pins.allows({AccessRule::Kind::pin, 8}));
    pins.verify(7, right, nullptr);
    EXPECT_TRUE(pins.allows(pin));
    EXPECT_FALSE(pins.allows(never));
    EXPECT_FALSE(pins.allows({AccessRule::Kind::pin, 8}));
    pins.reset();
    EXPECT_FALSE(pins.allows(pin));
}

TEST(VirtualPins, KnowsNothingOfOtherReferences) {
    VirtualPins pins = onePin();
    EXPECT_EQ(pins.verify(8, right, nullptr), 0x6A88);
    EXPECT_EQ(pins.state(8), 0x6A88);
    EXPECT_EQ(pins.left(8), 0u);
}

}  // namespace
}  // namespace tovi::test
