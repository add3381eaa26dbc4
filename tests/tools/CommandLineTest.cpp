#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <streambuf>

#include "TestCommand.h"
#include "tools/Command.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string card = sampleCard("plain");

TEST(CommandLine, PrintsHelpAndVersion) {
    const Result help = run({"--help"});
    EXPECT_EQ(help.exit, 0);
    EXPECT_THAT(help.out, HasSubstr("list"));
    EXPECT_THAT(help.out, HasSubstr("--card"));
    EXPECT_EQ(run({"show", "--help"}).exit, 0);
    EXPECT_THAT(run({"--version"}).out, StartsWith("tovi "));
}

struct WrongUsage {
    const char* name;
    std::vector<std::string> arguments;
    const char* message;
};
void PrintTo(const WrongUsage& usage, std::ostream* out) { *out << usage.name; }

class WrongCommandLine : public testing::TestWithParam<WrongUsage> {};

TEST_P(WrongCommandLine, ExitsWithTwoAndOneLine) {
    const Result result = run(GetParam().arguments);
    EXPECT_EQ(result.exit, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("tovi: "));
    EXPECT_THAT(result.err, HasSubstr(GetParam().message));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongCommandLine,
    testing::Values(
        WrongUsage{"nothing", {}, "a command is required"},
        WrongUsage{"unknownCommand", {"--card", card, "enumerate"}, "enumerate"},
        WrongUsage{"unknownOption", {"--card", card, "--verbose", "list"}, "--verbose"},
        WrongUsage{"tooMany", {"--card", card, "list", "more"}, "more"},
        WrongUsage{"cardAndReader", {"--card", card, "--reader", "X", "list"}, "excludes"},
        WrongUsage{"emptyCard", {"--card", "", "list"}, "empty"},
        WrongUsage{"cardWithoutFolder", {"list", "--card"}, "--card"},
        WrongUsage{"oddAid", {"--card", card, "--aid", "A00", "list"}, "AID"},
        WrongUsage{"emptyAid", {"--card", card, "--aid", "", "list"}, "AID"},
        WrongUsage{"longAid",
                   {"--card", card, "--aid", "0102030405060708090A0B0C0D0E0F1011", "list"},
                   "AID"},
        WrongUsage{"noCard", {"list"}, "tovi init DIR"},
        WrongUsage{"showNothing", {"--card", card, "show"}, "object"},
        WrongUsage{"showWord", {"--card", card, "show", "key"}, "'key'"},
        WrongUsage{"showNegative", {"--card", card, "show", "--", "-1"}, "'-1'"},
        WrongUsage{"showHuge", {"--card", card, "show", "99999999999999999999"}, "999"},
        WrongUsage{"showAuthWord", {"--card", card, "show", "auth:x"}, "'auth:x'"},
        WrongUsage{"showAuthNothing", {"--card", card, "show", "auth:"}, "'auth:'"},
        WrongUsage{"showAuthNone", {"--card", card, "show", "auth:65535"}, "auth:65535"},
        WrongUsage{"dumpWord", {"--card", card, "dump", "everything"}, "'everything'"},
        WrongUsage{"dumpOddPath", {"--card", card, "dump", "44010"}, "'44010'"},
        WrongUsage{"applyNothing", {"--card", card, "apply"}, "file"},
        WrongUsage{"deleteNothing", {"--card", card, "delete"}, "object"},
        WrongUsage{"deleteWord", {"--card", card, "delete", "auth:x"}, "'auth:x'"},
        WrongUsage{"switchWord", {"--card", card, "token-info", "--read-only", "yes"}, "on"},
        WrongUsage{"tokenSerial", {"--card", card, "token-info", "--serial", "0"}, "serial number"},
        WrongUsage{"tokenLabel", {"--card", card, "token-info", "--label", "\xFF"}, "label"},
        WrongUsage{"noKind", {"--card", card, "free-fid"}, "--kind"},
        WrongUsage{"kind", {"--card", card, "free-fid", "--kind", "key"}, "'key'"},
        WrongUsage{"start",
                   {"--card", card, "free-fid", "--kind", "privateKey", "--start", "4B"},
                   "2 octets"},
        WrongUsage{"initNothing", {"init"}, "folder"},
        WrongUsage{"initEmpty", {"init", ""}, "empty"},
        WrongUsage{"initCard", {"--card", card, "init", "/nowhere/x"}, "neither --card"},
        WrongUsage{"initReader", {"--reader", "R", "init", "/nowhere/x"}, "--reader"},
        WrongUsage{"initSerial", {"init", "--serial", "0", "/nowhere/x"}, "serial number"},
        WrongUsage{"initNoSerial", {"init", "--serial", "", "/nowhere/x"}, "serial number"},
        WrongUsage{"initLabel", {"init", "--label", "\xFF", "/nowhere/x"}, "label"},
        WrongUsage{
            "initLongLabel", {"init", "--label", std::string(256, 'x'), "/nowhere/x"}, "label"},
        WrongUsage{"initSize", {"init", "--file-size", "0", "/nowhere/x"}, "--file-size"},
        WrongUsage{"initSizeWord", {"init", "--file-size", "big", "/nowhere/x"}, "--file-size"},
        WrongUsage{"initFromAndLabel",
                   {"init", "--from", "x.json", "--label", "x", "/nowhere/x"},
                   "excludes"},
        WrongUsage{
            "initFromAndAid", {"--aid", "A0", "init", "--from", "x.json", "/nowhere/x"}, "--aid"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(CommandLine, TakesTheOptionsAlsoBehindTheCommand) {
    EXPECT_EQ(run({"list", "--card", card, "--json"}).exit, 0);
}

TEST(CommandLine, TakesTheCardOfTheEnvironment) {
    EXPECT_EQ(run({"list"}, {.defaultCard = card}).exit, 0);
    EXPECT_EQ(run({"--card", sampleCard("broken-card"), "list"}, {.defaultCard = card}).exit, 1)
        << "the option counts more";
}

TEST(CommandLine, ReportsAFailureInOneLineWithOperationAndCode) {
    const Result result = run({"--card", sampleCard("no-token-info"), "list"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "tovi: invalid TokenInfo (PKCS15Container::readFromCard, code 0)\n");
}

TEST(CommandLine, ReportsAFailureAsTheOneDocument) {
    const Result result = runJson("no-token-info", {"list"});
    EXPECT_EQ(result.exit, 1);
    const Json expected = {{"error",
                            {{"message", "invalid TokenInfo"},
                             {"operation", "PKCS15Container::readFromCard"},
                             {"code", 0}}}};
    EXPECT_EQ(result.json(), expected);
}

TEST(CommandLine, ReportsWrongUsageAsTheOneDocument) {
    const Result parsed = run({"--json", "list"});
    EXPECT_EQ(parsed.exit, 2);
    EXPECT_TRUE(parsed.json().contains("error"));
    const Result unparsed = run({"--json", "enumerate"});
    EXPECT_EQ(unparsed.exit, 2);
    EXPECT_TRUE(unparsed.json().contains("error"));
}

TEST(CommandLine, KeepsControlCharactersOutOfItsErrors) {
    const Result result = run({"--card", "/nowhere/\x1B[31m", "list"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.err.find('\x1B'), std::string::npos);
    EXPECT_THAT(result.err, HasSubstr("\\x1B[31m"));
}

TEST(CommandLine, StopsWhenInterrupted) {
    const std::atomic<bool> interrupted = true;
    for (const char* command : {"list", "dump", "check"}) {
        const Result result =
            run({command, "--json"}, {.defaultCard = card, .interrupted = &interrupted});
        EXPECT_EQ(result.exit, 130) << command;
        EXPECT_EQ(result.out, "") << command;
    }
}

/// A stream that is full after `room` characters.
class FullBuffer final : public std::streambuf {
public:
    explicit FullBuffer(std::size_t room) : room_(room) {}

protected:
    int overflow(int character) override {
        if (room_ == 0) return traits_type::eof();
        --room_;
        return traits_type::not_eof(character);
    }

private:
    std::size_t room_;
};

TEST(CommandLine, FailsWhenItsOutputCannotBeWritten) {
    for (const char* command : {"list", "dump", "check", "--help"}) {
        FullBuffer full(10);
        std::istringstream in;
        std::ostream out(&full);
        std::ostringstream err;
        Console console{in, out, err, false, card, nullptr};
        EXPECT_EQ(runCommandLine({command}, console), 1) << command;
    }
}

TEST(Trace, WritesCommandsAndResponsesToTheErrorStream) {
    const Result result = run({"--card", card, "--trace", "--json", "list"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_TRUE(result.json().contains("rootPath")) << "standard output holds the document alone";
    EXPECT_THAT(result.err, HasSubstr("> 00A4040C0CA000000063504B43532D3135"));
    EXPECT_THAT(result.err, HasSubstr("9000\n"));
    EXPECT_EQ(run({"--card", card, "--json", "list"}).err, "");
}

}  // namespace
}  // namespace tovi::test
