#include <gtest/gtest.h>

#include "tests/asn1/TestTools.h"
#include "tests/pkcs15/Records.h"
#include "tovi/pkcs15/PKCS15.h"

/// What the operations on values do with the types of the module.
namespace {

using namespace asn1test;
using namespace PKCS15;
using ASN1::Octets;
using pkcs15test::sample;

template <class T>
std::string optionalName(std::size_t index) {
    const ASN1::Member* member = ASN1::optionalAt(T::type, index);
    return member ? std::string(member->name) : "";
}

template <class T>
std::string memberName(std::size_t position) {
    const ASN1::Member* member = ASN1::memberAt(T::type, position);
    return member ? std::string(member->name) : "";
}

TEST(OptionalIndexes, CountAsTheModuleDoes) {
    EXPECT_EQ(optionalName<CommonObjectAttributes>(0), "label");
    EXPECT_EQ(optionalName<CommonObjectAttributes>(1), "flags");
    EXPECT_EQ(optionalName<CommonObjectAttributes>(2), "authId");
    EXPECT_EQ(optionalName<CommonObjectAttributes>(3), "userConsent");
    EXPECT_EQ(optionalName<CommonObjectAttributes>(4), "accessControlRules");
    EXPECT_EQ(optionalName<CommonKeyAttributes>(0), "native");
    EXPECT_EQ(optionalName<CommonKeyAttributes>(2), "keyReference");
    EXPECT_EQ(optionalName<Path>(0), "index");
    EXPECT_EQ(optionalName<Path>(1), "length");
    EXPECT_EQ(optionalName<X509CertificateAttributes>(2), "serialNumber");
    EXPECT_EQ(optionalName<CommonCertificateAttributes>(3), "trustedUsage");
    EXPECT_EQ(optionalName<Usage>(0), "keyUsage");
    EXPECT_EQ(optionalName<Usage>(1), "extKeyUsage");
    EXPECT_EQ(optionalName<CommonDataObjectAttributes>(0), "applicationName");
    EXPECT_EQ(optionalName<CommonSecretKeyAttributes>(0), "keyLen");
}

TEST(MemberPositions, CountAsTheModuleDoes) {
    EXPECT_EQ(memberName<CommonObjectAttributes>(3), "userConsent");
    EXPECT_EQ(memberName<CommonKeyAttributes>(2), "native");
    EXPECT_EQ(memberName<CommonKeyAttributes>(4), "keyReference");
    EXPECT_EQ(memberName<Path>(0), "efidOrPath");
    EXPECT_EQ(memberName<Path>(2), "length");
    EXPECT_EQ(memberName<X509CertificateAttributes>(3), "serialNumber");
    EXPECT_EQ(memberName<CommonCertificateAttributes>(4), "trustedUsage");
    EXPECT_EQ(memberName<TokenInfo>(7), "supportedAlgorithms");
}

template <class T>
void expectPositions(const std::vector<std::string>& names) {
    T value;
    for (std::size_t position = 0; position < names.size(); ++position) {
        value.setSelection(position);
        EXPECT_EQ(value.selectionName(), names[position]);
        EXPECT_EQ(value.selection(), position);
    }
    EXPECT_EQ(ASN1::memberAt(T::type, names.size()), nullptr);
}

TEST(SelectionPositions, FollowTheModule) {
    expectPositions<PrivateKeyType>(
        {"privateRSAKey", "privateECKey", "privateDHKey", "privateDSAKey", "privateKEAKey"});
    expectPositions<PublicKeyType>(
        {"publicRSAKey", "publicECKey", "publicDHKey", "publicDSAKey", "publicKEAKey"});
    expectPositions<SecretKeyType>({"genericSecretKey", "rc2key", "rc4key", "desKey", "des2Key",
                                    "des3Key", "castKey", "cast3Key", "cast128Key", "rc5Key",
                                    "ideaKey", "skipjackKey", "batonKey", "juniperKey", "rc6Key",
                                    "otherKey"});
    expectPositions<CertificateType>({"x509Certificate", "x509AttributeCertificate",
                                      "spkiCertificate", "pgpCertificate", "wtlsCertificate",
                                      "x9-68Certificate", "cvCertificate"});
    expectPositions<DataType>({"opaqueDO", "externalIDO", "oidDO"});
    expectPositions<AuthenticationType>({"pin", "biometricTemplate", "authKey", "external"});
    expectPositions<PKCS15Objects>({"privateKeys", "publicKeys", "trustedPublicKeys", "secretKeys",
                                    "certificates", "trustedCertificates", "usefulCertificates",
                                    "dataObjects", "authObjects"});
    expectPositions<ObjectValue<ASN1::INTEGER>>(
        {"indirect", "direct", "indirect-protected", "direct-protected"});
    expectPositions<PathOrObjects<DataType>>(
        {"path", "objects", "indirect-protected", "direct-protected"});
    expectPositions<KeyInfo<ASN1::Null, Operations>>({"reference", "paramsAndOps"});
    expectPositions<SecurityCondition>({"authId", "not", "and", "or"});
    expectPositions<ManagedKeyInfo>({"recipientInfo", "passwordInfo"});
}

TEST(SelectionPositions, OfAReferencedValueBeginWithTheUrl) {
    ReferencedValue value;
    value.setSelection(0);
    EXPECT_EQ(value.selectionName(), "url");
    value.setSelection(1);
    EXPECT_EQ(value.selectionName(), "path");
}

TEST(Setters, BringTheirMemberIntoBeing) {
    CommonObjectAttributes attributes;
    attributes.set_flags().set(CommonObjectFlags::modifiable);
    attributes.set_flags().set(CommonObjectFlags::private_);
    attributes.set_authId() = Octets{0x45};
    attributes.set_label() = "KEY";
    attributes.set_userConsent(2);
    EXPECT_EQ(encoded(attributes), "300F0C034B4559030206C0040145020102");
}

TEST(Setters, MakeASmallestPrivateKeyRecord) {
    PrivateKeyType key;
    auto& object = key.select_privateRSAKey();
    object.commonObjectAttributes.set_label() = "KEY1";
    object.commonObjectAttributes.set_flags().set(CommonObjectFlags::private_);
    object.commonObjectAttributes.set_authId() = Octets{1};
    object.classAttributes.iD = Octets{0x45};
    object.classAttributes.usage = {KeyUsageFlags::decrypt, KeyUsageFlags::sign,
                                    KeyUsageFlags::unwrap};
    object.typeAttributes.modulusLength = 1024;
    Path& path = object.typeAttributes.value.select<ObjectValue<RSAPrivateKeyObject>::indirect>()
                     .select_path();
    path.efidOrPath = {0x4B, 0x01};
    EXPECT_TRUE(key.isValid());
    EXPECT_EQ(toHex(ASN1::encode(key)), toHex(sample("prk-rsa")));
}

TEST(Setters, OfSecretKeysMakeTheSampleRecord) {
    auto key = decoded<SecretKeyType>(ASN1::View(sample("sk-des3Key")));
    SecretKeyType fresh;
    fresh.select_des3Key() = *key.getIf<SecretKeyType::des3Key>();
    EXPECT_EQ(encoded(fresh), toHex(sample("sk-des3Key")));
    EXPECT_EQ(fresh.selectionName(), "des3Key");
}

TEST(Setters, WriteNativeFalseAndKeyReference) {
    CommonKeyAttributes attributes;
    attributes.iD = Octets{0x45};
    attributes.set_native(false);
    attributes.set_keyReference(0);
    EXPECT_EQ(encoded(attributes),
              "300C040145"
              "030100"
              "010100"
              "020100");
    attributes.set_native(true);
    EXPECT_EQ(encoded(attributes),
              "3009040145"
              "030100"
              "020100")
        << "TRUE is the default";
}

TEST(FreshValues, OfATokenInfoAlgorithmAreValid) {
    auto info = decoded<TokenInfo>(ASN1::View(sample("ti-min")));
    AlgorithmInfo& algorithm = info.set_supportedAlgorithms().emplace_back();
    algorithm.algorithm = 0x80000001u;
    EXPECT_TRUE(info.isValid());
    const auto again = decoded<TokenInfo>(ASN1::View(ASN1::encode(info)));
    EXPECT_TRUE(again.isValid());
    EXPECT_EQ(again.supportedAlgorithms->at(0).algorithm.toUInt64(), 0x80000001u);
    algorithm.set_algId();
    EXPECT_FALSE(info.isValid()) << "an identifier without arcs";
    const Octets arcs = {1, 2, 0x48};
    algorithm.set_algId().assign(arcs.begin(), arcs.end());
    EXPECT_TRUE(info.isValid());
}

TEST(FreshValues, OfAPathReplaceAnotherForm) {
    auto path = decoded<Path>("30 08 A0 03 04 01 01 02 01 00");
    EXPECT_TRUE(path.efidOrPath.otherForm);
    path.efidOrPath = Octets{0x3F, 0x00};
    EXPECT_EQ(encoded(path), "300704023F00020100");
    path.efidOrPath = Octets();
    EXPECT_EQ(encoded(path), "3008A003040101020100") << "the card's own form comes back";
}

TEST(FreshValues, OfAnOidDOReplaceAnotherForm) {
    auto data = decoded<OidDO>("30 07 06 02 2A 03 04 01 AA");
    EXPECT_TRUE(data.isValid());
    data.value.select<OidValue::indirect>().select_path().efidOrPath = Octets{0x42, 0x00};
    EXPECT_EQ(encoded(data), "300A06022A03300404024200");
}

TEST(FreshValues, OfAnAlgorithmReferenceReplaceAnotherForm) {
    auto info = decoded<AlgorithmInfo>("30 0E 81 04 01 02 03 04 02 01 01 05 00 03 01 00");
    info.reference = 5;
    EXPECT_EQ(encoded(info),
              "300B020105"
              "020101"
              "0500"
              "030100");
}

TEST(FilePath, IsThatOfAnEntryByPath) {
    const auto entry = decoded<PKCS15Objects>(ASN1::View(sample("odf-privateKeys")));
    ASSERT_TRUE(filePath(entry));
    EXPECT_EQ(toHex(filePath(entry)->efidOrPath), "3F0050154401");
    EXPECT_EQ(filePath(decoded<PKCS15Objects>(ASN1::View(sample("odf-objects-inline")))), nullptr);
    EXPECT_EQ(filePath(decoded<PKCS15Objects>("A9 00")), nullptr);
    EXPECT_EQ(filePath(PKCS15Objects()), nullptr);
}

TEST(IndirectPath, IsNoneOfDirectValuesAndUrls) {
    const auto byUrl = decoded<PrivateKeyType>(ASN1::View(sample("prk-rsa-url")));
    EXPECT_EQ(indirectPath(byUrl.getIf<PrivateKeyType::privateRSAKey>()->typeAttributes.value),
              nullptr);
    const auto direct = decoded<PrivateKeyType>(ASN1::View(sample("prk-rsa-direct")));
    EXPECT_EQ(indirectPath(direct.getIf<PrivateKeyType::privateRSAKey>()->typeAttributes.value),
              nullptr);
    EXPECT_EQ(indirectPath(ObjectValue<ASN1::OpenData>()), nullptr);
}

TEST(Values, AreSmallEnoughToKeepThousandsOf) {
    EXPECT_LE(sizeof(PrivateKeyType), 900u);
    EXPECT_LE(sizeof(PublicKeyType), 900u);
    EXPECT_LE(sizeof(SecretKeyType), 900u);
    EXPECT_LE(sizeof(CertificateType), 900u);
    EXPECT_LE(sizeof(AuthenticationType), 900u);
}

TEST(SecurityConditions, NestToTheReadersLimitAndNoFurther) {
    Octets octets = {0x04, 0x01, 0x01};
    for (unsigned depth = 0;; ++depth) {
        SecurityCondition condition;
        ASN1::Error error;
        if (!ASN1::decode(octets, condition, error)) {
            EXPECT_EQ(error.kind, ASN1::Error::tooDeep);
            EXPECT_EQ(depth, ASN1::Reader::maxDepth + 1);
            break;
        }
        EXPECT_EQ(ASN1::encode(condition), octets);
        EXPECT_TRUE(condition.isValid());
        ASN1::Writer writer;
        writer.octets(octets);
        writer.header(ASN1::context(0), true, octets.size());
        octets = Octets(writer.written());
    }
}

}  // namespace
