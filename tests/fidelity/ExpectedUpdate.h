#pragma once

#include "tests/fidelity/TlvTree.h"
#include "tests/support/CardBuilder.h"

/// What a record has to be after an update. Everything that the library's rules for writing do not
/// touch is as it was, octet for octet.
namespace tovi::test {

/// The record after an update that changes nothing of the info, worked out from its octets alone:
/// what its first update settles for good.
Tlv settledRecord(Directory kind, const Blob& record);
/// The same for a TokenInfo.
Tlv settledTokenInfo(const Blob& record);

/// The label of an object without one: the name of its alternative.
std::string kindName(Directory kind, const Tlv& object);

/// Makes bits of CommonObjectFlags those of an object; without the two first there are no flags.
void putFlags(Tlv& common, const std::vector<unsigned>& bits);

}  // namespace tovi::test
