#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tovi/Export.h"
#include "tovi/interfaces/PKCS11Attrs.h"

namespace tovi {

/// One algorithm that the card can perform (AlgorithmInfo, PKCS#15 v1.1).
struct TOVI_API PKCS15AlgorithmInfo {
    std::uint64_t algorithm = 0;  ///< number of a PKCS#11 mechanism
    Blob algId;                   ///< arcs of the object identifier, one octet each
    /// compute-checksum, compute-signature, verify-checksum, verify-signature, encipher, decipher,
    /// hash, generate-key
    std::array<bool, 8> supportedOperations{};
};

/// The names that the token goes by.
struct TOVI_API TokenInfo : PKCS11Attrs {
    Blob label;                  ///< for people, UTF-8
    Blob serialNumber;           ///< serialNumber of the TokenInfo
    std::uint8_t tokenAux1 = 0;  ///< 0xFF after reading; carried for callers like the next two
    std::uint8_t tokenAux2 = 0;  ///< carried for callers
    std::uint8_t tokenAux3 = 0;  ///< carried for callers
};

/// EF(TokenInfo) as a plain record (PKCS#15 v1.1).
struct TOVI_API PKCS15TokenInfo {
    Blob manufacturerID;                                   ///< for people, UTF-8
    bool readonly = false;                                 ///< nothing may be written
    bool loginRequired = true;                             ///< a PIN has to be given before use
    bool prnGeneration = false;                            ///< makes random numbers
    bool eidCompliant = false;                             ///< the flag of that name
    std::uint64_t version = 0;                             ///< of PKCS#15; 0 is v1
    std::vector<PKCS15AlgorithmInfo> supportedAlgorithms;  ///< in the order of the card
    TokenInfo info;                                        ///< names, and attributes
};

}  // namespace tovi
