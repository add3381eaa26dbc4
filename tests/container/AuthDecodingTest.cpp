#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"

namespace tovi::test {
namespace {

const Blob keyId = {0x51};

TEST(InitAuthObjs, KeepsAnEntryForEveryRecordAndTakesNoRow) {
    const auto container = containerOf(
        CardBuilder().authObjects({pin({.common = {.label = "first"}}), unknownAuthObject(),
                                   pin({.common = {.label = "third"}, .reference = 2})}));
    const auto& infos = container->getAuthInfos();
    ASSERT_EQ(infos.size(), 3u);
    EXPECT_EQ(infos[0].label, text("first"));
    EXPECT_TRUE(infos[1].label.empty());
    EXPECT_EQ(infos[1].type, AuthType::none);
    EXPECT_EQ(infos[2].label, text("third"));
    EXPECT_TRUE(container->getRawAuthObjects()[0].isDecoded);
    EXPECT_FALSE(container->getRawAuthObjects()[1].isDecoded);
    EXPECT_TRUE(container->getRawAuthObjects()[2].isDecoded);
    EXPECT_EQ(container->getFATRecords().size(), 1u);
    for (const auto& info : infos) EXPECT_EQ(info.recordNumber, noRecord);
}

TEST(InitAuthObjs, KeepsAnEntryForARecordThatDoesNotDecode) {
    const auto container = containerOf(CardBuilder().authObjects({undecodable(), pin()}));
    ASSERT_EQ(container->getAuthInfos().size(), 2u);
    EXPECT_EQ(container->getRawAuthObjects()[0].value, nullptr);
    EXPECT_FALSE(container->getRawAuthObjects()[0].isDecoded);
    EXPECT_EQ(container->getAuthInfos()[0].reference, noReference);
    EXPECT_EQ(container->getAuthInfos()[1].reference, 1);
}

TEST(InitAuthObjs, DecodesARecordThatBreaksAConstraint) {
    const auto container = containerOf(CardBuilder().authObjects(
        {pin({.common = {.label = "x"}, .authId = times(256, 1), .reference = 5})}));
    EXPECT_FALSE(container->getRawAuthObjects()[0].isValid);
    EXPECT_TRUE(container->getRawAuthObjects()[0].isDecoded);
    EXPECT_EQ(container->getAuthInfo(5).label, text("x"));
}

TEST(InitAuthObjs, DecodesEveryKindByItsOwnDecoder) {
    const auto container = containerOf(CardBuilder().authObjects(
        {pin(), biometricTemplate(), authKey(), externalByCertificate()}));
    const auto& infos = container->getAuthInfos();
    ASSERT_EQ(infos.size(), 4u);
    EXPECT_EQ(infos[0].type, AuthType::pin);
    EXPECT_EQ(infos[1].type, AuthType::biometric);
    EXPECT_EQ(infos[2].type, AuthType::authKey);
    EXPECT_EQ(infos[2].authKeyId, keyId);
    EXPECT_EQ(infos[3].type, AuthType::external);
    EXPECT_EQ(infos[3].cha, hex("1122"));
    for (const auto& raw : container->getRawAuthObjects()) EXPECT_TRUE(raw.isDecoded);
}

TEST(InitAuthObjs, DoesNotMarkSharedFiles) {
    const Blob inFile =
        sequence(namedBits({4}), enumerated(1), integer(4), integer(8), path("4F01"));
    const auto container =
        containerOf(CardBuilder().authObjects({pin({.type = inFile}), pin({.type = inFile})}));
    for (const auto& info : container->getAuthInfos()) {
        EXPECT_EQ(info.fid, 0x4F01u);
        EXPECT_FALSE(info.sharesFile);
    }
}

/// A record that its coder understands but whose access control rules it cannot accept.
AuthRecord withUnacceptableRules() {
    return {.common = {.accessControlRules = unacceptableRules()}};
}

TEST(InitAuthObjs, MakesABiometricRecordInvalidThatTheCoderRejects) {
    const auto container =
        containerOf(CardBuilder().authObjects({biometricTemplate(withUnacceptableRules())}));
    EXPECT_FALSE(container->getRawAuthObjects()[0].isValid);
    EXPECT_FALSE(container->getRawAuthObjects()[0].isDecoded);
    EXPECT_EQ(container->getAuthInfos().size(), 1u);
}

TEST(InitAuthObjs, MakesABiometricRecordValidThatTheCoderAccepts) {
    // Too long an identifier breaks a constraint, but the coder takes the record as it is.
    const auto container =
        containerOf(CardBuilder().authObjects({biometricTemplate({.authId = times(256, 1)})}));
    EXPECT_TRUE(container->getRawAuthObjects()[0].isValid);
    EXPECT_TRUE(container->getRawAuthObjects()[0].isDecoded);
}

TEST(InitAuthObjs, ReportsRecordsOfOtherKindsThatTheCoderRejectsAndKeepsThem) {
    const auto container = containerOf(
        CardBuilder().authObjects({pin(withUnacceptableRules()), authKey(withUnacceptableRules()),
                                   externalByCertificate(withUnacceptableRules())}));
    EXPECT_EQ(container->getAuthInfos().size(), 3u);
    for (const auto& raw : container->getRawAuthObjects()) EXPECT_FALSE(raw.isDecoded);
}

TEST(InitAuthObjs, TakesExternalObjectsOnlyWhenACertificateProvesThem) {
    const auto container =
        containerOf(CardBuilder().authObjects({externalByKey(), externalByCertificate()}));
    EXPECT_FALSE(container->getRawAuthObjects()[0].isDecoded);
    EXPECT_EQ(container->getAuthInfos()[0].type, AuthType::none);
    EXPECT_TRUE(container->getRawAuthObjects()[1].isDecoded);
}

// ---- authentication keys ----

Blob secretKeyInFile(const Blob& id, std::string_view file, std::int64_t reference) {
    return secretKey({.id = id, .keyReference = reference, .value = path(file)});
}

TEST(InitAuthObjs, GivesTheFileOfASecretKeyToTheAuthenticationKeyMadeOfIt) {
    const auto container = containerOf(
        CardBuilder()
            .secretKeys({secretKeyInFile({0x50}, "4C00", 6), secretKeyInFile(keyId, "4C01", 7)})
            .authObjects({authKey()}));
    const auto& auth = container->getAuthInfos().at(0);
    EXPECT_EQ(auth.reference, 7);
    EXPECT_EQ(fid16(auth), 0x4C01);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[1].fid, 0xFFFFu);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[0].fid, 0x4C00u);
    EXPECT_EQ(&container->getAuthInfo(7), &auth);
}

TEST(InitAuthObjs, ReplacesTheLowSixteenBitsOfAFIDOnly) {
    const auto container = containerOf(
        CardBuilder().secretKeys({secretKeyInFile(keyId, "4C01", 7)}).authObjects({authKey()}));
    EXPECT_EQ(container->getAuthInfos()[0].fid, 0xFFFFFFFFFFFF4C01u);  // of all ones
}

TEST(InitAuthObjs, GivesTheFileOfAKeyAwayOnce) {
    const auto container = containerOf(CardBuilder()
                                           .secretKeys({secretKeyInFile(keyId, "4C01", 7)})
                                           .authObjects({authKey(), authKey()}));
    EXPECT_EQ(fid16(container->getAuthInfos()[0]), 0x4C01);
    EXPECT_EQ(container->getAuthInfos()[1].reference, 7);  // the key is still found
    EXPECT_EQ(fid16(container->getAuthInfos()[1]), 0xFFFF);
}

TEST(InitAuthObjs, TakesTheFirstOfSeveralKeysWithOneIdentifier) {
    const auto container = containerOf(
        CardBuilder()
            .secretKeys({secretKeyInFile(keyId, "4C01", 7), secretKeyInFile(keyId, "4C02", 8)})
            .authObjects({authKey()}));
    EXPECT_EQ(container->getAuthInfos()[0].reference, 7);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[1].fid, 0x4C02u);
}

TEST(InitAuthObjs, ChangesNothingWithoutAKeyOfThatIdentifier) {
    const auto container = containerOf(
        CardBuilder().secretKeys({secretKeyInFile({0x50}, "4C00", 6)}).authObjects({authKey()}));
    EXPECT_EQ(container->getAuthInfos()[0].reference, noReference);
    EXPECT_EQ(container->getAuthInfos()[0].fid, noFID);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[0].fid, 0x4C00u);
}

TEST(InitAuthObjs, LeavesTheKeyAloneWhenTheRecordIsRejected) {
    const auto container = containerOf(CardBuilder()
                                           .secretKeys({secretKeyInFile(keyId, "4C01", 7)})
                                           .authObjects({authKey(withUnacceptableRules())}));
    EXPECT_EQ(container->getAuthInfos()[0].reference, noReference);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[0].fid, 0x4C01u);
}

TEST(InitAuthObjs, TakesNoFileFromKeysForOtherKindsOfObjects) {
    const auto container = containerOf(CardBuilder()
                                           .secretKeys({secretKeyInFile(keyId, "4C01", 7)})
                                           .authObjects({pin(), externalByKey()}));
    EXPECT_EQ(container->getBlockCipherKeyInfos()[0].fid, 0x4C01u);
}

TEST(InitAuthObjs, MatchesEmptyIdentifiersToo) {
    const auto container = containerOf(CardBuilder()
                                           .secretKeys({secretKeyInFile({}, "4C01", 7)})
                                           .authObjects({authKey({.authKeyId = {}})}));
    EXPECT_EQ(container->getAuthInfos()[0].reference, 7);
}

TEST(InitAuthObjs, MatchesTheEmptyIdentifierOfAKeyThatCouldNotBeDecoded) {
    const auto container =
        containerOf(CardBuilder()
                        .secretKeys({undecodable(), secretKeyInFile({}, "4C01", 7)})
                        .authObjects({authKey({.authKeyId = {}})}));
    EXPECT_EQ(container->getAuthInfos()[0].reference, noReference);
    EXPECT_EQ(fid16(container->getAuthInfos()[0]), noFID16);
    EXPECT_EQ(container->getBlockCipherKeyInfos()[1].fid, 0x4C01u);
}

}  // namespace
}  // namespace tovi::test
