#include "tovi/asn1/Reader.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::Element, ASN1::Error, ASN1::Octets, ASN1::Reader, ASN1::View;

TEST(Reader, WalksTheElementsOfOneLevel) {
    const Octets octets = hex("04 01 AA 30 02 05 00");
    Error error;
    Reader reader(octets, error);
    Element element;
    ASSERT_TRUE(reader.next(element));
    EXPECT_EQ(element.tag, ASN1::universal(4));
    EXPECT_FALSE(element.constructed);
    EXPECT_EQ(toHex(element.content), "AA");
    EXPECT_EQ(toHex(element.whole), "0401AA");
    ASSERT_TRUE(reader.peek(element));
    EXPECT_EQ(toHex(reader.rest()), "30020500");
    ASSERT_TRUE(reader.next(element));
    EXPECT_TRUE(element.constructed);
    EXPECT_TRUE(reader.atEnd());
    EXPECT_EQ(error.kind, Error::none);
}

TEST(Reader, KnowsAllClassesAndLongTags) {
    const Octets octets = hex("41 00 9F 1F 00 DF 81 00 00 7F 49 00");
    Error error;
    Reader reader(octets, error);
    const ASN1::Tag expected[] = {ASN1::application(1),
                                  ASN1::context(31),
                                  {ASN1::Tag::privateUse, 128},
                                  ASN1::application(73)};
    Element element;
    for (ASN1::Tag tag : expected) {
        ASSERT_TRUE(reader.next(element));
        EXPECT_EQ(element.tag, tag);
    }
}

TEST(Reader, LeavesOutTheEndOfContents) {
    const Octets octets = hex("30 80 04 01 AA 30 80 00 00 00 00 05 00");
    Error error;
    Reader reader(octets, error);
    Element element;
    ASSERT_TRUE(reader.next(element));
    EXPECT_EQ(toHex(element.content), "0401AA30800000");
    EXPECT_EQ(toHex(element.whole), "30800401AA308000000000");
    EXPECT_EQ(toHex(reader.rest()), "0500");
}

TEST(Reader, KeepsTheFirstFailure) {
    const Octets octets = hex("04 05 AA");
    Error error;
    Reader reader(octets, error);
    Element element;
    EXPECT_FALSE(reader.next(element));
    EXPECT_FALSE(reader.fail(Error::tooDeep));
    EXPECT_EQ(error.kind, Error::truncated);
    reader.forgive();
    EXPECT_EQ(error.kind, Error::none);
}

Octets nested(unsigned depth, bool indefinite) {
    Octets octets = hex("05 00");
    for (unsigned i = 0; i < depth; ++i) {
        if (indefinite) {
            octets.append(hex("00 00"));
            octets.insert(octets.begin(), hex("30 80"));
        } else {
            Octets header = hex("30 82 00 00");
            header[2] = static_cast<std::uint8_t>(octets.size() >> 8);
            header[3] = static_cast<std::uint8_t>(octets.size());
            octets.insert(octets.begin(), header);
        }
    }
    return octets;
}

/// How deep a reader gets.
unsigned depthOf(View octets, Error& error) {
    Reader reader(octets, error);
    Element element;
    for (unsigned depth = 0;; ++depth) {
        if (!reader.next(element) || !element.constructed) return depth;
        const auto body = reader.enter(element);
        if (!body) return depth;
        reader = *body;
    }
}

TEST(Reader, NestsToItsLimitAndNoFurther) {
    for (const bool indefinite : {false, true}) {
        Error error;
        EXPECT_EQ(depthOf(nested(Reader::maxDepth, indefinite), error), Reader::maxDepth);
        EXPECT_EQ(error.kind, Error::none);
        depthOf(nested(Reader::maxDepth + 1, indefinite), error);
        EXPECT_EQ(error.kind, Error::tooDeep);
    }
}

TEST(Reader, RefusesDeepNestingOfAnySizeAtOnce) {
    Octets octets;
    for (int i = 0; i < 100000; ++i) octets.append(hex("30 80"));
    Error error;
    EXPECT_EQ(depthOf(octets, error), 0u);
    EXPECT_EQ(error.kind, Error::tooDeep);
}

TEST(Reader, DoesNotEnterPrimitives) {
    const Octets octets = hex("04 01 AA");
    Error error;
    Reader reader(octets, error);
    Element element;
    ASSERT_TRUE(reader.peek(element));
    EXPECT_FALSE(reader.enter(element));
    EXPECT_EQ(error.kind, Error::badValue);
}

}  // namespace
