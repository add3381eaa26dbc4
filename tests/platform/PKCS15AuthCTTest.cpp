#include "tovi/interfaces/PKCS15AuthCT.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"
#include "tovi/asn1/Coding.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/records/AuthInfo.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {
namespace {

using test::operator+;
using Auth = PKCS15::AuthenticationType;
using Info = PKCS15AuthCT::Info;

/// A record that fits into short lengths.
Blob element(std::uint8_t tag, const Blob& contents) {
    return Blob{tag, static_cast<std::uint8_t>(contents.size())} + contents;
}

const Blob noCommon = {0x30, 0x00};
const Blob common = {0x30, 0x09, 0x0C, 0x03, 'P', 'I', 'N', 0x03, 0x02, 0x06, 0xC0};  // both flags
const Blob identifier7 = {0x30, 0x03, 0x04, 0x01, 0x07};
const Blob emptyRules = {0x30, 0x02, 0x30, 0x00};  // at least one rule is needed

Blob record(std::uint8_t tag, const Blob& commonAttributes, const Blob& classAttributes,
            const Blob& typeAttributes) {
    return element(tag, commonAttributes + classAttributes + element(0xA1, typeAttributes));
}

Auth decoded(const Blob& encoded) {
    Auth value;
    ASN1::Error error;
    EXPECT_TRUE(ASN1::decode(encoded, value, error)) << error.offset;
    return value;
}

struct Result {
    Info info;
    bool isUnderstood = false;
};

Result decodePin(const Blob& encoded) {
    Result result;
    result.isUnderstood =
        PKCS15AuthCT::decodePinInfo(result.info, *decoded(encoded).getIf<Auth::pin>());
    return result;
}

Result decodeBio(const Blob& encoded) {
    Result result;
    result.isUnderstood = PKCS15AuthCT::decodeBioInfo(
        result.info, *decoded(encoded).getIf<Auth::biometricTemplate>());
    return result;
}

Result decodeAuthKey(const Blob& encoded) {
    Result result;
    result.isUnderstood =
        PKCS15AuthCT::decodeAuthKeyInfo(result.info, *decoded(encoded).getIf<Auth::authKey>());
    return result;
}

Result decodeExternal(const Blob& encoded) {
    Result result;
    result.isUnderstood =
        PKCS15AuthCT::decodeExternalInfo(result.info, *decoded(encoded).getIf<Auth::external>());
    return result;
}

Blob text(const char* characters) {
    return {characters, characters + std::char_traits<char>::length(characters)};
}

const Blob pinMandatory = {0x03, 0x02, 0x02, 0x0C,              // initialized, needs-padding
                           0x0A, 0x01, 0x01, 0x02, 0x01, 0x04,  // ascii-numeric, at least 4
                           0x02, 0x01, 0x08};                   // 8 stored

const Blob pinOptional = Blob{0x02, 0x01, 0x0A,        // maxLength 10
                              0x80, 0x02, 0x00, 0x83,  // pinReference 131
                              0x04, 0x01, 0xFF} +      // padChar
                         element(0x18, text("20250101000000Z")) +
                         element(0x30, {0x04, 0x04, 0x3F, 0x00, 0x50, 0x16});

TEST(PKCS15AuthCT, FillsEveryFieldOfAPin) {
    const auto [info, isUnderstood] =
        decodePin(record(0x30, common, identifier7, element(0x30, pinMandatory + pinOptional)));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.type, AuthType::pin);
    EXPECT_EQ(info.label, text("PIN"));
    EXPECT_TRUE(info.isPrivate);
    EXPECT_TRUE(info.isModifiable);
    EXPECT_EQ(info.GetParam(CKA_PRIVATE), 1);
    EXPECT_EQ(info.authObjectId, Blob{0x07});
    EXPECT_EQ(info.pinFlags, 1u << 4 | 1u << 5);
    EXPECT_EQ(info.pinType, 1u);
    EXPECT_EQ(info.minLength, 4u);
    EXPECT_EQ(info.storedLength, 8u);
    EXPECT_EQ(info.maxLength, 10u);
    EXPECT_EQ(info.reference, 131u);
    EXPECT_TRUE(info.hasPadChar);
    EXPECT_EQ(info.padChar, 0xFF);
    EXPECT_EQ(info.lastChange, text("20250101000000Z"));
    EXPECT_EQ(info.path.path, (Blob{0x3F, 0x00, 0x50, 0x16}));
    EXPECT_EQ(info.fid, 0x5016u);
    EXPECT_EQ(info.recordNumber, noRecord);
}

TEST(PKCS15AuthCT, LeavesAbsentFieldsOfAPinWithoutValue) {
    const auto [info, isUnderstood] =
        decodePin(record(0x30, noCommon, identifier7, element(0x30, pinMandatory)));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.label, text("pin")) << "the name of the alternative";
    EXPECT_EQ(info.maxLength, noAuthValue);
    EXPECT_EQ(info.reference, 0u) << "DEFAULT 0";
    EXPECT_FALSE(info.hasPadChar);
    EXPECT_TRUE(info.lastChange.empty());
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
    EXPECT_EQ(info.bioFlags, noAuthValue);
}

TEST(PKCS15AuthCT, KeepsEveryPinFlag) {
    const Blob allFlags = {0x03, 0x03, 0x04, 0xFF, 0xF0};
    const Blob attributes = allFlags + Blob(pinMandatory.begin() + 4, pinMandatory.end());
    EXPECT_EQ(
        decodePin(record(0x30, noCommon, identifier7, element(0x30, attributes))).info.pinFlags,
        0xFFFu);
}

TEST(PKCS15AuthCT, TakesNumbersThatAreTooLargeForTheLargest) {
    const Blob huge = {0x02, 0x09, 0x01, 0, 0, 0, 0, 0, 0, 0, 0};
    const Blob negative = {0x02, 0x01, 0xFF};
    const auto maxLengthOf = [](const Blob& number) {
        const Blob attributes = element(0x30, pinMandatory + number);
        return decodePin(record(0x30, noCommon, identifier7, attributes)).info.maxLength;
    };
    EXPECT_EQ(maxLengthOf(huge), noAuthValue - 1);
    EXPECT_EQ(maxLengthOf({0x02, 0x05, 0x01, 0, 0, 0, 0}), noAuthValue - 1);
    EXPECT_EQ(maxLengthOf(negative), noAuthValue);
}

TEST(PKCS15AuthCT, ReadsAPinWithoutIdentifier) {
    const auto [info, isUnderstood] =
        decodePin(record(0x30, noCommon, noCommon, element(0x30, pinMandatory)));
    EXPECT_TRUE(isUnderstood);
    EXPECT_TRUE(info.authObjectId.empty());
}

TEST(PKCS15AuthCT, DecodesToTheEndWhenAccessRulesAreBroken) {
    const auto [info, isUnderstood] =
        decodePin(record(0x30, emptyRules, identifier7, element(0x30, pinMandatory + pinOptional)));
    EXPECT_FALSE(isUnderstood);
    EXPECT_EQ(info.reference, 131u);
    EXPECT_EQ(info.fid, 0x5016u);
    EXPECT_EQ(info.type, AuthType::pin);
}

const Blob bioMandatory = Blob{0x03, 0x02, 0x06, 0x40} +                         // local
                          element(0x06, {0x2A, 0x86, 0x48}) +                    // 1.2.840
                          Blob{0x30, 0x06, 0x0A, 0x01, 0x01, 0x0A, 0x01, 0x03};  // right ringFinger

TEST(PKCS15AuthCT, FillsEveryFieldOfABiometricTemplate) {
    const Blob attributes = bioMandatory + Blob{0x02, 0x01, 0x05} +
                            element(0x18, text("20240229120000Z")) +
                            element(0x30, {0x04, 0x02, 0x60, 0x01});
    const auto [info, isUnderstood] =
        decodeBio(record(0xA0, noCommon, identifier7, element(0x30, attributes)));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.type, AuthType::biometric);
    EXPECT_EQ(info.label, text("biometricTemplate"));
    EXPECT_EQ(info.authObjectId, Blob{0x07});
    EXPECT_EQ(info.bioFlags, 1u << 1);
    EXPECT_EQ(info.templateId, (Blob{0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0x03, 0x48}));
    EXPECT_EQ(info.bioType, 0u);
    EXPECT_EQ(info.side, 1u);
    EXPECT_EQ(info.finger, 3u);
    EXPECT_EQ(info.reference, 5u);
    EXPECT_EQ(info.lastChange, text("20240229120000Z"));
    EXPECT_EQ(info.fid, 0x6001u);
    EXPECT_EQ(info.pinFlags, noAuthValue);
}

TEST(PKCS15AuthCT, ReadsAnIrisAndTheDefaultsOfATemplate) {
    const Blob attributes =
        Blob{0x03, 0x01, 0x00} + element(0x06, {0x2A}) + Blob{0xA0, 0x03, 0x0A, 0x01, 0x00};
    const auto [info, isUnderstood] =
        decodeBio(record(0xA0, noCommon, identifier7, element(0x30, attributes)));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.bioFlags, 0u);
    EXPECT_EQ(info.bioType, 1u);
    EXPECT_EQ(info.side, 0u);
    EXPECT_EQ(info.finger, noAuthValue);
    EXPECT_EQ(info.reference, 0u);
    EXPECT_EQ(info.fid, noFID);
}

TEST(PKCS15AuthCT, HasNoBiometricTypeForOneOfALaterVersion) {
    const Blob attributes = Blob{0x03, 0x01, 0x00} + element(0x06, {0x2A}) + Blob{0xA9, 0x01, 0x55};
    const auto [info, isUnderstood] =
        decodeBio(record(0xA0, noCommon, identifier7, element(0x30, attributes)));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.bioType, noAuthValue);
    EXPECT_EQ(info.side, noAuthValue);
}

TEST(PKCS15AuthCT, DecodesATemplateToTheEndWhenAccessRulesAreBroken) {
    const auto [info, isUnderstood] = decodeBio(record(
        0xA0, emptyRules, identifier7, element(0x30, bioMandatory + Blob{0x02, 0x01, 0x05})));
    EXPECT_FALSE(isUnderstood);
    EXPECT_EQ(info.reference, 5u);
}

TEST(PKCS15AuthCT, DoesNotUnderstandATemplateInAnotherForm) {
    const Blob information = {0x7F, 0x60, 0x02, 0x81, 0x00};  // [APPLICATION 96]
    const auto [info, isUnderstood] = decodeBio(record(0xA0, common, identifier7, information));
    EXPECT_FALSE(isUnderstood);
    EXPECT_EQ(info.type, AuthType::biometric);
    EXPECT_EQ(info.label, text("PIN"));
    EXPECT_EQ(info.bioFlags, noAuthValue);
    EXPECT_EQ(info.reference, noReference);
}

TEST(PKCS15AuthCT, FillsEveryFieldOfAnAuthenticationKey) {
    const auto [info, isUnderstood] = decodeAuthKey(record(
        0xA1, noCommon, identifier7, element(0x30, {0x01, 0x01, 0x00, 0x04, 0x02, 0x4B, 0x31})));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.type, AuthType::authKey);
    EXPECT_EQ(info.label, text("authKey"));
    EXPECT_FALSE(info.derivedKey);
    EXPECT_EQ(info.authKeyId, (Blob{0x4B, 0x31}));
    EXPECT_EQ(info.authObjectId, Blob{0x07});
    EXPECT_EQ(info.reference, noReference);
    EXPECT_EQ(info.fid, noFID);
}

TEST(PKCS15AuthCT, TakesAKeyForDerivedWhereNothingIsSaid) {
    const auto [info, isUnderstood] =
        decodeAuthKey(record(0xA1, emptyRules, identifier7, element(0x30, {0x04, 0x01, 0x55})));
    EXPECT_FALSE(isUnderstood) << "its access rules are broken";
    EXPECT_TRUE(info.derivedKey);
    EXPECT_EQ(info.authKeyId, Blob{0x55});
}

TEST(PKCS15AuthCT, FillsEveryFieldOfExternalAuthenticationByCertificate) {
    const Blob attributes = element(0xA0, {0x04, 0x03, 0x01, 0x02, 0x03});
    const auto [info, isUnderstood] =
        decodeExternal(record(0xA2, noCommon, identifier7, attributes));
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.type, AuthType::external);
    EXPECT_EQ(info.label, text("external"));
    EXPECT_EQ(info.cha, (Blob{0x01, 0x02, 0x03}));
    EXPECT_EQ(info.authObjectId, Blob{0x07});
    EXPECT_FALSE(decodeExternal(record(0xA2, emptyRules, identifier7, attributes)).isUnderstood);
}

TEST(PKCS15AuthCT, TakesNoOtherExternalAuthentication) {
    const auto [info, isUnderstood] =
        decodeExternal(record(0xA2, noCommon, identifier7, element(0x30, {0x04, 0x01, 0x55})));
    EXPECT_FALSE(isUnderstood);
    EXPECT_TRUE(info.cha.empty());
    EXPECT_TRUE(info.authKeyId.empty());
}

TEST(PKCS15AuthCT, ReadsTheSecondPinOfARealCard) {
    const Blob encoded = {
        0x30, 0x2C, 0x30, 0x0C, 0x0C, 0x06, 'S',  'O',  ' ',  'P',  'I',  'N',
        0x03, 0x02, 0x06, 0xC0, 0x30, 0x03, 0x04, 0x01, 0x82, 0xA1, 0x17, 0x30,
        0x15, 0x03, 0x03, 0x04, 0x9D, 0x10, 0x0A, 0x01, 0x02, 0x02, 0x01, 0x06,
        0x02, 0x01, 0x10, 0x80, 0x02, 0x00, 0x82, 0x04, 0x01, 0x00,
    };
    const auto [info, isUnderstood] = decodePin(encoded);
    EXPECT_TRUE(isUnderstood);
    EXPECT_EQ(info.label, text("SO PIN"));
    EXPECT_EQ(info.reference, 0x82u);
    EXPECT_EQ(info.authObjectId, Blob{0x82});
    EXPECT_EQ(info.storedLength, 16u);
    EXPECT_TRUE(info.hasPadChar);
    EXPECT_EQ(info.padChar, 0x00);
}

}  // namespace
}  // namespace tovi
