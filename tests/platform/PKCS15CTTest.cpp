#include "tovi/interfaces/PKCS15CT.h"

#include <gtest/gtest.h>

#include "tovi/asn1/Coding.h"
#include "tovi/interfaces/Blob.h"
#include "tovi/pkcs15/CommonObjectAttributes.h"

namespace tovi {
namespace {

/// The verdict on the CommonObjectAttributes of the encoding.
bool verdict(const Blob& encoded) {
    PKCS15::CommonObjectAttributes attributes;
    ASN1::Error error;
    EXPECT_TRUE(ASN1::decode(encoded, attributes, error));
    return PKCS15CT::decodeAuthConstraints(attributes);
}

TEST(PKCS15CT, AcceptsAttributesWithoutAccessControlRules) {
    EXPECT_TRUE(verdict({0x30, 0x00}));
    EXPECT_TRUE(verdict({0x30, 0x03, 0x0C, 0x01, 'K'}));
}

TEST(PKCS15CT, AcceptsAccessControlRulesThatAreValid) {
    EXPECT_TRUE(verdict({
        0x30, 0x0B,              // CommonObjectAttributes
        0x30, 0x09,              //   accessControlRules
        0x30, 0x07,              //     AccessControlRule
        0x03, 0x02, 0x05, 0x20,  //       accessMode: execute
        0x04, 0x01, 0x01,        //       securityCondition: authId
    }));
}

TEST(PKCS15CT, RefusesAnEmptyListOfRules) {
    EXPECT_FALSE(verdict({0x30, 0x02, 0x30, 0x00}));  // at least one (PKCS#15 v1.1, 6.1.8)
}

TEST(PKCS15CT, RefusesARuleThatIsNotValidWhereverItStands) {
    EXPECT_FALSE(verdict({
        0x30, 0x16,                    // CommonObjectAttributes
        0x30, 0x14,                    //   accessControlRules
        0x30, 0x07,                    //     AccessControlRule
        0x03, 0x02, 0x05, 0x20,        //
        0x04, 0x01, 0x01,              //
        0x30, 0x09,                    //     AccessControlRule
        0x03, 0x02, 0x05, 0x20,        //       accessMode
        0xA1, 0x03, 0x04, 0x01, 0x01,  //       securityCondition: and, of one; two are needed
    }));
}

TEST(PKCS15CT, LooksAtNothingElse) {
    PKCS15::CommonObjectAttributes attributes;
    attributes.userConsent = 100000;
    ASSERT_FALSE(attributes.isValid());
    EXPECT_TRUE(PKCS15CT::decodeAuthConstraints(attributes));
}

}  // namespace
}  // namespace tovi
