#include <gtest/gtest.h>

#include "tests/writing/Sweep.h"

// Every operation of a container with each of its allocations failing in turn, those of the
// connection and of the card included: the container still is what it was, or what it is to be, and
// can perform the operation again.
namespace tovi::test {
namespace {

CutPoints exhaust(const std::vector<Scenario>& scenarios) {
    CutPoints points;
    for (const Scenario& scenario : scenarios) {
        if (testing::Test::HasFailure()) break;
        points += Sweep(scenario).interruptEverywhere(exhaustions());
    }
    return points;
}

class WithoutMemory : public testing::TestWithParam<FileShape> {};
INSTANTIATE_TEST_SUITE_P(Writing, WithoutMemory, testing::ValuesIn(fileShapes));

TEST_P(WithoutMemory, AnOperationEndsAndCanBeDoneAgain) {
    CutPoints points;
    for (const Filling filling : {Filling::empty, Filling::fullAfter})
        points +=
            exhaust(shortScenarios({Directory::dataObjects, GetParam(), filling, shortCommands()}));
    report("allocations, " + nameOf(GetParam()), points, isLinear(GetParam()) ? 400 : 1300);
}

class WithoutMemoryForEveryKind : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Writing, WithoutMemoryForEveryKind, testing::Range(0u, directoryCount));

TEST_P(WithoutMemoryForEveryKind, AnOperationEndsAndCanBeDoneAgain) {
    const Setting setting = {.directory = static_cast<Directory>(GetParam())};
    report("allocations, directory " + std::to_string(GetParam()), exhaust(shortScenarios(setting)),
           800);
}

TEST(TokenInfoWithoutMemory, IsUpdatedOrNotAndCanBeUpdatedAgain) {
    report("allocations, TokenInfo",
           exhaust(tokenInfoScenarios(FileShape::filledWith00, shortCommands())), 900);
}

TEST(LongRecordsWithoutMemory, AreWrittenInTheEnd) {
    std::vector<Scenario> scenarios = longRecordScenarios(FileShape::filledWith00, shortCommands());
    scenarios.resize(6);
    report("allocations, long records", exhaust(scenarios), 1600);
}

}  // namespace
}  // namespace tovi::test
