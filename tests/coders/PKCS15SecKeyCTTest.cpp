#include "tovi/coders/PKCS15SecKeyCT.h"

#include <gtest/gtest.h>

#include "tests/support/Records.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

using Info = PKCS15ObjectInfo<BlockCipherKeyInfo>;

std::optional<bool> decode(const Blob& record, Info& info) {
    return PKCS15SecKeyCT::decodeSecretKey(decoded<PKCS15::SecretKeyType>(record), info);
}

/// The info of a record, which has to be understood.
Info infoOf(const SecretKeyRecord& key) {
    Info info;
    EXPECT_EQ(decode(secretKey(key), info), std::optional(true));
    return info;
}

TEST(DecodeSecretKey, TakesWhatTheAlternativesHaveInCommon) {
    for (const SecretKey type :
         {SecretKey::generic, SecretKey::des, SecretKey::des2, SecretKey::des3}) {
        const Info info = infoOf({.type = type,
                                  .common = {.label = "mine",
                                             .flags = namedBits({0}),
                                             .authId = Blob{0x02},
                                             .userConsent = 1},
                                  .id = {0x51, 0x52},
                                  .usage = namedBits({encrypt, verify}),
                                  .keyReference = 0x1234,
                                  .value = path("4C07", 5, 6)});
        EXPECT_EQ(info.label, text("mine"));
        EXPECT_TRUE(info.isPrivate);
        EXPECT_FALSE(info.isModifiable);
        EXPECT_EQ(info.authId, Blob{0x02});
        EXPECT_EQ(info.userConsent, 1);
        EXPECT_EQ(info.id, hex("5152"));
        EXPECT_EQ(info.GetParam(CKA_ENCRYPT), 1);
        EXPECT_EQ(info.GetParam(CKA_VERIFY), 1);
        EXPECT_EQ(info.GetParam(CKA_SIGN), 0);
        EXPECT_EQ(info.Params().size(), 12u);
        EXPECT_EQ(info.reference, 0x1234);
        EXPECT_EQ(info.path.path, hex("4C07"));
        EXPECT_EQ(info.path.index, 5);
        EXPECT_EQ(info.path.length, 6);
        EXPECT_EQ(info.fid, 0x4C07u);
    }
}

TEST(DecodeSecretKey, LabelsAKeyByItsKind) {
    EXPECT_EQ(infoOf({}).label, text("genericSecretKey"));
    EXPECT_EQ(infoOf({.type = SecretKey::des}).label, text("desKey"));
    EXPECT_EQ(infoOf({.type = SecretKey::des2}).label, text("des2Key"));
    EXPECT_EQ(infoOf({.type = SecretKey::des3}).label, text("des3Key"));
}

TEST(DecodeSecretKey, DoesNotReadNative) { EXPECT_FALSE(infoOf({.native = true}).native); }

TEST(DecodeSecretKey, TakesTheLowSixteenBitsOfAKeyReference) {
    EXPECT_EQ(infoOf({.keyReference = 0x10005}).reference, 5);
}

TEST(DecodeSecretKey, LeavesTheReferenceWhereTheRecordHasNone) {
    EXPECT_EQ(infoOf({}).reference, noReference);
}

TEST(DecodeSecretKey, LeavesNoPathForAKeyThatStandsInTheRecord) {
    const Info info = infoOf({.value = context(0, octetString(times(8, 1)))});
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
}

// ---- length and name ----

TEST(DecodeSecretKey, RoundsBitsUpToOctets) {
    struct Case {
        std::int64_t bits;
        std::uint64_t octets;
    };
    for (const Case& each : {Case{1, 1}, Case{8, 1}, Case{9, 2}, Case{56, 7}, Case{64, 8},
                             Case{65, 9}, Case{128, 16}, Case{256, 32}})
        EXPECT_EQ(infoOf({.keyLen = each.bits}).keyLength, each.octets) << each.bits;
}

TEST(DecodeSecretKey, NamesAGenericKeyByItsLength) {
    EXPECT_EQ(infoOf({.keyLen = 64}).algorithmName, text("DES"));
    EXPECT_EQ(infoOf({.keyLen = 57}).algorithmName, text("DES"));
    EXPECT_EQ(infoOf({.keyLen = 128}).algorithmName, text("TripleDES"));
    EXPECT_EQ(infoOf({.keyLen = 192}).algorithmName, text("TripleDES"));
}

TEST(DecodeSecretKey, LeavesAGenericKeyOfAnotherLengthWithoutName) {
    for (const std::int64_t bits : {56, 65, 112, 160, 200, 256})
        EXPECT_EQ(infoOf({.keyLen = bits}).algorithmName, Blob()) << bits;
}

TEST(DecodeSecretKey, LeavesAGenericKeyWithoutLengthAsItIs) {
    const Info info = infoOf({});
    EXPECT_EQ(info.keyLength, 0u);
    EXPECT_EQ(info.algorithmName, Blob());
}

TEST(DecodeSecretKey, TakesTheLengthFromTheKindWhereTheRecordHasNone) {
    EXPECT_EQ(infoOf({.type = SecretKey::des}).keyLength, 8u);
    EXPECT_EQ(infoOf({.type = SecretKey::des2}).keyLength, 16u);
    EXPECT_EQ(infoOf({.type = SecretKey::des3}).keyLength, 32u) << "not 24";
}

TEST(DecodeSecretKey, TakesTheLengthFromTheKindWhereTheRecordHasZero) {
    EXPECT_EQ(infoOf({.type = SecretKey::des3, .keyLen = 0}).keyLength, 32u);
    EXPECT_EQ(infoOf({.type = SecretKey::des3, .subClass = sequence()}).keyLength, 32u);
    EXPECT_EQ(infoOf({.keyLen = 0}).keyLength, 0u);
}

TEST(DecodeSecretKey, PrefersTheLengthOfTheRecordToThatOfTheKind) {
    EXPECT_EQ(infoOf({.type = SecretKey::des3, .keyLen = 168}).keyLength, 21u);
    EXPECT_EQ(infoOf({.type = SecretKey::des, .keyLen = 56}).keyLength, 7u);
}

TEST(DecodeSecretKey, NamesAKeyByItsKindWhateverItsLength) {
    for (const std::optional<std::int64_t> bits : {std::optional<std::int64_t>(), {8}, {512}}) {
        EXPECT_EQ(infoOf({.type = SecretKey::des, .keyLen = bits}).algorithmName, text("DES"));
        EXPECT_EQ(infoOf({.type = SecretKey::des2, .keyLen = bits}).algorithmName,
                  text("TripleDES"));
        EXPECT_EQ(infoOf({.type = SecretKey::des3, .keyLen = bits}).algorithmName,
                  text("TripleDES"));
    }
}

TEST(DecodeSecretKey, CountsLengthsInThirtyTwoBitsWithSign) {
    EXPECT_EQ(infoOf({.keyLen = 0x100000040}).keyLength, 8u);
    EXPECT_EQ(infoOf({.keyLen = -1}).keyLength, 0u);
    EXPECT_EQ(infoOf({.type = SecretKey::des, .keyLen = -7}).keyLength, 8u);
    EXPECT_EQ(infoOf({.keyLen = -100}).keyLength, ~std::uint64_t{0} - 10);  // -93 / 8
    EXPECT_EQ(infoOf({.keyLen = 0x7FFFFFF8}).keyLength, 0x0FFFFFFFu);
}

// ---- what cannot be decoded ----

TEST(DecodeSecretKey, LeavesTheInfoUntouchedForOtherAlternatives) {
    for (const std::uint8_t tag : Blob{0xA0, 0xA1, 0xA5, 0xAD, 0xAF}) {
        Info info;
        info.label = text("before");
        EXPECT_EQ(decode(retagged(tag, secretKey()), info), std::nullopt);
        EXPECT_EQ(info.label, text("before"));
        EXPECT_TRUE(info.Params().empty());
    }
}

TEST(DecodeSecretKey, ReportsAnUnacceptableAccessControlPartAndFillsTheInfoAllTheSame) {
    for (const SecretKey type :
         {SecretKey::generic, SecretKey::des, SecretKey::des2, SecretKey::des3}) {
        Info info;
        EXPECT_EQ(
            decode(secretKey({.type = type, .common = {.accessControlRules = unacceptableRules()}}),
                   info),
            std::optional(false));
        EXPECT_EQ(info.fid, 0x4C01u);
    }
}

// ---- the decoder of one alternative ----

Info decodedAs(const char* choiceName, const char* algorithmName, Info info,
               const SecretKeyRecord& key = {}) {
    const auto record = decoded<PKCS15::SecretKeyType>(secretKey(key));
    const auto* object = record.getIf<PKCS15::SecretKeyType::genericSecretKey>();
    EXPECT_TRUE(PKCS15SecKeyCT::decodeBlockCipherKeyInfo(choiceName, algorithmName, info, *object));
    return info;
}

TEST(DecodeBlockCipherKeyInfo, TakesLabelAndLengthFromTheNameOfTheAlternative) {
    const Info info = decodedAs("des2Key", "name", {});
    EXPECT_EQ(info.label, text("des2Key"));
    EXPECT_EQ(info.keyLength, 16u);
    EXPECT_EQ(info.algorithmName, text("name"));
}

TEST(DecodeBlockCipherKeyInfo, GivesNoNameToALengthThatTheAlternativeImplies) {
    EXPECT_EQ(decodedAs("des2Key", nullptr, {}).algorithmName, Blob());
    EXPECT_EQ(decodedAs("desKey", nullptr, {}).algorithmName, Blob());
}

TEST(DecodeBlockCipherKeyInfo, LeavesTheLengthForAnyOtherName) {
    Info info;
    info.keyLength = 5;
    EXPECT_EQ(decodedAs("genericSecretKey", nullptr, info).keyLength, 5u);
}

TEST(DecodeBlockCipherKeyInfo, TakesALengthOfZeroForAnyOtherName) {
    Info info;
    info.keyLength = 5;
    EXPECT_EQ(decodedAs("genericSecretKey", nullptr, info, {.keyLen = 0}).keyLength, 0u);
}

}  // namespace
}  // namespace tovi::test
