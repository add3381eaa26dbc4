#include "tovi/card/BerTlv.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

TEST(BerTlv, WalksDataObjectsAndSkipsFillerBetweenThem) {
    const Blob input = octets("00 80 02 01 02 FF 00 7F 49 01 AA 5F 81 01 00");
    ASN1::View rest = input;
    BerTlv object;
    ASSERT_TRUE(BerTlv::next(rest, object));
    EXPECT_EQ(object.tag, 0x80u);
    EXPECT_EQ(hexOf(object.value), "0102");
    ASSERT_TRUE(BerTlv::next(rest, object));
    EXPECT_EQ(object.tag, 0x7F49u);
    EXPECT_EQ(hexOf(object.value), "AA");
    ASSERT_TRUE(BerTlv::next(rest, object));
    EXPECT_EQ(object.tag, 0x5F8101u);
    EXPECT_TRUE(object.value.empty());
    EXPECT_FALSE(BerTlv::next(rest, object));
}

TEST(BerTlv, ReadsLengthsOfUpToFourFurtherOctets) {
    for (const char* hex : {"80 02 AABB", "80 81 02 AABB", "80 82 0002 AABB", "80 83 000002 AABB",
                            "80 84 00000002 AABB"}) {
        const Blob input = octets(hex);
        ASN1::View rest = input;
        BerTlv object;
        ASSERT_TRUE(BerTlv::next(rest, object)) << hex;
        EXPECT_EQ(hexOf(object.value), "AABB") << hex;
        EXPECT_TRUE(rest.empty()) << hex;
    }
}

TEST(BerTlv, RefusesWhatIsMalformedAndTakesNothingOfIt) {
    for (const char* hex : {"80", "80 01", "80 80 00 00", "80 85 00 00 00 00 00", "80 81",
                            "80 84 FFFFFFFF", "7F", "7F 81 82 83 00", "62 05 80 02"}) {
        const Blob input = octets(hex);
        ASN1::View rest = input;
        BerTlv object;
        EXPECT_FALSE(BerTlv::next(rest, object)) << hex;
        EXPECT_EQ(rest.size(), input.size()) << hex;
    }
}

TEST(BerTlv, FindsTheFirstWithATag) {
    const Blob input = octets("80 01 01 83 01 02 83 01 03");
    BerTlv object;
    ASSERT_TRUE(BerTlv::find(input, 0x83, object));
    EXPECT_EQ(hexOf(object.value), "02");
    EXPECT_FALSE(BerTlv::find(input, 0x84, object));
}

TEST(BerTlv, WritesTheShortestLength) {
    for (const auto& [size, header] : {std::pair<std::size_t, const char*>{0x7F, "537F"},
                                       {0x80, "538180"},
                                       {0xFF, "5381FF"},
                                       {0x100, "53820100"},
                                       {0x10000, "5383010000"}}) {
        Blob out;
        appendBerTlv(out, 0x53, filled(size, 0xAA));
        EXPECT_EQ(hexOf(slice(out, 0, out.size() - size)), header);
    }
}

}  // namespace
}  // namespace tovi::test
