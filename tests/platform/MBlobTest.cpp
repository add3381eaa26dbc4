#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

#include "tests/support/Der.h"
#include "tovi/interfaces/Blob.h"

namespace tovi::test {
namespace {

/// Octets on the heap that are looked at when they are released.
struct Watched {
    const std::uint8_t* octets = nullptr;
    std::size_t size = 0;
    bool isReleased = false;
    bool wasWiped = false;
};
Watched watched;

void release(void* block) noexcept {
    if (block != nullptr && block == watched.octets) {
        watched.isReleased = true;
        watched.wasWiped = std::all_of(watched.octets, watched.octets + watched.size,
                                       [](std::uint8_t octet) { return octet == 0; });
        watched.octets = nullptr;
    }
    std::free(block);
}

void watch(MBlob& secret) { watched = {secret.data(), secret.size(), false, false}; }

const Blob pin = text("12345678");

}  // namespace
}  // namespace tovi::test

void operator delete(void* block) noexcept { tovi::test::release(block); }
void operator delete(void* block, std::size_t) noexcept { tovi::test::release(block); }
void* operator new(std::size_t size) {
    if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

namespace tovi::test {
namespace {

Blob octetsOf(const MBlob& secret) { return Blob(ASN1::View(secret)); }

TEST(MBlob, HoldsTheOctetsThatItIsGiven) {
    const MBlob secret{ASN1::View(pin)};
    EXPECT_EQ(octetsOf(secret), pin);
    EXPECT_EQ(secret.size(), 8u);
    EXPECT_FALSE(secret.empty());
    EXPECT_TRUE(MBlob().empty());
}

TEST(MBlob, OverwritesItsOctetsBeforeItReleasesThem) {
    {
        MBlob secret{ASN1::View(pin)};
        watch(secret);
    }
    EXPECT_TRUE(watched.isReleased);
    EXPECT_TRUE(watched.wasWiped);
}

TEST(MBlob, OverwritesItsOctetsWhenItIsWiped) {
    MBlob secret{ASN1::View(pin)};
    watch(secret);
    secret.wipe();
    EXPECT_TRUE(secret.empty());
    secret = MBlob();
    EXPECT_TRUE(watched.isReleased);
    EXPECT_TRUE(watched.wasWiped);
}

TEST(MBlob, OverwritesTheOctetsThatAnAssignmentReplaces) {
    MBlob secret{ASN1::View(pin)};
    watch(secret);
    secret = MBlob(ASN1::View(text("0000")));
    EXPECT_EQ(octetsOf(secret), text("0000"));
    EXPECT_TRUE(watched.isReleased);
    EXPECT_TRUE(watched.wasWiped);
}

TEST(MBlob, LeavesNothingBehindWhereItMovesFrom) {
    MBlob secret{ASN1::View(pin)};
    watch(secret);
    {
        const MBlob moved = std::move(secret);
        EXPECT_EQ(octetsOf(moved), pin);
        EXPECT_FALSE(watched.isReleased) << "moved, not copied";
    }
    EXPECT_TRUE(secret.empty());
    EXPECT_TRUE(watched.wasWiped);
}

TEST(MBlob, CopiesAreTheirOwn) {
    MBlob secret{ASN1::View(pin)};
    const MBlob copy = secret;
    secret.wipe();
    EXPECT_EQ(octetsOf(copy), pin);
}

}  // namespace
}  // namespace tovi::test
