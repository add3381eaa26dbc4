#include "tools/PlannedContents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCommand.h"
#include "tools/Failure.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

constexpr std::size_t plenty = CardDescription::maxCardSize;

FileDescription linearFile(std::size_t records, std::size_t size) {
    FileDescription file;
    file.kind = FileDescription::Kind::linearVariable;
    file.size = records;
    file.recordSize = size;
    return file;
}

std::string failureOf(const FileDescription& file, const Json& description,
                      std::size_t left = plenty) {
    try {
        contentsFromJson(file, JsonPlace(description, "file"), left);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "accepted";
}

Json gaps(std::initializer_list<int> sizes, const Json& more = Json::object()) {
    Json records = Json::array();
    for (const int size : sizes) records.push_back({{"gap", size}});
    Json description = {{"records", records}};
    description.update(more);
    return description;
}

TEST(ContentsFromJson, HasRoomForAllRecordsOfALinearFile) {
    const Json description = gaps({10, 0, 10}, {{"size", 3}});
    const FileContents contents =
        contentsFromJson(linearFile(3, 10), JsonPlace(description, "file"), plenty);
    EXPECT_EQ(contents.records.size(), 3u);
    EXPECT_EQ(sizeOf(contents), 20u);
}

TEST(ContentsFromJson, RefusesARecordThatNoSlotHolds) {
    EXPECT_EQ(failureOf(linearFile(3, 10), gaps({10, 11}, {{"size", 3}})),
              "file.records[1].gap: expected a number from 0 to 10");
    EXPECT_EQ(failureOf(linearFile(0, 2), {{"records", {{{"hex", "010203"}}}}}),
              "file.records[0]: expected a record of at most 2 octets");
}

TEST(ContentsFromJson, RefusesMoreRecordsThanALinearFileHas) {
    EXPECT_EQ(failureOf(linearFile(2, 10), gaps({1, 1, 1}, {{"size", 2}})),
              "file.records: expected at most 2 records");
    Json many = gaps({});
    for (int i = 0; i < 255; ++i) many["records"].push_back({{"gap", 0}});
    EXPECT_EQ(failureOf(linearFile(0, 10), many), "file.records: expected at most 254 records");
}

TEST(ContentsFromJson, RefusesMoreThanIsLeftOnTheCard) {
    EXPECT_EQ(failureOf(linearFile(3, 10), gaps({10, 10}, {{"size", 3}}), 20), "accepted");
    EXPECT_THAT(failureOf(linearFile(3, 10), gaps({10, 10}, {{"size", 3}}), 19),
                HasSubstr("fit into the file and the card"));
}

}  // namespace
}  // namespace tovi::test
