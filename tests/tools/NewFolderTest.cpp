#include "tools/NewFolder.h"

#include <gtest/gtest.h>

#include <fstream>

#include "TestCommand.h"
#include "tools/Failure.h"

namespace tovi::test {
namespace {

namespace fs = std::filesystem;

std::size_t entriesOf(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(NewFolder, TakesItsNameWhenItIsComplete) {
    const TemporaryFolder parent;
    NewFolder folder(parent.path() / "a", "test");
    writeFile(folder.path() / "file", "contents");
    EXPECT_FALSE(fs::exists(parent.path() / "a"));
    folder.complete();
    EXPECT_EQ(readFile(parent.path() / "a" / "file"), "contents");
    EXPECT_EQ(entriesOf(parent.path()), 1u);
}

TEST(NewFolder, LeavesNothingWhenItIsNot) {
    const TemporaryFolder parent;
    {
        const NewFolder folder(parent.path() / "a", "test");
        writeFile(folder.path() / "deep" / "file", "contents");
    }
    EXPECT_EQ(entriesOf(parent.path()), 0u);
}

TEST(NewFolder, RefusesANameThatIsTaken) {
    const TemporaryFolder parent;
    fs::create_directory(parent.path() / "folder");
    writeFile(parent.path() / "file", "");
    fs::create_symlink("nowhere", parent.path() / "link");
    for (const char* name : {"folder", "file", "link"}) {
        EXPECT_THROW(NewFolder(parent.path() / name, "test"), Failure) << name;
    }
    NewFolder late(parent.path() / "late", "test");
    fs::create_directory(parent.path() / "late");
    EXPECT_THROW(late.complete(), Failure) << "taken meanwhile";
}

TEST(NewFolder, NeedsAFolderToBeIn) {
    const TemporaryFolder parent;
    EXPECT_THROW(NewFolder(parent.path() / "no" / "folder", "test"), Failure);
}

TEST(NewFolder, MayBeNamedWithASlashBehind) {
    const TemporaryFolder parent;
    NewFolder folder(parent / "a/", "test");
    folder.complete();
    EXPECT_TRUE(fs::is_directory(parent.path() / "a"));
}

TEST(NewFolder, IsForItsMakerAlone) {
    const TemporaryFolder parent;
    const NewFolder folder(parent.path() / "a", "test");
    EXPECT_EQ(fs::status(folder.path()).permissions(), fs::perms::owner_all);
}

}  // namespace
}  // namespace tovi::test
