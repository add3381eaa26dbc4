#pragma once

#include <string>

#include "tovi/Export.h"
#include "tovi/asn1/Type.h"

namespace ASN1 {

/// The assignment of the type as it stands in its ASN.1 module, rebuilt from its table:
///
///     Path ::= SEQUENCE {
///         efidOrPath OCTET STRING,
///         index INTEGER (0..65535) OPTIONAL,
///         length [0] INTEGER (0..65535) OPTIONAL
///     }
///
/// Bounds are numbers, a parameterized type shows its actual parameters, and rows that are there
/// for the sake of cards of another edition are left out.
TOVI_API std::string notation(const Type& type);

}  // namespace ASN1
