#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Failure.h"
#include "tests/support/Wire.h"
#include "tests/writing/Sweep.h"

// Every operation of a container, on a card that is pulled out, refuses or cannot be reached at any
// of its commands. Each test tells how many such points it tried.
namespace tovi::test {
namespace {

std::vector<Interruption> operator+(std::vector<Interruption> ways,
                                    const std::vector<Interruption>& more) {
    ways.insert(ways.end(), more.begin(), more.end());
    return ways;
}

std::vector<Interruption> everyWay() { return tears() + refusals() + exceptions(); }

template <class Interrupt>
CutPoints forEach(const std::vector<Scenario>& scenarios, Interrupt interruptOne) {
    CutPoints points;
    for (const Scenario& scenario : scenarios) {
        if (testing::Test::HasFailure()) break;
        points += interruptOne(Sweep(scenario));
    }
    return points;
}

CutPoints interrupt(const std::vector<Scenario>& scenarios, const std::vector<Interruption>& ways) {
    return forEach(scenarios, [&](const Sweep& sweep) { return sweep.interruptEverywhere(ways); });
}

/// Each command in one of the ways only.
CutPoints interruptInTurn(const std::vector<Scenario>& scenarios,
                          const std::vector<Interruption>& ways) {
    return forEach(scenarios, [&](const Sweep& sweep) { return sweep.interruptInTurn(ways); });
}

/// All plans in files of one shape, however full, behind one connection.
std::vector<Scenario> scenariosOf(Directory kind, FileShape shape, const Connection& connection) {
    std::vector<Scenario> all;
    for (const Filling filling : fillings) {
        const auto some = allScenarios({kind, shape, filling, connection});
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

/// For one way. Where several records go with one command, there are fewer commands to interrupt.
std::size_t leastFor(FileShape shape, const Connection& connection) {
    return isLinear(shape) || connection.capabilities.extendedLength ? 248 : 419;
}

/// Data objects in files of every shape, behind every connection.
class OnEveryFile : public testing::TestWithParam<std::tuple<FileShape, std::size_t>> {
protected:
    std::vector<Scenario> scenarios() const {
        return scenariosOf(Directory::dataObjects, shape_, connection_);
    }
    void reportPoints(const CutPoints& points, std::size_t ways) const {
        report(nameOf(shape_) + ", " + connection_.name, points,
               ways * leastFor(shape_, connection_));
    }
    const FileShape shape_ = std::get<0>(GetParam());
    const Connection connection_ = connections()[std::get<1>(GetParam())];
    const bool isShort_ = connection_.name == shortCommands().name;
};
INSTANTIATE_TEST_SUITE_P(Writing, OnEveryFile,
                         testing::Combine(testing::ValuesIn(fileShapes),
                                          testing::Range(std::size_t{0}, connections().size())));

TEST_P(OnEveryFile, AnOperationSurvivesThatTheCardIsPulledOut) {
    reportPoints(interrupt(scenarios(), tears()), 2);
}
// Beyond short commands, each command fails in one way only: what the failures lead to does not
// depend on how much a command writes, save a card without space.

TEST_P(OnEveryFile, AnOperationSurvivesExceptions) {
    if (isShort_) return reportPoints(interrupt(scenarios(), exceptions()), 2);
    reportPoints(interruptInTurn(scenarios(), exceptions()), 1);
}

TEST_P(OnEveryFile, AnOperationSurvivesThatTheCardRefuses) {
    if (isShort_) return reportPoints(interrupt(scenarios(), refusals()), 5);
    CutPoints points = interruptInTurn(scenarios(), refusals());
    points += interrupt(scenarios(), {{Interruption::Kind::status, 0x6A84}});
    reportPoints(points, 2);
}

/// Objects with and without a row, of one alternative and of several.
class OnEveryFileOfAnotherKind : public testing::TestWithParam<std::tuple<Directory, FileShape>> {
protected:
    std::string name() const {
        return "directory " + std::to_string(static_cast<unsigned>(kind_)) + ", " + nameOf(shape_);
    }
    const Directory kind_ = std::get<0>(GetParam());
    const FileShape shape_ = std::get<1>(GetParam());
};
INSTANTIATE_TEST_SUITE_P(Writing, OnEveryFileOfAnotherKind,
                         testing::Combine(testing::Values(Directory::privateKeys,
                                                          Directory::certificates,
                                                          Directory::authObjects),
                                          testing::ValuesIn(fileShapes)));

TEST_P(OnEveryFileOfAnotherKind, AnOperationSurvivesThatTheCardIsPulledOut) {
    report(name(), interrupt(scenariosOf(kind_, shape_, shortCommands()), tears()),
           2 * leastFor(shape_, shortCommands()));
}

TEST_P(OnEveryFileOfAnotherKind, AnOperationSurvivesThatTheCardIsPulledOutInAChain) {
    if (shape_ != FileShape::filledWith00) return;  // the others have nothing to add
    report(name() + ", chained commands",
           interruptInTurn(scenariosOf(kind_, shape_, chainedCommands()), tears()),
           leastFor(shape_, chainedCommands()));
}

TEST_P(OnEveryFileOfAnotherKind, AnOperationSurvivesRefusalsAndExceptions) {
    report(name(),
           interruptInTurn(scenariosOf(kind_, shape_, shortCommands()), refusals() + exceptions()),
           leastFor(shape_, shortCommands()));
}

class OfEveryKind : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Writing, OfEveryKind, testing::Range(0u, directoryCount));

TEST_P(OfEveryKind, AnObjectSurvivesInterruptions) {
    const auto kind = static_cast<Directory>(GetParam());
    CutPoints points;
    for (const FileShape shape : {FileShape::filledWith00, FileShape::linearFixed})
        for (const Filling filling : {Filling::empty, Filling::fullAfter})
            points +=
                interrupt(shortScenarios({kind, shape, filling, shortCommands()}), everyWay());
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
    const auto scenarios = longRecordScenarios(FileShape::filledWith00, shortCommands());
    CutPoints points = interrupt(scenarios, tears());
    points += interruptInTurn(scenarios, refusals());
    points += interruptInTurn(scenarios, exceptions());
    points +=
        interruptInTurn(longRecordScenarios(FileShape::filledWithFF, shortCommands()), tears());
    report("long records", points, 5170);
}

TEST(LongRecords, AreTheOnlyOnesThatABrokenChainBreaks) {
    report(
        "long records, chained commands",
        interruptInTurn(longRecordScenarios(FileShape::filledWith00, chainedCommands()), tears()),
        1060);
}

TEST(UntidyFiles, SurviveInterruptions) {
    report("untidy file", interrupt(untidyScenarios(), everyWay()), 2200);
}

TEST(TwoFilesOfOneKind, SurviveInterruptions) {
    CutPoints points = interrupt(twoFileScenarios({}), everyWay());
    for (const Connection& connection : {extendedLength(), chainedCommands()})
        points += interruptInTurn(twoFileScenarios({.connection = connection}), everyWay());
    report("two files", points, 1740);
}

TEST(TwoFilesOfOneKind, SurviveInterruptionsWhateverTheyHold) {
    CutPoints points;
    for (const Directory kind :
         {Directory::privateKeys, Directory::certificates, Directory::authObjects})
        for (const FileShape shape : {FileShape::filledWithFF, FileShape::linearFixed})
            points += interrupt(twoFileScenarios({.directory = kind, .shape = shape}), tears());
    report("two files of other kinds", points, 1670);
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
