#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/Objects.h"

namespace tovi::test {

/// One operation of a container. After a failure it can be performed again.
using Step = std::function<void(PKCS15Container&, ISCardOS*)>;

/// Steps and what they are called.
struct Plan {
    std::string name;
    std::vector<Step> steps;
};

/// A content with a label of so many letters; `ordinal` tells its file or reference.
Content contentOf(char letter, std::size_t labelSize, unsigned ordinal);

/// Writing, updating with the same, a shorter and a longer record, deleting, each at the front, in
/// the middle and at the end, and sequences of them. There are some records before.
std::vector<Plan> plansForRecords(Directory kind);
/// The same where there is no record before.
std::vector<Plan> plansForNothing(Directory kind);
/// A write, an update with a longer record, a deletion and a sequence.
std::vector<Plan> shortPlans(Directory kind);
/// The same, a shorter and a longer label of the token, and one after the other, for one that has a
/// label of 30 characters.
std::vector<Plan> tokenInfoPlans();

/// Changes the object and changes it back.
void touchObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position);

}  // namespace tovi::test
