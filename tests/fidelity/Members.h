#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/fidelity/TlvTree.h"

/// Members of the SEQUENCEs of PKCS#15 v1.1, found by the tags that come in front of them.
namespace tovi::test {

/// The first octets of the tags of a SEQUENCE's members, in the order of its type. Members of later
/// editions may stand behind them.
using Tags = std::vector<std::uint8_t>;

namespace tags {

inline const Tags commonObject = {0x0C, 0x03, 0x04, 0x02, 0x30};
inline const Tags commonKey = {0x04, 0x03, 0x01, 0x03, 0x02, 0x18, 0x80};
inline const Tags commonSecretKey = {0x02};
inline const Tags commonCertificate = {0x04, 0x01, 0x30, 0xA0, 0xA1, 0xA2, 0x83};
inline const Tags usage = {0x03, 0x30};
inline const Tags commonData = {0x0C, 0x06};
inline const Tags commonAuthObject = {0x04};
inline const Tags path = {0x04, 0x02, 0x80};
inline const Tags rsaKey = {0x30, 0x02};                       // the value is a path
inline const Tags x509Certificate = {0x30, 0x30, 0xA0, 0x02};  // so it is here
inline const Tags pin = {0x03, 0x0A, 0x02, 0x02, 0x02, 0x80, 0x04, 0x18, 0x30};
inline const Tags fingerPrint = {0x03, 0x06, 0x30, 0x02, 0x18, 0x30};
inline const Tags irisScan = {0x03, 0x06, 0xA0, 0x02, 0x18, 0x30};
inline const Tags authKey = {0x01, 0x04};
inline const Tags certBased = {0x04};
inline const Tags tokenInfo = {0x02, 0x04, 0x0C, 0x80, 0x03, 0x30, 0xA1, 0xA2};
inline const Tags algorithm = {0x02, 0x02, 0x05, 0x03, 0x06};  // the parameters are NULL

}  // namespace tags

/// The member `slot` of the type; null when it is absent. A member is the first with its tag behind
/// those in front of it, so mandatory ones have to be there.
Tlv* member(Tlv& sequence, const Tags& tags, std::size_t slot);
const Tlv* member(const Tlv& sequence, const Tags& tags, std::size_t slot);

/// Puts an element in the place of member `slot`, whether there is one or not; no octets remove it.
void put(Tlv& sequence, const Tags& tags, std::size_t slot, const Blob& encoded);

/// The bits that are set in the contents of a BIT STRING.
std::vector<unsigned> bitsOf(const Blob& contents);
/// Without `bit` when it is among them, else with it.
std::vector<unsigned> toggled(std::vector<unsigned> bits, unsigned bit);
/// The value of the contents of an INTEGER that is not negative.
std::uint64_t numberOf(const Blob& contents);

/// What asn1Decoding prints for a primitive element: "Alice", "02a0", "0x0100", "(3)20",
/// "1.3.6.1", "FALSE".
std::string inItsWords(const Tlv& element);

}  // namespace tovi::test
