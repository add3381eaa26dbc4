#include "tovi/interfaces/ASN1Coding.h"

#include <gtest/gtest.h>

#include "tovi/asn1/CoderEnv.h"
#include "tovi/pkcs15/Path.h"

namespace tovi {
namespace {

TEST(ASN1Coding, GivesTheOnePKCS15Module) {
    ASSERT_NE(ASN1_getPKCS15(), nullptr);
    EXPECT_EQ(ASN1_getPKCS15(), ASN1_getPKCS15());
    EXPECT_NE(ASN1_getPKCS15()->find("PKCS15Objects"), nullptr);
}

TEST(ASN1Coding, MakesACoderEnvironmentDecodeTypesOfTheModule) {
    ASN1::CoderEnv env;
    const char encoded[] = {0x30, 0x04, 0x04, 0x02, 0x44, 0x01};
    PKCS15::Path path;
    EXPECT_FALSE(env.decode(encoded, encoded + sizeof encoded, path, false));
    ASN1_configureCoderEnv(&env, ASN1_getPKCS15());
    EXPECT_TRUE(env.decode(encoded, encoded + sizeof encoded, path, false));
    EXPECT_EQ(path.efidOrPath, (ASN1::Octets{0x44, 0x01}));
}

}  // namespace
}  // namespace tovi
