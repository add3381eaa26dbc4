#pragma once

#include <cstddef>

#include "tovi/card/VirtualCard.h"

namespace tovi::bench {

/// How many objects of each kind a card has.
struct CardContents {
    std::size_t keyPairs = 0;      ///< RSA and EC in turn: private and public key with one id
    std::size_t privateKeys = 0;   ///< without public key
    std::size_t publicKeys = 0;    ///< without private key
    std::size_t certificates = 0;  ///< with the ids of the first keys
    std::size_t secretKeys = 0;
    std::size_t dataObjects = 0;
    std::size_t authObjects = 0;
    /// All objects have one id, and their values lie in one file.
    bool isShared = false;

    std::size_t count() const {
        return 2 * keyPairs + privateKeys + publicKeys + certificates + secretKeys + dataObjects +
               authObjects;
    }
};

/// `count` objects as a card of many holders has them: key pairs with certificates, one object in
/// ten a secret key or a data object, and a PIN.
CardContents mixedContents(std::size_t count);

/// A card that holds them. Ids have 20 octets, as hashes of keys do; labels are 16 characters; each
/// value lies in a file of its own. Directory files have at most 32,000 octets, the most that READ
/// BINARY reaches with a 15-bit offset, and the ODF names as many for each kind as are needed.
VirtualCard syntheticCard(const CardContents& contents);

}  // namespace tovi::bench
