#include <gtest/gtest.h>

#include "tests/coders/CoderKinds.h"

namespace tovi::test {
namespace {

/// A purpose that begins like smart-card logon, and one that goes on behind it.
const Blob shorter = objectIdentifier({1, 3, 6, 1, 4, 1, 311, 20, 2});
const Blob longer = objectIdentifier({1, 3, 6, 1, 4, 1, 311, 20, 2, 2, 1});
const Blob digitalSignature = namedBits({0});

template <class Kind>
class EncodeCertificate : public testing::Test {
protected:
    /// What becomes of a record with this trusted usage when an info asks for `wanted`.
    static Blob usageUpdated(const Blob& stored, std::uint64_t wanted) {
        return updated<Kind>(
            certificate({.common = modifiable, .trustedUsage = stored, .value = path("4B01")}),
            infoWith<Kind>([&](auto& info) { info.trustedUsage = wanted; }));
    }
    static Blob expected(const Blob& usage) {
        return certificate({.common = modifiable, .trustedUsage = usage, .value = path("4B01")});
    }
};
TYPED_TEST_SUITE(EncodeCertificate, CertificateKinds);

// ---- new records ----

TYPED_TEST(EncodeCertificate, WritesTheSmallestRecord) {
    EXPECT_EQ(written<TypeParam>(TypeParam::info()), this->expected({}));
}

TYPED_TEST(EncodeCertificate, WritesEverythingThatAnInfoHolds) {
    const auto info = infoWith<TypeParam>([](auto& i) {
        i.label = text("mine");
        i.isPrivate = true;
        i.authId = {0x02};
        i.userConsent = 1;
        i.id = hex("4546");
        i.trustedUsage = 267;
        i.serialNumber = hex("1234");
        i.path = {hex("4D07"), 5, 6};
    });
    EXPECT_EQ(written<TypeParam>(info),
              certificate({.common = {.label = "mine",
                                      .flags = namedBits({0, 1}),
                                      .authId = Blob{0x02},
                                      .userConsent = 1},
                           .id = hex("4546"),
                           .trustedUsage = trustedUsage({smartcardLogon()}),
                           .value = path("4D07", 5, 6),
                           .serialNumber = integer(0x1234)}));
}

TYPED_TEST(EncodeCertificate, RefusesTypesOtherThanX509) {
    for (const std::uint64_t type :
         {std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{0x100000000}})
        expectRefused<TypeParam>(
            infoWith<TypeParam>([&](auto& i) { i.certificateType = type; }),
            smartcardFailure("invalid certificate type", TypeParam::operation));
}

TYPED_TEST(EncodeCertificate, LooksAtTheTypeBeforeAnythingElseIsWrong) {
    const auto info = infoWith<TypeParam>([](auto& i) {
        i.certificateType = 1;
        i.id = times(256, 1);
    });
    EXPECT_EQ(refusal<TypeParam>({}, info, noIndex),
              smartcardFailure("invalid certificate type", TypeParam::operation));
}

TYPED_TEST(EncodeCertificate, WritesNothingForAnInvalidInfoOfAnotherType) {
    auto info = infoWith<TypeParam>([](auto& i) { i.certificateType = 1; });
    EXPECT_FALSE(info.Import(hex("00")));
    EntryFile<PKCS15::CertificateType> file;
    EXPECT_EQ(encode<TypeParam>(file, info), noIndex);
}

TYPED_TEST(EncodeCertificate, RefusesAnIdThatIsTooLong) {
    const auto longest = infoWith<TypeParam>([](auto& i) { i.id = times(255, 1); });
    EXPECT_EQ(written<TypeParam>(longest),
              certificate({.common = modifiable, .id = times(255, 1), .value = path("4B01")}));
    expectRefused<TypeParam>(infoWith<TypeParam>([](auto& i) { i.id = times(256, 1); }));
}

TYPED_TEST(EncodeCertificate, HasASerialNumberExactlyWhenTheInfoHas) {
    const auto record = [](const Blob& serial) {
        return certificate({.common = modifiable, .value = path("4B01"), .serialNumber = serial});
    };
    auto info = TypeParam::info();
    EXPECT_EQ(updated<TypeParam>(record(integer(7)), info), record({}));
    info.serialNumber = hex("00FF");
    EXPECT_EQ(written<TypeParam>(info), record(integer(255)));
    EXPECT_EQ(updated<TypeParam>(record(integer(7)), info), record(integer(255)));
    EXPECT_EQ(updated<TypeParam>(record({}), info), record(integer(255)));
}

// ---- trusted usage ----

TYPED_TEST(EncodeCertificate, LeavesTheTrustedUsageWhenTheInfoSaysNothing) {
    const Blob usages[] = {{},
                           trustedUsage({}, digitalSignature),
                           trustedUsage({smartcardLogon()}),
                           trustedUsage({serverAuthentication()}, digitalSignature),
                           trustedUsage({smartcardLogon(), smartcardLogon()})};
    for (const Blob& usage : usages)
        EXPECT_EQ(this->usageUpdated(usage, 0xFFFF), this->expected(usage));
}

TYPED_TEST(EncodeCertificate, AddsLogonBehindTheOtherPurposes) {
    struct Case {
        Blob stored, result;
    };
    const Blob logon = smartcardLogon(), server = serverAuthentication();
    const Case cases[] = {
        {{}, trustedUsage({logon})},
        {trustedUsage({}, digitalSignature), trustedUsage({logon}, digitalSignature)},
        {trustedUsage({server}), trustedUsage({server, logon})},
        {trustedUsage({server, shorter, longer}), trustedUsage({server, shorter, longer, logon})},
    };
    for (const Case& each : cases)
        for (const std::uint64_t wanted : {0x100u, 267u, 0x1FFu, 0xFFFEu}) {
            EXPECT_EQ(this->usageUpdated(each.stored, wanted), this->expected(each.result));
            EXPECT_EQ(this->usageUpdated(each.result, wanted), this->expected(each.result))
                << "once is enough";
        }
}

TYPED_TEST(EncodeCertificate, AddsNoLogonToAListThatHasItAnywhere) {
    const Blob logon = smartcardLogon(), server = serverAuthentication();
    for (const Blob& usage : {trustedUsage({logon, server}), trustedUsage({server, logon, shorter}),
                              trustedUsage({logon, logon}, digitalSignature)})
        EXPECT_EQ(this->usageUpdated(usage, 0x100), this->expected(usage));
}

TYPED_TEST(EncodeCertificate, RemovesTheWholeUsageWithItsOnlyPurpose) {
    for (const std::uint64_t wanted : {0x0u, 0x1u, 0x3u, 0x2FFu, 0xFEFFu})
        EXPECT_EQ(this->usageUpdated(trustedUsage({smartcardLogon()}), wanted), this->expected({}));
}

TYPED_TEST(EncodeCertificate, KeepsTheKeyUsageOfARemovedPurpose) {
    EXPECT_EQ(this->usageUpdated(trustedUsage({smartcardLogon()}, digitalSignature), 0),
              this->expected(trustedUsage({}, digitalSignature)));
}

TYPED_TEST(EncodeCertificate, KeepsAUsageWithoutLogonWhenNoneIsWanted) {
    for (const Blob& usage :
         {Blob(), trustedUsage({}, digitalSignature), trustedUsage({serverAuthentication()}),
          trustedUsage({shorter, longer}, digitalSignature)})
        EXPECT_EQ(this->usageUpdated(usage, 0), this->expected(usage));
}

// The scan goes on behind what it removes, so that the purpose that slides into its place stays.
TYPED_TEST(EncodeCertificate, PassesOverThePurposeBehindOneThatItRemoves) {
    struct Case {
        Blob stored, result;
    };
    const Blob logon = smartcardLogon(), server = serverAuthentication();
    const Case cases[] = {
        {trustedUsage({logon, logon}), trustedUsage({logon})},
        {trustedUsage({logon, logon, logon}), trustedUsage({logon})},
        {trustedUsage({logon, logon, logon, logon}), trustedUsage({logon, logon})},
        {trustedUsage({logon, logon, logon, logon, logon}), trustedUsage({logon, logon})},
        {trustedUsage({logon, server, logon}), trustedUsage({server})},
        {trustedUsage({server, logon, logon}), trustedUsage({server, logon})},
        {trustedUsage({logon, logon, server}), trustedUsage({logon, server})},
        {trustedUsage({server, logon}), trustedUsage({server})},
        {trustedUsage({logon, logon}, digitalSignature), trustedUsage({logon}, digitalSignature)},
    };
    for (const Case& each : cases)
        EXPECT_EQ(this->usageUpdated(each.stored, 0), this->expected(each.result));
}

TYPED_TEST(EncodeCertificate, AsksForNoUsageInANewRecordUnlessLogonIsWanted) {
    for (const std::uint64_t wanted : {0x0u, 0x3u, 0xFFFFu})
        EXPECT_EQ(
            written<TypeParam>(infoWith<TypeParam>([&](auto& i) { i.trustedUsage = wanted; })),
            this->expected({}));
}

TEST(EncodeTrustedUsage, LooksAtBitEightAlone) {
    PKCS15::CommonCertificateAttributes attributes;
    CertificateInfo info;
    info.trustedUsage = 0x1'0000'0000;
    PKCS15CertCT::encodeTrustedUsage(attributes, info);
    EXPECT_FALSE(attributes.trustedUsage);
    info.trustedUsage = 0x1'0000'0100;
    PKCS15CertCT::encodeTrustedUsage(attributes, info);
    EXPECT_TRUE(attributes.trustedUsage);
}

TEST(EncodeTrustedUsage, RemovesAListThatWasEmptyAllAlong) {
    auto attributes = decoded<PKCS15::CommonCertificateAttributes>(
        sequence(octetString({0x45}), context(1, sequence())));
    PKCS15CertCT::encodeTrustedUsage(attributes, CertificateInfo());
    EXPECT_TRUE(attributes.trustedUsage);
    CertificateInfo info;
    info.trustedUsage = 0;
    PKCS15CertCT::encodeTrustedUsage(attributes, info);
    EXPECT_EQ(ASN1::encode(attributes), sequence(octetString({0x45})));
}

// ---- updates ----

TYPED_TEST(EncodeCertificate, KeepsWhatInfosDoNotHold) {
    const Blob later = hex("9E 01 2A");
    const Blob name =
        sequence(element(0x31, sequence(objectIdentifier({2, 5, 4, 3}), utf8String("Test"))));
    const Blob identifier = sequence(integer(2), octetString({0xAA}));
    const auto record = [&](const Common& common, const Blob& id, const Blob& value,
                            const Blob& serial) {
        const Blob attributes = sequence(octetString(id), boolean(true), identifier,
                                         context(0, bitString(times(20, 0x0F), 0)), later,
                                         trustedUsage({serverAuthentication()}),
                                         context(2, identifier), contextPrimitive(3, {0xFF}));
        return element(0x30,
                       join({common.encoded(), attributes, context(0, null()),
                             context(1, sequence(value, name, context(0, name), serial, later))}));
    };
    const Blob stored =
        record({.label = "before"}, {0x01}, context(0, sequence(integer(1))), integer(5));
    const auto info = infoWith<TypeParam>([](auto& i) {
        i.label = text("after");
        i.id = {0x99};
        i.serialNumber = {0x06};
    });
    EXPECT_EQ(
        updated<TypeParam>(stored, info),
        record({.label = "after", .flags = modifiable.flags}, {0x99}, path("4B01"), integer(6)));
}

TYPED_TEST(EncodeCertificate, CannotFillACertificateOfAnotherKind) {
    for (const Certificate type : {Certificate::attribute, Certificate::spki, Certificate::cv})
        EXPECT_EQ(refusal<TypeParam>({certificate({.type = type})}, TypeParam::info(), 0),
                  encodingError<TypeParam>());
}

TYPED_TEST(EncodeCertificate, WritesBackAnIdThatWasReadTooLong) {
    const Blob stored =
        certificate({.common = modifiable, .id = times(256, 1), .value = path("4B01")});
    EXPECT_EQ(
        updated<TypeParam>(stored, infoWith<TypeParam>([](auto& i) { i.id = times(256, 1); })),
        stored);
}

}  // namespace
}  // namespace tovi::test
