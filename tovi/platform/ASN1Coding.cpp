#include "tovi/interfaces/ASN1Coding.h"

#include "tovi/asn1/BitString.h"
#include "tovi/asn1/CoderEnv.h"
#include "tovi/pkcs15/Module.h"

namespace tovi {

ASN1::Module* ASN1_getPKCS15() { return &PKCS15::getModule(); }

void ASN1_configureCoderEnv(ASN1::CoderEnv* env, ASN1::Module* module) { env->configure(module); }

bool ASN1_encode(ASN1::AbstractData value, ASN1::CoderEnv* env, Blob& out) {
    return env->encode(value, out);
}

void ASN1_encodeBit(ASN1::BIT_STRING& bits, unsigned int bit, bool value) { bits.set(bit, value); }

}  // namespace tovi
