#include "tovi/asn1/ObjectIdentifier.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using ASN1::OBJECT_IDENTIFIER, ASN1::Octets;
using Arcs = std::vector<OBJECT_IDENTIFIER::Arc>;

const OBJECT_IDENTIFIER logon = {1, 3, 6, 1, 4, 1, 311, 20, 2, 2};

TEST(ObjectIdentifier, HoldsItsArcs) {
    EXPECT_EQ(logon.size(), 10u);
    EXPECT_EQ(logon.arcs(), (Arcs{1, 3, 6, 1, 4, 1, 311, 20, 2, 2}));
    EXPECT_EQ(logon.toString(), "1.3.6.1.4.1.311.20.2.2");
    EXPECT_EQ(logon.content(),
              (Octets{0x2B, 0x06, 0x01, 0x04, 0x01, 0x82, 0x37, 0x14, 0x02, 0x02}));
}

TEST(ObjectIdentifier, IsEqualToOneWithTheSameArcsInTheSameOrder) {
    EXPECT_EQ(logon, (OBJECT_IDENTIFIER{1, 3, 6, 1, 4, 1, 311, 20, 2, 2}));
    EXPECT_NE(logon, (OBJECT_IDENTIFIER{1, 3, 6, 1, 4, 1, 311, 20, 2}));
    EXPECT_NE(logon, (OBJECT_IDENTIFIER{1, 3, 6, 1, 4, 1, 311, 20, 2, 2, 2}));
    EXPECT_NE(logon, (OBJECT_IDENTIFIER{1, 3, 6, 1, 4, 1, 20, 311, 2, 2}));
}

TEST(ObjectIdentifier, PacksTheFirstTwoArcs) {
    EXPECT_EQ((OBJECT_IDENTIFIER{0, 39}).content(), Octets{39});
    EXPECT_EQ((OBJECT_IDENTIFIER{1, 0}).content(), Octets{40});
    EXPECT_EQ((OBJECT_IDENTIFIER{2, 0}).content(), Octets{80});
    EXPECT_EQ((OBJECT_IDENTIFIER{2, 999}).content(), (Octets{0x88, 0x37}));
    for (const Arcs& arcs : {Arcs{0, 0}, Arcs{0, 39}, Arcs{1, 39}, Arcs{2, 40}, Arcs{2, 999}})
        EXPECT_EQ(OBJECT_IDENTIFIER(arcs.begin(), arcs.end()).arcs(), arcs);
}

TEST(ObjectIdentifier, HoldsArcsOf64Bits) {
    const OBJECT_IDENTIFIER::Arc most = std::numeric_limits<OBJECT_IDENTIFIER::Arc>::max();
    EXPECT_EQ((OBJECT_IDENTIFIER{2, 25, most}).arcs(), (Arcs{2, 25, most}));
    EXPECT_EQ((OBJECT_IDENTIFIER{2, 25, 127, 128}).arcs(), (Arcs{2, 25, 127, 128}));
    EXPECT_EQ((OBJECT_IDENTIFIER{2, most - 80}).arcs(), (Arcs{2, most - 80}));
}

TEST(ObjectIdentifier, IsEmptyWhenItsArcsHaveNoEncoding) {
    EXPECT_TRUE(OBJECT_IDENTIFIER().empty());
    EXPECT_TRUE((OBJECT_IDENTIFIER{1}).empty());
    EXPECT_TRUE((OBJECT_IDENTIFIER{3, 1}).empty());
    EXPECT_TRUE((OBJECT_IDENTIFIER{1, 40}).empty());
    EXPECT_TRUE((OBJECT_IDENTIFIER{2, std::numeric_limits<std::uint64_t>::max()}).empty());
    EXPECT_EQ(OBJECT_IDENTIFIER().size(), 0u);
    EXPECT_EQ(OBJECT_IDENTIFIER().toString(), "");
    EXPECT_TRUE(OBJECT_IDENTIFIER().arcs().empty());
}

TEST(ObjectIdentifier, DropsItsArcsForThoseWithoutEncoding) {
    OBJECT_IDENTIFIER identifier = logon;
    const std::uint8_t octets[] = {9, 5};
    identifier.assign(octets, octets + 2);
    EXPECT_TRUE(identifier.empty());
}

TEST(ObjectIdentifier, TakesOneArcAnOctet) {
    const Octets octets = {1, 2, 72, 141};
    EXPECT_EQ(OBJECT_IDENTIFIER(octets.begin(), octets.end()).arcs(), (Arcs{1, 2, 72, 141}));
}

TEST(ObjectIdentifier, RefusesContentThatIsNotWholeArcsInShortestForm) {
    OBJECT_IDENTIFIER identifier = logon;
    EXPECT_FALSE(identifier.setContent(Octets{0x2A, 0x86}));
    EXPECT_FALSE(identifier.setContent(Octets{0x80, 0x01}));
    EXPECT_FALSE(identifier.setContent(Octets{0x2A, 0x80, 0x01}));
    EXPECT_EQ(identifier, logon);
    EXPECT_TRUE(identifier.setContent(Octets{0x2A, 0x81, 0x00}));
    EXPECT_EQ(identifier.toString(), "1.2.128");
}

TEST(ObjectIdentifier, ShowsAnArcBeyond64BitsInHex) {
    OBJECT_IDENTIFIER identifier;
    // Ten octets hold 70 bits: 81 is one more than 64 bits hold, 82 is two.
    ASSERT_TRUE(identifier.setContent(
        Octets{0x2A, 0x82, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x05}));
    EXPECT_EQ(identifier.toString(), "1.2.0x10000000000000005");
    EXPECT_EQ(identifier.arcs().back(), std::numeric_limits<std::uint64_t>::max());
    ASSERT_TRUE(identifier.setContent(
        Octets{0x82, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x05, 0x07}));
    EXPECT_EQ(identifier.arcs()[0], 2u);
    EXPECT_EQ(identifier.arcs()[2], 7u);
    EXPECT_EQ(identifier.size(), 3u);
}

TEST(ObjectIdentifier, NeedsNoHeapForUsualIdentifiers) {
    const auto* object = reinterpret_cast<const std::uint8_t*>(&logon);
    EXPECT_GE(logon.content().data(), object);
    EXPECT_LT(logon.content().data(), object + sizeof logon);
}

}  // namespace
