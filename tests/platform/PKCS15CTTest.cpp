#include "tovi/interfaces/PKCS15CT.h"

#include <gtest/gtest.h>

#include "tests/support/Der.h"
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

// ---- encoding ----

using test::context;
using test::namedBits;
using test::octetString;
using test::sequence;
using Attributes = PKCS15::CommonObjectAttributes;

const Blob executeWithPin1 = sequence(namedBits({2}), octetString({0x01}));
const Blob readWithPin1Or2 =
    sequence(namedBits({0}), context(2, octetString({0x01}), octetString({0x02})));

/// The attributes of the encoding with these constraints written into them; empty when refused.
Blob constrained(const Blob& encoded, const byte_array* constraints) {
    auto attributes = test::decoded<Attributes>(encoded);
    if (PKCS15CT::encodeAuthConstraints(constraints, attributes)) return ASN1::encode(attributes);
    EXPECT_EQ(ASN1::encode(attributes), encoded) << "a refusal changes nothing";
    return {};
}

const Blob labelled = sequence(test::utf8String("K"));
const Blob labelledWithRule = sequence(test::utf8String("K"), sequence(executeWithPin1));

TEST(EncodeAuthConstraints, LeavesTheRulesAloneWhenThereIsNothingToWrite) {
    EXPECT_EQ(constrained(labelled, nullptr), labelled);
    EXPECT_EQ(constrained(labelledWithRule, nullptr), labelledWithRule);
    const Blob broken = sequence(sequence());
    EXPECT_EQ(constrained(broken, nullptr), broken);
}

TEST(EncodeAuthConstraints, WritesTheRules) {
    const Blob rules = sequence(executeWithPin1, readWithPin1Or2);
    const Blob expected = sequence(test::utf8String("K"), rules);
    EXPECT_EQ(constrained(labelled, &rules), expected);
    EXPECT_EQ(constrained(labelledWithRule, &rules), expected);
    EXPECT_EQ(constrained(sequence(test::utf8String("K"), sequence()), &rules), expected);
}

TEST(EncodeAuthConstraints, WritesMembersOfLaterVersionsInThem) {
    const Blob rules = sequence(sequence(namedBits({0}), octetString({0x01}), test::integer(7)));
    EXPECT_EQ(constrained(labelled, &rules), sequence(test::utf8String("K"), rules));
}

TEST(EncodeAuthConstraints, RefusesWhatIsNotTheEncodingOfRules) {
    const Blob good = sequence(executeWithPin1);
    const Blob trailing = test::join({good, Blob{0x00}});
    const Blob cut(good.begin(), good.end() - 1);
    for (const Blob& bad : {Blob{}, Blob{0x30}, trailing, cut, executeWithPin1,
                            test::octetString(good), test::integer(1)})
        EXPECT_EQ(constrained(labelledWithRule, &bad), Blob());
}

TEST(EncodeAuthConstraints, RefusesOtherFormsOfBer) {
    const Blob longLength = test::join({Blob{0x30, 0x81, 0x09}, executeWithPin1});
    const Blob indefinite = test::join({Blob{0x30, 0x80}, executeWithPin1, Blob{0x00, 0x00}});
    const Blob zeroBits =
        sequence(sequence(test::bitString({0x20, 0x00}, 0), octetString({0x01})));  // X.690 11.2.2
    for (const Blob& bad : {longLength, indefinite, zeroBits})
        EXPECT_EQ(constrained(labelledWithRule, &bad), Blob());
}

TEST(EncodeAuthConstraints, RefusesRulesThatBreakAConstraint) {
    const Blob none = sequence();
    const Blob andOfOne = sequence(sequence(namedBits({0}), context(1, octetString({0x01}))));
    const Blob tooLong = sequence(sequence(namedBits({0}), octetString(test::times(256, 1))));
    for (const Blob& bad : {none, andOfOne, tooLong})
        EXPECT_EQ(constrained(labelledWithRule, &bad), Blob());
}

}  // namespace
}  // namespace tovi
