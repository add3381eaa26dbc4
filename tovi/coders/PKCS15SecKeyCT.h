#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tovi/pkcs15/SecretKey.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/Infos.h"

namespace ASN1 {
class CoderEnv;
}

namespace tovi {

class ISCardOS;
class ProfileDFHandler;

/// The entry coder of secret keys (PKCS#15 v1.1).
class PKCS15SecKeyCT {
public:
    /// Fills `info` from a generic, DES or triple-DES key: true, or false when the access control
    /// part of the record is not acceptable. Nothing for any other alternative.
    static std::optional<bool> decodeSecretKey(const PKCS15::SecretKeyType& record,
                                               PKCS15ObjectInfo<BlockCipherKeyInfo>& info);

    using Object = PKCS15::SecretKeyObject<PKCS15::GenericSecretKeyAttributes>;
    /// Fills `info` from an alternative named `choiceName`, which is also its default label and,
    /// without keyLen, tells the length. `algorithmName` null: the length tells the name.
    static bool decodeBlockCipherKeyInfo(const std::string& choiceName, const char* algorithmName,
                                         PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                                         const Object& object);

    /// Writes a key to its directory file: a new record for the index noIndex, else over record
    /// `index`, whose alternative is kept. Returns the index of the record, or noIndex for an info
    /// that is not valid.
    ///
    /// Only "DES" of 8 octets and "TripleDES" of 16 or 24 can be written; for any other name or
    /// length throws SmartcardException "invalid key type", for an update too. "ASN1 encoding
    /// error" for an info that breaks a constraint of the record; nothing is written then. What the
    /// handler throws passes through.
    static unsigned long encodeBlockCipherKeyInfoBase(
        ASN1::CoderEnv* env, ISCardOS* os, ProfileDFHandler& handler,
        const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
        std::vector<ASN1Object<PKCS15::SecretKeyType>>& raws, unsigned long index);
    /// Fills a record. A key without id has its label for one; its value becomes a path; native is
    /// never written. False when the access-control part of `info` is not acceptable.
    static bool encodeBlockCipherKeyInfo(const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                                         Object& object);
};

}  // namespace tovi
