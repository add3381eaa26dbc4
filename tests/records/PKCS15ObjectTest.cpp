#include "tovi/records/PKCS15Object.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <type_traits>

#include "tests/support/Der.h"

namespace tovi {
namespace {

constexpr std::uint64_t allOnes = std::numeric_limits<std::uint64_t>::max();

TEST(PKCS15Object, BeginsWithoutLinksReferencesAndFiles) {
    const PKCS15Object object;
    EXPECT_EQ(object.auxValue1, -1);
    EXPECT_EQ(object.auxValue2, -1);
    EXPECT_EQ(object.reference, 0xFFFF);
    EXPECT_EQ(object.keyInfoReference, 0xFFFF);
    EXPECT_EQ(object.modulusLength, 0xFFFF);
    EXPECT_EQ(object.fid, allOnes);
    EXPECT_EQ(object.recordNumber, allOnes);
    EXPECT_FALSE(object.sharesFile);
    EXPECT_TRUE(object.authId.empty());
    EXPECT_EQ(object.auxValue3, nullptr);
}

TEST(PKCS15Object, BeginsModifiableButNeitherPrivateNorNative) {
    const PKCS15Object object;
    EXPECT_TRUE(object.isModifiable);
    EXPECT_FALSE(object.isPrivate);
    EXPECT_FALSE(object.native);
    EXPECT_EQ(object.userConsent, -1);
}

TEST(PKCS15Object, HasFieldsOfTheWidthsThatCallersRelyOn) {
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::auxValue1), std::int64_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::auxValue2), std::int64_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::reference), std::uint16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::keyInfoReference), std::uint16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::modulusLength), std::uint16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::fid), std::uint64_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::recordNumber), std::uint64_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Object::userConsent), std::int32_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Path::index), std::uint16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(PKCS15Path::length), std::uint16_t>));
    EXPECT_FALSE(std::is_polymorphic_v<PKCS15Object>);
}

TEST(PKCS15Path, BeginsEmpty) {
    const PKCS15Path path;
    EXPECT_TRUE(path.path.empty());
    EXPECT_EQ(path.index, 0);
    EXPECT_EQ(path.length, 0);
}

PKCS15Object objectWithEveryFieldSet() {
    static const byte_array constraints = {0x30, 0x00};
    PKCS15Object object;
    object.auxValue1 = 1;
    object.auxValue2 = 2;
    object.reference = 3;
    object.keyInfoReference = 4;
    object.modulusLength = 1024;
    object.path = {{0x4B, 0x01}, 5, 6};
    object.fid = 0x4B01;
    object.recordNumber = 7;
    object.sharesFile = true;
    object.authId = test::times(40, 0x08);  // longer than what a Blob keeps in place
    object.native = true;
    object.isPrivate = true;
    object.isModifiable = false;
    object.userConsent = 9;
    object.auxValue3 = &constraints;
    return object;
}

void expectEqual(const PKCS15Object& a, const PKCS15Object& b) {
    EXPECT_EQ(a.auxValue1, b.auxValue1);
    EXPECT_EQ(a.auxValue2, b.auxValue2);
    EXPECT_EQ(a.reference, b.reference);
    EXPECT_EQ(a.keyInfoReference, b.keyInfoReference);
    EXPECT_EQ(a.modulusLength, b.modulusLength);
    EXPECT_EQ(a.path.path, b.path.path);
    EXPECT_EQ(a.path.index, b.path.index);
    EXPECT_EQ(a.path.length, b.path.length);
    EXPECT_EQ(a.fid, b.fid);
    EXPECT_EQ(a.recordNumber, b.recordNumber);
    EXPECT_EQ(a.sharesFile, b.sharesFile);
    EXPECT_EQ(a.authId, b.authId);
    EXPECT_EQ(a.native, b.native);
    EXPECT_EQ(a.isPrivate, b.isPrivate);
    EXPECT_EQ(a.isModifiable, b.isModifiable);
    EXPECT_EQ(a.userConsent, b.userConsent);
    EXPECT_EQ(a.auxValue3, b.auxValue3);
}

TEST(PKCS15Object, CopiesEveryField) {
    const PKCS15Object original = objectWithEveryFieldSet();
    const PKCS15Object copy = original;
    expectEqual(copy, original);
    PKCS15Object assigned;
    assigned = original;
    expectEqual(assigned, original);
}

TEST(PKCS15Object, CopiesItsOctetsDeeply) {
    PKCS15Object original = objectWithEveryFieldSet();
    original.path.path = test::times(40, 0x4B);
    const PKCS15Object copy = original;
    original.authId[0] = 0xEE;
    original.path.path[0] = 0xEE;
    EXPECT_EQ(copy.authId[0], 0x08);
    EXPECT_EQ(copy.path.path[0], 0x4B);
}

TEST(PKCS15Object, SharesTheConstraintsThatACallerOwns) {
    const byte_array constraints = {0x30, 0x00};
    PKCS15Object original;
    original.auxValue3 = &constraints;
    const PKCS15Object copy = original;
    EXPECT_EQ(copy.auxValue3, &constraints);
}

TEST(Fid16, IsTheLowSixteenBitsOfTheFID) {
    PKCS15Object object;
    EXPECT_EQ(fid16(object), 0xFFFF);
    object.fid = 0x12344B01;
    EXPECT_EQ(fid16(object), 0x4B01);
}

}  // namespace
}  // namespace tovi
