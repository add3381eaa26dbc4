#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Failure.h"
#include "tests/support/Wire.h"
#include "tests/writing/Sweep.h"

// Every operation of a container, on a card that is pulled out, refuses or cannot be reached at any
// of its commands. Each test tells how many such points it tried.
namespace tovi::test {
namespace {

std::vector<Interruption> everyWay() {
    std::vector<Interruption> ways = tears();
    for (const auto& more : {refusals(), exceptions()})
        ways.insert(ways.end(), more.begin(), more.end());
    return ways;
}

CutPoints interrupt(const std::vector<Scenario>& scenarios, const std::vector<Interruption>& ways) {
    CutPoints points;
    for (const Scenario& scenario : scenarios) {
        if (testing::Test::HasFailure()) break;
        points += Sweep(scenario).interruptEverywhere(ways);
    }
    return points;
}

/// Data objects in files of every shape, behind every connection.
class OnEveryFile : public testing::TestWithParam<std::tuple<FileShape, std::size_t>> {
protected:
    void interruptEveryOperation(const std::vector<Interruption>& ways) {
        const auto [shape, connection] = GetParam();
        CutPoints points;
        for (const Filling filling : fillings) {
            const Setting setting = {Directory::dataObjects, shape, filling,
                                     connections()[connection]};
            points += interrupt(allScenarios(setting), ways);
        }
        report(nameOf(shape) + ", " + connections()[connection].name, points,
               ways.size() * leastForOneWay());
    }

private:
    /// Where several records go with one command, there are fewer commands to interrupt.
    std::size_t leastForOneWay() const {
        const auto [shape, connection] = GetParam();
        const bool isExtended = connections()[connection].capabilities.extendedLength;
        return isLinear(shape) || isExtended ? 240 : 410;
    }
};
INSTANTIATE_TEST_SUITE_P(Writing, OnEveryFile,
                         testing::Combine(testing::ValuesIn(fileShapes),
                                          testing::Range(std::size_t{0}, connections().size())));

TEST_P(OnEveryFile, AnOperationSurvivesThatTheCardIsPulledOut) { interruptEveryOperation(tears()); }
TEST_P(OnEveryFile, AnOperationSurvivesThatTheCardRefuses) { interruptEveryOperation(refusals()); }
TEST_P(OnEveryFile, AnOperationSurvivesExceptions) { interruptEveryOperation(exceptions()); }

class OfEveryKind : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Writing, OfEveryKind, testing::Range(0u, directoryCount));

TEST_P(OfEveryKind, AnObjectSurvivesInterruptions) {
    const auto kind = static_cast<Directory>(GetParam());
    CutPoints points;
    for (const FileShape shape : {FileShape::filledWith00, FileShape::linearFixed})
        for (const Filling filling : {Filling::empty, Filling::fullAfter})
            points +=
                interrupt(shortScenarios({kind, shape, filling, connections()[0]}), everyWay());
    report("directory " + std::to_string(GetParam()), points, 800);
}

TEST(TokenInfo, SurvivesInterruptions) {
    CutPoints points;
    for (const FileShape shape : fileShapes)
        for (const Connection& connection : connections())
            points += interrupt(tokenInfoScenarios(shape, connection), everyWay());
    report("TokenInfo", points, 4500);
}

TEST(LongRecords, AreTheOnlyOnesThatAnInterruptionBreaks) {
    std::vector<Interruption> ways = exceptions();
    ways.push_back(refusals().front());
    CutPoints points = interrupt(longRecordScenarios(FileShape::filledWith00), ways);
    for (const FileShape shape : {FileShape::filledWith00, FileShape::filledWithFF})
        points += interrupt(longRecordScenarios(shape), tears());
    report("long records", points, 7000);
}

TEST(UntidyFiles, SurviveInterruptions) {
    report("untidy file", interrupt(untidyScenarios(), everyWay()), 2200);
}

TEST(TwoFilesOfOneKind, SurviveInterruptions) {
    CutPoints points;
    for (const Connection& connection : connections())
        points += interrupt(twoFileScenarios(connection), everyWay());
    report("two files", points, 3800);
}

/// What takes more room than there is leaves card and container as they are.
class FullFile : public testing::TestWithParam<FileShape> {
protected:
    void refuse(const char* operation, const Step& step) {
        const std::vector<Blob> records = usualRecords(kind);
        VirtualCard card = cardWith(kind, GetParam(), records, 0);
        Wire wire(card);
        const auto container = readNew(card);
        const ContainerView before = viewOf(*container);
        EXPECT_EQ(failureOf([&] { step(*container, wire.os()); }),
                  (Failure{smartcardId, "not enough memory", operation, 0x16A84}));
        EXPECT_EQ(difference(viewOf(*container), before), "");
        EXPECT_EQ(contradiction(*container), "");
        EXPECT_EQ(looseness(card, absolutePath(directoryFID(kind)), GetParam(), records), "");
    }
    static constexpr Directory kind = Directory::dataObjects;
    /// Its record is longer than one of the linear files may be.
    const Content large_ = {.label = std::string(250, 'x')};
};
INSTANTIATE_TEST_SUITE_P(Writing, FullFile, testing::ValuesIn(fileShapes));

TEST_P(FullFile, RefusesARecordMoreAndChangesNothing) {
    const Content small = {.label = "x"};
    refuse("PKCS15Container::writeInfo", [&](PKCS15Container& container, ISCardOS* os) {
        writeObject(container, os, kind, small);
    });
}

TEST_P(FullFile, RefusesALongerRecordAndChangesNothing) {
    for (const std::size_t position : {0u, 3u, 7u})
        refuse("PKCS15Container::updateInfo", [&](PKCS15Container& container, ISCardOS* os) {
            updateObject(container, os, kind, position, large_);
        });
}

}  // namespace
}  // namespace tovi::test
