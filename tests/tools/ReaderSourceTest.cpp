#include "tools/ReaderSource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "TestCommand.h"
#include "tests/card/FakePcscService.h"
#include "tovi/card/CardFolder.h"

namespace tovi::test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

/// A reader with a copy of the card "plain" in it.
class ReaderSourceTest : public testing::Test {
protected:
    ReaderSourceTest() {
        std::filesystem::copy(sampleCard("plain"), folder_ / "card",
                              std::filesystem::copy_options::recursive);
        card_ = std::make_unique<CardFolder>(folder_ / "card");
        way_ = std::make_unique<VirtualCardChannel>(card_->card());
        service_.addReader("Acme Desk 00 00");
        service_.addReader("Acme Desk 00 01", PcscState::empty);
        service_.card = way_.get();
    }

    Result run(std::vector<std::string> arguments, const std::string& in = "") {
        arguments.insert(arguments.begin(), {"--reader", "00 00"});
        return runAsIs(arguments, in);
    }
    Result runAsIs(const std::vector<std::string>& arguments, const std::string& in = "") {
        return test::run(arguments,
                         {.in = in, .interrupted = &interrupted_, .pcsc = service_.factory()});
    }
    /// Lets command number `index` of the card, counted from 0, end with `code`.
    void failCommand(std::size_t index, IPcscService::Code code) {
        std::deque<IPcscService::Code> codes(index, PcscCode::success);
        codes.push_back(code);
        service_.codes["transmit"] = codes;
    }
    std::size_t count(const std::string& call) const {
        return static_cast<std::size_t>(
            std::count(service_.calls.begin(), service_.calls.end(), call));
    }

    TemporaryFolder folder_;
    FakePcscService service_;
    std::unique_ptr<CardFolder> card_;
    std::unique_ptr<VirtualCardChannel> way_;
    std::atomic<bool> interrupted_ = false;
};

TEST_F(ReaderSourceTest, TheCardIsTheSameAsInItsFolder) {
    for (const char* command : {"list", "check", "dump"}) {
        const Result read = run({"--json", command});
        const Result folder = test::run({"--card", sampleCard("plain"), "--json", command});
        EXPECT_EQ(read.exit, folder.exit) << read.err;
        EXPECT_EQ(read.out, folder.out) << command;
    }
}

TEST_F(ReaderSourceTest, OneTransactionLastsForTheWholeCall) {
    EXPECT_EQ(run({"list"}).exit, 0);
    EXPECT_EQ(count("connect"), 1u);
    EXPECT_EQ(count("begin"), 1u);
    ASSERT_GE(service_.calls.size(), 6u);
    EXPECT_EQ(service_.calls[2], "begin");
    EXPECT_EQ(*(service_.calls.end() - 3), "end");
    EXPECT_EQ(*(service_.calls.end() - 2), "disconnect");
    EXPECT_EQ(service_.calls.back(), "release");
}

TEST_F(ReaderSourceTest, ChangesReachTheCard) {
    ASSERT_NE(run({"--json", "list"}).json()["tokenInfo"]["label"], "poor");
    EXPECT_EQ(run({"token-info", "--label", "poor"}).exit, 0);
    EXPECT_EQ(run({"--json", "list"}).json()["tokenInfo"]["label"], "poor");
}

TEST_F(ReaderSourceTest, ClearErrorsTellWhatIsWrongWithTheReader) {
    EXPECT_THAT(runAsIs({"--reader", "Desk", "list"}).err,
                AllOf(HasSubstr("reader name not unique"), HasSubstr("'Acme Desk 00 01'")));
    EXPECT_THAT(runAsIs({"--reader", "Table", "list"}).err,
                AllOf(HasSubstr("reader not found"), HasSubstr("'Acme Desk 00 00'")));
    EXPECT_THAT(runAsIs({"--reader", "00 01", "list"}).err,
                HasSubstr("no card in the reader: reader 'Acme Desk 00 01'"));
    service_.codes["connect"] = {PcscCode::sharingViolation};
    EXPECT_THAT(run({"list"}).err, HasSubstr("card used exclusively by another program"));
    service_.readers.clear();
    EXPECT_THAT(run({"list"}).err, HasSubstr("no PC/SC reader"));
    service_.codes["establish"] = {PcscCode::noService};
    const Result result = run({"--json", "list"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()["error"]["message"],
              "PC/SC service not running: PC/SC code 0x8010001D");
}

TEST_F(ReaderSourceTest, ACardThatIsPulledIsNamedWhereverItHappens) {
    run({"list"});
    const std::size_t others = 5;  // establish, connect, begin, end, disconnect; release comes last
    const std::size_t commands = service_.calls.size() - others - 1;
    for (std::size_t i = 0; i < commands; ++i) {
        failCommand(i, PcscCode::removedCard);
        const Result result = run({"--json", "list"});
        EXPECT_EQ(result.exit, 1) << i;
        EXPECT_THAT(std::string(result.json()["error"]["message"]), HasSubstr("card removed")) << i;
    }
}

TEST_F(ReaderSourceTest, AResetDuringAReadEndsItOrIsMadeGood) {
    const std::string whole = run({"--json", "list"}).out;
    int ended = 0;
    for (std::size_t i = 0; i < 20; ++i) {
        failCommand(i, PcscCode::resetCard);
        const Result result = run({"--json", "list"});
        if (result.exit == 0) {
            EXPECT_EQ(result.out, whole) << i;
        } else {
            ++ended;
            EXPECT_THAT(std::string(result.json()["error"]["message"]),
                        HasSubstr("card reset by another program"))
                << i;
        }
    }
    EXPECT_GT(ended, 0);
}

TEST_F(ReaderSourceTest, TheOperationBehindAResetSelectsAgain) {
    const std::string list = R"([
        {"op": "updateTokenInfo", "set": {"label": "one"}},
        {"op": "updateTokenInfo", "set": {"label": "two"}}])";
    // The first operation's first command comes behind those of the reading.
    service_.calls.clear();
    ASSERT_EQ(run({"list"}).exit, 0);
    const std::size_t reading = service_.calls.size() - 6;
    failCommand(reading, PcscCode::resetCard);
    const Result result = run({"--json", "apply", "--keep-going", "-"}, list);
    EXPECT_EQ(result.exit, 1);
    const Json done = result.json();
    ASSERT_EQ(done.size(), 2u);
    EXPECT_THAT(std::string(done[0]["error"]["message"]),
                HasSubstr("card reset by another program"));
    EXPECT_FALSE(done[1].contains("error")) << done.dump();
    EXPECT_EQ(run({"--json", "list"}).json()["tokenInfo"]["label"], "two");
}

TEST_F(ReaderSourceTest, WaitsForTheCard) {
    service_.readers[0].state = PcscState::empty;
    service_.onWait = [&] {
        if (service_.waits == 3) service_.readers[0].state = PcscState::present;
    };
    const Result result = run({"--wait", "--json", "list"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(service_.waits, 3);
}

TEST_F(ReaderSourceTest, WaitsAsLongAsItIsTold) {
    service_.readers[0].state = PcscState::empty;
    const auto start = service_.now();
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--wait", "2", "list"},
          {"--wait=2", "list"},
          {"list", "--wait", "2"}}) {
        const Result result = run(arguments);
        EXPECT_EQ(result.exit, 1);
        EXPECT_THAT(result.err, HasSubstr("no card in the reader"));
    }
    EXPECT_EQ(service_.now() - start, std::chrono::seconds(6));
}

TEST_F(ReaderSourceTest, AnInterruptEndsTheWait) {
    service_.readers[0].state = PcscState::empty;
    service_.onWait = [&] { interrupted_ = service_.waits == 4; };
    const Result result = run({"--wait", "list"});
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(result.err, "tovi: interrupted\n");
    EXPECT_EQ(service_.waits, 4);
}

TEST_F(ReaderSourceTest, WaitsAgainForACardThatDidNotStay) {
    service_.codes["connect"] = {PcscCode::noCard};
    EXPECT_EQ(run({"--wait", "list"}).exit, 0);
    service_.codes["connect"] = {PcscCode::noCard};
    EXPECT_EQ(run({"list"}).exit, 1) << "nobody asked to wait";
    service_.codes["connect"] = std::deque<IPcscService::Code>(9, PcscCode::noCard);
    EXPECT_EQ(run({"--wait", "list"}).exit, 1) << "and not for ever";
}

TEST_F(ReaderSourceTest, AWaitNeedsAReaderAndAWholeNumber) {
    EXPECT_EQ(test::run({"--wait", "--card", sampleCard("plain"), "list"}).exit, 2);
    for (const char* seconds : {"x", "-1", "1.5", "1000000"}) {
        const Result result = run({std::string("--wait=") + seconds, "list"});
        EXPECT_EQ(result.exit, 2) << seconds;
        EXPECT_THAT(result.err, HasSubstr("number of seconds")) << seconds;
    }
}

TEST_F(ReaderSourceTest, TracesWhatTheReaderSays) {
    failCommand(0, PcscCode::removedCard);
    EXPECT_THAT(run({"--trace", "list"}).err, HasSubstr("! card removed"));
}

}  // namespace
}  // namespace tovi::test
