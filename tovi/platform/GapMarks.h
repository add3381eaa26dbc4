#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// The most octets that a mark has.
inline constexpr std::size_t longestMark = 7;

/// Fills a gap that has records behind it: 00 FF FF ..., a single octet FF.
///
/// All of it is padding; that its values differ tells a reader that more follows, and FF in front
/// of a record cannot be taken for the 00 of an erased one.
void paintGap(std::span<std::uint8_t> gap);

/// The octets that make a stretch of `length` octets, of which they are the first, one erased
/// entry: 00 and a length, whatever stands behind them. A stretch too short for that, of one or two
/// octets, becomes padding; none gives none.
Blob erasedMark(std::size_t length);

/// The octets that make a stretch of `length` octets, at least longestMark, of which they are the
/// first, one record with the tag of `record` that no type decodes: its contents begin with 00.
Blob unfinishedMark(ASN1::View record, std::size_t length);

}  // namespace tovi
