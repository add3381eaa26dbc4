#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

const std::string selectCall = "selectApplication A000000063504B43532D3135 0C";

std::vector<std::string> selections(const std::vector<std::string>& calls) {
    std::vector<std::string> selections;
    for (const std::string& call : calls)
        if (call.starts_with("select")) selections.push_back(call);
    return selections;
}

/// The calls by which a read of the card selects what it reads.
std::vector<std::string> selectionsOfReading(const CardBuilder& builder) {
    TestCard card(builder);
    ScriptedCardOS os(*card.os());
    makeContainer()->readFromCard(&os);
    return selections(os.calls());
}

std::vector<unsigned> rowTypes(const PKCS15Container& container) {
    std::vector<unsigned> types;
    for (const FATInfo& row : container.getFATRecords()) types.push_back(row.objectType);
    return types;
}

TEST(ReadFromCard, SelectsTheApplicationAndReadsTheFilesInTheOrderOfTheODF) {
    const auto calls = selectionsOfReading(
        CardBuilder().dataObjects({dataRecord()}).privateKeys({privateKey()}).authObjects({pin()}));
    EXPECT_EQ(calls,
              (std::vector<std::string>{selectCall, "selectFile 3F0050155032",
                                        "selectFile 3F0050155031", "selectFile 3F0050154408",
                                        "selectFile 3F0050154401", "selectFile 3F0050154409"}));
}

TEST(ReadFromCard, TakesARelativePathOfTheODFFromTheApplicationOn) {
    const auto calls = selectionsOfReading(
        CardBuilder().odfRecord(odfEntry(7, path("4B00"))).file(hex("4B00"), dataRecord()));
    EXPECT_EQ(calls.back(), "selectFile 3F0050154B00");
}

TEST(ReadFromCard, GivesRecordNumbersInTheOrderOfReading) {
    const auto container = containerOf(fullCard());
    EXPECT_EQ(rowTypes(*container),
              (std::vector<unsigned>{6,       // TokenInfo
                                     1, 1,    // private keys
                                     2, 2,    // public keys
                                     18,      // trusted public key
                                     3, 3,    // certificates
                                     35, 19,  // useful certificates come before trusted ones
                                     7,       // secret key
                                     4,       // data object
                                     5}));    // key container; authentication objects have no row
    EXPECT_EQ(container->getPrivateKeyInfos()[1].recordNumber, 2u);
    EXPECT_EQ(container->getPublicKeyInfos()[1].recordNumber, 4u);
    EXPECT_EQ(container->getTrustedPublicKeyInfos()[0].recordNumber, 5u);
    EXPECT_EQ(container->getCertificateInfos()[1].recordNumber, 7u);
    EXPECT_EQ(container->getUsefulCertificateInfos()[0].recordNumber, 8u);
    EXPECT_EQ(container->getTrustedCertificateInfos()[0].recordNumber, 9u);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[0].recordNumber, 10u);
    EXPECT_EQ(container->getDataInfos()[0].recordNumber, 11u);
    EXPECT_EQ(container->getContainerInfos()[0].recordNumber, 12u);
}

TEST(ReadFromCard, GivesTheSameRecordNumbersWhateverTheOrderOfTheODF) {
    const auto container = containerOf(CardBuilder()
                                           .dataObjects({dataRecord()})
                                           .certificates({certificate()})
                                           .privateKeys({privateKey()}));
    EXPECT_EQ(container->getPrivateKeyInfos()[0].recordNumber, 1u);
    EXPECT_EQ(container->getCertificateInfos()[0].recordNumber, 2u);
    EXPECT_EQ(container->getDataInfos()[0].recordNumber, 3u);
}

TEST(ReadFromCard, KeepsOneInfoAndOneRawRecordForEachRecordOfAFile) {
    const auto container = containerOf(fullCard());
    EXPECT_EQ(container->getRawTokenInfos().size(), 1u);
    EXPECT_EQ(container->getRawODF().size(), 9u);
    EXPECT_EQ(container->getRawPrivateKeys().size(), container->getPrivateKeyInfos().size());
    EXPECT_EQ(container->getRawPublicKeys().size(), container->getPublicKeyInfos().size());
    EXPECT_EQ(container->getRawTrustedPublicKeys().size(),
              container->getTrustedPublicKeyInfos().size());
    EXPECT_EQ(container->getRawSecretKeys().size(), container->getBlockCipherKeyInfos().size());
    EXPECT_EQ(container->getRawCertificates().size(), container->getCertificateInfos().size());
    EXPECT_EQ(container->getRawTrustedCertificates().size(),
              container->getTrustedCertificateInfos().size());
    EXPECT_EQ(container->getRawUsefulCertificates().size(),
              container->getUsefulCertificateInfos().size());
    EXPECT_EQ(container->getRawDataObjects().size(), container->getDataInfos().size());
    EXPECT_EQ(container->getRawAuthObjects().size(), container->getAuthInfos().size());
}

TEST(ReadFromCard, MarksTheContainerAsReadOnlyAtItsEnd) {
    TestCard card(fullCard());
    const auto container = makeContainer();
    bool wasReadInBetween = false;
    ScriptedCardOS os(*card.os(), [&](std::size_t, const std::string&) {
        wasReadInBetween = wasReadInBetween || container->hasBeenRead();
    });
    container->readFromCard(&os);
    EXPECT_FALSE(wasReadInBetween);
    EXPECT_TRUE(container->hasBeenRead());
}

TEST(ReadFromCard, MakesEmptyListsOfAnODFWithoutEntries) {
    const auto container = containerOf(CardBuilder());
    EXPECT_TRUE(container->hasBeenRead());
    EXPECT_TRUE(container->getRawODF().empty());
    EXPECT_TRUE(container->getRawPrivateKeys().empty());
    EXPECT_TRUE(container->getDataInfos().empty());
    EXPECT_EQ(container->getFATRecords().size(), 1u);
}

TEST(ReadFromCard, ReadsFilesWithoutRecords) {
    const auto container = containerOf(CardBuilder().privateKeys({}).certificates({}));
    EXPECT_TRUE(container->hasBeenRead());
    EXPECT_EQ(container->getRawODF().size(), 2u);
    EXPECT_TRUE(container->getPrivateKeyInfos().empty());
}

TEST(ReadFromCard, ReadsLinearFilesToo) {
    const std::vector<Blob> records = {dataRecord(), undecodable(), dataRecord()};
    VirtualCard card = CardBuilder().odfRecord(odfEntry(7, path("4B00"))).build();
    card.addLinear(absolutePath(hex("4B00")), FileDescription::Kind::linearVariable, 64, 10)
        .records = records;
    VirtualCardChannel channel(card);
    ISO7816CardOS os(channel);
    const auto container = makeContainer();
    container->readFromCard(&os);
    ASSERT_EQ(container->getDataInfos().size(), 3u);
    EXPECT_EQ(rowTypes(*container), (std::vector<unsigned>{6, 4, 64, 4}));
}

TEST(ReadODF, KeepsAnUndecodableEntryInItsPlaceAndReadsOn) {
    const Blob broken = context(0, sequence(integer(1)));
    const auto container =
        containerOf(CardBuilder().odfRecord(broken).dataObjects({dataRecord()}).odfRecord(broken));
    ASSERT_EQ(container->getRawODF().size(), 3u);
    EXPECT_EQ(container->getRawODF()[0].value, nullptr);
    EXPECT_NE(container->getRawODF()[1].value, nullptr);
    EXPECT_EQ(container->getRawODF()[2].value, nullptr);
    EXPECT_EQ(container->getDataInfos().size(), 1u);
}

TEST(ReadODF, SkipsEntriesOfAKindThatNoVersionKnows) {
    const auto calls = selectionsOfReading(
        CardBuilder().odfRecord(odfEntry(9, path("4B00"))).dataObjects({dataRecord()}));
    EXPECT_EQ(calls.back(), "selectFile 3F0050154408");
    EXPECT_EQ(calls.size(), 4u);
}

TEST(ReadODF, SkipsEntriesThatHoldTheirObjectsThemselves) {
    const auto container =
        containerOf(CardBuilder().odfRecord(context(7, context(0, dataRecord()))));
    ASSERT_EQ(container->getRawODF().size(), 1u);
    EXPECT_NE(container->getRawODF()[0].value, nullptr);
    EXPECT_TRUE(container->getDataInfos().empty());
}

TEST(ReadODF, FollowsAnEntryThatBreaksAConstraint) {
    const Blob entry = odfEntry(7, path("4B00", 70000, 0));  // index beyond 65535
    const auto container =
        containerOf(CardBuilder().odfRecord(entry).file(hex("4B00"), dataRecord()));
    EXPECT_FALSE(container->getRawODF().at(0).isValid);
    EXPECT_EQ(container->getDataInfos().size(), 1u);
}

TEST(ReadODF, KnowsNoLimitToTheNumberOfEntries) {
    CardBuilder builder;
    for (int i = 0; i < 300; ++i) builder.odfRecord(odfEntry(12, path("4B00")));
    const auto container = containerOf(builder.dataObjects({dataRecord()}));
    EXPECT_EQ(container->getRawODF().size(), 301u);
    EXPECT_EQ(container->getDataInfos().size(), 1u);
}

TEST(ReadDirectoryFiles, PutsRecordsOfTwoFilesOfAKindOneBehindTheOther) {
    const auto container =
        containerOf(CardBuilder()
                        .dataObjects({dataRecord({.common = {.label = "first"}})})
                        .privateKeys({privateKey()})
                        .odfRecord(odfEntry(7, path("4B00")))
                        .file(hex("4B00"), join({dataRecord({.common = {.label = "second"}}),
                                                 dataRecord({.common = {.label = "third"}})})));
    ASSERT_EQ(container->getDataInfos().size(), 3u);
    EXPECT_EQ(container->getRawDataObjects().size(), 3u);
    EXPECT_EQ(container->getDataInfos()[0].label, text("first"));
    EXPECT_EQ(container->getDataInfos()[1].label, text("second"));
    EXPECT_EQ(container->getDataInfos()[2].label, text("third"));
}

TEST(ReadDirectoryFiles, ReadsAFileTwiceThatTheODFNamesTwice) {
    const auto container =
        containerOf(CardBuilder().dataObjects({dataRecord()}).odfRecord(odfEntry(7, path("4408"))));
    EXPECT_EQ(container->getDataInfos().size(), 2u);
}

TEST(ReadDirectoryFiles, LeavesANullElementForARecordThatDoesNotDecodeAndReadsOn) {
    const auto container =
        containerOf(CardBuilder().dataObjects({dataRecord(), undecodable(), dataRecord()}));
    const auto& raws = container->getRawDataObjects();
    ASSERT_EQ(raws.size(), 3u);
    EXPECT_NE(raws[0].value, nullptr);
    EXPECT_EQ(raws[1].value, nullptr);
    EXPECT_FALSE(raws[1].isValid);
    EXPECT_NE(raws[2].value, nullptr);
    EXPECT_EQ(rowTypes(*container), (std::vector<unsigned>{6, 4, 64, 4}));
}

TEST(ReadDirectoryFiles, TakesRecordsOfAnyTag) {
    const auto container = containerOf(
        CardBuilder().privateKeys({privateKey({.type = Key::ec}), element(0x61, privateKey())}));
    EXPECT_EQ(container->getRawPrivateKeys().size(), 2u);
}

/// What each kind of directory file is read into.
struct Reception {
    Directory kind;
    Blob record;
    std::size_t (*rawCount)(const PKCS15Container&);
};

template <auto List>
std::size_t countOf(const PKCS15Container& container) {
    return (container.*List)().size();
}

TEST(ReadDirectoryFiles, ReadsEachKindIntoItsOwnListAndNoOther) {
    using C = PKCS15Container;
    const Reception receptions[] = {
        {Directory::privateKeys, privateKey(), countOf<&C::getRawPrivateKeys>},
        {Directory::publicKeys, publicKey(), countOf<&C::getRawPublicKeys>},
        {Directory::trustedPublicKeys, publicKey(), countOf<&C::getRawTrustedPublicKeys>},
        {Directory::secretKeys, secretKey(), countOf<&C::getRawSecretKeys>},
        {Directory::certificates, certificate(), countOf<&C::getRawCertificates>},
        {Directory::trustedCertificates, certificate(), countOf<&C::getRawTrustedCertificates>},
        {Directory::usefulCertificates, certificate(), countOf<&C::getRawUsefulCertificates>},
        {Directory::dataObjects, dataRecord(), countOf<&C::getRawDataObjects>},
        {Directory::authObjects, pin(), countOf<&C::getRawAuthObjects>},
    };
    for (const Reception& read : receptions) {
        const auto container = containerOf(CardBuilder().directory(read.kind, {read.record}));
        for (const Reception& other : receptions)
            EXPECT_EQ(other.rawCount(*container), other.kind == read.kind ? 1u : 0u)
                << "kind " << unsigned(read.kind) << ", list " << unsigned(other.kind);
    }
}

TEST(ReadFromCard, CannotReadTwiceWithoutClearing) {
    TestCard card(fullCard());
    const auto container = makeContainer();
    container->readFromCard(card.os());
    EXPECT_EQ(failureOf([&] { container->readFromCard(card.os()); }),
              smartcardFailure("More than one TokenInfo", "PKCS15Container::readFromCard"));
    EXPECT_EQ(container->getPrivateKeyInfos().size(), 2u);
}

TEST(ReadFromCard, ReadsAnotherCardAfterClearing) {
    const auto container = containerOf(fullCard());
    container->clear();
    TestCard other(CardBuilder().dataObjects({dataRecord(), dataRecord()}));
    container->readFromCard(other.os());
    EXPECT_TRUE(container->hasBeenRead());
    EXPECT_TRUE(container->getPrivateKeyInfos().empty());
    EXPECT_EQ(rowTypes(*container), (std::vector<unsigned>{6, 4, 4}));
}

TEST(ReadFromCard, KeepsItsResultsOnACardOfTenThousandObjects) {
    const Blob sameKey = privateKey({.id = {}, .usage = namedBits({sign}), .value = path("4B01")});
    const Blob sameCertificate = certificate({.id = {}, .value = path("4D01")});
    CardBuilder builder;
    builder.privateKeys(std::vector<Blob>(2500, sameKey))
        .publicKeys(std::vector<Blob>(2500, publicKey({.id = {}})))
        .certificates(std::vector<Blob>(2500, sameCertificate))
        .secretKeys(std::vector<Blob>(1250, secretKey({.id = {}, .keyReference = 3})))
        .authObjects(std::vector<Blob>(1250, authKey({.authKeyId = {}})));
    const auto container = containerOf(builder);
    ASSERT_EQ(container->getPrivateKeyInfos().size(), 2500u);
    ASSERT_EQ(container->getContainerInfos().size(), 2500u);
    for (const auto& key : container->getPrivateKeyInfos()) {
        EXPECT_TRUE(key.sharesFile);
        EXPECT_EQ(key.auxValue1, 2501);  // the first public key
    }
    EXPECT_EQ(container->getContainerInfos().back().signatureCertificateRecord, 5001u);
    EXPECT_EQ(container->getAuthInfos().back().reference, 3);
    EXPECT_EQ(container->getCertificateInfos()[0].auxValue2,
              static_cast<std::int64_t>(container->getContainerInfos().back().recordNumber));
}

TEST(ReadFromCard, ReadsAnODFWhoseEntriesStandInsideOneOuterSequence) {
    const Blob entries = join({odfEntry(0, path("4401")), odfEntry(7, path("4408"))});
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({privateKey()})
                                           .dataObjects({dataRecord(), dataRecord()})
                                           .odf(sequence(entries)));
    EXPECT_EQ(container->getRawODF().size(), 2u);
    EXPECT_EQ(rowTypes(*container), (std::vector<unsigned>{6, 1, 4, 4, 5}));
}

TEST(ReadFromCard, ReservesRoomForTheRecordsOfEachList) {
    constexpr std::size_t count = 5;  // growth by doubling would end at 8
    const auto container =
        containerOf(CardBuilder()
                        .privateKeys(std::vector<Blob>(count, privateKey()))
                        .publicKeys(std::vector<Blob>(count, publicKey()))
                        .trustedPublicKeys(std::vector<Blob>(count, publicKey()))
                        .secretKeys(std::vector<Blob>(count, secretKey()))
                        .certificates(std::vector<Blob>(count, certificate()))
                        .trustedCertificates(std::vector<Blob>(count, certificate()))
                        .usefulCertificates(std::vector<Blob>(count, certificate()))
                        .dataObjects(std::vector<Blob>(count, dataRecord()))
                        .authObjects(std::vector<Blob>(count, pin())));
    EXPECT_EQ(container->getPrivateKeyInfos().capacity(), count);
    EXPECT_EQ(container->getPublicKeyInfos().capacity(), count);
    EXPECT_EQ(container->getTrustedPublicKeyInfos().capacity(), count);
    EXPECT_EQ(container->getBlockCipherKeyInfos().capacity(), count);
    EXPECT_EQ(container->getCertificateInfos().capacity(), count);
    EXPECT_EQ(container->getTrustedCertificateInfos().capacity(), count);
    EXPECT_EQ(container->getUsefulCertificateInfos().capacity(), count);
    EXPECT_EQ(container->getDataInfos().capacity(), count);
    EXPECT_EQ(container->getContainerInfos().capacity(), count) << "one for each private key";
    EXPECT_EQ(container->getAuthInfos().capacity(), count);
}

}  // namespace
}  // namespace tovi::test
