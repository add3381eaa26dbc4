#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"

namespace tovi::test {
namespace {

template <class Info>
void expectPlaceholder(const PKCS15ObjectInfo<Info>& info) {
    EXPECT_TRUE(info.label.empty());
    EXPECT_TRUE(info.id.empty());
    EXPECT_TRUE(info.serialNumber.empty());
    EXPECT_EQ(info.trustedUsage, noTrustedUsage);
    EXPECT_EQ(info.fid, noFID);
    EXPECT_TRUE(info.Params().empty());
}

TEST(InitCertificateInfos, DecodesOwnThenUsefulThenTrustedCertificates) {
    const auto container = containerOf(CardBuilder()
                                           .trustedCertificates({certificate()})
                                           .usefulCertificates({certificate()})
                                           .certificates({certificate()}));
    EXPECT_EQ(container->getCertificateInfos().at(0).recordNumber, 1u);
    EXPECT_EQ(container->getUsefulCertificateInfos().at(0).recordNumber, 2u);
    EXPECT_EQ(container->getTrustedCertificateInfos().at(0).recordNumber, 3u);
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{3, 0, 1, 1}));
    EXPECT_EQ(container->getFATRecords()[2], (FATInfo{35, 0, 2, 2}));
    EXPECT_EQ(container->getFATRecords()[3], (FATInfo{19, 0, 3, 3}));
}

TEST(InitCertificateInfos, DecodesEveryKindAlike) {
    const Blob record = certificate({.common = {.label = "mail", .flags = namedBits({0})},
                                     .id = {0x45, 0x46},
                                     .trustedUsage = trustedUsage({smartcardLogon()}),
                                     .value = path("4D07"),
                                     .serialNumber = integer(0x1234)});
    const auto container = containerOf(
        CardBuilder().certificates({record}).usefulCertificates({record}).trustedCertificates(
            {record}));
    const auto expectDecoded = [](const auto& info) {
        EXPECT_EQ(info.label, text("mail"));
        EXPECT_EQ(info.id, hex("4546"));
        EXPECT_EQ(info.certificateType, 0u);
        EXPECT_EQ(info.trustedUsage, 267u);
        EXPECT_EQ(info.serialNumber, hex("1234"));
        EXPECT_EQ(info.fid, 0x4D07u);
        EXPECT_TRUE(info.isPrivate);
    };
    expectDecoded(container->getCertificateInfo(1));
    expectDecoded(container->getUsefulCertificateInfo(2));
    expectDecoded(container->getTrustedCertificateInfo(3));
    for (const unsigned row : {1u, 2u, 3u}) EXPECT_EQ(container->getFATRecords()[row].isPrivate, 1);
    EXPECT_TRUE(container->getRawCertificates()[0].isDecoded);
    EXPECT_TRUE(container->getRawUsefulCertificates()[0].isDecoded);
    EXPECT_TRUE(container->getRawTrustedCertificates()[0].isDecoded);
}

TEST(InitCertificateInfos, LabelsCertificatesByTheirKind) {
    const auto container = containerOf(CardBuilder()
                                           .certificates({certificate()})
                                           .usefulCertificates({certificate()})
                                           .trustedCertificates({certificate()}));
    EXPECT_EQ(container->getCertificateInfo(1).label, text("x509Certificate"));
    EXPECT_EQ(container->getUsefulCertificateInfo(2).label, text("x509Certificate"));
    EXPECT_EQ(container->getTrustedCertificateInfo(3).label, text("x509Certificate"));
}

TEST(InitCertificateInfos, KeepsThePlacesOfBadRecordsInEveryList) {
    const std::vector<Blob> records = {certificate({.type = Certificate::spki}),
                                       certificate({.type = Certificate::cv}),
                                       retagged(0xA9, certificate()),
                                       undecodable(),
                                       certificate({.id = times(256, 1)}),
                                       certificate()};
    const auto container = containerOf(
        CardBuilder().certificates(records).usefulCertificates(records).trustedCertificates(
            records));
    for (std::size_t i = 0; i < 5; ++i) {
        expectPlaceholder(container->getCertificateInfos().at(i));
        expectPlaceholder(container->getUsefulCertificateInfos().at(i));
        expectPlaceholder(container->getTrustedCertificateInfos().at(i));
        for (const std::size_t first : {1u, 7u, 13u})
            EXPECT_EQ(container->getFATRecords()[first + i].objectType, unrecognisedObjectType);
        EXPECT_FALSE(container->getRawCertificates()[i].isDecoded);
        EXPECT_FALSE(container->getRawUsefulCertificates()[i].isDecoded);
        EXPECT_FALSE(container->getRawTrustedCertificates()[i].isDecoded);
    }
    EXPECT_EQ(container->getCertificateInfo(6).label, text("x509Certificate"));
    EXPECT_EQ(container->getUsefulCertificateInfo(12).label, text("x509Certificate"));
    EXPECT_EQ(container->getTrustedCertificateInfo(18).label, text("x509Certificate"));
}

TEST(InitCertificateInfos, MarksSharedFilesInEachListAlone) {
    const auto container = containerOf(CardBuilder()
                                           .certificates({certificate(), certificate()})
                                           .usefulCertificates({certificate()})
                                           .trustedCertificates({certificate()}));
    EXPECT_TRUE(container->getCertificateInfos()[0].sharesFile);
    EXPECT_TRUE(container->getCertificateInfos()[1].sharesFile);
    EXPECT_FALSE(container->getUsefulCertificateInfos()[0].sharesFile);
    EXPECT_FALSE(container->getTrustedCertificateInfos()[0].sharesFile);
}

TEST(InitCertificateInfos, LeavesNoPathForACertificateHeldInTheRecord) {
    const auto container = containerOf(
        CardBuilder().certificates({certificate({.value = context(0, sequence(integer(1)))})}));
    EXPECT_TRUE(container->getCertificateInfo(1).path.path.empty());
    EXPECT_EQ(container->getCertificateInfo(1).fid, noFID);
    EXPECT_TRUE(container->getRawCertificates()[0].isDecoded);
}

}  // namespace
}  // namespace tovi::test
