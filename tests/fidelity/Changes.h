#pragma once

#include <string>
#include <vector>

#include "tests/fidelity/Fields.h"
#include "tests/fidelity/IndependentDecoder.h"
#include "tests/support/CardBuilder.h"

namespace tovi::test {

/// One attribute of an info that is changed, and what that means for its record.
struct Change {
    std::string name;
    Edit apply;     ///< makes the change in the info as it was read
    Edit readsAs;   ///< what reading it again finds changed; mostly what was put in
    Edit takeBack;  ///< what the info as it was first read needs to undo the change; mostly nothing
    Blob expected;  ///< the record afterwards
    Blob restored;  ///< the record after the change was taken back
    /// Where another decoder finds it, and all that it finds there afterwards.
    std::string where;
    DecodedValues values;
};

/// Every change of one attribute that a record of the kind can have, each with another value than
/// the one that is there. Expected records are worked out from the octets of `record` alone.
std::vector<Change> changesOf(Directory kind, const Blob& record);

/// The name of the record's type for the independent decoder.
std::string independentType(Directory kind, const Blob& record);

}  // namespace tovi::test
