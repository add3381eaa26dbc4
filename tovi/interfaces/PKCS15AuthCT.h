#pragma once

#include <vector>

#include "tovi/Export.h"
#include "tovi/pkcs15/Authentication.h"

namespace ASN1 {
class CoderEnv;
}

namespace tovi {

class ISCardOS;
class ProfileDFHandler;
struct AuthInfo;
template <class T>
struct ASN1Object;
template <class T>
struct PKCS15ObjectInfo;

/// The entry coder of authentication objects (AuthenticationType of PKCS#15 v1.1).
///
/// Each decoder fills the common attributes, the AuthInfo part, and for PINs and templates
/// `reference`, as far as the record goes, also when it breaks a constraint, and returns whether
/// the record was understood and its access control part is acceptable.
class TOVI_API PKCS15AuthCT {
public:
    /// What an authentication object becomes.
    using Info = PKCS15ObjectInfo<AuthInfo>;

    /// Fills `info` from a record of the alternative that the function names; see above.
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

    /// Writes `info` as record `index` of the AODF, or as a new one for all ones, and puts its
    /// value into `raws`. Returns the index of the record, all ones for an info that is not valid.
    /// Without a card, `os` null, a record is replaced in memory only.
    ///
    /// A record that is replaced keeps its alternative and all that AuthInfo does not hold. Of a
    /// member that its type demands, no value in the info leaves what is there; a new record needs
    /// them all. An optional one is there afterwards exactly when the info has a value for it.
    ///
    /// Throws SmartcardException "ASN1 encoding error", code 0, with nothing written: for a kind
    /// that the record at `index` is not of, an index without a value, a new info that lacks a
    /// value, constraints in `auxValue3` that are no accessControlRules, and whatever breaks a
    /// constraint of its type. What the handler throws passes through.
    static unsigned long encodeAuthInfoBase(
        ASN1::CoderEnv* env, ISCardOS* os, ProfileDFHandler& handler, const Info& info,
        std::vector<ASN1Object<PKCS15::AuthenticationType>>& raws, unsigned long index);
};

}  // namespace tovi
