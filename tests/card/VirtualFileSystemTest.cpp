#include "tovi/card/VirtualFileSystem.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

FileDescription transparent(const char* path, std::size_t size = 4) {
    FileDescription file;
    file.path = octets(path);
    file.kind = FileDescription::Kind::transparent;
    file.size = size;
    return file;
}

FileDescription folder(const char* path) {
    FileDescription file;
    file.path = octets(path);
    return file;
}

TEST(VirtualFileSystem, HasAMasterFileFromTheStart) {
    VirtualFileSystem files;
    EXPECT_EQ(files.masterFile().fid(), 0x3F00);
    EXPECT_EQ(files.find(octets("3F00")), &files.masterFile());
    FileDescription masterFile = folder("3F00");
    masterFile.aid = octets("A0");
    EXPECT_EQ(&files.add(masterFile), &files.masterFile());
    EXPECT_EQ(files.byAid(octets("A0")), std::vector{&files.masterFile()});
    EXPECT_EQ(files.files().size(), 1u);
}

TEST(VirtualFileSystem, FindsFilesByAbsolutePath) {
    VirtualFileSystem files;
    files.add(folder("3F005015"));
    VirtualFile& file = files.add(transparent("3F0050154401"));
    EXPECT_EQ(file.contents, filled(4, 0x00));
    EXPECT_EQ(files.find(octets("3F0050154401")), &file);
    for (const char* path :
         {"", "3F", "5015", "3F004401", "3F0050154402", "3F00501544014401", "3F005015440100"})
        EXPECT_EQ(files.find(octets(path)), nullptr) << path;
}

TEST(VirtualFileSystem, RefusesFilesWithoutAPlace) {
    VirtualFileSystem files;
    files.add(folder("3F005015"));
    files.add(transparent("3F0050154401"));
    for (const FileDescription& file :
         {transparent("3F0050154401"), folder("3F005015"), transparent("3F0060004401"),
          transparent("3F00501544014402"), transparent("3F00"), transparent("4401"),
          transparent(""), transparent("3F00501544")})
        EXPECT_EQ(failureOf([&] { files.add(file); }),
                  (Failure{40, "invalid file description", "VirtualFileSystem::add", 0}))
            << hexOf(file.path);
    EXPECT_EQ(files.files().size(), 3u);
}

TEST(VirtualFileSystem, CopiesEverything) {
    VirtualFileSystem files;
    files.add(folder("3F005015"));
    VirtualFile& file = files.add(transparent("3F0050154401"));
    VirtualFileSystem copy(files);
    copy.find(octets("3F0050154401"))->contents[0] = 0xAA;
    EXPECT_EQ(file.contents[0], 0x00);
    EXPECT_EQ(copy.find(octets("3F0050154401"))->parent, copy.find(octets("3F005015")));
    files = copy;
    EXPECT_EQ(files.find(octets("3F0050154401"))->contents[0], 0xAA);
    EXPECT_EQ(files.find(octets("3F0050154401"))->parent, files.find(octets("3F005015")));
}

TEST(VirtualFileSystem, FindsShortIdentifiersInOneFolderOnly) {
    VirtualFileSystem files;
    VirtualFile& one = files.add(folder("3F005015"));
    VirtualFile& two = files.add(folder("3F005016"));
    FileDescription file = transparent("3F0050154401");
    file.sfi = 5;
    VirtualFile& added = files.add(file);
    EXPECT_EQ(files.bySfi(one, 5), &added);
    EXPECT_EQ(files.bySfi(two, 5), nullptr);
    EXPECT_EQ(files.bySfi(one, 6), nullptr);
}

}  // namespace
}  // namespace tovi::test
