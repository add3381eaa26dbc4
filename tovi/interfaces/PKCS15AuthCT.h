#pragma once

#include "tovi/pkcs15/Authentication.h"

namespace tovi {

struct AuthInfo;
template <class T>
struct PKCS15ObjectInfo;

/// The entry coder of authentication objects (AuthenticationType of PKCS#15 v1.1).
///
/// Each decoder fills the common attributes, the AuthInfo part, and for PINs and templates
/// `reference`, as far as the record goes, also when it breaks a constraint, and returns whether the
/// record was understood and its access control part is acceptable.
class PKCS15AuthCT {
public:
    using Info = PKCS15ObjectInfo<AuthInfo>;

    static bool decodePinInfo(Info& info,
                              const PKCS15::AuthenticationObject<PKCS15::PinAttributes>& object);
    static bool decodeBioInfo(
        Info& info, const PKCS15::AuthenticationObject<PKCS15::BiometricAttributes>& object);
    static bool decodeAuthKeyInfo(
        Info& info, const PKCS15::AuthenticationObject<PKCS15::AuthKeyAttributes>& object);
    /// Takes only the certBasedAttributes alternative; false for any other.
    static bool decodeExternalInfo(
        Info& info,
        const PKCS15::AuthenticationObject<PKCS15::ExternalAuthObjectAttributes>& object);
};

}  // namespace tovi
