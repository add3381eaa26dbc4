#pragma once

#include <string>

#include "tovi/Export.h"
#include "tovi/asn1/AbstractData.h"

namespace ASN1 {

/// The value in ASN.1 value notation (X.680), over several lines, with the names of members, named
/// bits and enumerations:
///
///     privateRSAKey : {
///       commonObjectAttributes {
///         label "KEY1",
///         flags {private},
///         authId '01'H
///       }, ...
///
/// What has no notation here is a comment: "-- unknown: '9E0403020000'H --". Text that is not UTF-8
/// or holds control characters, and INTEGERs beyond 64 bits, are shown in hex. The length is linear
/// in that of the value's encoding.
TOVI_API std::string print(AbstractData value);

}  // namespace ASN1
