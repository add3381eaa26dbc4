#include "tovi/coders/KeyUsage.h"

#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {

namespace {

struct UsageBit {
    unsigned int bit;
    unsigned long attribute;
};

constexpr UsageBit usageBits[] = {
    {9, CKA_ALWAYS_AUTHENTICATE},  // nonRepudiation
    {8, CKA_DERIVE},
    {7, CKA_VERIFY_RECOVER},
    {6, CKA_VERIFY},
    {5, CKA_UNWRAP},
    {4, CKA_WRAP},
    {3, CKA_SIGN_RECOVER},
    {2, CKA_SIGN},
    {1, CKA_DECRYPT},
    {0, CKA_ENCRYPT},
};

}  // namespace

void ASN1_decodeP11BoolAttr(const ASN1::BIT_STRING& bits, PKCS11Attrs& attributes,
                            unsigned long attribute, unsigned int bit) {
    attributes.SetParam(attribute, bits.test(bit) ? B_CK_TRUE : B_CK_FALSE);
}

void decodeKeyUsageFlags(const ASN1::BIT_STRING& usage, PKCS11Attrs& attributes) {
    for (const UsageBit& row : usageBits)
        ASN1_decodeP11BoolAttr(usage, attributes, row.attribute, row.bit);
}

void ASN1_encodeP11BoolAttr(ASN1::BIT_STRING& bits, const PKCS11Attrs& attributes,
                            unsigned long attribute, unsigned int bit) {
    ASN1_encodeBit(bits, bit, attributes.GetParam(attribute) == CK_TRUE);
}

void encodeKeyUsageFlags(ASN1::BIT_STRING& usage, const PKCS11Attrs& attributes) {
    for (const UsageBit& row : usageBits)
        ASN1_encodeP11BoolAttr(usage, attributes, row.attribute, row.bit);
}

}  // namespace tovi
