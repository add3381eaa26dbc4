#include "tovi/pkcs15/Module.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/pkcs15/ModuleText.h"
#include "tovi/asn1/Notation.h"
#include "tovi/pkcs15/PKCS15.h"

namespace {

using pkcs15test::ModuleText;

const ModuleText& text() {
    static const ModuleText module(TOVI_TEST_DATA "/pkcs15.asn");
    return module;
}

TEST(Module, HasTheNameAndIdentifierOfTheStandard) {
    EXPECT_EQ(PKCS15::getModule().name(), "PKCS-15");
    EXPECT_EQ(PKCS15::getModule().identifier().toString(), "1.2.840.113549.1.15.1.1");
}

/// PKCS15Object with some of its arguments filled in, which is no type before the rest is.
bool isSkeleton(const std::string& name) {
    const std::set<std::string> skeletons = {"PrivateKeyObject", "PublicKeyObject",
                                             "SecretKeyObject",  "CertificateObject",
                                             "DataObject",       "AuthenticationObject"};
    return skeletons.contains(name);
}

TEST(Module, HasEveryTypeOfTheNotation) {
    for (const std::string& name : text().typeNames())
        EXPECT_TRUE(PKCS15::getModule().find(name) || isSkeleton(name)) << name;
    EXPECT_GT(text().typeNames().size(), 90u);
}

TEST(Module, HasTypesOfTheNotationOnly) {
    for (const ASN1::Type* type : PKCS15::getModule().types())
        EXPECT_TRUE(text().defines(std::string(type->name))) << type->name;
}

TEST(Module, FindsTypesByTheirSecondNames) {
    const ASN1::Module& module = PKCS15::getModule();
    EXPECT_EQ(module.find("PrivateKeys"), &PKCS15::PathOrObjects<PKCS15::PrivateKeyType>::type);
    EXPECT_EQ(module.find("AuthObjects"), &PKCS15::PathOrObjects<PKCS15::AuthenticationType>::type);
    EXPECT_EQ(module.find("PublicKeyOperations"), &PKCS15::Operations::type);
    EXPECT_EQ(module.find("Opaque"), module.find("ExternalIDO"));
    for (const ASN1::TypeAlias& alias : module.aliases()) {
        EXPECT_TRUE(text().isAbbreviation(std::string(alias.name))) << alias.name;
        EXPECT_EQ(module.find(alias.name), alias.type) << alias.name;
    }
    EXPECT_EQ(module.find("Secrets"), nullptr);
}

TEST(Module, EveryTablePrintsAsTheNotationHasIt) {
    for (const ASN1::Type* type : PKCS15::getModule().types())
        EXPECT_EQ(text().normalized(ASN1::notation(*type)), text().assignment(*type)) << type->name;
}

// Parameterized types with other parameters than those in the module's list.
TEST(Module, EveryInstancePrintsAsTheNotationHasIt) {
    const ASN1::Type* const instances[] = {
        &PKCS15::PrivateKeyObject<PKCS15::PrivateECKeyAttributes>::type,
        &PKCS15::PublicKeyObject<PKCS15::PublicRSAKeyAttributes>::type,
        &PKCS15::SecretKeyObject<PKCS15::GenericSecretKeyAttributes>::type,
        &PKCS15::CertificateObject<PKCS15::X509CertificateAttributes>::type,
        &PKCS15::DataObject<PKCS15::OidDO>::type,
        &PKCS15::AuthenticationObject<PKCS15::PinAttributes>::type,
        &PKCS15::ObjectValue<PKCS15::RSAPublicKeyChoice>::type,
        &PKCS15::KeyInfo<ASN1::Null, PKCS15::PublicKeyOperations>::type,
        &PKCS15::PathOrObjects<PKCS15::DataType>::type,
    };
    for (const ASN1::Type* type : instances)
        EXPECT_EQ(text().normalized(ASN1::notation(*type)), text().assignment(*type)) << type->name;
}

}  // namespace
