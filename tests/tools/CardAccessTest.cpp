#include "tools/CardAccess.h"

#include <gtest/gtest.h>

#include <sstream>

#include "TestCommand.h"
#include "tools/Text.h"

namespace tovi::test {
namespace {

/// The application's path below 3F00 on a sample card, in hex.
std::string pathOn(const char* card, const std::string& aid = "") {
    std::istringstream in;
    std::ostringstream out, err;
    Console console{in, out, err};
    GlobalOptions options;
    options.card = sampleCard(card);
    options.aid = aid;
    Invocation call(options, console, "test");
    CardAccess access(call, CardFolder::Mode::readOnly);
    return toHex(access.applicationPath());
}

TEST(CardAccess, FindsTheFolderThatHasTheIdentifier) {
    EXPECT_EQ(pathOn("plain"), "5015");
    EXPECT_EQ(pathOn("card-b"), "5000");
    EXPECT_EQ(pathOn("card-a", "A000000177504B43532D3135"), "DF00");
}

TEST(CardAccess, TakesTheBeginningOfAnIdentifier) {
    EXPECT_EQ(pathOn("card-a", "A000000177"), "DF00");
    EXPECT_EQ(runJson("card-a", {"list", "--aid", "A000000177"}).exit, 0);
}

TEST(CardAccess, LooksIntoTheDirectoryOtherwise) {
    EXPECT_EQ(pathOn("in-ef-dir"), "4D00");
    EXPECT_EQ(runJson("in-ef-dir", {"list"}).json()["rootPath"], "3F004D00");
}

TEST(CardAccess, FallsBackOnTheUsualPlace) {
    EXPECT_EQ(pathOn("no-application"), "5015");
    EXPECT_EQ(pathOn("in-ef-dir", "A1A2"), "5015");
}

}  // namespace
}  // namespace tovi::test
