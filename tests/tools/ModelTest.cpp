#include "tools/Model.h"

#include <gtest/gtest.h>

#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

TEST(NameOf, GoesByRecordNumberReferenceAndIdentifier) {
    PKCS15ObjectInfo<PrivateKeyInfo> key;
    key.recordNumber = 3;
    EXPECT_EQ(nameOf(privateKeys, key), "private key 3");
    PKCS15ObjectInfo<AuthInfo> auth;
    EXPECT_EQ(nameOf(authObjects, auth), "authentication object");
    auth.authObjectId = Blob{0x0A};
    EXPECT_EQ(nameOf(authObjects, auth), "authentication object with id 0A");
    auth.reference = 129;
    EXPECT_EQ(nameOf(authObjects, auth), "authentication object auth:129");
}

TEST(IdentifierOf, IsTheOwnOneOfAnAuthenticationObject) {
    PKCS15ObjectInfo<AuthInfo> auth;
    auth.authId = Blob{0x01};
    auth.authObjectId = Blob{0x02};
    EXPECT_EQ(identifierOf(auth), Blob{0x02});
    PKCS15ObjectInfo<CertificateInfo> certificate;
    certificate.id = Blob{0x03};
    EXPECT_EQ(identifierOf(certificate), Blob{0x03});
    EXPECT_EQ(identifierOf(PKCS15ObjectInfo<DataInfo>()), Blob{});
}

TEST(ForEachList, VisitsEveryListInTheOrderOfTheODF) {
    const ContainerPointer model = makeContainer(PKCS15_DF);
    std::vector<std::string> keys;
    forEachList(*model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        keys.push_back(kind.key);
        EXPECT_TRUE(infos.empty() && raws.empty());
    });
    EXPECT_EQ(keys, (std::vector<std::string>{"privateKeys", "publicKeys", "trustedPublicKeys",
                                              "secretKeys", "certificates", "trustedCertificates",
                                              "usefulCertificates", "dataObjects", "authObjects"}));
}

TEST(ObjectTypeOf, IsThatOfTheRow) {
    const ContainerPointer model = makeContainer(PKCS15_DF);
    model->newFATRecord(tokenInfoObject, false);
    model->newFATRecord(dataObject, false);
    PKCS15ObjectInfo<DataInfo> data;
    EXPECT_EQ(objectTypeOf(*model, data), std::nullopt);
    data.recordNumber = 1;
    EXPECT_EQ(objectTypeOf(*model, data), dataObject);
    data.recordNumber = 2;
    EXPECT_EQ(objectTypeOf(*model, data), std::nullopt);
}

}  // namespace
}  // namespace tovi::test
