#include "tools/Failure.h"

#include <gtest/gtest.h>

#include "tovi/card/CardFolderError.h"

namespace tovi::test {
namespace {

TEST(ErrorReport, TellsOfALibraryException) {
    const ErrorReport report =
        ErrorReport::of(SmartcardException("SELECT refused", "ISO7816CardOS::selectFile", 0x16A82));
    EXPECT_EQ(report.message, "SELECT refused");
    EXPECT_EQ(report.operation, "ISO7816CardOS::selectFile");
    EXPECT_EQ(report.code, 0x16A82);
    EXPECT_EQ(report.line(), "SELECT refused (ISO7816CardOS::selectFile, code 0x16A82)");
}

TEST(ErrorReport, TakesMissingTextsAsEmpty) {
    const ErrorReport report = ErrorReport::of(Exception(nullptr, nullptr));
    EXPECT_EQ(report.message, "");
    EXPECT_EQ(report.operation, "");
}

TEST(ErrorReport, AddsWhatIsWrongWithACardFolder) {
    const CardFolderError error("invalid card description", "CardDescription::parse", "CARD:3: x");
    EXPECT_EQ(ErrorReport::of(error).message, "invalid card description: CARD:3: x");
}

TEST(ErrorReport, TellsOfAFailureOfTheCommand) {
    const ErrorReport report = ErrorReport::of(Failure("no", "tovi dump", 7), "tovi list");
    EXPECT_EQ(report.operation, "tovi dump");
    EXPECT_EQ(report.code, 7);
}

TEST(ErrorReport, TellsOfAnyOtherException) {
    const ErrorReport report = ErrorReport::of(std::runtime_error("out of luck"), "tovi list");
    EXPECT_EQ(report.line(), "out of luck (tovi list, code 0)");
}

TEST(ErrorReport, IsOneLineFitForATerminal) {
    EXPECT_EQ((ErrorReport{"a\nb\x1B", "op", 0}).line(), "a\\x0Ab\\x1B (op, code 0)");
}

}  // namespace
}  // namespace tovi::test
