#pragma once

#include <optional>
#include <vector>

#include "tovi/coders/CommonAttributeEncoding.h"
#include "tovi/coders/KeyUsage.h"
#include "tovi/interfaces/PKCS15CT.h"
#include "tovi/pkcs15/PrivateKey.h"
#include "tovi/pkcs15/PublicKey.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/Infos.h"

namespace ASN1 {
class CoderEnv;
}

namespace tovi {

class ISCardOS;
class ProfileDFHandler;

/// The entry coder of asymmetric keys (PKCS#15 v1.1).
class PKCS15KeyCT {
public:
    /// Fills `info` from an RSA, EC, DH or DSA key: true, or false when the access control part of
    /// the record is not acceptable. Nothing for any other alternative; `info` is then untouched.
    static std::optional<bool> decodePrivateKey(const PKCS15::PrivateKeyType& record,
                                                PKCS15ObjectInfo<PrivateKeyInfo>& info);
    /// The same for a public key. A key that stands in the record itself leaves no path.
    static std::optional<bool> decodePublicKey(const PKCS15::PublicKeyType& record,
                                               PKCS15ObjectInfo<PublicKeyInfo>& info);
    static std::optional<bool> decodeTrustedPublicKey(const PKCS15::PublicKeyType& record,
                                                      PKCS15ObjectInfo<TrustedPublicKeyInfo>& info);

    /// Sets the ten usage attributes of a key.
    template <class Info>
    static void decodeKeyUsage(const PKCS15::KeyUsageFlags& usage, Info& info) {
        decodeKeyUsageFlags(usage, info);
    }

    /// Writes a key to its directory file: a new record for the index noIndex, else over record
    /// `index`, whose alternative is kept. Returns the index of the record, or noIndex for an info
    /// that is not valid.
    ///
    /// EC, DH and DSA keys have one shape, so each may be filled from an info of any of the three.
    /// Throws SmartcardException "invalid key type" for a keyType other than RSA, EC, DSA and DH;
    /// "modulusLength not initialized" (operation "PKCS15KeyCT::encodeRSAKeyInfo"); "ASN1 encoding
    /// error" for an info that breaks a constraint of the record, or does not fit the record's
    /// alternative; nothing is written then. What the handler throws passes through.
    template <class Info, class Type>
    static unsigned long encodeKeyInfoBase(ASN1::CoderEnv* env, ISCardOS* os,
                                           ProfileDFHandler& handler,
                                           const PKCS15ObjectInfo<Info>& info,
                                           std::vector<ASN1Object<Type>>& raws,
                                           unsigned long index);

    /// Fills what all asymmetric keys have in common. The value becomes a path; subclass attributes
    /// and keyInfo stay. False when the access-control part of `info` is not acceptable.
    template <class Info, class KeyObject>
    static bool encodeKeyInfo(const PKCS15ObjectInfo<Info>& info, KeyObject& object) {
        setPKCS15Attributes(info, object.commonObjectAttributes);
        setPKCS15Label(info.label, object.commonObjectAttributes);
        object.classAttributes.iD = info.id;
        encodeKeyUsage(object.classAttributes.usage, info);
        // A native key leaves the member as it stands: absent means TRUE.
        if (!info.native) object.classAttributes.set_native(false);
        setPKCS15KeyReference(info.reference, object.classAttributes);
        setPKCS15Path(object.typeAttributes.value, info.path);
        return PKCS15CT::encodeAuthConstraints(info.auxValue3, object.commonObjectAttributes);
    }
    /// The same for an RSA key, with its modulusLength. Throws "modulusLength not initialized"
    /// before anything is filled.
    template <class Info, class KeyObject>
    static bool encodeRSAKeyInfo(const PKCS15ObjectInfo<Info>& info, KeyObject& object) {
        checkModulusLength(info);
        object.typeAttributes.modulusLength = info.modulusLength;
        return encodeKeyInfo(info, object);
    }

    /// Writes the ten usage bits of a key.
    template <class Info>
    static void encodeKeyUsage(PKCS15::KeyUsageFlags& usage, const Info& info) {
        encodeKeyUsageFlags(usage, info);
    }

private:
    static void checkModulusLength(const PKCS15Object& key);
};

}  // namespace tovi
