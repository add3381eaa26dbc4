#pragma once

#include <cstddef>

#include "tools/JsonPlace.h"
#include "tovi/card/CardFolder.h"

namespace tovi {

/// What a new file holds: the members `kind`, `records` and `fill` of its description `place` (see
/// cardPlanFromJson). `left` octets are left on the card. Throws UsageError that names the place.
FileContents contentsFromJson(const FileDescription& file, const JsonPlace& place,
                              std::size_t left);

/// Octets of all that the contents are made of.
std::size_t sizeOf(const FileContents& contents);

}  // namespace tovi
