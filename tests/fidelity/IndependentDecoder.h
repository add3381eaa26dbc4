#pragma once

#include <map>
#include <string>
#include <vector>

#include "tovi/interfaces/Blob.h"

namespace tovi::test {

/// The values that a record holds, in the decoder's own words, by the names that lead to them:
/// "common.label" -> "Alice"; "class.usage" -> "(3)20", a BIT STRING of three bits; members of a
/// list are "?1", "?2". A member that is absent or has its DEFAULT is not among them.
using DecodedValues = std::map<std::string, std::string>;

/// Decodes a record as DER with asn1Decoding of libtasn1, which shares nothing with this library.
/// `type` is one of tests/data/records-for-libtasn1.asn1. Throws std::runtime_error with what the
/// program says when it does not decode.
DecodedValues decodedIndependently(const std::string& type, const Blob& record);
/// The same for many records of one type with one start of the program.
std::vector<DecodedValues> decodedIndependently(const std::string& type,
                                                const std::vector<Blob>& records);

}  // namespace tovi::test
