#pragma once

#include <cstdint>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

// "No value" of the fields below is all ones; each meaning has a name of its own.

/// Not a record number (row of the file-allocation table).
inline constexpr std::uint64_t noRecord = ~std::uint64_t{0};
/// Not a file identifier; FIDs are the low 16 bits of their field.
inline constexpr std::uint64_t noFID = ~std::uint64_t{0};
inline constexpr std::uint16_t noFID16 = 0xFFFF;
/// No reference of a key or authentication object.
inline constexpr std::uint16_t noReference = 0xFFFF;
/// The length of an RSA modulus is not known.
inline constexpr std::uint16_t noModulusLength = 0xFFFF;
/// The object has no userConsent.
inline constexpr std::int32_t noUserConsent = -1;
/// No link to another object in auxValue1 and auxValue2.
inline constexpr std::int64_t noLink = -1;

/// Where an object's value lies on the card (Path, PKCS#15 v1.1).
struct TOVI_API PKCS15Path {
    Blob path;                 ///< file identifiers, two octets each
    std::uint16_t index = 0;   ///< octet of a transparent file, record of a linear one
    std::uint16_t length = 0;  ///< in octets; 0 with index 0: the whole file
};

/// What every object of the application has (CommonObjectAttributes and the like).
struct TOVI_API PKCS15Object {
    /// Of a private key: the record number of its public key, the one with the same id.
    std::int64_t auxValue1 = noLink;
    /// Of a private key, public key or certificate: the record number of its key container.
    std::int64_t auxValue2 = noLink;
    /// keyReference of a key, the reference of an authentication object.
    std::uint16_t reference = noReference;
    /// The reference alternative of a key's keyInfo.
    std::uint16_t keyInfoReference = noReference;
    std::uint16_t modulusLength = noModulusLength;  ///< of an RSA key, in bits
    PKCS15Path path;                                ///< where the object's value lies
    /// File identifier of the value's file. Only the low 16 bits mean something; FFFF is none.
    std::uint64_t fid = noFID;
    /// The object's row in the file-allocation table: the name by which callers know it.
    std::uint64_t recordNumber = noRecord;
    bool sharesFile = false;  ///< another object of the same list has the same fid
    Blob authId;              ///< the authentication object that guards this one
    /// Copied when the record has it. False otherwise, though PKCS#15 defaults native to TRUE:
    /// callers have always read it this way.
    bool native = false;
    bool isPrivate = false;
    bool isModifiable = true;
    std::int32_t userConsent = noUserConsent;
    /// The DER of accessControlRules for the next write or update, null to leave them as they are.
    /// Never set by the container and not owned.
    const byte_array* auxValue3 = nullptr;
};

/// The FID as the card knows it: the low 16 bits.
inline std::uint16_t fid16(const PKCS15Object& object) {
    return static_cast<std::uint16_t>(object.fid);
}

/// One object of the application: the common part and the typed part.
template <class T>
struct TOVI_API PKCS15ObjectInfo : PKCS15Object, T {};

}  // namespace tovi
