#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCommand.h"
#include "tests/card/FakePcscService.h"
#include "tovi/interfaces/Exception.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

Result runReaders(FakePcscService& service, const std::vector<std::string>& arguments) {
    return run(arguments, {.pcsc = service.factory()});
}

TEST(Readers, AreATable) {
    FakePcscService service;
    service.addReader("Acme Desk 00 00");
    service.addReader("Acme Desk 00 01", PcscState::empty);
    const Result result = runReaders(service, {"readers"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.out,
              "reader           state    ATR\n"
              "Acme Desk 00 00  present  3B80800101\n"
              "Acme Desk 00 01  empty\n");
}

TEST(Readers, AreADocument) {
    FakePcscService service;
    service.addReader("A");
    service.addReader("B", PcscState::empty);
    service.addReader("C", PcscState::present | PcscState::inUse);
    service.addReader("D", PcscState::present | PcscState::mute);
    const Result result = runReaders(service, {"--json", "readers"});
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json expected = {{"readers",
                            {{{"name", "A"}, {"state", "present"}, {"atr", "3B80800101"}},
                             {{"name", "B"}, {"state", "empty"}, {"atr", nullptr}},
                             {{"name", "C"}, {"state", "in use"}, {"atr", "3B80800101"}},
                             {{"name", "D"}, {"state", "mute"}, {"atr", nullptr}}}}};
    EXPECT_EQ(result.json().dump(1), expected.dump(1));
}

TEST(Readers, MayBeNone) {
    FakePcscService service;
    const Result text = runReaders(service, {"readers"});
    EXPECT_EQ(text.exit, 0);
    EXPECT_EQ(text.out, "no PC/SC reader\n");
    EXPECT_EQ(runReaders(service, {"readers", "--json"}).json(),
              Json({{"readers", Json::array()}}));
}

TEST(Readers, NeedTheService) {
    FakePcscService service;
    service.codes["establish"] = {PcscCode::noService};
    const Result result = runReaders(service, {"readers"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "tovi: PC/SC service not running: PC/SC code 0x8010001D (PcscReaders::PcscReaders, "
              "code 0)\n");
}

TEST(Readers, FailInABuildWithoutThem) {
    const auto none = []() -> std::shared_ptr<IPcscService> {
        throw SmartcardException("PC/SC not supported by this build", "makePcscService");
    };
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"readers"}, {"--reader", "A", "list"}}) {
        const Result result = run(arguments, {.pcsc = none});
        EXPECT_EQ(result.exit, 1);
        EXPECT_THAT(result.err, HasSubstr("PC/SC not supported by this build"));
    }
}

TEST(Readers, KeepControlCharactersOfNamesOut) {
    FakePcscService service;
    service.addReader("\x1B[31m\xFF");
    EXPECT_THAT(runReaders(service, {"readers"}).out, HasSubstr("\\x1B[31m\uFFFD  present"));
    EXPECT_EQ(runReaders(service, {"readers", "--json"}).json()["readers"][0]["name"],
              "\x1B[31m\uFFFD");
}

TEST(Readers, TakeNoCard) {
    FakePcscService service;
    EXPECT_EQ(runReaders(service, {"readers", "--reader", "A"}).exit, 2);
    EXPECT_EQ(runReaders(service, {"--card", "x", "readers"}).exit, 2);
    EXPECT_EQ(run({"readers"}, {.defaultCard = "x", .pcsc = service.factory()}).exit, 0);
}

}  // namespace
}  // namespace tovi::test
