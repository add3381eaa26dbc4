#include "tovi/interfaces/PKCS11Attrs.h"

#include <gtest/gtest.h>

#include <utility>

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {
namespace {

using Params = std::vector<PKCS11Attrs::Param>;

constexpr unsigned long CKA_LABEL = 0x3;
constexpr unsigned long CKA_SENSITIVE = 0x103;

PKCS11Attrs someAttributes() {
    PKCS11Attrs attributes;
    attributes.SetParam(CKA_SIGN, B_CK_TRUE);
    attributes.SetParam(CKA_LABEL, {'K', 'E', 'Y'});
    attributes.SetParam(CKA_PRIVATE, B_CK_FALSE);
    return attributes;
}

const Params someParams = {{CKA_PRIVATE, {0x00}}, {CKA_LABEL, {'K', 'E', 'Y'}}, {CKA_SIGN, {0x01}}};

const Blob someOctets = {
    0, 0, 0, 0x02, 0, 0, 0, 1, 0x00,            // CKA_PRIVATE, false
    0, 0, 0, 0x03, 0, 0, 0, 3, 'K',  'E', 'Y',  // CKA_LABEL
    0, 0, 1, 0x08, 0, 0, 0, 1, 0x01,            // CKA_SIGN, true
};

TEST(PKCS11, NumbersAreThoseOfTheStandard) {
    EXPECT_EQ(CKK_RSA, 0u);
    EXPECT_EQ(CKK_DSA, 1u);
    EXPECT_EQ(CKK_DH, 2u);
    EXPECT_EQ(CKK_EC, 3u);
    EXPECT_EQ(CKC_X_509, 0u);
    EXPECT_EQ(CKA_PRIVATE, 0x002u);
    EXPECT_EQ(CKA_ENCRYPT, 0x104u);
    EXPECT_EQ(CKA_DECRYPT, 0x105u);
    EXPECT_EQ(CKA_WRAP, 0x106u);
    EXPECT_EQ(CKA_UNWRAP, 0x107u);
    EXPECT_EQ(CKA_SIGN, 0x108u);
    EXPECT_EQ(CKA_SIGN_RECOVER, 0x109u);
    EXPECT_EQ(CKA_VERIFY, 0x10Au);
    EXPECT_EQ(CKA_VERIFY_RECOVER, 0x10Bu);
    EXPECT_EQ(CKA_DERIVE, 0x10Cu);
    EXPECT_EQ(CKA_MODIFIABLE, 0x170u);
    EXPECT_EQ(CKA_ALWAYS_AUTHENTICATE, 0x202u);
}

TEST(PKCS11Attrs, RefuseNumbersOfMoreThan32Bits) {
    if constexpr (sizeof(unsigned long) > 4) {
        PKCS11Attrs attributes;
        EXPECT_THROW(attributes.SetParam(0x100000002UL, B_CK_TRUE), SmartcardException);
        EXPECT_TRUE(attributes.Params().empty());
    }
}

TEST(PKCS11Attrs, AreValidAndEmptyFromConstruction) {
    const PKCS11Attrs attributes;
    EXPECT_TRUE(attributes.IsValid());
    EXPECT_TRUE(attributes.Params().empty());
    EXPECT_TRUE(attributes.Export().empty());
    EXPECT_EQ(attributes.GetParam(CKA_SIGN), 0);
}

TEST(PKCS11Attrs, TellBooleansThatAreSet) {
    const PKCS11Attrs attributes = someAttributes();
    EXPECT_EQ(attributes.GetParam(CKA_SIGN), 1);
    EXPECT_EQ(attributes.GetParam(CKA_PRIVATE), 0);
    EXPECT_EQ(attributes.GetParam(CKA_VERIFY), 0);
    EXPECT_EQ(attributes.GetParam(CKA_LABEL), 0) << "three octets are no boolean";
}

TEST(PKCS11Attrs, TellBooleansOutsideTheKnownOnes) {
    PKCS11Attrs attributes;
    attributes.SetParam(CKA_SENSITIVE, B_CK_TRUE);
    EXPECT_EQ(attributes.GetParam(CKA_SENSITIVE), 1);
    attributes.SetParam(CKA_SENSITIVE, B_CK_FALSE);
    EXPECT_EQ(attributes.GetParam(CKA_SENSITIVE), 0);
}

TEST(PKCS11Attrs, KeepEveryKnownBooleanApart) {
    const unsigned long known[] = {CKA_PRIVATE,      CKA_ENCRYPT,    CKA_DECRYPT,
                                   CKA_WRAP,         CKA_UNWRAP,     CKA_SIGN,
                                   CKA_SIGN_RECOVER, CKA_VERIFY,     CKA_VERIFY_RECOVER,
                                   CKA_DERIVE,       CKA_MODIFIABLE, CKA_ALWAYS_AUTHENTICATE};
    for (const unsigned long set : known) {
        PKCS11Attrs attributes;
        for (const unsigned long attribute : known)
            attributes.SetParam(attribute, attribute == set ? B_CK_TRUE : B_CK_FALSE);
        for (const unsigned long attribute : known)
            EXPECT_EQ(attributes.GetParam(attribute), attribute == set) << attribute;
        EXPECT_EQ(attributes.Params().size(), std::size(known));
    }
}

TEST(PKCS11Attrs, StandInNumericOrder) { EXPECT_EQ(someAttributes().Params(), someParams); }

TEST(PKCS11Attrs, ReplaceAValueWhateverItWas) {
    PKCS11Attrs attributes = someAttributes();
    attributes.SetParam(CKA_SIGN, {0x02, 0x03});
    EXPECT_EQ(attributes.GetParam(CKA_SIGN), 0);
    EXPECT_EQ(attributes.Params()[2], (PKCS11Attrs::Param{CKA_SIGN, {0x02, 0x03}}));
    attributes.SetParam(CKA_SIGN, {0x02});
    EXPECT_EQ(attributes.GetParam(CKA_SIGN), 1) << "any octet but 00 is true";
    attributes.SetParam(CKA_SIGN, B_CK_FALSE);
    EXPECT_EQ(attributes.Params().size(), 3u);
    EXPECT_EQ(attributes.Params()[2], (PKCS11Attrs::Param{CKA_SIGN, {0x00}}));
    attributes.SetParam(CKA_LABEL, {});
    EXPECT_EQ(attributes.Params()[1], (PKCS11Attrs::Param{CKA_LABEL, {}}));
}

TEST(PKCS11Attrs, AreCopiedDeeply) {
    PKCS11Attrs original = someAttributes();
    PKCS11Attrs copy(original);
    PKCS11Attrs assigned;
    assigned = original;
    original.SetParam(CKA_LABEL, {'P', 'I', 'N'});
    original.SetParam(CKA_SIGN, B_CK_FALSE);
    EXPECT_EQ(copy.Params(), someParams);
    EXPECT_EQ(assigned.Params(), someParams);
    assigned = *&assigned;
    EXPECT_EQ(assigned.Params(), someParams);
    EXPECT_EQ(PKCS11Attrs(std::move(copy)).Params(), someParams);
}

TEST(PKCS11Attrs, ExportWhatImportTakes) {
    EXPECT_EQ(someAttributes().Export(), someOctets);
    PKCS11Attrs attributes;
    attributes.SetParam(CKA_VERIFY, B_CK_TRUE);
    EXPECT_TRUE(attributes.Import(someOctets));
    EXPECT_EQ(attributes.Params(), someParams) << "and what was there before is gone";
}

TEST(PKCS11Attrs, ImportInAnyOrder) {
    PKCS11Attrs attributes;
    EXPECT_TRUE(attributes.Import({0, 0, 1, 8, 0, 0, 0, 1, 1, 0, 0, 0, 2, 0, 0, 0, 1, 0}));
    EXPECT_EQ(attributes.Params(), (Params{{CKA_PRIVATE, {0}}, {CKA_SIGN, {1}}}));
    EXPECT_TRUE(attributes.Import({}));
    EXPECT_TRUE(attributes.Params().empty());
}

TEST(PKCS11Attrs, AreEmptyAndNotValidAfterAFailedImport) {
    const Blob bad[] = {
        {0},                                                     // half a number
        {0, 0, 0, 2, 0, 0, 0},                                   // half a length
        {0, 0, 0, 2, 0, 0, 0, 2, 1},                             // too short a value
        {0, 0, 0, 2, 0xFF, 0xFF, 0xFF, 0xFF, 1},                 // four gigaoctets of it
        {0, 0, 0, 2, 0, 0, 0, 1, 1, 0},                          // octets left over
        {0, 0, 0, 2, 0, 0, 0, 1, 1, 0, 0, 0, 2, 0, 0, 0, 1, 0},  // twice the same number
    };
    for (const Blob& octets : bad) {
        PKCS11Attrs attributes = someAttributes();
        EXPECT_FALSE(attributes.Import(octets));
        EXPECT_FALSE(attributes.IsValid());
        EXPECT_TRUE(attributes.Params().empty());
        EXPECT_FALSE(PKCS11Attrs(attributes).IsValid()) << "a copy neither";
        EXPECT_TRUE(attributes.Import(someOctets));
        EXPECT_TRUE(attributes.IsValid());
    }
}

}  // namespace
}  // namespace tovi
