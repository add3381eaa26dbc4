#include "tovi/interfaces/CardProfile.h"

#include <gtest/gtest.h>

#include "tovi/records/PKCS15Object.h"

namespace tovi {
namespace {

std::uint64_t fidOf(const Blob& path) {
    PKCS15Object object;
    object.fid = 0x1234;
    object.path.path = path;
    getFID(object);
    return object.fid;
}

TEST(CardProfile, NamesTheApplicationAndItsFiles) {
    EXPECT_EQ(PKCS15_AID,
              (Blob{0xA0, 0x00, 0x00, 0x00, 0x63, 0x50, 0x4B, 0x43, 0x53, 0x2D, 0x31, 0x35}));
    EXPECT_EQ(PKCS15_MF, (Blob{0x3F, 0x00}));
    EXPECT_EQ(PKCS15_DF, (Blob{0x50, 0x15}));
    EXPECT_EQ(PKCS15_PATH, (Blob{0x3F, 0x00, 0x50, 0x15}));
    EXPECT_EQ(PKCS15_EF_ODF, (Blob{0x50, 0x31}));
    EXPECT_EQ(PKCS15_EF_TOKEN_INFO, (Blob{0x50, 0x32}));
    EXPECT_EQ(B_CK_TRUE, Blob{0x01});
    EXPECT_EQ(B_CK_FALSE, Blob{0x00});
}

TEST(CardProfile, TakesTheFileIdentifierFromTheEndOfThePath) {
    EXPECT_EQ(fidOf({0x4B, 0x01}), 0x4B01u);
    EXPECT_EQ(fidOf({0x3F, 0x00, 0x50, 0x15, 0xFF, 0xFE}), 0xFFFEu);
    EXPECT_EQ(fidOf({0x3F, 0x00, 0x50}), 0x0050u);
}

TEST(CardProfile, HasNoFileIdentifierForAPathOfLessThanTwoOctets) {
    EXPECT_EQ(fidOf({}), noFID);
    EXPECT_EQ(fidOf({0x4B}), noFID);
}

}  // namespace
}  // namespace tovi
