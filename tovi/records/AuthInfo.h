#pragma once

#include <cstdint>

#include "tovi/Export.h"
#include "tovi/interfaces/PKCS11Attrs.h"

namespace tovi {

/// The kind of an authentication object; values are the positions in AuthenticationType.
enum class AuthType : std::uint8_t { pin, biometric, authKey, external, none = 0xFF };

/// No value in a number of AuthInfo.
inline constexpr std::uint32_t noAuthValue = ~std::uint32_t{0};

/// The typed part of an authentication object (entry of an AODF, PKCS#15 v1.1). Members are
/// named after the fields of the standard; those of other types keep their "no value".
struct TOVI_API AuthInfo : PKCS11Attrs {
    Blob label;         ///< for people, UTF-8
    Blob authKeyId;     ///< iD of the secret key of an authentication key
    Blob authObjectId;  ///< authId of the class attributes: the object's own identifier
    Blob lastChange;    ///< lastPinChange or lastChange, GeneralizedTime as text
    Blob templateId;    ///< of a biometric template: arcs, four octets each, most significant first
    Blob cha;           ///< certificate holder authorisation

    std::uint32_t pinFlags = noAuthValue;   ///< bit n of the BIT STRING is 1 << n
    std::uint32_t pinType = noAuthValue;    ///< position in PinType: bcd 0, ascii-numeric 1, utf8 2
    std::uint32_t minLength = noAuthValue;  ///< in characters
    std::uint32_t storedLength = noAuthValue;  ///< in octets
    std::uint32_t maxLength = noAuthValue;     ///< in characters
    std::uint32_t bioFlags = noAuthValue;      ///< bit n of the BIT STRING is 1 << n

    std::uint64_t bioType = noAuthValue;  ///< position in BiometricType: fingerPrint 0, irisScan 1
    std::uint64_t side = noAuthValue;     ///< hand or eye: left 0, right 1
    std::uint64_t finger = noAuthValue;   ///< thumb 0 ... littleFinger 4

    AuthType type = AuthType::none;  ///< which of the members mean something
    std::uint8_t padChar = 0;        ///< means something when hasPadChar is set
    bool hasPadChar = false;         ///< the object has a padChar
    bool derivedKey = true;          ///< derivedKey of an authentication key
};

}  // namespace tovi
