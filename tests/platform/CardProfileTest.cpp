#include "tovi/interfaces/CardProfile.h"

#include <gtest/gtest.h>

#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/PKCS15Objects.h"
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

/// The path of the encoded ODF entry when it is of `choice`; "no path" as octets FF otherwise.
Blob pathOf(const Blob& encoded, int choice) {
    PKCS15::PKCS15Objects entry;
    ASN1::Error error;
    EXPECT_TRUE(ASN1::decode(encoded, entry, error));
    Blob path = {0xFF};
    const bool found = getPath(entry, path, choice);
    EXPECT_EQ(found, path != Blob{0xFF}) << "a path is written exactly when there is one";
    return path;
}

const Blob noPath = {0xFF};

TEST(CardProfile, FindsThePathOfAnODFEntryUnderItsChoiceAlone) {
    for (int entry = 0; entry <= 8; ++entry) {
        const Blob encoded = {
            static_cast<std::uint8_t>(0xA0 + entry), 0x06, 0x30, 0x04, 0x04, 0x02, 0x44, 0x01};
        for (int choice = -1; choice <= 10; ++choice)
            EXPECT_EQ(pathOf(encoded, choice), choice == entry ? (Blob{0x44, 0x01}) : noPath);
    }
}

TEST(CardProfile, FindsNoPathOfEntriesThatHoldTheirObjects) {
    EXPECT_EQ(pathOf({0xA8, 0x02, 0xA0, 0x00}, 8), noPath);
}

TEST(CardProfile, FindsNoPathOfUnknownEntries) {
    const Blob unknown = {0xA9, 0x06, 0x30, 0x04, 0x04, 0x02, 0x44, 0x01};
    for (int choice = 0; choice <= 10; ++choice) EXPECT_EQ(pathOf(unknown, choice), noPath);
}

TEST(CardProfile, FindsAPathWithoutOctets) {
    EXPECT_EQ(pathOf({0xA0, 0x04, 0x30, 0x02, 0x04, 0x00}, 0), Blob());
}

// ISO/IEC 7816-15 has forms that name a file by a tag.
TEST(CardProfile, FindsNoPathInAnotherForm) {
    EXPECT_EQ(pathOf({0xA0, 0x07, 0x30, 0x05, 0xA0, 0x03, 0x02, 0x01, 0x05}, 0), noPath);
}

}  // namespace
}  // namespace tovi
