#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tovi/platform/FileLayout.h"
#include "tovi/platform/PlannedWrites.h"

namespace tovi {

/// The least that one command must write for planWriting(): a mark and one octet of a record.
inline constexpr std::size_t leastWrite = 8;

/// How a change of a transparent directory file is written.
struct WritePlan {
    std::vector<WriteStep> steps;
    /// After so many steps the change itself is done, and what follows closes gaps.
    std::size_t effective = 0;
    std::size_t place = 0;  ///< of the record in question, counted as RecordChange does
};

/// Plans the commands of at most `most` octets, at least leastWrite, after which `file` holds its
/// records changed as said: one behind the other from the first octet on, then padding. None when
/// it has no room for them.
///
/// After each step RecordScanner finds every record that does not change, in order, and the one
/// that changes as before or as afterwards. Only a record that leaves no room for a mark in one
/// command, up to five octets, may be found as one that does not decode, with its tag and in its
/// place. Gaps that stand between records after a step are 00 FF FF ..., or, where one command
/// cannot write both a record and such a gap, an erased entry. A broken record at the end of the
/// file stays where it is, and the gap in front of it stays a gap.
std::optional<WritePlan> planWriting(ASN1::View file, const RecordChange& change, std::size_t most);

}  // namespace tovi
