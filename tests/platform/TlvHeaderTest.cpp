#include "tovi/platform/TlvHeader.h"

#include <gtest/gtest.h>

namespace tovi {
namespace {

using State = TlvHeader::State;

TlvHeader header(const Blob& octets) { return readTlvHeader(octets); }

void expectComplete(const Blob& octets, std::size_t size, std::uint64_t contents) {
    EXPECT_EQ(header(octets).state, State::complete);
    EXPECT_EQ(header(octets).size, size);
    EXPECT_EQ(header(octets).contents, contents);
    EXPECT_EQ(header(octets).total(), size + contents);
}

TEST(TlvHeader, TakesShortAndLongLengths) {
    expectComplete({0x30, 0x00}, 2, 0);
    expectComplete({0x30, 0x7F}, 2, 127);
    expectComplete({0x30, 0x81, 0x05}, 3, 5);
    expectComplete({0x30, 0x82, 0x01, 0x00}, 4, 256);
    expectComplete({0x30, 0x83, 0x01, 0x00, 0x00}, 5, 0x10000);
    expectComplete({0x30, 0x84, 0xFF, 0xFF, 0xFF, 0xFF}, 6, 0xFFFFFFFF);
}

TEST(TlvHeader, TakesTagsOfUpToThreeOctets) {
    expectComplete({0xBF, 0x20, 0x03}, 3, 3);
    expectComplete({0xBF, 0x81, 0x20, 0x03}, 4, 3);
    EXPECT_EQ(header({0xBF, 0x81, 0x81, 0x20, 0x03}).state, State::invalid);
}

TEST(TlvHeader, RefusesLengthsThatNoFileHolds) {
    EXPECT_EQ(header({0x30, 0x80}).state, State::invalid);  // indefinite
    EXPECT_EQ(header({0x30, 0x85, 0, 0, 0, 0, 1}).state, State::invalid);
    EXPECT_EQ(header({0x30, 0xFF}).state, State::invalid);
}

TEST(TlvHeader, TellsThatItIsCut) {
    EXPECT_EQ(header({}).state, State::cut);
    EXPECT_EQ(header({0x30}).state, State::cut);
    EXPECT_EQ(header({0xBF}).state, State::cut);
    EXPECT_EQ(header({0xBF, 0x81}).state, State::cut);
    EXPECT_EQ(header({0x30, 0x81}).state, State::cut);
    EXPECT_EQ(header({0x30, 0x84, 0, 0, 0}).state, State::cut);
}

TEST(TlvHeader, OnlyConstructedTagsBeginARecord) {
    EXPECT_TRUE(isRecordTag(0x30));
    EXPECT_TRUE(isRecordTag(0xA8));
    EXPECT_FALSE(isRecordTag(0x04));
    EXPECT_FALSE(isRecordTag(0x80));
    EXPECT_FALSE(isRecordTag(0x00));
    EXPECT_FALSE(isRecordTag(0xFF));
}

}  // namespace
}  // namespace tovi
