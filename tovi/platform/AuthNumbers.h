#pragma once

#include <cstdint>

#include "tovi/asn1/BitString.h"
#include "tovi/asn1/Enumerated.h"
#include "tovi/asn1/Integer.h"
#include "tovi/asn1/ObjectIdentifier.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

// Values of authentication objects in the form in which AuthInfo holds them, and back.

/// A number; one that is too large becomes the largest that is one.
std::uint32_t toNumber(std::uint64_t value);
// The same for numbers that may be negative; those are noAuthValue.
std::uint32_t toNumber(const ASN1::INTEGER& value);
std::uint32_t toNumber(const ASN1::ENUMERATED& value);

/// Bit n as 1 << n, for the first 32.
std::uint32_t toFlags(const ASN1::BIT_STRING& bits);

/// Arcs of four octets each, most significant first; one that is too large has all bits set.
Blob toArcs(const ASN1::OBJECT_IDENTIFIER& identifier);
/// The way back; empty for octets that are no identifier.
ASN1::OBJECT_IDENTIFIER fromArcs(ASN1::View arcs);

}  // namespace tovi
