#pragma once

#include <optional>

#include "tovi/coders/KeyUsage.h"
#include "tovi/pkcs15/PrivateKey.h"
#include "tovi/pkcs15/PublicKey.h"
#include "tovi/records/Infos.h"

namespace tovi {

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
};

}  // namespace tovi
