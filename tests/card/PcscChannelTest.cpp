#include "tovi/card/PcscChannel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"
#include "tests/card/FakePcscService.h"
#include "tovi/card/ISO7816CardOS.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;

constexpr const char* readOctets = "00B0000000";
constexpr const char* selectApplication = "00A4040C0CA000000063504B43532D3135";
constexpr const char* selectBelow = "00A40200024401";

class PcscChannelTest : public testing::Test {
protected:
    PcscChannelTest() {
        service_.addReader("A", PcscState::present | 0x00010000);
        service_.card = &card_;
    }

    void open() { channel_ = std::make_unique<PcscChannel>(readers_, readers_.find("A")); }
    std::string send(const char* command) { return hexOf(channel_->transmit(octets(command))); }
    Failure failureOfOpening() {
        return failureOf([&] { open(); });
    }
    Failure failureOfSending(const char* command = readOctets) {
        return failureOf([&] { send(command); });
    }
    void failNext(const char* call, std::deque<IPcscService::Code> codes) {
        service_.codes[call] = std::move(codes);
    }
    /// The calls since the last look.
    std::vector<std::string> newCalls() { return std::exchange(service_.calls, {}); }

    FakePcscService service_;
    ScriptedChannel card_{{"9000"}};
    PcscReaders readers_{service_};
    std::unique_ptr<PcscChannel> channel_;
};

Failure failureToTransmit(const char* message) {
    return smartcardFailure(message, "PcscChannel::transmit");
}
Failure failureToConnect(const char* message) {
    return smartcardFailure(message, "PcscChannel::PcscChannel");
}

TEST_F(PcscChannelTest, KeepsOneTransactionAroundAllCommands) {
    open();
    EXPECT_EQ(send(readOctets), "9000");
    EXPECT_EQ(send(readOctets), "9000");
    channel_.reset();
    EXPECT_THAT(newCalls(), ElementsAre("establish", "connect", "begin", readOctets, readOctets,
                                        "end", "disconnect"));
}

TEST_F(PcscChannelTest, ResetsACardThatWasGivenAPin) {
    open();
    EXPECT_EQ(send("002000010431323334"), "9000");
    channel_.reset();
    EXPECT_EQ(newCalls().end()[-2], "end and reset");
}

TEST_F(PcscChannelTest, LeavesACardAsItIsThatWasGivenNone) {
    for (const char* command : {"00200001", readOctets}) {
        open();
        EXPECT_EQ(send(command), "9000");
        channel_.reset();
        EXPECT_EQ(newCalls().end()[-2], "end") << "a PIN's state alone was asked for";
    }
    card_ = ScriptedChannel({"63C2"});
    open();
    EXPECT_EQ(send("002000010431323334"), "63C2");
    channel_.reset();
    EXPECT_EQ(newCalls().end()[-2], "end") << "the PIN was wrong";
}

struct ConnectFailure {
    std::uint32_t code;
    const char* message;
};

TEST_F(PcscChannelTest, SaysWhyItCannotConnect) {
    const ConnectFailure rows[] = {
        {PcscCode::noService, "PC/SC service not running"},
        {PcscCode::unknownReader, "reader not found"},
        {PcscCode::readerUnavailable, "reader not found"},
        {PcscCode::noCard, "no card in the reader"},
        {PcscCode::removedCard, "no card in the reader"},
        {PcscCode::sharingViolation, "card used exclusively by another program"},
        {PcscCode::unpoweredCard, "card does not answer"},
        {PcscCode::unresponsiveCard, "card does not answer"},
        {PcscCode::unsupportedCard, "card does not answer"},
        {PcscCode::protocolMismatch, "card protocol not supported"},
        {0x80100001, "PC/SC failure"},
    };
    for (const ConnectFailure& row : rows) {
        failNext("connect", {row.code});
        EXPECT_EQ(failureOfOpening(), failureToConnect(row.message)) << std::hex << row.code;
    }
}

TEST_F(PcscChannelTest, TellsReaderAndCodeInTheText) {
    failNext("connect", {PcscCode::sharingViolation});
    try {
        open();
        FAIL();
    } catch (const PcscError& error) {
        EXPECT_EQ(error.text(), "reader 'A', PC/SC code 0x8010000B");
        const std::unique_ptr<Exception> copy(error.Clone());
        EXPECT_THROW(copy->Throw(), PcscError);
    }
}

TEST_F(PcscChannelTest, TellsACardThatIsPulledWhileConnectingFromAStrangeOne) {
    const PcscReader reader = readers_.find("A");
    service_.readers[0].state = PcscState::empty;
    for (const auto code : {PcscCode::protocolMismatch, PcscCode::unpoweredCard}) {
        failNext("connect", {code});
        EXPECT_EQ(failureOf([&] { PcscChannel(readers_, reader); }),
                  failureToConnect("no card in the reader"));
    }
}

TEST_F(PcscChannelTest, ConnectsAgainAfterAResetBeforeTheFirstCommand) {
    failNext("begin", {PcscCode::resetCard, PcscCode::resetCard});
    open();
    EXPECT_EQ(send(readOctets), "9000");
    EXPECT_THAT(newCalls(), ElementsAre("establish", "connect", "begin", "reconnect", "begin",
                                        "reconnect", "begin", readOctets));
}

TEST_F(PcscChannelTest, GivesUpWhenTheCardIsResetAgainAndAgain) {
    failNext("begin", std::deque<IPcscService::Code>(9, PcscCode::resetCard));
    EXPECT_EQ(failureOfOpening(), failureToConnect("card reset by another program"));
    EXPECT_EQ(newCalls().back(), "disconnect");
}

TEST_F(PcscChannelTest, DisconnectsWhenNoTransactionCanBegin) {
    failNext("begin", {PcscCode::removedCard});
    EXPECT_EQ(failureOfOpening(), failureToConnect("card removed"));
    EXPECT_THAT(newCalls(), ElementsAre("establish", "connect", "begin", "disconnect"));
}

TEST_F(PcscChannelTest, EndsTheSessionWhenTheCardIsRemoved) {
    const auto codes = {PcscCode::removedCard, PcscCode::notTransacted, PcscCode::noCard};
    for (const auto code : codes) {
        open();
        newCalls();
        failNext("transmit", {code});
        EXPECT_EQ(failureOfSending(), failureToTransmit("card removed"));
        EXPECT_THAT(newCalls(), ElementsAre(readOctets, "end", "disconnect"));
        EXPECT_EQ(failureOfSending(selectApplication), failureToTransmit("card removed"));
        channel_.reset();
        EXPECT_THAT(newCalls(), ElementsAre()) << "nothing more goes to the service";
    }
}

TEST_F(PcscChannelTest, TakesAResponseWithoutStatusWordForARemovedCard) {
    for (const char* response : {"", "90"}) {
        ScriptedChannel card({response});
        service_.card = &card;
        open();
        EXPECT_EQ(failureOfSending(), failureToTransmit("card removed"));
        EXPECT_EQ(failureOfSending(), failureToTransmit("card removed"));
        EXPECT_EQ(card.commands.size(), 1u);
    }
}

TEST_F(PcscChannelTest, EndsTheSessionAtAnyOtherFailure) {
    open();
    failNext("transmit", {PcscCode::noService});
    EXPECT_EQ(failureOfSending(), failureToTransmit("PC/SC service not running"));
    EXPECT_EQ(failureOfSending(), failureToTransmit("PC/SC service not running"));
    open();
    failNext("transmit", {PcscCode::unpoweredCard});
    EXPECT_EQ(failureOfSending(), failureToTransmit("card does not answer"));
}

TEST_F(PcscChannelTest, SendsNothingToAResetCardUntilSomethingIsSelectedAnew) {
    open();
    newCalls();
    failNext("transmit", {PcscCode::resetCard});
    EXPECT_EQ(failureOfSending(), failureToTransmit("card reset by another program"));
    EXPECT_THAT(newCalls(), ElementsAre(readOctets));
    for (const char* dependent : {readOctets, selectBelow, "00A40904024401", "00A4000C024401",
                                  "00A40300", "00D600000101", "00C0000000"}) {
        EXPECT_EQ(failureOfSending(dependent), failureToTransmit("card reset by another program"))
            << dependent;
    }
    EXPECT_THAT(newCalls(), ElementsAre());
    failNext("begin", {PcscCode::resetCard});
    EXPECT_EQ(send(selectApplication), "9000");
    EXPECT_EQ(send(selectBelow), "9000");
    EXPECT_THAT(newCalls(),
                ElementsAre("begin", "reconnect", "begin", selectApplication, selectBelow));
}

TEST_F(PcscChannelTest, TakesAnySelectionThatDependsOnNothing) {
    for (const char* selection :
         {selectApplication, "00A40804045015503100", "00A4000C023F00", "00A4000C"}) {
        open();
        failNext("transmit", {PcscCode::resetCard});
        failureOfSending();
        EXPECT_EQ(send(selection), "9000") << selection;
        EXPECT_EQ(send(readOctets), "9000") << selection;
    }
}

TEST_F(PcscChannelTest, SendsNothingAfterASelectionThatTheResetCardRefuses) {
    ScriptedChannel card({"6A82", "6283", "9000"});
    service_.card = &card;
    open();
    failNext("transmit", {PcscCode::resetCard});
    failureOfSending();
    EXPECT_EQ(send(selectApplication), "6A82");
    EXPECT_EQ(failureOfSending(selectBelow), failureToTransmit("card reset by another program"));
    newCalls();
    EXPECT_EQ(send(selectApplication), "6283");
    EXPECT_EQ(send(selectBelow), "9000");
    EXPECT_THAT(newCalls(), ElementsAre(selectApplication, selectBelow)) << "one transaction";
}

TEST_F(PcscChannelTest, StaysWithAResetThatComesDuringTheNewSelection) {
    open();
    failNext("transmit", {PcscCode::resetCard, PcscCode::resetCard});
    failureOfSending();
    EXPECT_EQ(failureOfSending(selectApplication),
              failureToTransmit("card reset by another program"));
    EXPECT_EQ(failureOfSending(selectBelow), failureToTransmit("card reset by another program"));
    EXPECT_EQ(send(selectApplication), "9000");
}

TEST_F(PcscChannelTest, NeverGoesOnWithAnotherCard) {
    open();
    failNext("transmit", {PcscCode::resetCard});
    failureOfSending();
    service_.readers[0].state = PcscState::present | 0x00030000;  // out and in
    newCalls();
    EXPECT_EQ(failureOfSending(selectApplication), failureToTransmit("card removed"));
    EXPECT_EQ(failureOfSending(selectApplication), failureToTransmit("card removed"));
    EXPECT_THAT(newCalls(), ElementsAre("begin", "end", "disconnect"));
}

TEST_F(PcscChannelTest, EndsTheSessionWhenTheReaderIsUnpluggedAfterAReset) {
    open();
    failNext("transmit", {PcscCode::resetCard});
    failureOfSending();
    service_.readers.clear();
    EXPECT_EQ(failureOfSending(selectApplication), failureToTransmit("card removed"));
}

TEST_F(PcscChannelTest, EndsTheSessionWhenItCannotConnectAgain) {
    open();
    failNext("transmit", {PcscCode::resetCard});
    failureOfSending();
    failNext("begin", {PcscCode::resetCard});
    failNext("reconnect", {PcscCode::sharingViolation});
    EXPECT_EQ(failureOfSending(selectApplication),
              failureToTransmit("card used exclusively by another program"));
    channel_.reset();
    EXPECT_EQ(newCalls().back(), "disconnect");
}

TEST_F(PcscChannelTest, NeverSendsWhatIsNoCommand) {
    open();
    newCalls();
    for (const char* command : {"", "00", "00A404"}) {
        EXPECT_EQ(failureOfSending(command), failureToTransmit("command too short"));
    }
    EXPECT_THAT(newCalls(), ElementsAre());
    EXPECT_EQ(send(readOctets), "9000") << "the session goes on";
}

TEST_F(PcscChannelTest, NeverSendsMoreThanPcscCarries) {
    open();
    EXPECT_EQ(hexOf(channel_->transmit(filled(PcscChannel::maxCommand, 0x00))), "9000");
    EXPECT_EQ(failureOf([&] { channel_->transmit(filled(PcscChannel::maxCommand + 1, 0x00)); }),
              failureToTransmit("command too long"));
    EXPECT_EQ(card_.commands.size(), 1u);
}

TEST_F(PcscChannelTest, SendsShortCommandsOfT0AsThatProtocolHasThem) {
    service_.isT0 = true;
    open();
    newCalls();
    send("00A4040003A0A1A200");        // data and Le: Le stays behind 61XX
    send("00A4040C03A0A1A2");          // data alone
    send("00B0000010");                // Le alone
    send("00A4000C");                  // neither
    send("00A40400000003A0A1A20000");  // extended length fields
    EXPECT_THAT(newCalls(), ElementsAre("00A4040003A0A1A2", "00A4040C03A0A1A2", "00B0000010",
                                        "00A4000C00", "00A40400000003A0A1A20000"));
}

TEST_F(PcscChannelTest, LeavesCommandsOfT1Alone) {
    open();
    newCalls();
    send("00A4040003A0A1A200");
    send("00A4000C");
    EXPECT_THAT(newCalls(), ElementsAre("00A4040003A0A1A200", "00A4000C"));
}

/// A card that lies in the fake reader and forgets its selection when it is reset.
class PcscCardTest : public PcscChannelTest {
protected:
    PcscCardTest() {
        // The same identifier below the master file: a trap for what forgets where it is.
        virtualCard_.addTransparent(octets("3F004401"), 32, filled(32, 0xEE));
        service_.card = &way_;
        open();
    }
    void resetBeforeNextCommand() {
        failNext("transmit", {PcscCode::resetCard});
        way_.transmit(octets("00A4000C023F00"));
    }

    VirtualCard virtualCard_ = smallCard();
    VirtualCardChannel way_{virtualCard_};
};

TEST_F(PcscCardTest, NoFileOfTheMasterFileTakesThePlaceOfOneOfTheApplication) {
    ISO7816CardOS card(*channel_);
    card.selectApplication(octets("A000000063504B43532D3135"), 0x0C);
    card.selectFile(octets("4401"));
    resetBeforeNextCommand();
    const Blob change = octets("AABB");
    EXPECT_EQ(failureOf([&] { card.updateBinary(0, change); }),
              failureToTransmit("card reset by another program"));
    EXPECT_NE(failureOf([&] { card.updateBinary(0, change); }), Failure{});
    EXPECT_NE(failureOf([&] { card.selectFile(octets("4401")); }), Failure{});
    card.selectFile(octets("4401"));
    card.updateBinary(0, change);
    EXPECT_EQ(hexOf(card.readBinary(0, 4)), "AABB0304");
    EXPECT_EQ(answer(virtualCard_, "00A4080C024401"), "9000");
    EXPECT_EQ(answer(virtualCard_, "00B0000004"), "EEEEEEEE9000");
}

}  // namespace
}  // namespace tovi::test
