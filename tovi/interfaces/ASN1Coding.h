#pragma once

namespace ASN1 {
class CoderEnv;
class Module;
}  // namespace ASN1

namespace tovi {

/// The PKCS#15 module; lives as long as the program.
ASN1::Module* ASN1_getPKCS15();

/// Prepares `env` for the types of `module`.
void ASN1_configureCoderEnv(ASN1::CoderEnv* env, ASN1::Module* module);

}  // namespace tovi
