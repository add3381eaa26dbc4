#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"

namespace tovi::test {
namespace {

const Blob id01 = {'0', '1'}, idS01 = {'S', '0', '1'};

enum class Use { both, signOnly, decryptOnly, neither };

Blob usageOf(Use use) {
    switch (use) {
        case Use::both:
            return namedBits({sign, decrypt});
        case Use::signOnly:
            return namedBits({sign});
        case Use::decryptOnly:
            return namedBits({decrypt});
        default:
            return namedBits({encrypt, wrap, unwrap, derive, signRecover, nonRepudiation});
    }
}

Blob key(const char* label, const Blob& id, Use use) {
    return privateKey({.common = {.label = label}, .id = id, .usage = usageOf(use)});
}
Blob publicKeyWithId(const Blob& id) { return publicKey({.id = id}); }
Blob certificateWithId(const Blob& id) { return certificate({.id = id}); }
Blob logonCertificate(const Blob& id) {
    return certificate({.id = id, .trustedUsage = trustedUsage({smartcardLogon()})});
}

using Containers = PKCS15Container::InfoList<ContainerInfo>;

void expectRecords(const ContainerInfo& container, unsigned long exchangeKey,
                   unsigned long exchangeCertificate, unsigned long signatureKey,
                   unsigned long signatureCertificate) {
    EXPECT_EQ(container.exchangeKeyRecord, exchangeKey);
    EXPECT_EQ(container.exchangeCertificateRecord, exchangeCertificate);
    EXPECT_EQ(container.signatureKeyRecord, signatureKey);
    EXPECT_EQ(container.signatureCertificateRecord, signatureCertificate);
}

// ---- keys that sign and decrypt ----

TEST(InitContainerInfos, PairsAKeyWithItsPublicKeyAndCertificate) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::both)})
                                           .publicKeys({publicKeyWithId(id01)})
                                           .certificates({certificateWithId(id01)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    const auto& info = container->getContainerInfo(4);
    expectRecords(info, 1, 3, 0, 0);
    EXPECT_EQ(info.label, text("Alice"));
    EXPECT_FALSE(info.logonCertificate);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue1, 2);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 4);
    EXPECT_EQ(container->getPublicKeyInfo(2).auxValue2, 4);
    EXPECT_EQ(container->getPublicKeyInfo(2).auxValue1, noLink);
    EXPECT_EQ(container->getCertificateInfo(3).auxValue2, 4);
    EXPECT_EQ(container->getCertificateInfo(3).auxValue1, noLink);
    EXPECT_EQ(container->getCertificateInfo(3).trustedUsage, 3u);
}

TEST(InitContainerInfos, TakesARowOfItsOwnTypeThatIsNotPrivate) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {privateKey({.common = {.flags = namedBits({0})}, .usage = usageOf(Use::both)})}));
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{1, 1, 1, 1}));
    EXPECT_EQ(container->getFATRecords()[2], (FATInfo{5, 0, 2, 2}));
}

TEST(InitContainerInfos, LeavesTheCommonPartOfAContainerAtItsDefaults) {
    const auto container = containerOf(fullCard());
    const auto& info = container->getContainerInfos().at(0);
    EXPECT_EQ(info.fid, noFID);
    EXPECT_EQ(info.auxValue1, noLink);
    EXPECT_EQ(info.auxValue2, noLink);
    EXPECT_FALSE(info.isPrivate);
    EXPECT_TRUE(info.isModifiable);
    EXPECT_TRUE(info.Params().empty());
}

TEST(InitContainerInfos, LeavesFieldsAtTheirDefaultsWithoutPartners) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::both)})
                                           .publicKeys({publicKeyWithId({'0', '2'})})
                                           .certificates({certificateWithId({'0', '1', '2'})}));
    expectRecords(container->getContainerInfos().at(0), 1, 0, 0, 0);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue1, noLink);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 4);
    EXPECT_EQ(container->getPublicKeyInfo(2).auxValue2, noLink);
    EXPECT_EQ(container->getCertificateInfo(3).auxValue2, noLink);
    EXPECT_EQ(container->getCertificateInfo(3).trustedUsage, noTrustedUsage);
}

TEST(InitContainerInfos, PairsTheFirstOfSeveralWithOneIdentifier) {
    const auto container =
        containerOf(CardBuilder()
                        .privateKeys({key("Alice", id01, Use::both)})
                        .publicKeys({publicKeyWithId(id01), publicKeyWithId(id01)})
                        .certificates({certificateWithId(id01), certificateWithId(id01)}));
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue1, 2);
    expectRecords(container->getContainerInfos().at(0), 1, 4, 0, 0);
    EXPECT_EQ(container->getPublicKeyInfo(3).auxValue2, noLink);
    EXPECT_EQ(container->getCertificateInfo(5).auxValue2, noLink);
    EXPECT_EQ(container->getCertificateInfo(5).trustedUsage, noTrustedUsage);
}

TEST(InitContainerInfos, NeverPairsTrustedAndUsefulOnes) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::both)})
                                           .trustedPublicKeys({publicKeyWithId(id01)})
                                           .trustedCertificates({certificateWithId(id01)})
                                           .usefulCertificates({certificateWithId(id01)}));
    expectRecords(container->getContainerInfos().at(0), 1, 0, 0, 0);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue1, noLink);
    EXPECT_EQ(container->getTrustedPublicKeyInfos()[0].auxValue2, noLink);
    EXPECT_EQ(container->getTrustedCertificateInfos()[0].auxValue2, noLink);
    EXPECT_EQ(container->getTrustedCertificateInfos()[0].trustedUsage, noTrustedUsage);
    EXPECT_EQ(container->getUsefulCertificateInfos()[0].trustedUsage, noTrustedUsage);
}

TEST(InitContainerInfos, MarksTheContainerOfALogonCertificateAndLeavesThat) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::both)})
                                           .certificates({logonCertificate(id01)}));
    EXPECT_TRUE(container->getContainerInfos().at(0).logonCertificate);
    EXPECT_EQ(container->getCertificateInfo(2).trustedUsage, 267u);
    EXPECT_EQ(container->getContainerInfos()[0].exchangeCertificateRecord, 2u);
}

TEST(InitContainerInfos, GivesEveryKeyThatSignsAndDecryptsAContainerOfItsOwn) {
    const auto container =
        containerOf(CardBuilder()
                        .privateKeys({key("Alice", id01, Use::both), key("Bob", id01, Use::both)})
                        .publicKeys({publicKeyWithId(id01)})
                        .certificates({certificateWithId(id01)}));
    ASSERT_EQ(container->getContainerInfos().size(), 2u);
    expectRecords(container->getContainerInfos()[0], 1, 4, 0, 0);
    expectRecords(container->getContainerInfos()[1], 2, 4, 0, 0);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 5);
    EXPECT_EQ(container->getPrivateKeyInfo(2).auxValue2, 6);
    EXPECT_EQ(container->getPublicKeyInfo(3).auxValue2, 6) << "the last container stays";
    EXPECT_EQ(container->getCertificateInfo(4).auxValue2, 6);
}

TEST(InitContainerInfos, SkipsRecordsThatCouldNotBeDecoded) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {undecodable(), privateKey({.type = Key::kea}),
         privateKey({.id = times(256, 1), .usage = usageOf(Use::both)})}));
    EXPECT_EQ(container->getPrivateKeyInfos().size(), 3u);
    EXPECT_TRUE(container->getContainerInfos().empty());
}

TEST(InitContainerInfos, MakesNoContainerWithoutPrivateKeys) {
    const auto container = containerOf(
        CardBuilder().publicKeys({publicKeyWithId(id01)}).certificates({certificateWithId(id01)}));
    EXPECT_TRUE(container->getContainerInfos().empty());
}

TEST(InitContainerInfos, TakesKeysThatSignAndDecryptFirst) {
    const auto container = containerOf(
        CardBuilder().privateKeys({key("decrypts", {1}, Use::decryptOnly),
                                   key("both", {2}, Use::both), key("signs", {3}, Use::signOnly)}));
    const Containers& infos = container->getContainerInfos();
    ASSERT_EQ(infos.size(), 3u);
    EXPECT_EQ(infos[0].label, text("both"));
    EXPECT_EQ(infos[1].label, text("decrypts"));
    EXPECT_EQ(infos[2].label, text("signs"));
    EXPECT_EQ(infos[0].recordNumber, 4u);
    EXPECT_EQ(infos[1].recordNumber, 5u);
    EXPECT_EQ(infos[2].recordNumber, 6u);
}

// ---- all other keys ----

TEST(UpdateContainerInfos, PutsADecryptingKeyIntoTheExchangeSlot) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::decryptOnly)})
                                           .publicKeys({publicKeyWithId(id01)})
                                           .certificates({certificateWithId(id01)}));
    expectRecords(container->getContainerInfo(4), 1, 3, 0, 0);
    EXPECT_EQ(container->getCertificateInfo(3).trustedUsage, 2u);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue1, 2);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 4);
    EXPECT_EQ(container->getPublicKeyInfo(2).auxValue2, 4);
    EXPECT_EQ(container->getCertificateInfo(3).auxValue2, 4);
}

TEST(UpdateContainerInfos, PutsASigningKeyIntoTheSignatureSlot) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::signOnly)})
                                           .certificates({certificateWithId(id01)}));
    expectRecords(container->getContainerInfo(3), 0, 0, 1, 2);
    EXPECT_EQ(container->getCertificateInfo(2).trustedUsage, 1u);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 3);
}

TEST(UpdateContainerInfos, PutsAKeyWithNeitherUseIntoTheExchangeSlot) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("Alice", id01, Use::neither)})
                                           .certificates({certificateWithId(id01)}));
    expectRecords(container->getContainerInfo(3), 1, 2, 0, 0);
    EXPECT_EQ(container->getCertificateInfo(2).trustedUsage, 0u);
}

TEST(UpdateContainerInfos, LeavesAUsageThatIsAlreadySet) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({key("decrypts", id01, Use::decryptOnly),
                                                         key("signs", id01, Use::signOnly)})
                                           .certificates({certificateWithId(id01)}));
    EXPECT_EQ(container->getCertificateInfo(3).trustedUsage, 2u);
    EXPECT_FALSE(container->getContainerInfos().at(1).logonCertificate);
    EXPECT_EQ(container->getContainerInfos()[1].signatureCertificateRecord, 3u);
}

TEST(UpdateContainerInfos, JoinsASignatureKeyToTheExchangeKeyWhoseIdentifierItExtends) {
    const auto container =
        containerOf(CardBuilder()
                        .privateKeys({key("Alice", id01, Use::decryptOnly),
                                      key("Alice Sig", idS01, Use::signOnly)})
                        .publicKeys({publicKeyWithId(id01), publicKeyWithId(idS01)})
                        .certificates({certificateWithId(id01), certificateWithId(idS01)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    const auto& info = container->getContainerInfo(7);
    EXPECT_EQ(info.label, text("Alice & Alice Sig"));
    expectRecords(info, 1, 5, 2, 6);
    EXPECT_EQ(container->getCertificateInfo(6).trustedUsage, 1u);
    EXPECT_EQ(container->getPrivateKeyInfo(2).auxValue1, 4);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 7);
    EXPECT_EQ(container->getPrivateKeyInfo(2).auxValue2, noLink) << "a joined key keeps its link";
    EXPECT_EQ(container->getPublicKeyInfo(4).auxValue2, 7);
    EXPECT_EQ(container->getCertificateInfo(6).auxValue2, 7);
    EXPECT_EQ(container->getFATRecords().size(), 8u);
}

TEST(UpdateContainerInfos, KeepsASingleLabelWhenBothKeysHaveTheSame) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("Alice", id01, Use::decryptOnly), key("Alice", idS01, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    EXPECT_EQ(container->getContainerInfos()[0].label, text("Alice"));
}

TEST(UpdateContainerInfos, TakesTheLabelOfTheJoinedKeyWhereTheContainerHasNone) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("", id01, Use::decryptOnly), key("Alice Sig", idS01, Use::signOnly)}));
    EXPECT_EQ(container->getContainerInfos().at(0).label, text("Alice Sig"));
}

TEST(UpdateContainerInfos, AppendsAnEmptyLabelToo) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("Alice", id01, Use::decryptOnly), key("", idS01, Use::signOnly)}));
    EXPECT_EQ(container->getContainerInfos().at(0).label, text("Alice & "));
}

TEST(UpdateContainerInfos, JoinsASignatureKeyToAKeyThatSignsAndDecryptsWhereverThatStands) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("Alice Sig", idS01, Use::signOnly), key("Alice", id01, Use::both)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    expectRecords(container->getContainerInfos()[0], 2, 0, 1, 0);
    EXPECT_EQ(container->getContainerInfos()[0].label, text("Alice & Alice Sig"));
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, noLink);
    EXPECT_EQ(container->getPrivateKeyInfo(2).auxValue2, 3);
}

TEST(UpdateContainerInfos, OpensAContainerForAKeyThatStandsBeforeItsPartner) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("Alice Sig", idS01, Use::signOnly), key("Alice", id01, Use::decryptOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 2u);
    expectRecords(container->getContainerInfos()[0], 0, 0, 1, 0);
    expectRecords(container->getContainerInfos()[1], 2, 0, 0, 0);
}

TEST(UpdateContainerInfos, OpensAContainerForAKeyWhosePartnerOnlySigns) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("Alice", id01, Use::signOnly), key("Alice Sig", idS01, Use::signOnly)}));
    EXPECT_EQ(container->getContainerInfos().size(), 2u);
}

TEST(UpdateContainerInfos, JoinsNoKeyWithAnotherFirstOctet) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("Alice", id01, Use::decryptOnly), key("small letter", {'s', '0', '1'}, Use::signOnly),
         key("same", id01, Use::signOnly), key("longer", {'S', '0', '1', '2'}, Use::signOnly),
         key("empty", {}, Use::signOnly)}));
    EXPECT_EQ(container->getContainerInfos().size(), 5u);
}

TEST(UpdateContainerInfos, JoinsTheSingleLetterToAKeyWithoutIdentifier) {
    const auto container = containerOf(
        CardBuilder().privateKeys({key("", {}, Use::decryptOnly), key("S", {'S'}, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    expectRecords(container->getContainerInfos()[0], 1, 0, 2, 0);
}

TEST(UpdateContainerInfos, JoinsTheFirstOfSeveralContainers) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("one", id01, Use::decryptOnly), key("two", id01, Use::decryptOnly),
         key("sig", idS01, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 2u);
    EXPECT_EQ(container->getContainerInfos()[0].signatureKeyRecord, 3u);
    EXPECT_EQ(container->getContainerInfos()[1].signatureKeyRecord, 0u);
}

TEST(UpdateContainerInfos, JoinsAContainerOfTheFirstPassBeforeOneOfTheSecond) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("decrypts", id01, Use::decryptOnly), key("both", id01, Use::both),
         key("sig", idS01, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 2u);
    EXPECT_EQ(container->getContainerInfos()[0].label, text("both & sig"));
    EXPECT_EQ(container->getContainerInfos()[1].label, text("decrypts"));
}

TEST(UpdateContainerInfos, MatchesTheCertificateOfAJoinedKeyByItsFullIdentifier) {
    const auto container = containerOf(
        CardBuilder()
            .privateKeys({key("Alice", id01, Use::decryptOnly), key("Alice", idS01, Use::signOnly)})
            .certificates({certificateWithId(id01)}));
    expectRecords(container->getContainerInfos().at(0), 1, 3, 2, 0);
    EXPECT_EQ(container->getCertificateInfo(3).trustedUsage, 2u);
}

TEST(UpdateContainerInfos, ReplacesTheSignatureKeyWhenASecondOneJoins) {
    const auto container = containerOf(
        CardBuilder().privateKeys({key("A", id01, Use::decryptOnly), key("B", idS01, Use::signOnly),
                                   key("C", idS01, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    expectRecords(container->getContainerInfos()[0], 1, 0, 3, 0);
    EXPECT_EQ(container->getContainerInfos()[0].label, text("A & B & C"));
}

TEST(UpdateContainerInfos, ReplacesTheExchangeKeyWhenTheJoinedKeyDoesNotSign) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("A", id01, Use::decryptOnly), key("B", idS01, Use::decryptOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    expectRecords(container->getContainerInfos()[0], 2, 0, 0, 0);
    EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue2, 3);
    EXPECT_EQ(container->getPrivateKeyInfo(2).auxValue2, noLink);
}

TEST(UpdateContainerInfos, FindsAContainerByItsNewExchangeKeyAndNoLongerByTheOldOne) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("A", id01, Use::decryptOnly), key("B", idS01, Use::decryptOnly),
         key("joins B", {'S', 'S', '0', '1'}, Use::signOnly), key("alone", idS01, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 2u);
    expectRecords(container->getContainerInfos()[0], 2, 0, 3, 0);
    expectRecords(container->getContainerInfos()[1], 0, 0, 4, 0);
}

TEST(UpdateContainerInfos, FindsTheNextContainerOfAnIdentifierThatTheFirstLost) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {key("A", id01, Use::decryptOnly), key("B", id01, Use::decryptOnly),
         key("takes A", idS01, Use::decryptOnly), key("joins B", idS01, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 2u);
    expectRecords(container->getContainerInfos()[0], 3, 0, 0, 0);
    expectRecords(container->getContainerInfos()[1], 2, 0, 4, 0);
}

TEST(UpdateContainerInfos, KeepsTheLogonMarkOfAContainerThatAKeyJoins) {
    const auto container = containerOf(
        CardBuilder()
            .privateKeys({key("A", id01, Use::decryptOnly), key("B", idS01, Use::signOnly)})
            .certificates({logonCertificate(id01), certificateWithId(idS01)}));
    EXPECT_TRUE(container->getContainerInfos().at(0).logonCertificate);
}

TEST(UpdateContainerInfos, SkipsRecordsThatCouldNotBeDecoded) {
    const auto container =
        containerOf(CardBuilder().privateKeys({undecodable(), key("S", {'S'}, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    expectRecords(container->getContainerInfos()[0], 0, 0, 2, 0);
}

TEST(InitContainerInfos, DerivesTheContainersAnewOnEveryRead) {
    TestCard card(fullCard());
    const auto container = makeContainer();
    for (int round = 0; round < 2; ++round) {
        container->clear();
        container->readFromCard(card.os());
        EXPECT_EQ(container->getContainerInfos().size(), 1u);
    }
}

TEST(InitContainerInfos, JoinsThousandsOfKeys) {
    CardBuilder builder;
    std::vector<Blob> records;
    for (int i = 0; i < 2000; ++i) {
        const Blob number = {static_cast<std::uint8_t>(i >> 8), static_cast<std::uint8_t>(i)};
        records.push_back(key("A", number, Use::decryptOnly));
        records.push_back(key("A", join({Blob{'S'}, number}), Use::signOnly));
    }
    const auto container = containerOf(builder.privateKeys(records));
    const Containers& infos = container->getContainerInfos();
    ASSERT_EQ(infos.size(), 2000u);
    for (std::size_t i = 0; i < infos.size(); ++i)
        expectRecords(infos[i], 2 * i + 1, 0, 2 * i + 2, 0);
}

TEST(UpdateContainerInfos, MarksTheContainerOfALogonCertificateOfAJoinedKey) {
    const auto container = containerOf(
        CardBuilder()
            .privateKeys({key("A", id01, Use::decryptOnly), key("B", idS01, Use::signOnly)})
            .certificates({certificateWithId(id01), logonCertificate(idS01)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    EXPECT_TRUE(container->getContainerInfos()[0].logonCertificate);
    EXPECT_EQ(container->getContainerInfos()[0].signatureCertificateRecord, 4u);
    EXPECT_EQ(container->getCertificateInfo(4).trustedUsage, 267u);
}

TEST(UpdateContainerInfos, LetsThousandsOfKeysJoinOneContainer) {
    constexpr std::size_t count = 3000;
    std::vector<Blob> records = {key("A", id01, Use::decryptOnly)};
    records.resize(count + 1, key("B", idS01, Use::signOnly));
    const auto container = containerOf(CardBuilder().privateKeys(records));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    const auto& info = container->getContainerInfos()[0];
    expectRecords(info, 1, 0, count + 1, 0);
    EXPECT_EQ(info.label.size(), 1 + count * 4) << "every label is appended";
}

// ---- records that could not be decoded ----
//
// They keep their place in their list with an empty id, by which they are found as any other.

TEST(InitContainerInfos, PairsAKeyWithoutIdentifierWithACertificateThatCouldNotBeDecoded) {
    const auto container = containerOf(
        CardBuilder()
            .privateKeys({key("A", {}, Use::both)})
            .certificates({certificateWithId(id01), undecodable(), certificateWithId({})}));
    expectRecords(container->getContainerInfos().at(0), 1, 3, 0, 0);
    const auto& placeholder = container->getCertificateInfos()[1];
    EXPECT_EQ(placeholder.recordNumber, 3u);
    EXPECT_EQ(placeholder.trustedUsage, 3u);
    EXPECT_EQ(placeholder.auxValue2, 5);
    EXPECT_EQ(container->getFATRecords()[3].objectType, unrecognisedObjectType);
    EXPECT_EQ(container->getCertificateInfos()[2].trustedUsage, noTrustedUsage);
}

TEST(InitContainerInfos, PairsAKeyWithoutIdentifierWithAPublicKeyThatCouldNotBeDecoded) {
    for (const Use use : {Use::both, Use::signOnly}) {
        const auto container = containerOf(CardBuilder()
                                               .privateKeys({key("A", {}, use)})
                                               .publicKeys({undecodable(), publicKeyWithId({})}));
        EXPECT_EQ(container->getPrivateKeyInfo(1).auxValue1, 2);
        EXPECT_EQ(container->getPublicKeyInfos()[0].auxValue2, 4);
        EXPECT_EQ(container->getPublicKeyInfos()[1].auxValue2, noLink);
    }
}

TEST(UpdateContainerInfos, JoinsNoKeyToAKeyThatCouldNotBeDecoded) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {undecodable(), key("", {}, Use::decryptOnly), key("S", {'S'}, Use::signOnly)}));
    ASSERT_EQ(container->getContainerInfos().size(), 1u);
    expectRecords(container->getContainerInfos()[0], 2, 0, 3, 0);
}

}  // namespace
}  // namespace tovi::test
