#include "tovi/asn1/Writer.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::Octets, ASN1::Writer;

std::string header(ASN1::Tag tag, bool constructed, std::size_t length) {
    Writer writer;
    writer.header(tag, constructed, length);
    return toHex(writer.written());
}

TEST(Writer, WritesTheShortestLengths) {
    EXPECT_EQ(header(ASN1::universal(4), false, 0), "0400");
    EXPECT_EQ(header(ASN1::universal(4), false, 127), "047F");
    EXPECT_EQ(header(ASN1::universal(4), false, 128), "048180");
    EXPECT_EQ(header(ASN1::universal(4), false, 255), "0481FF");
    EXPECT_EQ(header(ASN1::universal(4), false, 256), "04820100");
    EXPECT_EQ(header(ASN1::universal(4), false, 0x10000), "0483010000");
}

TEST(Writer, WritesTheShortestTags) {
    EXPECT_EQ(header(ASN1::context(30), true, 0), "BE00");
    EXPECT_EQ(header(ASN1::context(31), false, 0), "9F1F00");
    EXPECT_EQ(header(ASN1::application(97), true, 0), "7F6100");
    EXPECT_EQ(header(ASN1::context(128), false, 0), "9F810000");
}

TEST(Writer, BuildsBackToFront) {
    Writer writer;
    writer.octets(hex("AA BB"));
    writer.octet(0x11);
    writer.octets({});
    EXPECT_EQ(toHex(writer.written()), "11AABB");
    EXPECT_EQ(writer.size(), 3u);
}

TEST(Writer, OutgrowsItsOwnRoom) {
    Writer writer;
    Octets expected;
    for (int i = 0; i < 5000; ++i) {
        writer.octet(static_cast<std::uint8_t>(i));
        expected.insert(expected.begin(), Octets{static_cast<std::uint8_t>(i)});
    }
    const Octets large(20000, 0x55);
    writer.octets(large);
    expected.insert(expected.begin(), large);
    EXPECT_EQ(Octets(writer.written()), expected);
}

TEST(Writer, RemembersAFailure) {
    Writer writer;
    EXPECT_FALSE(writer.failed());
    writer.fail();
    EXPECT_TRUE(writer.failed());
}

}  // namespace
