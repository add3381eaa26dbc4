#include <gtest/gtest.h>

#include "tests/container/WritableKinds.h"
#include "tests/support/Failure.h"

namespace tovi::test {
namespace {

constexpr const char* refOperation = "PKCS15Container::refInfo";
constexpr const char* updateOperation = "PKCS15Container::updateInfo";
const Failure beyondTable =
    smartcardFailure("invalid record number", "PKCS15Container::checkObjectType");
using Info = PKCS15ObjectInfo<ContainerInfo>;

/// Two pairs of keys, two certificates: records 1 and 2 are private keys, 3 and 4 their public
/// ones, 5 and 6 certificates, then come the key containers.
CardBuilder pairs() {
    const Blob first = hex("01"), second = hex("02");
    return CardBuilder()
        .privateKeys({privateKey({.id = first}), privateKey({.id = second})})
        .publicKeys({publicKey({.id = first}), publicKey({.id = second})})
        .certificates({certificate({.id = first}), certificate({.id = second})});
}

Info containerNaming(std::uint64_t exchangeKey, std::uint64_t signatureKey,
                     std::uint64_t exchangeCertificate, std::uint64_t signatureCertificate) {
    Info info;
    info.label = text("mine");
    info.exchangeKeyRecord = exchangeKey;
    info.signatureKeyRecord = signatureKey;
    info.exchangeCertificateRecord = exchangeCertificate;
    info.signatureCertificateRecord = signatureCertificate;
    return info;
}

TEST(WriteContainerInfo, TakesARowAndComesLast) {
    WrittenCard card(pairs());
    const std::size_t containers = card->getContainerInfos().size();
    const std::size_t rows = card->getFATRecords().size();
    Info info = containerNaming(0, 0, 0, 0);
    info.isPrivate = true;
    EXPECT_EQ(card->writeContainerInfo(info), rows);
    EXPECT_EQ(info.recordNumber, rows);
    ASSERT_EQ(card->getContainerInfos().size(), containers + 1);
    EXPECT_EQ(card->getContainerInfos().back().label, text("mine"));
    EXPECT_EQ(card->getContainerInfos().back().recordNumber, rows);
    const auto low = static_cast<std::uint16_t>(rows);
    EXPECT_EQ(card->getFATRecords().back(), (FATInfo{containerObject, 1, low, low}));
}

TEST(WriteContainerInfo, TakesTheLowestFreeRow) {
    WrittenCard card(pairs());
    card->updateFATRecord(4, freeRow, false);
    Info info = containerNaming(0, 0, 0, 0);
    EXPECT_EQ(card->writeContainerInfo(info), 4u);
}

TEST(WriteContainerInfo, LinksKeyPublicKeyAndCertificate) {
    WrittenCard card(pairs());
    Info info = containerNaming(2, 0, 6, 0);
    const auto link = static_cast<std::int64_t>(card->writeContainerInfo(info));
    EXPECT_EQ(card->getPrivateKeyInfo(2).auxValue2, link);
    EXPECT_EQ(card->getPublicKeyInfo(4).auxValue2, link);
    EXPECT_EQ(card->getCertificateInfo(6).auxValue2, link);
    EXPECT_NE(card->getPrivateKeyInfo(1).auxValue2, link);
}

TEST(WriteContainerInfo, LinksSignatureRecordsWhereThereAreNoExchangeOnes) {
    WrittenCard card(pairs());
    Info info = containerNaming(0, 2, 0, 6);
    const auto link = static_cast<std::int64_t>(card->writeContainerInfo(info));
    EXPECT_EQ(card->getPrivateKeyInfo(2).auxValue2, link);
    EXPECT_EQ(card->getCertificateInfo(6).auxValue2, link);
}

TEST(WriteContainerInfo, LinksOnlyTheExchangeRecordsOfTwo) {
    WrittenCard card(pairs());
    Info info = containerNaming(1, 2, 5, 6);
    const auto link = static_cast<std::int64_t>(card->writeContainerInfo(info));
    EXPECT_EQ(card->getPrivateKeyInfo(1).auxValue2, link);
    EXPECT_EQ(card->getCertificateInfo(5).auxValue2, link);
    EXPECT_NE(card->getPrivateKeyInfo(2).auxValue2, link);
    EXPECT_NE(card->getPublicKeyInfo(4).auxValue2, link);
    EXPECT_NE(card->getCertificateInfo(6).auxValue2, link);
}

TEST(WriteContainerInfo, LinksACertificateWithoutAnyKey) {
    WrittenCard card(pairs());
    Info info = containerNaming(0, 0, 5, 0);
    const auto link = static_cast<std::int64_t>(card->writeContainerInfo(info));
    EXPECT_EQ(card->getCertificateInfo(5).auxValue2, link);
    EXPECT_NE(card->getPrivateKeyInfo(1).auxValue2, link);
}

TEST(WriteContainerInfo, HasAddedTheContainerWhenALinkFails) {
    struct Case {
        Info info;
        Failure failure;
    };
    const Failure otherType = smartcardFailure("invalid object type", refOperation);
    const std::uint64_t large = 0x100000001;  // its low 32 bits name a private key
    const Case cases[] = {
        {containerNaming(999, 0, 0, 0), beyondTable},
        {containerNaming(large, 0, 0, 0), beyondTable},
        {containerNaming(3, 0, 0, 0), otherType},
        {containerNaming(0, 0, 999, 0), beyondTable},
        {containerNaming(0, 0, 1, 0), otherType},
    };
    for (Case each : cases) {
        WrittenCard card(pairs());
        const std::size_t containers = card->getContainerInfos().size();
        EXPECT_EQ(failureOf([&] { card->writeContainerInfo(each.info); }), each.failure);
        EXPECT_EQ(card->getContainerInfos().size(), containers + 1);
        EXPECT_EQ(card->getFATRecords().back().objectType, containerObject);
    }
}

TEST(WriteContainerInfo, NeedsARowWithAnInfo) {
    WrittenCard card(pairs());
    Info info = containerNaming(card->newFATRecord(privateKeyObject, false), 0, 0, 0);
    EXPECT_EQ(failureOf([&] { card->writeContainerInfo(info); }),
              smartcardFailure("invalid record number", refOperation));
}

TEST(WriteContainerInfo, FailsForAKeyWithoutPublicKeyAfterLinkingTheKey) {
    WrittenCard card(CardBuilder().privateKeys({privateKey()}));
    Info info = containerNaming(1, 0, 0, 0);
    EXPECT_EQ(failureOf([&] { card->writeContainerInfo(info); }), beyondTable);
    EXPECT_EQ(card->getPrivateKeyInfo(1).auxValue2, static_cast<std::int64_t>(info.recordNumber));
    EXPECT_EQ(card->getContainerInfo(static_cast<unsigned long>(info.recordNumber)).label,
              text("mine"));
}

TEST(WriteContainerInfo, LastsUntilTheNextRead) {
    WrittenCard card(pairs());
    const std::size_t containers = card->getContainerInfos().size();
    Info info = containerNaming(0, 0, 0, 0);
    card->writeContainerInfo(info);
    card->clear();
    card->readFromCard(card.os());
    EXPECT_EQ(card->getContainerInfos().size(), containers);
}

TEST(UpdateContainerInfo, ReplacesTheContainerAndNoLink) {
    WrittenCard card(pairs());
    Info info = card->getContainerInfos().at(0);
    const auto link = card->getPrivateKeyInfo(2).auxValue2;
    info.label = text("other");
    info.exchangeKeyRecord = 2;
    card->updateContainerInfo(info);
    EXPECT_EQ(card->getContainerInfos()[0].label, text("other"));
    EXPECT_EQ(card->getContainerInfos()[0].exchangeKeyRecord, 2u);
    EXPECT_EQ(card->getPrivateKeyInfo(2).auxValue2, link);
}

TEST(UpdateContainerInfo, TellsWhyItFails) {
    WrittenCard card(pairs());
    Info info = card->getContainerInfos().at(0);
    info.recordNumber = 1;
    EXPECT_EQ(failureOf([&] { card->updateContainerInfo(info); }),
              smartcardFailure("invalid object type", updateOperation));
    info.recordNumber = 999;
    EXPECT_EQ(failureOf([&] { card->updateContainerInfo(info); }), beyondTable);
    info.recordNumber = card->newFATRecord(containerObject, false);
    EXPECT_EQ(failureOf([&] { card->updateContainerInfo(info); }),
              smartcardFailure("invalid record number", updateOperation));
}

}  // namespace
}  // namespace tovi::test
