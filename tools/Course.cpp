#include "tools/Course.h"

#include <algorithm>

namespace tovi {
namespace {

template <class Name>
bool isAnother(const Forecast& meant, const Forecast& actual, const Name& name) {
    const auto there = actual.identityOf(name);
    return there && there != meant.identityOf(name);
}

}  // namespace

bool Course::isAstray(std::uint64_t record) const {
    return isLost_ || isAnother(meant_, actual_, record);
}

bool Course::leadsAstray(const Operation& next) const {
    const NamedObjects named = next.names();
    if (named.auth && isAnother(meant_, actual_, *named.auth)) return true;
    return std::any_of(named.records.begin(), named.records.end(),
                       [this](std::uint64_t record) { return isAstray(record); });
}

void Course::advance(const Operation& operation, bool isDone) {
    operation.foretell(meant_, position_);
    if (isDone) operation.foretell(actual_, position_);
    ++position_;
    if (meant_.knowsRecords()) return;
    // The card was read. Its record numbers are those that the list means if all went well so far.
    isLost_ = isLost_ || !isDone || !meant_.hasSameRows(actual_);
    meant_.takeRows();
    actual_.takeRows();
}

}  // namespace tovi
