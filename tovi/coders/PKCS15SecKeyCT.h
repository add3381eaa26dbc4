#pragma once

#include <optional>
#include <string>

#include "tovi/pkcs15/SecretKey.h"
#include "tovi/records/Infos.h"

namespace tovi {

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
};

}  // namespace tovi
