#pragma once

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace ASN1 {
class AbstractData;
class BIT_STRING;
class CoderEnv;
class Module;
}  // namespace ASN1

namespace tovi {

/// The PKCS#15 module; lives as long as the program.
TOVI_API ASN1::Module* ASN1_getPKCS15();

/// Prepares `env` for the types of `module`.
TOVI_API void ASN1_configureCoderEnv(ASN1::CoderEnv* env, ASN1::Module* module);

/// Writes the DER encoding of `value` into `out`; false, and `out` as it was, for a value that
/// cannot be encoded. Constraints are not looked at.
TOVI_API bool ASN1_encode(ASN1::AbstractData value, ASN1::CoderEnv* env, Blob& out);

/// Sets or clears one bit, 0 being the most significant of the first octet; the string grows to
/// hold it.
TOVI_API void ASN1_encodeBit(ASN1::BIT_STRING& bits, unsigned int bit, bool value);

}  // namespace tovi
