#include "tovi/platform/OuterSequence.h"

#include <gtest/gtest.h>

namespace tovi {
namespace {

using Kind = FileEntry::Kind;

const Blob entry = {0xA0, 0x06, 0x30, 0x04, 0x04, 0x02, 0x44, 0x01};

Blob inSequence(const Blob& contents) {
    Blob record = {0x30, static_cast<std::uint8_t>(contents.size())};
    record.append(contents);
    return record;
}

TEST(EntriesInOuterSequence, AreCountedFromTheFirstOctetOfTheRecord) {
    Blob contents = entry;
    contents.push_back(0x00);
    contents.append(entry);
    const std::vector<FileEntry> expected = {
        {Kind::record, 2, 8}, {Kind::padding, 10, 1}, {Kind::record, 11, 8}};
    EXPECT_EQ(entriesInOuterSequence(inSequence(contents)), expected);
}

TEST(EntriesInOuterSequence, StandBehindALongHeaderToo) {
    Blob record = {0x30, 0x82, 0x00, 0x08};
    record.append(entry);
    const std::vector<FileEntry> expected = {{Kind::record, 4, 8}};
    EXPECT_EQ(entriesInOuterSequence(record), expected);
}

TEST(EntriesInOuterSequence, AreNoneOfAnEntryItself) {
    EXPECT_TRUE(entriesInOuterSequence(entry).empty());
    EXPECT_TRUE(entriesInOuterSequence({}).empty());
}

TEST(EntriesInOuterSequence, AreNoneOfASequenceOfSomethingElse) {
    EXPECT_TRUE(entriesInOuterSequence(inSequence({})).empty()) << "of nothing";
    EXPECT_TRUE(entriesInOuterSequence(inSequence({0x00, 0x00})).empty()) << "of padding";
    EXPECT_TRUE(entriesInOuterSequence(inSequence({0x30, 0x00})).empty()) << "of no context tag";
    EXPECT_TRUE(entriesInOuterSequence(inSequence({0x02, 0x01, 0x00})).empty())
        << "of primitive values";
}

TEST(EntriesInOuterSequence, AreNoneOfARecordWithABadLength) {
    Blob record = inSequence(entry);
    record.push_back(0x00);
    EXPECT_TRUE(entriesInOuterSequence(record).empty()) << "octets behind it";
    record.resize(record.size() - 2);
    EXPECT_TRUE(entriesInOuterSequence(record).empty()) << "octets are missing";
    EXPECT_TRUE(entriesInOuterSequence(Blob{0x30}).empty());
}

}  // namespace
}  // namespace tovi
