#include "tovi/records/AuthInfo.h"

#include <gtest/gtest.h>

#include "tests/support/Der.h"

namespace tovi {
namespace {

TEST(AuthInfo, BeginsWithoutValues) {
    const AuthInfo info;
    for (const Blob* octets : {&info.label, &info.authKeyId, &info.authObjectId, &info.lastChange,
                               &info.templateId, &info.cha})
        EXPECT_TRUE(octets->empty());
    for (const std::uint32_t number : {info.pinFlags, info.pinType, info.minLength,
                                       info.storedLength, info.maxLength, info.bioFlags})
        EXPECT_EQ(number, noAuthValue);
    for (const std::uint64_t number : {info.bioType, info.side, info.finger})
        EXPECT_EQ(number, noAuthValue);
    EXPECT_EQ(info.type, AuthType::none);
    EXPECT_FALSE(info.hasPadChar);
    EXPECT_TRUE(info.derivedKey);
}

TEST(AuthInfo, HoldsTheIdentifierOfTheKeyInItsSecondBlob) {
    const AuthInfo info;
    EXPECT_EQ(&info.label + 1, &info.authKeyId);
}

TEST(AuthInfo, CopiesEveryMember) {
    AuthInfo original;
    original.label = test::times(40, 1);
    original.authKeyId = test::times(40, 2);
    original.authObjectId = test::times(40, 3);
    original.lastChange = test::times(40, 4);
    original.templateId = test::times(40, 5);
    original.cha = test::times(40, 6);
    original.pinFlags = 7;
    original.pinType = 8;
    original.minLength = 9;
    original.storedLength = 10;
    original.maxLength = 11;
    original.bioFlags = 12;
    original.bioType = 13;
    original.side = 14;
    original.finger = 15;
    original.type = AuthType::authKey;
    original.padChar = 16;
    original.hasPadChar = true;
    original.derivedKey = false;
    const AuthInfo copy = original;
    EXPECT_EQ(copy.label, test::times(40, 1));
    EXPECT_EQ(copy.authKeyId, test::times(40, 2));
    EXPECT_EQ(copy.authObjectId, test::times(40, 3));
    EXPECT_EQ(copy.lastChange, test::times(40, 4));
    EXPECT_EQ(copy.templateId, test::times(40, 5));
    EXPECT_EQ(copy.cha, test::times(40, 6));
    EXPECT_EQ(copy.pinFlags, 7u);
    EXPECT_EQ(copy.pinType, 8u);
    EXPECT_EQ(copy.minLength, 9u);
    EXPECT_EQ(copy.storedLength, 10u);
    EXPECT_EQ(copy.maxLength, 11u);
    EXPECT_EQ(copy.bioFlags, 12u);
    EXPECT_EQ(copy.bioType, 13u);
    EXPECT_EQ(copy.side, 14u);
    EXPECT_EQ(copy.finger, 15u);
    EXPECT_EQ(copy.type, AuthType::authKey);
    EXPECT_EQ(copy.padChar, 16);
    EXPECT_TRUE(copy.hasPadChar);
    EXPECT_FALSE(copy.derivedKey);
}

}  // namespace
}  // namespace tovi
