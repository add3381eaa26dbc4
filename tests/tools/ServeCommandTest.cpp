#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <thread>

#include "TestCommand.h"
#include "TestProcess.h"
#include "TestReader.h"
#include "tovi/card/CardFolder.h"
#include "tovi/card/CardFolderError.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

const Blob success = {0x90, 0x00};
const Blob requestAtr = {0x04};
const Blob reset = {0x02};
const Blob atr = {0x3B, 0x85, 0x01, 0x80, 0x73, 0xF6, 0x21, 0xC0, 0x60};
const Blob selectApplication = {0x00, 0xA4, 0x04, 0x0C, 0x0C, 0xA0, 0x00, 0x00, 0x00,
                                0x63, 0x50, 0x4B, 0x43, 0x53, 0x2D, 0x31, 0x35};
const Blob selectObjects = {0x00, 0xA4, 0x02, 0x0C, 0x02, 0x50, 0x31};
const Blob readTwo = {0x00, 0xB0, 0x00, 0x00, 0x02};
const Blob updateTwo = {0x00, 0xD6, 0x00, 0x00, 0x02, 0x30, 0x00};

/// `tovi serve` on a copy of a sample card, in a thread of the test, with a reader to serve to.
class ServeCommand : public testing::Test {
protected:
    ServeCommand() {
        std::filesystem::copy(sampleCard("plain"), card_, std::filesystem::copy_options::recursive);
    }
    ~ServeCommand() override { end(); }

    void start(std::vector<std::string> options = {}) {
        const std::vector<std::string> front = {"serve", card_, "--port",
                                                std::to_string(reader_.port())};
        options.insert(options.begin(), front.begin(), front.end());
        thread_ = std::thread(
            [this, options] { result_ = run(options, {.interrupted = &interrupted_}); });
    }

    /// Starts, and puts the card into the reader.
    void insert(std::vector<std::string> options = {}) {
        start(std::move(options));
        takeCard(atr);
    }

    /// Waits until the card is in the reader, and told to be.
    void takeCard(const Blob& expected) {
        ASSERT_TRUE(reader_.accept());
        ASSERT_EQ(reader_.exchange(requestAtr), expected);
        ASSERT_EQ(reader_.exchange(requestAtr), expected);
    }

    /// Waits for the end of the command by itself.
    const Result& finish() {
        if (thread_.joinable()) thread_.join();
        return result_;
    }

    /// Interrupts the command.
    const Result& end() {
        interrupted_ = true;
        return finish();
    }

    TemporaryFolder folder_;
    const std::string card_ = folder_ / "card";
    TestReader reader_;

private:
    std::atomic<bool> interrupted_ = false;
    std::thread thread_;
    Result result_;
};

TEST_F(ServeCommand, PutsTheCardIntoTheReader) {
    insert();
    EXPECT_EQ(reader_.exchange(selectApplication), success);
    const Result& result = end();
    EXPECT_EQ(result.out, "card " + card_ + " is in the reader at 127.0.0.1:" +
                              std::to_string(reader_.port()) + ", ATR 3B85018073F621C060\n");
    EXPECT_EQ(result.err, "tovi: interrupted\n");
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(reader_.receive(), std::nullopt);
}

TEST_F(ServeCommand, SaysSoInJson) {
    insert({"--json"});
    const Json json = end().json();
    EXPECT_EQ(json["card"], card_);
    EXPECT_EQ(json["reader"], "127.0.0.1:" + std::to_string(reader_.port()));
    EXPECT_EQ(json["atr"], "3B85018073F621C060");
}

TEST_F(ServeCommand, SaysNothingWithQuiet) {
    insert({"--quiet"});
    EXPECT_EQ(end().out, "");
}

TEST_F(ServeCommand, KeepsInTheFolderWhatIsWritten) {
    insert();
    ASSERT_EQ(reader_.exchange(selectApplication), success);
    ASSERT_EQ(reader_.exchange(selectObjects), success);
    ASSERT_EQ(reader_.exchange(updateTwo), success);
    EXPECT_EQ(readFile(card_ + "/3F00/5015/5031").substr(0, 2), std::string("0\0", 2));
}

TEST_F(ServeCommand, ResetsTheCardWhenTheReaderAsksForIt) {
    insert();
    ASSERT_EQ(reader_.exchange(selectApplication), success);
    ASSERT_EQ(reader_.exchange(selectObjects), success);
    reader_.send(reset);
    EXPECT_EQ(reader_.exchange(readTwo), (Blob{0x69, 0x86}));
}

TEST_F(ServeCommand, AnswersMessagesThatComeInPiecesOrTogether) {
    insert();
    for (const std::uint8_t octet : Blob{0x00, 0x01, 0x04}) reader_.sendOctets(Blob{octet});
    EXPECT_EQ(reader_.receive(), atr);
    reader_.sendOctets(Blob{0x00, 0x01, 0x02, 0x00, 0x01, 0x04, 0x00, 0x01, 0x04});
    EXPECT_EQ(reader_.receive(), atr);
    EXPECT_EQ(reader_.receive(), atr);
}

TEST_F(ServeCommand, AnswersWhatIsNoCommand) {
    insert();
    const Blob wrongLength = {0x67, 0x00};
    EXPECT_EQ(reader_.exchange(Blob{}), wrongLength);
    EXPECT_EQ(reader_.exchange(Blob{0x03}), wrongLength);
    EXPECT_EQ(reader_.exchange(Blob{0x00, 0xA4, 0x04}), wrongLength);
}

TEST_F(ServeCommand, AnswersTheLongestMessage) {
    insert();
    EXPECT_EQ(reader_.exchange(Blob(65535, 0xFF)), (Blob{0x67, 0x00}));
    EXPECT_EQ(reader_.exchange(requestAtr), atr);
}

TEST_F(ServeCommand, TakesAnotherAtr) {
    start({"--atr", "3b00"});
    takeCard({0x3B, 0x00});
    EXPECT_THAT(end().out, HasSubstr(", ATR 3B00\n"));
}

TEST_F(ServeCommand, TracesTheCommandsOfTheReader) {
    insert({"--trace"});
    reader_.exchange(selectApplication);
    const Result& result = end();
    EXPECT_THAT(result.err, HasSubstr("> 00A4040C0CA000000063504B43532D3135\n"));
    EXPECT_THAT(result.err, HasSubstr("< 9000\n"));
}

TEST_F(ServeCommand, GoesBackIntoAReaderThatWasGone) {
    insert();
    ASSERT_EQ(reader_.exchange(selectApplication), success);
    ASSERT_EQ(reader_.exchange(selectObjects), success);
    reader_.eject();
    takeCard(atr);
    EXPECT_EQ(reader_.exchange(readTwo), (Blob{0x69, 0x86}));  // it was reset in between
    EXPECT_THAT(end().err, HasSubstr("tovi: the reader has gone; waiting for it\n"
                                     "tovi: the card is in the reader again\n"));
}

TEST_F(ServeCommand, EndsWithTheReaderWhenAskedTo) {
    insert({"--once"});
    reader_.eject();
    EXPECT_EQ(finish().exit, 0);
}

TEST_F(ServeCommand, EndsWithTheReaderInTheMidstOfAMessage) {
    insert({"--once"});
    reader_.sendOctets(Blob{0x00, 0x05, 0x00});
    reader_.eject();
    EXPECT_EQ(finish().exit, 0);
}

TEST_F(ServeCommand, FailsWhenTheReaderDoesNotAskForTheCard) {
    start({"--patience", "1"});
    ASSERT_TRUE(reader_.accept());
    const Result& result = finish();
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("it does not ask for the card, maybe since another one"));
}

TEST_F(ServeCommand, FailsWithoutAReader) {
    std::string port;
    {
        const TestReader other;
        port = std::to_string(other.port());
    }
    const Result result = run({"serve", card_, "--patience", "1", "--port", port});
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("tovi: no virtual reader takes the card at 127.0.0.1:" +
                                      port + " within 1 s: Connection refused"));
}

TEST_F(ServeCommand, StopsLookingForAReaderWhenInterrupted) {
    const std::atomic<bool> interrupted = true;
    EXPECT_EQ(run({"serve", card_}, {.interrupted = &interrupted}).exit, 130);
}

TEST_F(ServeCommand, HasTheFolderForItself) {
    insert();
    CardFolder::Options options;
    options.mode = CardFolder::Mode::readOnly;
    options.patience = std::chrono::milliseconds(0);
    EXPECT_THROW(CardFolder(card_, options), CardFolderError);
    end();
    EXPECT_NO_THROW(CardFolder(card_, options));
}

TEST_F(ServeCommand, ServesTheSecondSlotAtTheNextPort) {
    const std::string before = std::to_string(reader_.port() - 1);
    std::atomic<bool> interrupted = false;
    Result result;
    std::thread second([&] {
        result =
            run({"serve", card_, "--port", before, "--slot", "1"}, {.interrupted = &interrupted});
    });
    takeCard(atr);
    interrupted = true;
    second.join();
    EXPECT_THAT(result.out, HasSubstr("127.0.0.1:" + std::to_string(reader_.port())));
}

TEST_F(ServeCommand, RefusesWhatItCannotServe) {
    EXPECT_EQ(run({"serve"}).exit, 2);
    EXPECT_EQ(run({"serve", card_, "--slot", "2"}).exit, 2);
    EXPECT_EQ(run({"serve", card_, "--port", "0"}).exit, 2);
    EXPECT_EQ(run({"serve", card_, "--port", "65535", "--slot", "1"}).exit, 2);
    EXPECT_EQ(run({"serve", card_, "--patience", "0"}).exit, 2);
    EXPECT_EQ(run({"serve", card_, "--card", card_}).exit, 2);
    EXPECT_EQ(run({"serve", card_, "--aid", "A0"}).exit, 2);
    EXPECT_EQ(run({"serve", folder_ / "nothing"}).exit, 1);
    const Result result = run({"serve", card_, "--atr", "3B01"});
    EXPECT_EQ(result.exit, 2);
    EXPECT_THAT(result.err, HasSubstr("the ATR has 2 octets and announces 3"));
}

TEST_F(ServeCommand, EndsCleanlyWithTheRequestToEndOfTheSystem) {
    for (const int signal : {SIGINT, SIGTERM}) {
        TestProcess process({"serve", card_, "--port", std::to_string(reader_.port())});
        ASSERT_TRUE(reader_.accept());
        ASSERT_EQ(reader_.exchange(requestAtr), atr);
        process.signal(signal);
        EXPECT_EQ(process.wait(), 130);
    }
}

}  // namespace
}  // namespace tovi::test
