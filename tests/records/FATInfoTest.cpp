#include "tovi/records/FATInfo.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace tovi {
namespace {

TEST(FATInfo, BeginsAsAFreeRow) {
    const FATInfo row;
    EXPECT_EQ(row.objectType, 0);
    EXPECT_EQ(row.isPrivate, 0xFF);
    EXPECT_EQ(row.indexA, 0xFFFF);
    EXPECT_EQ(row.indexB, 0xFFFF);
}

TEST(FATInfo, IsAPlainValueOfSixOctets) {
    EXPECT_EQ(sizeof(FATInfo), 6u);
    EXPECT_TRUE(std::is_trivially_copyable_v<FATInfo>);
}

TEST(FATInfo, DiffersFromARowWithAnyOtherField) {
    const FATInfo row = {1, 0, 5, 5};
    EXPECT_EQ(row, (FATInfo{1, 0, 5, 5}));
    EXPECT_NE(row, (FATInfo{2, 0, 5, 5}));
    EXPECT_NE(row, (FATInfo{1, 1, 5, 5}));
    EXPECT_NE(row, (FATInfo{1, 0, 6, 5}));
    EXPECT_NE(row, (FATInfo{1, 0, 5, 6}));
}

TEST(ObjectType, HasTheCodesThatRowsStore) {
    EXPECT_EQ(freeRow, 0);
    EXPECT_EQ(privateKeyObject, 1);
    EXPECT_EQ(publicKeyObject, 2);
    EXPECT_EQ(certificateObject, 3);
    EXPECT_EQ(dataObject, 4);
    EXPECT_EQ(containerObject, 5);
    EXPECT_EQ(tokenInfoObject, 6);
    EXPECT_EQ(secretKeyObject, 7);
    EXPECT_EQ(trustedPublicKeyObject, 18);
    EXPECT_EQ(trustedCertificateObject, 19);
    EXPECT_EQ(usefulCertificateObject, 35);
    EXPECT_EQ(unrecognisedObjectType, 64);
    EXPECT_EQ(authObject, 254);
    EXPECT_EQ(authObjectAlternate, 255);
}

}  // namespace
}  // namespace tovi
