#include <functional>
#include <optional>

#include "tests/platform/WrittenKind.h"

// Every operation is interrupted at every command: that one fails, performed or not, alone or with
// all that follow.
namespace tovi {
namespace {

using test::failureOf;
using test::fileOf;
using test::Kind;
using test::linearFile;
using test::record;
using test::times;
using test::operator+;
using Records = std::vector<Blob>;
using Operation = std::function<bool(Kind&)>;

struct Change {
    Operation operation;
    Records after;
};

Records replaced(Records records, std::size_t at, const Blob& record) {
    records[at] = record;
    return records;
}

Records removed(Records records, std::size_t at) {
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(at));
    return records;
}

Records appended(Records records, const Blob& record) {
    records.push_back(record);
    return records;
}

std::vector<Change> changesOf(const Records& records) {
    std::vector<Change> changes;
    for (std::size_t i = 0; i < records.size(); ++i) {
        for (const std::size_t length : {4u, 30u, 90u}) {
            const Blob edited = record(length, 0x66);
            changes.push_back({[=](Kind& kind) { return kind.update(i, edited), true; },
                               replaced(records, i, edited)});
        }
        changes.push_back({[=](Kind& kind) { return kind.remove(i); }, removed(records, i)});
    }
    const Blob fresh = record(60, 0x67);
    changes.push_back({[=](Kind& kind) { return kind.write(fresh) == records.size(); },
                       appended(records, fresh)});
    return changes;
}

struct Interruption {
    std::size_t command = 1;
    bool performs = false;
    bool staysAway = false;
};

/// Whether the operation was done, so far as it says; none when it was not interrupted.
std::optional<bool> interrupt(Kind& kind, const Operation& operation, Interruption how) {
    kind.card.failingCommand = how.command;
    kind.card.performsFailingWrite = how.performs;
    kind.card.staysAway = how.staysAway;
    bool isDone = false;
    const auto failure = failureOf([&] { isDone = operation(kind); });
    const bool isInterrupted = kind.card.commands() >= how.command;
    kind.card.failingCommand = 0;
    EXPECT_TRUE(failure.id == -1 || failure.code == statusWordCode + 0x6F00);
    if (!isInterrupted) return std::nullopt;
    return isDone;
}

Blob packed(const Records& records) {
    Blob octets;
    for (const Blob& record : records) octets = octets + record;
    return octets;
}

/// The first record is replaced, which closes what was left open, and the file is compact.
void expectCompactAfterNextWrite(Kind& kind, Records records) {
    if (!records.empty()) {
        records[0] = record(records[0].size(), 0x68);
        kind.update(0, records[0]);
    }
    EXPECT_EQ(kind.found(), records);
    const Blob& octets = kind.octets();
    if (octets.empty()) return;
    const Blob expected = packed(records);
    EXPECT_EQ(octets, expected + times(octets.size() - expected.size(), octets.back()));
}

/// False when the operation was over before the interruption came.
bool isInterrupted(Kind kind, const Records& before, const Change& change, Interruption how) {
    const auto isDone = interrupt(kind, change.operation, how);
    if (!isDone) return false;
    const Records found = kind.found();
    EXPECT_TRUE(found == change.after || (!*isDone && found == before));
    EXPECT_TRUE(*isDone || change.operation(kind)) << "the same again";
    EXPECT_EQ(kind.found(), change.after);
    expectCompactAfterNextWrite(kind, change.after);
    return true;
}

/// `maker` gives the same files every time, which hold `records`.
void interruptEverywhere(const std::function<Kind()>& maker, const Records& records) {
    ASSERT_EQ(maker().found(), records);
    for (const Change& change : changesOf(records))
        for (const bool performs : {false, true})
            for (const bool staysAway : {false, true}) {
                std::size_t command = 1;
                while (isInterrupted(maker(), records, change, {command, performs, staysAway}) &&
                       !::testing::Test::HasFailure())
                    ++command;
                ASSERT_GT(command, 3u);
            }
}

const Records records = {record(50, 0x31), record(20, 0x32), record(90, 0x33),
                         record(33, 0x34), record(10, 0x35), record(70, 0x36)};

TEST(InterruptedWriting, LeavesRecordsAsBeforeOrAfterAndGoesOn) {
    for (const std::size_t most : {96u, 128u, 255u}) {
        for (const std::uint8_t fill : Blob{0x00, 0xFF}) {
            const auto maker = [&] {
                Kind kind(fileOf(packed(records), 400, fill));
                kind.card.mostWritten = most;
                return kind;
            };
            interruptEverywhere(maker, records);
        }
    }
}

TEST(InterruptedWriting, ClosesGapsThatWereThere) {
    const Blob gap = Blob{0x00} + times(19, 0xFF);
    Blob erased = record(100, 0x45);
    erased[0] = 0x00;
    const Blob file = Blob{0xFF} + records[0] + gap + records[1] + erased + records[2];
    const Records three = {records[0], records[1], records[2]};
    const auto maker = [&] {
        Kind kind(fileOf(file, 430));
        kind.card.mostWritten = 97;
        return kind;
    };
    interruptEverywhere(maker, three);
}

// Records too long for one command may be left incomplete by an operation that is interrupted.
const Records longOnes = {record(20, 0x31), record(150, 0x32), record(40, 0x33), record(200, 0x34)};

/// The records once the next operation has replaced the first of them; none when the operation was
/// over before the interruption came.
std::optional<Records> foundAfterTheNext(Kind kind, const Operation& operation, Interruption how,
                                         const Blob& first) {
    if (!interrupt(kind, operation, how)) return std::nullopt;
    kind.update(0, first);
    const Records found = kind.found();
    const Blob& octets = kind.octets();
    EXPECT_TRUE(
        std::equal(octets.begin(), octets.begin() + packed(found).size(), packed(found).begin()))
        << "compact";
    return found;
}

TEST(InterruptedWriting, CompletesTheRecordsThatAnInterruptionLeftIncomplete) {
    const Blob first = record(25, 0x68);
    for (const Change& change : changesOf(longOnes))
        for (const bool performs : {false, true})
            for (const bool staysAway : {false, true})
                for (std::size_t command = 1;; ++command) {
                    Kind kind(fileOf(packed(longOnes), 520));
                    kind.card.mostWritten = 64;
                    const auto found = foundAfterTheNext(std::move(kind), change.operation,
                                                         {command, performs, staysAway}, first);
                    if (!found) break;
                    ASSERT_TRUE(*found == replaced(longOnes, 0, first) ||
                                *found == replaced(change.after, 0, first))
                        << command;
                }
}

TEST(InterruptedWriting, OfLongRecordsMayBeDoneAgain) {
    for (const Change& change : changesOf(longOnes))
        for (const bool performs : {false, true})
            for (std::size_t command = 1;; ++command) {
                Kind kind(fileOf(packed(longOnes), 520));
                kind.card.mostWritten = 64;
                const auto isDone = interrupt(kind, change.operation, {command, performs, true});
                if (!isDone) break;
                ASSERT_TRUE(*isDone || change.operation(kind));
                expectCompactAfterNextWrite(kind, change.after);
            }
}

TEST(InterruptedWriting, TakesTheRoomThatAnIncompleteRecordWillLeave) {
    const auto kindOf = [] {
        Kind kind(fileOf(packed(longOnes), 410));
        kind.card.mostWritten = 64;
        return kind;
    };
    for (std::size_t command = 1;; ++command) {
        Kind kind = kindOf();
        const auto remove = [](Kind& each) { return each.remove(0); };
        const auto isDone = interrupt(kind, remove, {command, false, true});
        if (!isDone) break;
        if (*isDone) {
            EXPECT_EQ(kind.write(longOnes[0]), 3u);
        }
    }
}

TEST(InterruptedWriting, OfLinearFilesGoesOn) {
    const auto maker = [&] {
        test::FakeFile file = linearFile(FileStructure::linearVariable, records);
        file.info.recordSize = 100;
        return Kind(file);
    };
    interruptEverywhere(maker, records);
}

}  // namespace
}  // namespace tovi
