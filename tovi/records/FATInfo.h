#pragma once

#include <cstdint>

#include "tovi/Export.h"

namespace tovi {

/// Object-type codes: the owner of a row of the file-allocation table. Trusted variants are the
/// plain code + 16, useful ones + 32.
enum ObjectType : std::uint8_t {
    freeRow = 0,
    privateKeyObject = 1,
    publicKeyObject = 2,
    certificateObject = 3,
    dataObject = 4,
    containerObject = 5,
    tokenInfoObject = 6,
    secretKeyObject = 7,
    trustedPublicKeyObject = 18,
    trustedCertificateObject = 19,
    usefulCertificateObject = 35,
    /// A directory record that could not be decoded.
    unrecognisedObjectType = 64,
    // Authentication objects take no row; both codes name them where a kind is asked for.
    authObject = 254,
    authObjectAlternate = 255,
};

/// One row of the file-allocation table: a plain value of six octets.
struct TOVI_API FATInfo {
    std::uint8_t objectType = freeRow;  ///< an ObjectType
    std::uint8_t isPrivate = 0xFF;      ///< 0 or 1; 0xFF in a free row
    std::uint16_t indexA = 0xFFFF;      ///< the row's own index, low 16 bits
    std::uint16_t indexB = 0xFFFF;      ///< the same

    friend bool operator==(const FATInfo&, const FATInfo&) = default;
};
static_assert(sizeof(FATInfo) == 6);

}  // namespace tovi
