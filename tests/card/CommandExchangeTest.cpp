#include "tovi/card/CommandExchange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

constexpr const char* operation = "Test::operation";

ResponseApdu send(ICardChannel& channel, const std::string& command,
                  const CardCapabilities& capabilities = {}) {
    CommandApdu parsed;
    EXPECT_TRUE(CommandApdu::parse(octets(command), parsed));
    return CommandExchange(channel, capabilities).send(parsed, operation);
}

TEST(CommandExchange, GivesBackDataAndStatusOfOneCommand) {
    ScriptedChannel channel({"01026A82"});
    const ResponseApdu response = send(channel, "00B0000000");
    EXPECT_EQ(hexOf(response.data), "0102");
    EXPECT_EQ(response.status, 0x6A82);
    EXPECT_THAT(channel.commands, ElementsAre("00B0000000"));
}

TEST(CommandExchange, FetchesWhatStaysBehind61) {
    ScriptedChannel channel({"01026102", "03046101", "059000"});
    const ResponseApdu response = send(channel, "00B0000000");
    EXPECT_EQ(hexOf(response.data), "0102030405");
    EXPECT_EQ(response.status, 0x9000);
    EXPECT_THAT(channel.commands, ElementsAre("00B0000000", "00C0000002", "00C0000001"));
}

TEST(CommandExchange, Takes6100For256OctetsAndStopsAtAnError) {
    ScriptedChannel channel({"6100", "6F00"});
    EXPECT_EQ(send(channel, "00B0000000").status, 0x6F00);
    EXPECT_THAT(channel.commands, ElementsAre("00B0000000", "00C0000000"));
}

TEST(CommandExchange, EndsWithACardThatPromisesMoreAndSendsNothing) {
    ScriptedChannel channel({"6110"});
    EXPECT_EQ(failureOf([&] { send(channel, "00B0000000"); }),
              smartcardFailure("malformed card response", operation));
    EXPECT_EQ(channel.commands.size(), 2u);
}

TEST(CommandExchange, EndsWithACardThatAlwaysHasMore) {
    ScriptedChannel channel({std::string(512, 'A') + "6100"});
    EXPECT_EQ(failureOf([&] { send(channel, "00B0000000"); }),
              smartcardFailure("card response too long", operation));
    EXPECT_EQ(channel.commands.size(), 257u);
}

TEST(CommandExchange, RefusesASingleResponseThatIsTooLong) {
    ScriptedChannel channel({std::string(2 * 65537, 'A') + "9000"});
    EXPECT_EQ(failureOf([&] { send(channel, "00B0000000"); }),
              smartcardFailure("card response too long", operation));
}

TEST(CommandExchange, RepeatsOnceWithTheRightLength) {
    ScriptedChannel channel({"6C02", "01029000"});
    EXPECT_EQ(hexOf(send(channel, "00B0000010").data), "0102");
    EXPECT_THAT(channel.commands, ElementsAre("00B0000010", "00B0000002"));
}

TEST(CommandExchange, DoesNotRepeatForEver) {
    ScriptedChannel channel({"6C02"});
    EXPECT_EQ(send(channel, "00B0000010").status, 0x6C02);
    EXPECT_EQ(channel.commands.size(), 2u);
}

TEST(CommandExchange, RepeatsGetResponseOnceWithTheRightLength) {
    ScriptedChannel channel({"6110", "6C02", "01029000"});
    EXPECT_EQ(hexOf(send(channel, "00B0000010").data), "0102");
    EXPECT_THAT(channel.commands, ElementsAre("00B0000010", "00C0000010", "00C0000002"));
}

TEST(CommandExchange, RefusesAnswersWithoutAStatusWord) {
    for (const char* hex : {"", "90"}) {
        ScriptedChannel channel({hex});
        EXPECT_EQ(failureOf([&] { send(channel, "00B0000000"); }),
                  smartcardFailure("incomplete card response", operation));
    }
}

TEST(CommandExchange, SplitsLongDataIntoAChain) {
    ScriptedChannel channel({"9000"});
    CommandApdu command{0x00, 0xD6, 0x00, 0x10, pattern(600), 0};
    EXPECT_EQ(CommandExchange(channel, {.commandChaining = true}).send(command, operation).status,
              0x9000);
    ASSERT_EQ(channel.commands.size(), 3u);
    EXPECT_EQ(channel.commands[0], "10D60010FF" + hexOf(slice(command.data, 0, 255)));
    EXPECT_EQ(channel.commands[1], "10D60010FF" + hexOf(slice(command.data, 255, 255)));
    EXPECT_EQ(channel.commands[2], "00D600105A" + hexOf(slice(command.data, 510, 90)));
}

TEST(CommandExchange, StopsAChainThatTheCardRefuses) {
    ScriptedChannel channel({"6884"});
    CommandApdu command{0x00, 0xD6, 0x00, 0x00, pattern(300), 0};
    EXPECT_EQ(CommandExchange(channel, {.commandChaining = true}).send(command, operation).status,
              0x6884);
    EXPECT_EQ(channel.commands.size(), 1u);
}

/// Loses the answer to its second command, which the card has performed.
class LosesOneAnswer : public ICardChannel {
public:
    explicit LosesOneAnswer(ICardChannel& card) : card_(card) {}
    Blob transmit(const Blob& command) override {
        const Blob answer = card_.transmit(command);
        if (++commands == 2) throw SmartcardException("lost", "test");
        return answer;
    }
    int commands = 0;

private:
    ICardChannel& card_;
};

TEST(CommandExchange, SendsTheCommandBehindABrokenChainAgainOnce) {
    ScriptedChannel card({"9000", "9000", "6883", "6883", "6883"});
    LosesOneAnswer channel(card);
    CommandExchange exchange(channel, {.commandChaining = true});
    CommandApdu update;
    update.ins = 0xD6;
    for (int i = 0; i < 600; ++i) update.data.push_back(0x55);
    EXPECT_EQ(failureOf([&] { exchange.send(update, operation); }).message, "lost");
    CommandApdu read;
    read.ins = 0xB0;
    EXPECT_EQ(exchange.send(read, operation).status, 0x6883);
    EXPECT_EQ(channel.commands, 4);
    EXPECT_EQ(exchange.send(read, operation).status, 0x6883);
    EXPECT_EQ(channel.commands, 5);
}

TEST(CommandExchange, SendsLongDataAtOnceWithExtendedLength) {
    ScriptedChannel channel({"9000"});
    CommandApdu command{0x00, 0xD6, 0x00, 0x00, pattern(300), 0};
    CommandExchange(channel, {.extendedLength = true, .commandChaining = true})
        .send(command, operation);
    ASSERT_EQ(channel.commands.size(), 1u);
    EXPECT_EQ(channel.commands[0].substr(0, 14), "00D6000000012C");
}

TEST(CommandExchange, TellsHowMuchOneCommandCarries) {
    ScriptedChannel channel({"9000"});
    const auto most = [&](const CardCapabilities& capabilities) {
        const CommandExchange exchange(channel, capabilities);
        return std::pair(exchange.maxRead(), exchange.maxWrite());
    };
    EXPECT_EQ(most({}), std::pair(std::size_t{256}, std::size_t{255}));
    EXPECT_EQ(most({.extendedLength = true}), std::pair(std::size_t{65536}, std::size_t{65535}));
    EXPECT_EQ(most({.commandChaining = true}), std::pair(std::size_t{256}, std::size_t{65535}));
    EXPECT_EQ(most({.maxRead = 128, .maxWrite = 64}), std::pair(std::size_t{128}, std::size_t{64}));
    EXPECT_EQ(most({.maxRead = 1000, .maxWrite = 1000}),
              std::pair(std::size_t{256}, std::size_t{255}));
}

}  // namespace
}  // namespace tovi::test
