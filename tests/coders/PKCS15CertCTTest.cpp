#include "tovi/coders/PKCS15CertCT.h"

#include <gtest/gtest.h>

#include "tests/support/Records.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

struct Own {
    using Info = PKCS15ObjectInfo<CertificateInfo>;
    static constexpr auto decode = PKCS15CertCT::decodeCertificate;
};
struct Trusted {
    using Info = PKCS15ObjectInfo<TrustedCertificateInfo>;
    static constexpr auto decode = PKCS15CertCT::decodeTrustedCertificate;
};
struct Useful {
    using Info = PKCS15ObjectInfo<UsefulCertificateInfo>;
    static constexpr auto decode = PKCS15CertCT::decodeUsefulCertificate;
};

template <class Kind>
class DecodeCertificate : public testing::Test {
protected:
    using Info = typename Kind::Info;

    static std::optional<bool> decode(const Blob& record, Info& info) {
        return Kind::decode(decoded<PKCS15::CertificateType>(record), info);
    }
    /// The info of a record, which has to be understood.
    static Info infoOf(const CertificateRecord& record) {
        Info info;
        EXPECT_EQ(decode(certificate(record), info), std::optional(true));
        return info;
    }
};

using Kinds = testing::Types<Own, Trusted, Useful>;
TYPED_TEST_SUITE(DecodeCertificate, Kinds);

TYPED_TEST(DecodeCertificate, TakesEverythingThatAnInfoHasAPlaceFor) {
    const auto info = this->infoOf({.common = {.label = "mine",
                                               .flags = namedBits({0}),
                                               .authId = Blob{0x02},
                                               .userConsent = 1},
                                    .id = {0x45, 0x46},
                                    .trustedUsage = trustedUsage({smartcardLogon()}),
                                    .value = path("4D07", 5, 6),
                                    .serialNumber = integer(0x1234)});
    EXPECT_EQ(info.label, text("mine"));
    EXPECT_TRUE(info.isPrivate);
    EXPECT_FALSE(info.isModifiable);
    EXPECT_EQ(info.authId, Blob{0x02});
    EXPECT_EQ(info.userConsent, 1);
    EXPECT_EQ(info.GetParam(CKA_PRIVATE), 1);
    EXPECT_EQ(info.Params().size(), 2u);
    EXPECT_EQ(info.id, hex("4546"));
    EXPECT_EQ(info.certificateType, 0u);
    EXPECT_EQ(info.trustedUsage, 267u);
    EXPECT_EQ(info.serialNumber, hex("1234"));
    EXPECT_EQ(info.path.path, hex("4D07"));
    EXPECT_EQ(info.path.index, 5);
    EXPECT_EQ(info.path.length, 6);
    EXPECT_EQ(info.fid, 0x4D07u);
}

TYPED_TEST(DecodeCertificate, LeavesDefaultsWhereARecordSaysNothing) {
    const auto info = this->infoOf({});
    EXPECT_EQ(info.label, text("x509Certificate"));
    EXPECT_TRUE(info.serialNumber.empty());
    EXPECT_EQ(info.trustedUsage, 0xFFFFu);
    EXPECT_TRUE(info.isModifiable);
    EXPECT_EQ(info.reference, noReference);
}

TYPED_TEST(DecodeCertificate, TakesTheSerialNumberAsItsContentOctets) {
    EXPECT_EQ(this->infoOf({.serialNumber = hex("02 03 00 80 01")}).serialNumber, hex("008001"));
    EXPECT_EQ(this->infoOf({.serialNumber = hex("02 02 FF 7F")}).serialNumber, hex("FF7F"));
    EXPECT_EQ(this->infoOf({.serialNumber = hex("02 01 00")}).serialNumber, hex("00"));
    EXPECT_EQ(this->infoOf({.serialNumber = element(0x02, times(20, 0x11))}).serialNumber,
              times(20, 0x11));
}

TYPED_TEST(DecodeCertificate, SetsTheTypeWhateverItWas) {
    typename TestFixture::Info info;
    info.certificateType = 7;
    this->decode(certificate(), info);
    EXPECT_EQ(info.certificateType, 0u);
}

TYPED_TEST(DecodeCertificate, LeavesNoPathForACertificateThatStandsInTheRecord) {
    const auto info = this->infoOf({.value = context(0, sequence(integer(1)))});
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
}

TYPED_TEST(DecodeCertificate, LeavesTheInfoUntouchedForOtherAlternatives) {
    for (const std::uint8_t tag : Blob{0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA9}) {
        typename TestFixture::Info info;
        info.label = text("before");
        EXPECT_EQ(this->decode(retagged(tag, certificate()), info), std::nullopt);
        EXPECT_EQ(info.label, text("before"));
        EXPECT_TRUE(info.Params().empty());
    }
}

TYPED_TEST(DecodeCertificate, ReportsAnUnacceptableAccessControlPartAndFillsTheInfoAllTheSame) {
    typename TestFixture::Info info;
    const Blob record = certificate({.common = {.accessControlRules = unacceptableRules()}});
    EXPECT_EQ(this->decode(record, info), std::optional(false));
    EXPECT_EQ(info.fid, 0x4D01u);
    EXPECT_EQ(info.id, Blob{0x45});
}

// ---- trusted usage ----

std::uint64_t usageOf(const Blob& trustedUsageElement) {
    CertificateInfo info;
    info.trustedUsage = 5;
    PKCS15CertCT::decodeTrustedUsage(decoded<PKCS15::CommonCertificateAttributes>(
                                         sequence(octetString({0x45}), trustedUsageElement)),
                                     info);
    return info.trustedUsage;
}

TEST(DecodeTrustedUsage, IsNoneWithoutTrustedUsage) { EXPECT_EQ(usageOf({}), 0xFFFFu); }

TEST(DecodeTrustedUsage, IsNoneWithoutExtendedKeyUsage) {
    EXPECT_EQ(usageOf(trustedUsage({}, namedBits({0}))), 0xFFFFu);
}

TEST(DecodeTrustedUsage, IsNoneWithOtherPurposesOnly) {
    EXPECT_EQ(usageOf(trustedUsage({serverAuthentication()})), 0xFFFFu);
}

TEST(DecodeTrustedUsage, IsLogonWhereverThatStandsInTheList) {
    EXPECT_EQ(usageOf(trustedUsage({smartcardLogon()})), 267u);
    EXPECT_EQ(usageOf(trustedUsage({serverAuthentication(), smartcardLogon()})), 267u);
    EXPECT_EQ(usageOf(trustedUsage({smartcardLogon(), serverAuthentication()})), 267u);
}

TEST(DecodeTrustedUsage, DoesNotReadTheKeyUsage) {
    EXPECT_EQ(usageOf(trustedUsage({smartcardLogon()}, namedBits({0, 1, 2}))), 267u);
}

TEST(DecodeTrustedUsage, ComparesArcByArcAndTheNumberOfArcs) {
    EXPECT_EQ(usageOf(trustedUsage({objectIdentifier({1, 3, 6, 1, 4, 1, 311, 20, 2})})), 0xFFFFu);
    EXPECT_EQ(usageOf(trustedUsage({objectIdentifier({1, 3, 6, 1, 4, 1, 311, 20, 2, 2, 1})})),
              0xFFFFu);
    EXPECT_EQ(usageOf(trustedUsage({objectIdentifier({1, 3, 6, 1, 4, 1, 311, 20, 2, 3})})),
              0xFFFFu);
    EXPECT_EQ(usageOf(trustedUsage({objectIdentifier({2, 3, 6, 1, 4, 1, 311, 20, 2, 2})})),
              0xFFFFu);
    EXPECT_EQ(usageOf(trustedUsage({objectIdentifier({1, 3, 6, 1, 4, 1, 55, 20, 2, 2})})),
              0xFFFFu);  // 311 is 0x137: its low 8 bits
}

TEST(SmartcardLogonOID, HasTheTenArcsOfTheExtendedKeyUsage) {
    EXPECT_EQ(SMARTCARD_LOGON_OID.arcs(),
              (std::vector<ASN1::OBJECT_IDENTIFIER::Arc>{1, 3, 6, 1, 4, 1, 311, 20, 2, 2}));
}

}  // namespace
}  // namespace tovi::test
