#include "tovi/interfaces/ASN1Coding.h"

#include "tovi/asn1/CoderEnv.h"
#include "tovi/pkcs15/Module.h"

namespace tovi {

ASN1::Module* ASN1_getPKCS15() { return &PKCS15::getModule(); }

void ASN1_configureCoderEnv(ASN1::CoderEnv* env, ASN1::Module* module) { env->configure(module); }

}  // namespace tovi
