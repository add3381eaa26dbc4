#include "tools/ApplicationCardOS.h"

#include <gtest/gtest.h>

#include "TestCard.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

namespace tovi::test {
namespace {

constexpr unsigned char noResponse = 0x0C;
const Blob folder = {0x3F, 0x00, 0x4D, 0x00};
const Blob aid = {0xA0, 0x01, 0x02, 0x03, 0x04};

TEST(ApplicationCardOS, SelectsTheOtherIdentifierInThePlaceOfThatOfPKCS15) {
    TestCard test;
    test.card.addFolder(folder, aid);
    ApplicationCardOS os(test.os, aid);
    EXPECT_NO_THROW(os.selectApplication(PKCS15_AID, noResponse));
    EXPECT_THROW(os.selectApplication(Blob{0xA0, 0x77}, noResponse), SmartcardException)
        << "any other is left alone";
}

TEST(ApplicationCardOS, SelectsByPathWhereTheCardDoesNotKnowTheIdentifier) {
    TestCard test;
    test.card.addFolder(folder);
    ApplicationCardOS os(test.os, aid);
    EXPECT_THROW(os.selectApplication(PKCS15_AID, noResponse), SmartcardException);
    os.setPath(folder);
    EXPECT_NO_THROW(os.selectApplication(PKCS15_AID, noResponse));
    os.setPath(Blob{0x3F, 0x00, 0x4E, 0x00});
    EXPECT_THROW(os.selectApplication(PKCS15_AID, noResponse), SmartcardException);
}

TEST(ApplicationCardOS, SelectsByPathAloneWhereNoIdentifierIsKnown) {
    TestCard test;
    test.card.addFolder(folder, PKCS15_AID);
    ApplicationCardOS os(test.os, {});
    os.setPath(folder);
    EXPECT_NO_THROW(os.selectApplication(PKCS15_AID, noResponse));
    os.setPath(Blob{0x3F, 0x00, 0x4E, 0x00});
    EXPECT_THROW(os.selectApplication(PKCS15_AID, noResponse), SmartcardException);
    os.setAid(PKCS15_AID);
    EXPECT_NO_THROW(os.selectApplication(PKCS15_AID, noResponse));
}

TEST(ApplicationCardOS, GivesTheFileThatAnotherStandsFor) {
    TestCard test;
    const Blob first{0x3F, 0x00, 0x44, 0x01}, second{0x3F, 0x00, 0x44, 0x02};
    test.card.addTransparent(first, 1, Blob{1});
    test.card.addTransparent(second, 1, Blob{2});
    ApplicationCardOS os(test.os, aid);
    os.redirect(first, second);
    os.selectFile(first);
    EXPECT_EQ(os.readBinary(0, 1), Blob{2});
    os.updateBinary(0, Blob{9});
    os.selectFile(second);
    EXPECT_EQ(os.readBinary(0, 1), Blob{9});
    os.redirect(second, first);
    os.selectFile(second);
    EXPECT_EQ(os.readBinary(0, 1), Blob{1}) << "once, not from place to place";
}

TEST(ApplicationCardOS, PassesEverythingElseOn) {
    TestCard test;
    test.card.addFolder(folder, aid);
    test.card.addTransparent(Blob{0x3F, 0x00, 0x4D, 0x00, 0x44, 0x01}, 4, Blob{1, 2, 3, 4});
    test.card
        .addLinear(Blob{0x3F, 0x00, 0x4D, 0x00, 0x44, 0x02}, FileDescription::Kind::linearVariable,
                   8, 3)
        .records = {Blob{7}};
    ApplicationCardOS os(test.os, aid);
    EXPECT_EQ(os.maxRead(), test.os.maxRead());
    EXPECT_EQ(os.maxWrite(), test.os.maxWrite());
    EXPECT_EQ(os.selectFile(Blob{0x3F, 0x00, 0x4D, 0x00, 0x44, 0x01}).size, 4u);
    os.updateBinary(1, Blob{9});
    EXPECT_EQ(os.readBinary(0, 4), (Blob{1, 9, 3, 4}));
    os.selectFile(Blob{0x3F, 0x00, 0x4D, 0x00, 0x44, 0x02});
    os.updateRecord(1, Blob{8});
    os.appendRecord(Blob{5, 6});
    EXPECT_EQ(os.readRecord(1), Blob{8});
    EXPECT_EQ(os.readRecord(2), (Blob{5, 6}));
}

}  // namespace
}  // namespace tovi::test
