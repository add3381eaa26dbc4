#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

/// A record with an identifier that is longer than its type allows.
const Blob tooLongId = times(256, 0x45);

template <class Info>
void expectPlaceholder(const PKCS15ObjectInfo<Info>& info) {
    EXPECT_TRUE(info.label.empty());
    EXPECT_TRUE(info.id.empty());
    EXPECT_EQ(info.fid, noFID);
    EXPECT_EQ(info.reference, noReference);
    EXPECT_TRUE(info.authId.empty());
    EXPECT_FALSE(info.isPrivate);
    EXPECT_TRUE(info.isModifiable);
    EXPECT_FALSE(info.sharesFile);
    EXPECT_TRUE(info.Params().empty());
}

// ---- private keys ----

TEST(InitPrivateKeyInfos, KeepsThePlaceOfAKeyOfAnUnknownKind) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {privateKey({.common = {.label = "first"}}),
         privateKey({.type = Key::kea, .common = {.label = "second", .flags = namedBits({0})}}),
         privateKey({.common = {.label = "third"}})}));
    const auto& infos = container->getPrivateKeyInfos();
    ASSERT_EQ(infos.size(), 3u);
    EXPECT_EQ(infos[0].label, text("first"));
    expectPlaceholder(infos[1]);
    EXPECT_EQ(infos[1].keyType, noKeyType);
    EXPECT_EQ(infos[2].label, text("third"));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(infos[i].recordNumber, i + 1);
        EXPECT_EQ(container->getRawPrivateKeys()[i].isDecoded, i != 1);
    }
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{1, 0, 1, 1}));
    EXPECT_EQ(container->getFATRecords()[2], (FATInfo{64, 0, 2, 2}));
    EXPECT_EQ(container->getFATRecords()[3], (FATInfo{1, 0, 3, 3}));
    EXPECT_NE(container->getRawPrivateKeys()[1].value, nullptr);
}

TEST(InitPrivateKeyInfos, KeepsThePlaceOfARecordThatDoesNotDecode) {
    const auto container = containerOf(CardBuilder().privateKeys({undecodable(), privateKey()}));
    expectPlaceholder(container->getPrivateKeyInfos().at(0));
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{64, 0, 1, 1}));
    EXPECT_FALSE(container->getRawPrivateKeys()[0].isDecoded);
    EXPECT_EQ(container->getFATRecords()[2].objectType, privateKeyObject);
}

TEST(InitPrivateKeyInfos, KeepsThePlaceOfAnInvalidRecord) {
    const auto container = containerOf(CardBuilder().privateKeys({privateKey({.id = tooLongId})}));
    EXPECT_NE(container->getRawPrivateKeys().at(0).value, nullptr);
    EXPECT_FALSE(container->getRawPrivateKeys()[0].isValid);
    expectPlaceholder(container->getPrivateKeyInfos().at(0));
    EXPECT_EQ(container->getFATRecords()[1].objectType, unrecognisedObjectType);
    EXPECT_FALSE(container->getRawPrivateKeys()[0].isDecoded);
}

TEST(InitPrivateKeyInfos, KeepsThePlaceOfAKeyOfALaterVersion) {
    const auto container =
        containerOf(CardBuilder().privateKeys({retagged(0xA9, privateKey({.type = Key::ec}))}));
    expectPlaceholder(container->getPrivateKeyInfos().at(0));
    EXPECT_EQ(container->getFATRecords()[1].objectType, unrecognisedObjectType);
}

TEST(InitPrivateKeyInfos, TakesARowWithThePrivateFlagOfTheKey) {
    const auto container =
        containerOf(CardBuilder().privateKeys({privateKey({.common = {.flags = namedBits({0})}})}));
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{1, 1, 1, 1}));
}

TEST(InitPrivateKeyInfos, DecodesEveryKindOfKey) {
    struct Case {
        Key type;
        const char* label;
        std::uint64_t keyType;
        std::uint16_t modulusLength;
    };
    const Case cases[] = {{Key::rsa, "privateRSAKey", CKK_RSA, 1024},
                          {Key::ec, "privateECKey", CKK_EC, noModulusLength},
                          {Key::dh, "privateDHKey", CKK_DH, noModulusLength},
                          {Key::dsa, "privateDSAKey", CKK_DSA, noModulusLength}};
    for (const Case& each : cases) {
        const auto container =
            containerOf(CardBuilder().privateKeys({privateKey({.type = each.type})}));
        const auto& info = container->getPrivateKeyInfo(1);
        EXPECT_EQ(info.label, text(each.label));
        EXPECT_EQ(info.keyType, each.keyType);
        EXPECT_EQ(info.modulusLength, each.modulusLength);
        EXPECT_EQ(info.fid, 0x4B01u);
        EXPECT_TRUE(container->getRawPrivateKeys()[0].isDecoded);
    }
}

TEST(InitPrivateKeyInfos, MarksKeysOfOneFile) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {privateKey({.value = path("4B01")}), privateKey({.value = path("4B02")}),
         privateKey({.value = path("50154B01")})}));
    const auto& infos = container->getPrivateKeyInfos();
    EXPECT_TRUE(infos[0].sharesFile);
    EXPECT_FALSE(infos[1].sharesFile);
    EXPECT_TRUE(infos[2].sharesFile);
}

TEST(InitPrivateKeyInfos, MarksFilesSharedWithinOneListOnly) {
    const auto container = containerOf(CardBuilder()
                                           .privateKeys({privateKey()})
                                           .publicKeys({publicKey()})
                                           .trustedPublicKeys({publicKey()}));
    EXPECT_FALSE(container->getPrivateKeyInfos()[0].sharesFile);
    EXPECT_FALSE(container->getPublicKeyInfos()[0].sharesFile);
    EXPECT_FALSE(container->getTrustedPublicKeyInfos()[0].sharesFile);
}

// ---- public keys and trusted public keys ----

TEST(InitPublicKeyInfos, DecodesAllPublicKeysBeforeTheTrustedOnes) {
    const auto container = containerOf(
        CardBuilder().trustedPublicKeys({publicKey(), publicKey()}).publicKeys({publicKey()}));
    EXPECT_EQ(container->getPublicKeyInfos().at(0).recordNumber, 1u);
    EXPECT_EQ(container->getTrustedPublicKeyInfos().at(0).recordNumber, 2u);
    EXPECT_EQ(container->getTrustedPublicKeyInfos().at(1).recordNumber, 3u);
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{2, 0, 1, 1}));
    EXPECT_EQ(container->getFATRecords()[2], (FATInfo{18, 0, 2, 2}));
}

TEST(InitPublicKeyInfos, DecodesEveryKindOfKeyInBothLists) {
    struct Case {
        Key type;
        const char* label;
        std::uint64_t keyType;
        std::uint16_t modulusLength;
    };
    const Case cases[] = {{Key::rsa, "publicRSAKey", CKK_RSA, 1024},
                          {Key::ec, "publicECKey", CKK_EC, noModulusLength},
                          {Key::dh, "publicDHKey", CKK_DH, noModulusLength},
                          {Key::dsa, "publicDSAKey", CKK_DSA, noModulusLength}};
    for (const Case& each : cases) {
        const Blob record = publicKey({.type = each.type});
        const auto container =
            containerOf(CardBuilder().publicKeys({record}).trustedPublicKeys({record}));
        const PKCS15ObjectInfo<PublicKeyInfo>& plain = container->getPublicKeyInfo(1);
        const PKCS15ObjectInfo<TrustedPublicKeyInfo>& trusted =
            container->getTrustedPublicKeyInfo(2);
        EXPECT_EQ(plain.label, text(each.label));
        EXPECT_EQ(trusted.label, text(each.label));
        EXPECT_EQ(plain.keyType, each.keyType);
        EXPECT_EQ(trusted.keyType, each.keyType);
        EXPECT_EQ(plain.modulusLength, each.modulusLength);
        EXPECT_EQ(trusted.modulusLength, each.modulusLength);
        EXPECT_TRUE(container->getRawPublicKeys()[0].isDecoded);
        EXPECT_TRUE(container->getRawTrustedPublicKeys()[0].isDecoded);
    }
}

TEST(InitPublicKeyInfos, KeepsThePlacesOfBadRecordsInBothLists) {
    const std::vector<Blob> records = {publicKey({.type = Key::kea}), undecodable(),
                                       publicKey({.id = tooLongId}), publicKey()};
    const auto container =
        containerOf(CardBuilder().publicKeys(records).trustedPublicKeys(records));
    ASSERT_EQ(container->getPublicKeyInfos().size(), 4u);
    ASSERT_EQ(container->getTrustedPublicKeyInfos().size(), 4u);
    for (std::size_t i = 0; i < 3; ++i) {
        expectPlaceholder(container->getPublicKeyInfos()[i]);
        expectPlaceholder(container->getTrustedPublicKeyInfos()[i]);
        EXPECT_EQ(container->getFATRecords()[1 + i].objectType, unrecognisedObjectType);
        EXPECT_EQ(container->getFATRecords()[5 + i].objectType, unrecognisedObjectType);
        EXPECT_FALSE(container->getRawPublicKeys()[i].isDecoded);
        EXPECT_FALSE(container->getRawTrustedPublicKeys()[i].isDecoded);
    }
    EXPECT_EQ(container->getPublicKeyInfo(4).keyType, CKK_RSA);
    EXPECT_EQ(container->getTrustedPublicKeyInfo(8).keyType, CKK_RSA);
}

TEST(InitPublicKeyInfos, MarksKeysOfOneFileInEachList) {
    const std::vector<Blob> records = {publicKey(), publicKey()};
    const auto container =
        containerOf(CardBuilder().publicKeys(records).trustedPublicKeys(records));
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_TRUE(container->getPublicKeyInfos()[i].sharesFile);
        EXPECT_TRUE(container->getTrustedPublicKeyInfos()[i].sharesFile);
    }
}

TEST(InitPublicKeyInfos, LeavesNoPathForAKeyHeldInTheRecord) {
    const Blob raw = context(0, octetString(hex("040304AABB")));
    const auto container =
        containerOf(CardBuilder().publicKeys({publicKey({.type = Key::ec, .value = raw})}));
    const auto& info = container->getPublicKeyInfo(1);
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
}

// ---- secret keys ----

TEST(InitBlockCipherKeyInfos, DecodesTheFourKindsThatItKnows) {
    const auto container = containerOf(CardBuilder().secretKeys(
        {secretKey(), secretKey({.type = SecretKey::des}), secretKey({.type = SecretKey::des2}),
         secretKey({.type = SecretKey::des3})}));
    const auto& infos = container->getBlockCipherKeyInfos();
    ASSERT_EQ(infos.size(), 4u);
    EXPECT_EQ(infos[0].label, text("genericSecretKey"));
    EXPECT_EQ(infos[1].label, text("desKey"));
    EXPECT_EQ(infos[2].label, text("des2Key"));
    EXPECT_EQ(infos[3].label, text("des3Key"));
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(container->getFATRecords()[i + 1].objectType, secretKeyObject);
        EXPECT_TRUE(container->getRawSecretKeys()[i].isDecoded);
        EXPECT_TRUE(infos[i].sharesFile);
    }
}

TEST(InitBlockCipherKeyInfos, KeepsThePlaceOfEveryOtherKind) {
    std::vector<Blob> records;
    for (const std::uint8_t tag :
         Blob{0xA0, 0xA1, 0xA5, 0xA6, 0xA7, 0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAF})
        records.push_back(retagged(tag, secretKey()));
    records.push_back(context(14, objectIdentifier({1, 2, 3}), secretKey()));  // otherKey
    const auto container = containerOf(CardBuilder().secretKeys(records));
    ASSERT_EQ(container->getBlockCipherKeyInfos().size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        expectPlaceholder(container->getBlockCipherKeyInfos()[i]);
        EXPECT_EQ(container->getFATRecords()[i + 1].objectType, unrecognisedObjectType) << i;
        EXPECT_FALSE(container->getRawSecretKeys()[i].isDecoded);
    }
}

TEST(InitBlockCipherKeyInfos, KeepsThePlacesOfBadRecords) {
    const auto container = containerOf(
        CardBuilder().secretKeys({undecodable(), secretKey({.id = tooLongId}), secretKey()}));
    ASSERT_EQ(container->getBlockCipherKeyInfos().size(), 3u);
    expectPlaceholder(container->getBlockCipherKeyInfos()[0]);
    expectPlaceholder(container->getBlockCipherKeyInfos()[1]);
    EXPECT_EQ(container->getFATRecords()[1].objectType, unrecognisedObjectType);
    EXPECT_EQ(container->getFATRecords()[2].objectType, unrecognisedObjectType);
    EXPECT_EQ(container->getBlockCipherKeyInfo(3).id, Blob{0x51});
}

}  // namespace
}  // namespace tovi::test
