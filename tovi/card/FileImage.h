#pragma once

#include <string>
#include <vector>

#include "tovi/card/CardDescription.h"

namespace tovi {

/// The contents of a linear file as a card folder keeps them: each record behind its length in two
/// octets, big-endian.
Blob encodeRecords(const std::vector<Blob>& records);

/// Takes such contents apart. A record of a linear-fixed file that is too short is filled with 00.
/// Returns why they do not fit `file`, "record 3: found ..., expected ...", or an empty text.
[[nodiscard]] std::string decodeRecords(ASN1::View image, const FileDescription& file,
                                        std::vector<Blob>& records);

/// The most octets that the contents of `file` take in a card folder.
std::size_t largestImage(const FileDescription& file);

/// Octets in front of each record.
inline constexpr std::size_t recordHeader = 2;

}  // namespace tovi
