#include "tovi/platform/DirectoryFiles.h"

#include <gtest/gtest.h>

namespace tovi {
namespace {

using Position = DirectoryFiles::Position;

const Blob first = {0x44, 0x01};
const Blob second = {0x44, 0x02};

DirectoryFile fileOf(const Blob& path, const std::vector<bool>& counted) {
    DirectoryFile file;
    file.path = path;
    for (const bool isCounted : counted) file.places.push_back({0, 2, isCounted});
    return file;
}

void read(DirectoryFiles& files, DirectoryFile file) {
    files.beginReading(file.path);
    files.add(std::move(file));
}

TEST(DirectoryFiles, CountRecordsThroughAllFilesInOrderOfReading) {
    DirectoryFiles files;
    read(files, fileOf(first, {true, true}));
    read(files, fileOf(second, {}));
    read(files, fileOf(second, {true}));
    EXPECT_EQ(files.find(0), (Position{0, 0}));
    EXPECT_EQ(files.find(1), (Position{0, 1}));
    EXPECT_EQ(files.find(2), (Position{2, 0}));
    EXPECT_EQ(files.find(3), std::nullopt);
    for (std::size_t index = 0; index < 3; ++index)
        EXPECT_EQ(files.indexOf(*files.find(index)), index);
}

TEST(DirectoryFiles, LeaveOutRecordsThatAreNotCounted) {
    DirectoryFiles files;
    read(files, fileOf(first, {false, true, false, true, false}));
    EXPECT_EQ(files.find(0), (Position{0, 1}));
    EXPECT_EQ(files.find(1), (Position{0, 3}));
    EXPECT_EQ(files.find(2), std::nullopt);
    EXPECT_EQ(files.indexOf({0, 3}), 1u);
}

TEST(DirectoryFiles, BeginANewRoundWhenTheFirstPathComesAgain) {
    DirectoryFiles files;
    read(files, fileOf(first, {true, true}));
    read(files, fileOf(second, {true}));
    read(files, fileOf(first, {true}));
    EXPECT_EQ(files.files().size(), 1u);
    EXPECT_EQ(files.find(1), std::nullopt);
}

TEST(DirectoryFiles, KeepAFileThatComesTwiceBehindTheFirst) {
    DirectoryFiles files;
    read(files, fileOf(first, {true}));
    read(files, fileOf(second, {true}));
    read(files, fileOf(second, {true}));
    EXPECT_EQ(files.find(2), (Position{2, 0}));
}

}  // namespace
}  // namespace tovi
