#include "tools/WholeFile.h"

#include <gtest/gtest.h>

#include "TestCommand.h"
#include "tools/Failure.h"

namespace tovi::test {
namespace {

namespace fs = std::filesystem;

std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
}

TEST(WriteWholeFile, MakesOrReplacesAFileAndLeavesNothingElse) {
    const TemporaryFolder folder;
    writeWholeFile(folder / "file", "first", "test");
    EXPECT_EQ(readFile(folder / "file"), "first");
    writeWholeFile(folder / "file", "second", "test");
    EXPECT_EQ(readFile(folder / "file"), "second");
    EXPECT_EQ(filesIn(folder), 1u);
}

TEST(WriteWholeFile, KeepsThePermissionsOfTheOldFile) {
    const TemporaryFolder folder;
    writeFile(folder / "file", "old");
    fs::permissions(folder / "file", fs::perms::owner_read | fs::perms::owner_write);
    writeWholeFile(folder / "file", "new", "test");
    EXPECT_EQ(fs::status(folder / "file").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST(WriteWholeFile, FollowsASymbolicLink) {
    const TemporaryFolder folder;
    writeFile(folder / "file", "old");
    fs::create_symlink("file", folder / "link");
    writeWholeFile(folder / "link", "new", "test");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(readFile(folder / "file"), "new");
}

TEST(WriteWholeFile, MakesTheFileThatASymbolicLinkLeadsTo) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "below");
    fs::create_symlink("below/next", folder / "link");
    fs::create_symlink("file", folder / "below/next");
    writeWholeFile(folder / "link", "new", "test");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder / "below/file")));
    EXPECT_EQ(readFile(folder / "below/file"), "new");
}

TEST(WriteWholeFile, RefusesALinkThatLeadsNowhere) {
    const TemporaryFolder folder;
    fs::create_symlink("link", folder / "link");
    fs::create_symlink("none/file", folder / "astray");
    EXPECT_THROW(writeWholeFile(folder / "link", "new", "test"), Failure);
    EXPECT_THROW(writeWholeFile(folder / "astray", "new", "test"), Failure);
    EXPECT_EQ(filesIn(folder), 2u);
}

TEST(WriteWholeFile, TouchesNothingThatIsNoRegularFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    EXPECT_THROW(writeWholeFile(folder / "folder", "new", "test"), Failure);
    EXPECT_THROW(writeWholeFile("/dev/null", "new", "test"), Failure);
    EXPECT_THROW(writeWholeFile(folder / "none/file", "new", "test"), Failure);
    EXPECT_EQ(filesIn(folder), 1u);
}

}  // namespace
}  // namespace tovi::test
