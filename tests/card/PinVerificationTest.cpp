#include "tovi/card/PinVerification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

Failure failureOf(const std::string& answer, const std::string& pin) {
    ScriptedChannel channel({answer});
    return test::failureOf([&] { verifyPin(channel, 1, octets(pin)); });
}

TEST(PinVerification, SendsThePinAndItsReference) {
    ScriptedChannel channel({"9000"});
    EXPECT_TRUE(verifyPin(channel, 0x81, octets("31323334")).isVerified);
    EXPECT_THAT(channel.commands, ElementsAre("002000810431323334"));
}

TEST(PinVerification, AsksForTheStateWithoutData) {
    ScriptedChannel channel({"63C2"});
    const PinState state = pinState(channel, 1);
    EXPECT_FALSE(state.isVerified);
    EXPECT_FALSE(state.isBlocked);
    EXPECT_EQ(state.triesLeft, 2u);
    EXPECT_THAT(channel.commands, ElementsAre("00200001"));
}

TEST(PinVerification, TellsTheTriesThatAreLeft) {
    for (unsigned tries = 0; tries < 16; ++tries) {
        ScriptedChannel channel({std::string("63C") + "0123456789ABCDEF"[tries]});
        const PinState state = verifyPin(channel, 1, octets("31"));
        EXPECT_EQ(state.triesLeft, tries);
        EXPECT_EQ(state.isBlocked, tries == 0);
        EXPECT_FALSE(state.isVerified);
    }
}

TEST(PinVerification, KnowsABlockedPin) {
    for (const char* answer : {"6983", "6984"}) {
        ScriptedChannel channel({answer});
        const PinState state = pinState(channel, 1);
        EXPECT_TRUE(state.isBlocked) << answer;
        EXPECT_EQ(state.triesLeft, 0u) << answer;
    }
}

TEST(PinVerification, TakesARefusalWithoutACounter) {
    ScriptedChannel channel({"6300"});
    const PinState state = verifyPin(channel, 1, octets("31"));
    EXPECT_FALSE(state.isVerified);
    EXPECT_FALSE(state.isBlocked);
    EXPECT_EQ(state.triesLeft, std::nullopt);
}

TEST(PinVerification, FailsWhenTheCardDidNotCompare) {
    EXPECT_EQ(failureOf("6A88", "31"),
              (Failure{smartcardId, "VERIFY refused", "verifyPin", 0x16A88}));
    EXPECT_EQ(failureOf("6282", "31"),
              (Failure{smartcardId, "VERIFY refused", "verifyPin", 0x16282}));
    EXPECT_EQ(failureOf("90", "31"), smartcardFailure("incomplete card response", "verifyPin"));
    EXPECT_EQ(failureOf("", "31"), smartcardFailure("incomplete card response", "verifyPin"));
}

TEST(PinVerification, SendsNoPinThatIsEmptyOrTooLong) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{256}}) {
        ScriptedChannel channel({"9000"});
        EXPECT_EQ(test::failureOf([&] { verifyPin(channel, 1, filled(size, 0x31)); }),
                  smartcardFailure("invalid PIN length", "verifyPin"));
        EXPECT_TRUE(channel.commands.empty());
    }
    ScriptedChannel channel({"9000"});
    EXPECT_TRUE(verifyPin(channel, 1, filled(255, 0x31)).isVerified);
}

}  // namespace
}  // namespace tovi::test
