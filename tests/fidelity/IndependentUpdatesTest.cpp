// Every record under tests/data with one attribute changed through the container, read by somebody
// else.

#include <gtest/gtest.h>

#include "tests/fidelity/Changes.h"
#include "tests/fidelity/ExpectedUpdate.h"
#include "tests/fidelity/UpdatedCard.h"

namespace tovi::test {
namespace {

/// The values with other ones in the place of all that stand at `where`.
DecodedValues replaced(DecodedValues values, const std::string& where,
                       const DecodedValues& others) {
    std::erase_if(values, [&](const auto& value) {
        return value.first == where || value.first.starts_with(where + '.');
    });
    values.insert(others.begin(), others.end());
    return values;
}

/// Members of versions that are not written yet are nothing that it could read.
std::vector<RecordCase> readableCases() {
    std::vector<RecordCase> cases = updatableCases();
    std::erase_if(cases, [](const RecordCase& each) { return each.isExtended; });
    return cases;
}

class IndependentUpdates : public testing::TestWithParam<RecordCase> {
protected:
    const RecordCase& its = GetParam();
    const std::string type = independentType(its.kind, its.record());
    const std::vector<Change> changes = changesOf(its.kind, its.record());

    Blob updated(const Edit& edit) const {
        UpdatedCard card(its);
        card.update(edit);
        return card.record();
    }
};

TEST_P(IndependentUpdates, HoldWhatWasPutInAndAllElseAsItWas) {
    std::vector<Blob> records = {settledRecord(its.kind, its.record()).encoded()};
    for (const Change& change : changes) records.push_back(updated(change.apply));
    const std::vector<DecodedValues> found = decodedIndependently(type, records);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(changes[i].name);
        EXPECT_EQ(found[i + 1], replaced(found[0], changes[i].where, changes[i].values));
    }
}

INSTANTIATE_TEST_SUITE_P(Records, IndependentUpdates, testing::ValuesIn(readableCases()),
                         [](const auto& each) { return testName(each.param); });

}  // namespace
}  // namespace tovi::test
