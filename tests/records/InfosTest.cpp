#include "tovi/records/Infos.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "tests/support/Der.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/records/AuthInfo.h"

namespace tovi {
namespace {

template <class T>
class EveryInfo : public testing::Test {};
using InfoTypes = testing::Types<AuthInfo, PrivateKeyInfo, PublicKeyInfo, TrustedPublicKeyInfo,
                                 CertificateInfo, TrustedCertificateInfo, UsefulCertificateInfo,
                                 BlockCipherKeyInfo, DataInfo, ContainerInfo>;
TYPED_TEST_SUITE(EveryInfo, InfoTypes);

TYPED_TEST(EveryInfo, IsASetOfAttributesWithALabel) {
    EXPECT_TRUE((std::is_base_of_v<PKCS11Attrs, TypeParam>));
    const TypeParam info;
    EXPECT_TRUE(info.IsValid());
    EXPECT_TRUE(info.label.empty());
    EXPECT_TRUE(info.Params().empty());
}

TYPED_TEST(EveryInfo, JoinsTheCommonPartAndAddsNothing) {
    using Object = PKCS15ObjectInfo<TypeParam>;
    EXPECT_TRUE((std::is_base_of_v<PKCS15Object, Object>));
    EXPECT_TRUE((std::is_base_of_v<TypeParam, Object>));
    EXPECT_LE(sizeof(Object), sizeof(PKCS15Object) + sizeof(TypeParam) + alignof(Object));
    EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>);
}

TYPED_TEST(EveryInfo, IsCopiedWithBothParts) {
    PKCS15ObjectInfo<TypeParam> original;
    original.recordNumber = 3;
    original.label = test::times(40, 'L');
    original.SetParam(CKA_SIGN, B_CK_TRUE);
    const std::vector<PKCS15ObjectInfo<TypeParam>> list(2, original);
    PKCS15ObjectInfo<TypeParam> assigned;
    assigned = list[1];
    original.label[0] = 'M';
    original.recordNumber = 4;
    EXPECT_EQ(assigned.recordNumber, 3u);
    EXPECT_EQ(assigned.label, test::times(40, 'L'));
    EXPECT_EQ(assigned.GetParam(CKA_SIGN), 1);
}

TEST(Infos, TrustedAndUsefulOnesAreTheirPlainKindWithoutMembersOfTheirOwn) {
    EXPECT_TRUE((std::is_base_of_v<PublicKeyInfo, TrustedPublicKeyInfo>));
    EXPECT_TRUE((std::is_base_of_v<CertificateInfo, TrustedCertificateInfo>));
    EXPECT_TRUE((std::is_base_of_v<CertificateInfo, UsefulCertificateInfo>));
    EXPECT_EQ(sizeof(TrustedPublicKeyInfo), sizeof(PublicKeyInfo));
    EXPECT_EQ(sizeof(TrustedCertificateInfo), sizeof(CertificateInfo));
    EXPECT_EQ(sizeof(UsefulCertificateInfo), sizeof(CertificateInfo));
}

TEST(Infos, KeysBeginWithoutIdentifierAndType) {
    const PrivateKeyInfo privateKey;
    const PublicKeyInfo publicKey;
    EXPECT_TRUE(privateKey.id.empty());
    EXPECT_TRUE(publicKey.id.empty());
    EXPECT_EQ(privateKey.keyType, ~std::uint64_t{0});
    EXPECT_EQ(publicKey.keyType, ~std::uint64_t{0});
}

TEST(Infos, ACertificateBeginsAsX509WithoutTrustedUsage) {
    const CertificateInfo certificate;
    EXPECT_TRUE(certificate.id.empty());
    EXPECT_TRUE(certificate.serialNumber.empty());
    EXPECT_EQ(certificate.certificateType, 0u);
    EXPECT_EQ(certificate.trustedUsage, 0xFFFFu);
}

TEST(Infos, ASecretKeyBeginsWithoutNameAndLength) {
    const BlockCipherKeyInfo key;
    EXPECT_TRUE(key.id.empty());
    EXPECT_TRUE(key.algorithmName.empty());
    EXPECT_EQ(key.keyLength, 0u);
}

TEST(Infos, ADataObjectBeginsWithoutApplicationName) {
    EXPECT_TRUE(DataInfo().applicationName.empty());
}

TEST(Infos, AContainerBeginsWithoutKeysAndCertificates) {
    const ContainerInfo container;
    EXPECT_EQ(container.exchangeKeyRecord, 0u);
    EXPECT_EQ(container.exchangeCertificateRecord, 0u);
    EXPECT_EQ(container.signatureKeyRecord, 0u);
    EXPECT_EQ(container.signatureCertificateRecord, 0u);
    EXPECT_FALSE(container.logonCertificate);
}

TEST(Infos, TheUsageOfALogonCertificateCarriesTheLogonBit) {
    EXPECT_EQ(trustedUsageLogonDecoded, 0x10Bu);
    EXPECT_EQ(trustedUsageLogonDecoded & trustedUsageLogon, 0x100u);
}

}  // namespace
}  // namespace tovi
