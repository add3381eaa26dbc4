#include "tovi/asn1/Octets.h"

#include <gtest/gtest.h>

#include <list>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using ASN1::Octets, ASN1::View;

Octets counting(std::size_t size) {
    Octets octets;
    for (std::size_t i = 0; i < size; ++i) octets.push_back(static_cast<std::uint8_t>(i));
    return octets;
}

std::vector<std::uint8_t> plain(const Octets& octets) { return {octets.begin(), octets.end()}; }

constexpr std::size_t sizes[] = {0, 1, 23, 24, 25, 31, 32, 33, 500};

static_assert(sizeof(Octets) <= 32);
static_assert(std::is_nothrow_move_constructible_v<Octets>);
static_assert(std::is_nothrow_move_assignable_v<Octets>);
static_assert(std::is_convertible_v<const Octets&, View>);

bool isInPlace(const Octets& octets) {
    const auto* object = reinterpret_cast<const std::uint8_t*>(&octets);
    return octets.data() >= object && octets.data() < object + sizeof octets;
}

TEST(Octets, KeepsShortContentsInPlace) {
    EXPECT_TRUE(isInPlace(counting(Octets::inPlace)));
    EXPECT_FALSE(isInPlace(counting(Octets::inPlace + 1)));
}

TEST(Octets, GrowsOctetByOctetLikeAVector) {
    Octets octets;
    std::vector<std::uint8_t> expected;
    for (int i = 0; i < 1000; ++i) {
        octets.push_back(static_cast<std::uint8_t>(i));
        expected.push_back(static_cast<std::uint8_t>(i));
        ASSERT_EQ(plain(octets), expected);
    }
}

TEST(Octets, CopiesAreDeepAtEverySize) {
    for (std::size_t size : sizes) {
        const Octets original = counting(size);
        Octets copy = original;
        EXPECT_EQ(copy, original);
        copy.push_back(1);
        EXPECT_EQ(original, counting(size));
        EXPECT_NE(copy, original);
    }
}

TEST(Octets, AssignsFromEverySizeToEverySize) {
    for (std::size_t from : sizes)
        for (std::size_t to : sizes) {
            Octets target = counting(to);
            const Octets source = counting(from);
            target = source;
            EXPECT_EQ(target, counting(from));
            Octets moved = counting(to);
            moved = Octets(source);
            EXPECT_EQ(moved, counting(from));
        }
}

TEST(Octets, AMoveLeavesTheSourceEmpty) {
    for (std::size_t size : sizes) {
        Octets source = counting(size);
        const Octets target = std::move(source);
        EXPECT_EQ(target, counting(size));
        EXPECT_TRUE(source.empty());
        source.push_back(7);
        EXPECT_EQ(source, Octets{7});
    }
}

TEST(Octets, IsSafeFromItself) {
    for (std::size_t size : sizes) {
        Octets octets = counting(size);
        Octets& same = octets;
        octets = same;
        EXPECT_EQ(octets, counting(size));
        octets = std::move(same);
        EXPECT_EQ(octets, counting(size));
        octets.append(View(octets));
        ASSERT_EQ(octets.size(), 2 * size);
        EXPECT_EQ(Octets(View(octets).last(size)), counting(size));
        octets.assign(View(octets).last(size));
        EXPECT_EQ(octets, counting(size));
        octets.insert(octets.begin(), View(octets));
        EXPECT_EQ(octets.size(), 2 * size);
        octets.swap(octets);
        EXPECT_EQ(octets.size(), 2 * size);
    }
}

TEST(Octets, IsMadeFromWhatAVectorIsMadeFrom) {
    const std::list<int> list = {1, 2, 3};
    EXPECT_EQ(Octets(list.begin(), list.end()), (Octets{1, 2, 3}));
    EXPECT_EQ(Octets(3, 0xFF), (Octets{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(Octets(View()), Octets());
    Octets octets = counting(40);
    octets.assign(list.begin(), list.end());
    EXPECT_EQ(octets, (Octets{1, 2, 3}));
    octets.assign({4, 5});
    EXPECT_EQ(octets, (Octets{4, 5}));
    octets.assign(30, 6);
    EXPECT_EQ(octets, Octets(30, 6));
    octets = {1, 2};
    EXPECT_EQ(octets, (Octets{1, 2}));
    octets.append(list.begin(), list.end());
    EXPECT_EQ(octets, (Octets{1, 2, 1, 2, 3}));
}

TEST(Octets, ResizesWithAFill) {
    Octets octets{1, 2, 3};
    octets.resize(2);
    octets.resize(4, 9);
    EXPECT_EQ(octets, (Octets{1, 2, 9, 9}));
    octets.resize(60);
    EXPECT_EQ(octets.size(), 60u);
    EXPECT_EQ(octets.back(), 0);
    EXPECT_EQ(octets.front(), 1);
    octets.clear();
    EXPECT_TRUE(octets.empty());
    EXPECT_GE(octets.capacity(), 60u);
}

TEST(Octets, InsertsAndErasesAnywhere) {
    for (std::size_t size : {3u, 24u, 100u}) {
        Octets octets = counting(size);
        std::vector<std::uint8_t> expected = plain(octets);
        const Octets more = {0xA, 0xB};
        const auto at = octets.insert(octets.begin() + 2, View(more));
        expected.insert(expected.begin() + 2, {0xA, 0xB});
        EXPECT_EQ(at, octets.begin() + 2);
        EXPECT_EQ(plain(octets), expected);
        const auto next = octets.erase(octets.begin() + 1, octets.begin() + 3);
        expected.erase(expected.begin() + 1, expected.begin() + 3);
        EXPECT_EQ(next, octets.begin() + 1);
        EXPECT_EQ(plain(octets), expected);
        octets.erase(octets.begin());
        expected.erase(expected.begin());
        octets.pop_back();
        expected.pop_back();
        EXPECT_EQ(plain(octets), expected);
    }
}

TEST(Octets, SwapsAcrossSizes) {
    Octets small = counting(3), large = counting(300);
    swap(small, large);
    EXPECT_EQ(small, counting(300));
    EXPECT_EQ(large, counting(3));
}

TEST(Octets, ComparesLexicographically) {
    EXPECT_LT((Octets{1, 2}), (Octets{1, 3}));
    EXPECT_LT((Octets{1, 2}), (Octets{1, 2, 0}));
    EXPECT_GT((Octets{0x80}), (Octets{0x7F, 0xFF}));
    EXPECT_LT(Octets(), Octets{0});
    EXPECT_EQ(Octets(), Octets());
}

TEST(Octets, RefusesMoreThanItsSizeCanCount) {
    if constexpr (sizeof(std::size_t) > 4) {
        Octets octets = counting(30);
        EXPECT_THROW(octets.reserve(std::size_t{1} << 32), std::length_error);
        EXPECT_EQ(octets, counting(30));
    }
}

}  // namespace
