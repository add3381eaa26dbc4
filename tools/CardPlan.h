#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "tovi/card/CardFolder.h"

namespace tovi {

/// A whole card, ready to be made as a card folder.
struct CardPlan {
    CardDescription card;
    std::map<std::string, FileContents> contents;  ///< by path, "3F00/5015/5031"
    std::string brokenCard;  ///< what CARD holds instead of a description; empty: nothing

    /// Makes the folder. Throws CardFolderError; see CardFolder::create.
    void make(const std::filesystem::path& folder) const;
};

/// Reads a card from JSON:
///
///     {"about": ["what the card is for"],
///      "pins": [{"reference": 1, "value": "31323334", "tries": 3}],
///      "files": [
///        {"path": "3F00/5015", "structure": "df", "aid": "A000000063504B43532D3135"},
///        {"path": "3F00/5015/4401", "size": 512, "update": "pin:1", "kind": "PrKDF",
///         "records": [{"privateRSAKey": {...}}], "fill": "FF"}]}
///
/// Options of a file are those of CARD: structure (transparent when absent), size, record, aid,
/// sfi, read, update. `kind` names the type of the records; each is a value as asnFromJson takes
/// it, or one of
///
///     {"hex": "A00B..."}              octets as they are
///     {"gap": 10, "with": "FF"}       padding, of 00 unless `with` says otherwise
///     {"erased": VALUE}               a record whose tag was overwritten with 00
///     {"cut": 20, "of": VALUE}        the first octets of a record
///
/// An entry, a file and a PIN may carry a remark, `about`. The records of a linear file are entries
/// too, one each. `fill` pads the rest of a transparent file. Without `size` there is room for the
/// records and no more. A record that would not be read as the value that is asked for is refused.
/// "card", a list of lines, stands for the whole of CARD, whatever it says; it is for tests.
///
/// Throws UsageError that names the place.
CardPlan cardPlanFromJson(const nlohmann::ordered_json& json);

/// The same from a file; UsageError also for what is no JSON, Failure when it cannot be read.
CardPlan cardPlanFromFile(const std::filesystem::path& file);

}  // namespace tovi
