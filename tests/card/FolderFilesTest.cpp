#include "tovi/card/FolderFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/card/CardTools.h"
#include "tests/card/TemporaryFolder.h"

namespace tovi::test {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t limit = 8;

class FolderFilesTest : public testing::Test {
protected:
    FolderFilesTest() { EXPECT_EQ(files.open(folder.path()), ""); }

    std::string read(const std::string& name) { return files.read(name, limit, contents); }

    TemporaryFolder folder;
    FolderFiles files;
    Blob contents;
};

TEST_F(FolderFilesTest, ReadsWholeFiles) {
    folder.write("a/b", "12345678");
    EXPECT_EQ(read("a/b"), "");
    EXPECT_EQ(hexOf(contents), "3132333435363738");
    folder.write("empty", "");
    EXPECT_EQ(read("empty"), "");
    EXPECT_TRUE(contents.empty());
}

TEST_F(FolderFilesTest, SaysWhatCannotBeReadAndWhy) {
    folder.write("file", "x");
    folder.write("large", "123456789");
    EXPECT_EQ(read("missing"), "missing: No such file or directory");
    EXPECT_EQ(read("no/such"), "no: No such file or directory");
    EXPECT_EQ(read("file/below"), "file: Not a directory");
    EXPECT_EQ(read("large"), "large: found 9 octets, expected at most 8");
    std::filesystem::create_directory(folder.path() / "folder");
    EXPECT_EQ(read("folder"), "folder: is no regular file");
}

TEST_F(FolderFilesTest, FollowsNoSymbolicLinks) {
    folder.write("real/file", "x");
    std::filesystem::create_symlink("real/file", folder.path() / "link");
    std::filesystem::create_symlink("real", folder.path() / "way");
    EXPECT_EQ(read("link"), "link: is a symbolic link");
    EXPECT_EQ(read("way/file"), "way: is a symbolic link");
    EXPECT_EQ(files.replace("way/file", octets("00")), "way: is a symbolic link");
    EXPECT_EQ(folder.read("real/file"), "x");
}

TEST_F(FolderFilesTest, PutsAFileInThePlaceOfALinkAndNotWhereItLeads) {
    folder.write("real", "x");
    std::filesystem::create_symlink("real", folder.path() / "link");
    std::filesystem::create_symlink("real", folder.path() / "other.new");
    EXPECT_EQ(files.replace("link", octets("79")), "");
    EXPECT_EQ(files.replace("other", octets("7A")), "");
    EXPECT_EQ(folder.read("real"), "x");
    EXPECT_EQ(folder.read("link"), "y");
    EXPECT_EQ(folder.read("other"), "z");
}

TEST_F(FolderFilesTest, DoesNotWaitAtAPipe) {
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(read("pipe"), "pipe: is no regular file");
}

TEST_F(FolderFilesTest, ReplacesFilesAndMakesTheWayToThem) {
    EXPECT_EQ(files.replace("a/b/c", octets("31")), "");
    EXPECT_EQ(folder.read("a/b/c"), "1");
    EXPECT_EQ(files.replace("a/b/c", octets("3233")), "");
    EXPECT_EQ(folder.read("a/b/c"), "23");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "a/b/c.new"));
}

TEST_F(FolderFilesTest, ClearsAwayWhatAKilledProcessLeftBehind) {
    folder.write("file", "old");
    folder.write("file.new", "half of something longer");
    EXPECT_EQ(files.replace("file", octets("6E6577")), "");
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "file.new"));
}

TEST_F(FolderFilesTest, KeepsThePermissionsOfAFile) {
    folder.write("secret", "x");
    std::filesystem::permissions(folder.path() / "secret", std::filesystem::perms::owner_read |
                                                               std::filesystem::perms::owner_write);
    EXPECT_EQ(files.replace("secret", octets("79")), "");
    EXPECT_EQ(std::filesystem::status(folder.path() / "secret").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(FolderFilesTest, LeavesTheOldFileWhereTheNewOneCannotBe) {
    folder.write("folder/inside", "x");
    EXPECT_EQ(files.replace("folder", octets("00")), "folder: Is a directory");
    EXPECT_EQ(folder.read("folder/inside"), "x");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "folder.new"));
    folder.write("file", "x");
    std::filesystem::create_directory(folder.path() / "file.new");
    EXPECT_EQ(files.replace("file", octets("00")), "file.new: File exists");
    EXPECT_EQ(folder.read("file"), "x");
}

TEST_F(FolderFilesTest, KnowsWhatIsThere) {
    folder.write("file", "x");
    std::filesystem::create_symlink("nowhere", folder.path() / "link");
    EXPECT_TRUE(files.exists("file"));
    EXPECT_TRUE(files.exists("link"));
    EXPECT_FALSE(files.exists("other"));
}

TEST_F(FolderFilesTest, LetsOneWriterOrManyReadersIn) {
    FolderFiles second, third;
    ASSERT_EQ(second.open(folder.path()), "");
    ASSERT_EQ(third.open(folder.path()), "");
    EXPECT_TRUE(files.lock(true, milliseconds(0)));
    EXPECT_TRUE(second.lock(true, milliseconds(0)));
    EXPECT_FALSE(third.lock(false, milliseconds(0)));
    EXPECT_FALSE(third.lock(false, milliseconds(15)));
}

TEST_F(FolderFilesTest, GivesTheLockBackAtTheEnd) {
    {
        FolderFiles first;
        ASSERT_EQ(first.open(folder.path()), "");
        EXPECT_TRUE(first.lock(false, milliseconds(0)));
        EXPECT_FALSE(files.lock(true, milliseconds(0)));
    }
    EXPECT_TRUE(files.lock(false, milliseconds(0)));
}

TEST(FolderFiles, OpensFoldersOnly) {
    TemporaryFolder folder;
    folder.write("file", "x");
    FolderFiles files;
    const std::string missing = (folder.path() / "missing").string();
    const std::string file = (folder.path() / "file").string();
    EXPECT_EQ(files.open(missing), missing + ": No such file or directory");
    EXPECT_EQ(files.open(file), file + ": Not a directory");
}

}  // namespace
}  // namespace tovi::test
