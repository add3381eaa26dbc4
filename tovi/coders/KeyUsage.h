#pragma once

#include "tovi/asn1/BitString.h"
#include "tovi/interfaces/PKCS11Attrs.h"

namespace tovi {

/// Sets a boolean attribute from bit `bit`; a bit beyond the end counts as 0.
void ASN1_decodeP11BoolAttr(const ASN1::BIT_STRING& bits, PKCS11Attrs& attributes,
                            unsigned long attribute, unsigned int bit);

/// Sets the ten usage attributes from KeyUsageFlags (PKCS#15 v1.1), each explicitly to true
/// or false. nonRepudiation stands for CKA_ALWAYS_AUTHENTICATE.
void decodeKeyUsageFlags(const ASN1::BIT_STRING& usage, PKCS11Attrs& attributes);

/// Sets bit `bit` when the attribute is CK_TRUE; clears it for any other value and for an attribute
/// that is not there.
void ASN1_encodeP11BoolAttr(ASN1::BIT_STRING& bits, const PKCS11Attrs& attributes,
                            unsigned long attribute, unsigned int bit);

/// The mirror of decodeKeyUsageFlags: writes all ten bits.
void encodeKeyUsageFlags(ASN1::BIT_STRING& usage, const PKCS11Attrs& attributes);

}  // namespace tovi
