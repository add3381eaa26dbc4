#pragma once

#include <cstdint>

#include "tovi/Export.h"
#include "tovi/interfaces/PKCS11Attrs.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// The keyType of a key whose type is not known; writing it is refused with "invalid key type".
inline constexpr std::uint64_t noKeyType = ~std::uint64_t{0};

/// trustedUsage of a certificate: bits, or all ones in 16 bits for none.
inline constexpr std::uint64_t noTrustedUsage = 0xFFFF;
inline constexpr std::uint64_t trustedUsageSign = 1;
inline constexpr std::uint64_t trustedUsageDecrypt = 2;
/// The certificate serves smart-card logon.
inline constexpr std::uint64_t trustedUsageLogon = 0x100;
/// What reading sets for a certificate whose trusted usage names smart-card logon.
inline constexpr std::uint64_t trustedUsageLogonDecoded = 267;

/// A private key (entry of a PrKDF, PKCS#15 v1.1).
struct TOVI_API PrivateKeyInfo : PKCS11Attrs {
    Blob label;                         ///< for people, UTF-8
    Blob id;                            ///< iD of CommonKeyAttributes
    std::uint64_t keyType = noKeyType;  ///< CKK_ number
};

/// A public key (entry of a PuKDF, PKCS#15 v1.1).
struct TOVI_API PublicKeyInfo : PKCS11Attrs {
    Blob label;                         ///< for people, UTF-8
    Blob id;                            ///< iD of CommonKeyAttributes
    std::uint64_t keyType = noKeyType;  ///< CKK_ number
};

/// A public key that the card issuer trusts.
struct TOVI_API TrustedPublicKeyInfo : PublicKeyInfo {};

/// A certificate of the holder (entry of a CDF, PKCS#15 v1.1).
struct TOVI_API CertificateInfo : PKCS11Attrs {
    Blob label;                                   ///< for people, UTF-8
    Blob id;                                      ///< iD of CommonCertificateAttributes
    std::uint64_t certificateType = 0;            ///< CKC_ number; only X.509 is decoded
    std::uint64_t trustedUsage = noTrustedUsage;  ///< bits, see above
    Blob serialNumber;                            ///< content octets of the INTEGER, big-endian
};

/// A certificate that the card issuer trusts.
struct TOVI_API TrustedCertificateInfo : CertificateInfo {};

/// A certificate that is useful but neither the holder's nor trusted.
struct TOVI_API UsefulCertificateInfo : CertificateInfo {};

/// A secret key (entry of an SKDF, PKCS#15 v1.1).
struct TOVI_API BlockCipherKeyInfo : PKCS11Attrs {
    Blob label;                   ///< for people, UTF-8
    Blob algorithmName;           ///< "DES", "TripleDES" or a name that the caller gave
    std::uint64_t keyLength = 0;  ///< in octets
    Blob id;                      ///< iD of CommonKeyAttributes
};

/// A data object (entry of a DODF, PKCS#15 v1.1).
struct TOVI_API DataInfo : PKCS11Attrs {
    Blob label;            ///< for people, UTF-8
    Blob applicationName;  ///< what the object belongs to
};

/// A key container: the keys of one holder with their certificates, by record number. It lives in
/// memory only. Record 0 is always TokenInfo, so 0 means none.
struct TOVI_API ContainerInfo : PKCS11Attrs {
    Blob label;  ///< for people, UTF-8
    /// Record numbers of a private key and its certificate, for encryption and for signatures.
    std::uint64_t exchangeKeyRecord = 0;
    std::uint64_t exchangeCertificateRecord = 0;
    std::uint64_t signatureKeyRecord = 0;
    std::uint64_t signatureCertificateRecord = 0;
    bool logonCertificate = false;  ///< a paired certificate serves smart-card logon
};

}  // namespace tovi
