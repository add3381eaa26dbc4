#include "tovi/card/PcscReaders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/card/CardTools.h"
#include "tests/card/FakePcscService.h"
#include "tovi/card/PcscError.h"

namespace tovi::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;

using State = PcscReader::State;

/// The text of the PcscError that `action` throws, behind its message.
template <class Action>
std::string errorOf(Action action) {
    try {
        action();
    } catch (const PcscError& error) {
        EXPECT_EQ(error.GetCode(), 0);
        return std::string(error.GetMessage()) + ": " + error.text();
    }
    return "nothing thrown";
}

class PcscReadersTest : public testing::Test {
protected:
    FakePcscService service_;
    PcscReaders readers_{service_};
};

TEST(PcscReaders, HasOneContextFromBeginningToEnd) {
    FakePcscService service;
    { const PcscReaders readers(service); }
    EXPECT_THAT(service.calls, ElementsAre("establish", "release"));
}

TEST(PcscReaders, SaysThatNoServiceRuns) {
    for (const auto code :
         {PcscCode::noService, PcscCode::serviceStopped, PcscCode::communication}) {
        FakePcscService service;
        service.codes["establish"] = {code};
        EXPECT_THAT(errorOf([&] { PcscReaders readers(service); }),
                    HasSubstr("PC/SC service not running: PC/SC code 0x801000"));
        EXPECT_THAT(service.calls, ElementsAre("establish")) << "nothing is there to be released";
    }
}

TEST_F(PcscReadersTest, ListsReadersWithStateAndAnswerToReset) {
    service_.addReader("A", PcscState::empty);
    service_.addReader("B", PcscState::present | 0x00070000);
    service_.addReader("C", PcscState::present | PcscState::inUse);
    service_.addReader("D", PcscState::present | PcscState::exclusive);
    service_.addReader("E", PcscState::present | PcscState::mute | PcscState::inUse);
    const auto all = readers_.list();
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[0].name, "A");
    EXPECT_EQ(all[0].state, State::empty);
    EXPECT_FALSE(all[0].hasCard());
    EXPECT_TRUE(all[0].atr.empty());
    EXPECT_EQ(all[1].state, State::present);
    EXPECT_EQ(hexOf(all[1].atr), "3B80800101");
    EXPECT_EQ(all[1].events, 7);
    EXPECT_EQ(all[2].state, State::inUse);
    EXPECT_EQ(all[3].state, State::inUse);
    EXPECT_EQ(all[4].state, State::mute);
    EXPECT_TRUE(all[4].hasCard());
}

TEST_F(PcscReadersTest, ListsNothingWithoutReaders) { EXPECT_TRUE(readers_.list().empty()); }

TEST_F(PcscReadersTest, LeavesOutAReaderThatIsUnpluggedMeanwhile) {
    service_.addReader("A");
    service_.addReader("B");
    service_.codes["getStatusChange"] = {PcscCode::unknownReader};
    const auto all = readers_.list();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].name, "B");
}

TEST_F(PcscReadersTest, SaysThatTheServiceStopped) {
    service_.addReader("A");
    service_.codes["listReaders"] = {PcscCode::noService};
    EXPECT_THAT(errorOf([&] { readers_.list(); }), HasSubstr("PC/SC service not running"));
    service_.codes["getStatusChange"] = {PcscCode::serviceStopped};
    EXPECT_THAT(errorOf([&] { readers_.list(); }), HasSubstr("PC/SC service not running"));
}

TEST_F(PcscReadersTest, FindsTheReaderByAUniquePart) {
    service_.addReader("Acme Desk 00 00");
    service_.addReader("Acme Desk 00 01");
    service_.addReader("Other");
    EXPECT_EQ(readers_.find("00 01").name, "Acme Desk 00 01");
    EXPECT_EQ(readers_.find("Oth").name, "Other");
    EXPECT_EQ(errorOf([&] { readers_.find("Desk"); }),
              "reader name not unique: 'Desk' may be 'Acme Desk 00 00', 'Acme Desk 00 01'");
    EXPECT_EQ(errorOf([&] { readers_.find("desk"); }),
              "reader not found: no name has 'desk'; readers are 'Acme Desk 00 00', "
              "'Acme Desk 00 01', 'Other'");
}

TEST_F(PcscReadersTest, PrefersTheWholeNameToAPart) {
    service_.addReader("Desk 2");
    service_.addReader("Desk");
    EXPECT_EQ(readers_.find("Desk").name, "Desk");
}

TEST_F(PcscReadersTest, SaysThatThereIsNoReader) {
    EXPECT_THAT(errorOf([&] { readers_.find("A"); }), HasSubstr("no PC/SC reader"));
}

TEST_F(PcscReadersTest, TakesACardThatIsThereWithoutWaiting) {
    service_.addReader("A");
    EXPECT_EQ(readers_.waitForCard("A", milliseconds(0)).name, "A");
    EXPECT_EQ(service_.waits, 0);
}

TEST_F(PcscReadersTest, WaitsForTheCard) {
    service_.addReader("A", PcscState::empty);
    service_.onWait = [&] {
        if (service_.waits == 3) service_.readers[0].state = PcscState::present;
    };
    EXPECT_TRUE(readers_.waitForCard("A", {}).hasCard());
    EXPECT_EQ(service_.waits, 3);
}

TEST_F(PcscReadersTest, WaitsForTheReaderToo) {
    service_.onWait = [&] {
        if (service_.waits == 2) service_.addReader("B");
        if (service_.waits == 4) service_.addReader("A");
    };
    EXPECT_EQ(readers_.waitForCard("A", {}).name, "A");
    EXPECT_EQ(service_.waits, 4);
}

TEST_F(PcscReadersTest, WaitsNoLongerThanItIsTold) {
    service_.addReader("A", PcscState::empty);
    const auto start = service_.now();
    EXPECT_EQ(errorOf([&] { readers_.waitForCard("A", milliseconds(1500)); }),
              "no card in the reader: reader 'A'");
    EXPECT_EQ(service_.now() - start, milliseconds(1500));
    EXPECT_THAT(errorOf([&] { readers_.waitForCard("B", milliseconds(500)); }),
                HasSubstr("reader not found"));
    EXPECT_EQ(service_.now() - start, milliseconds(2000));
}

TEST_F(PcscReadersTest, DoesNotWaitForANameToBecomeUnique) {
    service_.addReader("A1", PcscState::empty);
    service_.addReader("A2", PcscState::empty);
    EXPECT_THAT(errorOf([&] { readers_.waitForCard("A", {}); }),
                HasSubstr("reader name not unique"));
    EXPECT_EQ(service_.waits, 0);
}

TEST_F(PcscReadersTest, DoesNotWaitForAServiceThatIsGone) {
    service_.addReader("A", PcscState::empty);
    service_.onWait = [&] { service_.codes["listReaders"] = {PcscCode::noService}; };
    EXPECT_THAT(errorOf([&] { readers_.waitForCard("A", {}); }),
                HasSubstr("PC/SC service not running"));
    EXPECT_EQ(service_.waits, 1);
}

TEST_F(PcscReadersTest, EndsAWaitThatItsCallerGivesUp) {
    service_.addReader("A", PcscState::empty);
    struct Stop {};
    EXPECT_THROW(readers_.waitForCard("A", {},
                                      [&] {
                                          if (service_.waits == 2) throw Stop{};
                                      }),
                 Stop);
    EXPECT_EQ(service_.waits, 2);
}

}  // namespace
}  // namespace tovi::test
