#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fuzz/WrittenFile.h"
#include "fuzz/require.h"
#include "tovi/platform/GapMarks.h"
#include "tovi/platform/WritePlan.h"

// An input is what a directory file holds, how the card answers, and operations, each of which may
// meet a card that is pulled out. Whatever they are: after an operation that is done the file is
// compact and its records are those before with the one change; one that is refused changes
// nothing; one that is interrupted leaves the records as before or as afterwards, and may be made
// again.
namespace {

using namespace tovi;
using namespace tovi::fuzz;

constexpr std::int64_t pulledOut = statusWordCode + 0x6F00;
constexpr std::int64_t noSpace = statusWordCode + 0x6A84;

enum class Outcome { done, isInterrupted, noRoom, changed };

Outcome perform(WrittenFile& file, const Operation& operation, unsigned long& index) {
    try {
        switch (operation.kind) {
            case Operation::write:
                require(file.handler->WriteSequence(&file.card, operation.record, index));
                return Outcome::done;
            case Operation::update:
                require(file.handler->UpdateSequence(&file.card, index, operation.record));
                return Outcome::done;
            default:
                return file.handler->DeleteSequence(&file.card, index) ? Outcome::done
                                                                       : Outcome::isInterrupted;
        }
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() == pulledOut) return Outcome::isInterrupted;
        if (failure.GetCode() == noSpace) return Outcome::noRoom;
        require(failure.GetCode() == 0);
        return Outcome::changed;
    }
}

/// Records from the first octet on, then padding, but for a broken record at the end.
void requireCompact(const WrittenFile& file) {
    if (file.isLinear()) return;
    std::size_t end = 0;
    for (const FileEntry& entry : scanRecords(file.onCard().octets)) {
        if (entry.kind == FileEntry::Kind::record)
            require(entry.offset == end), end += entry.length;
        require(entry.kind != FileEntry::Kind::erased && entry.kind != FileEntry::Kind::stale);
    }
}

void requireNoRoom(const WrittenFile& file, const Operation& operation) {
    require(operation.kind != Operation::remove);
    if (file.isLinear()) return;
    const bool isLast = operation.index + 1 == file.model.records.size();
    const bool changesWall = operation.kind == Operation::update && isLast;
    const std::size_t limit = changesWall ? file.onCard().octets.size() : file.limit();
    std::size_t needed = operation.record.size();
    for (const Blob& record : file.model.records) needed += record.size();
    if (operation.kind == Operation::update) needed -= file.model.records[operation.index].size();
    if (limit < file.onCard().octets.size()) needed -= file.model.records.back().size();
    require(needed > limit);
}

/// A record too long for one command may be on the card as one that does not decode.
bool agree(const Records& found, const Records& expected, std::size_t most) {
    return std::equal(found.begin(), found.end(), expected.begin(), expected.end(),
                      [most](const Blob& a, const Blob& b) {
                          return a == b || a.size() + longestMark > most ||
                                 b.size() + longestMark > most;
                      });
}

/// Where a new record goes: behind the last counted one, in front of one that is broken.
bool mayGoTo(const WrittenFile& file, unsigned long index) {
    if (file.isLinear()) return index <= file.model.counted;
    const bool lastMayBeBroken = file.model.counted == file.model.records.size();
    return index == file.model.counted || (lastMayBeBroken && index + 1 == file.model.counted);
}

/// The records are those before or afterwards, and whoever reads the file usually finds them.
void checkInterrupted(const WrittenFile& file, const Operation& operation) {
    const Records whole = file.found(ReadExtent::wholeFile);
    const Records usual = file.found(ReadExtent::records);
    require(usual.size() <= whole.size() && std::equal(usual.begin(), usual.end(), whole.begin()));
    const std::size_t most = std::max(file.card.mostWritten, leastWrite);
    const auto isThere = [&](const Model& model) {
        return agree(whole, model.records, most) && usual.size() >= model.counted;
    };
    if (isThere(file.model)) return;
    const bool isInsertion = operation.kind == Operation::write;
    const unsigned long last = isInsertion ? file.model.counted : operation.index;
    unsigned long index = isInsertion ? 0 : operation.index;
    const auto fits = [&] { return !isInsertion || mayGoTo(file, index); };
    while (!fits() || !isThere(file.model.after(operation, index))) require(++index <= last);
}

struct Attempt {
    Outcome outcome;
    unsigned long index;
    bool isTorn;
};

/// Performs an operation on a card that is pulled out as `tear` says; 0: not.
Attempt attempt(WrittenFile& file, const Operation& operation, std::uint8_t tear) {
    unsigned long index = operation.index;
    test::FakeCard& card = file.card;
    card.performsFailingWrite = (tear & 0x80) != 0;
    card.staysAway = (tear & 0x40) != 0;
    card.failingCommand = (tear & 0x1F) == 0 ? 0 : card.commands() + (tear & 0x1F);
    const Outcome outcome = perform(file, operation, index);
    const bool isTorn = card.failingCommand != 0 && card.commands() >= card.failingCommand;
    card.failingCommand = 0;
    require(isTorn || outcome != Outcome::isInterrupted);
    return {outcome, index, isTorn};
}

void checkRefused(const WrittenFile& file, const Operation& operation, const test::FakeFile& before,
                  Outcome outcome) {
    require(file.isUnfinished || file.onCard().octets == before.octets);
    require(file.isUnfinished || file.onCard().records == before.records);
    if (outcome == Outcome::noRoom) requireNoRoom(file, operation);
}

void checkDone(const WrittenFile& file) {
    const Records whole = file.found(ReadExtent::wholeFile);
    const std::size_t most = std::max(file.card.mostWritten, leastWrite);
    require(file.isUnfinished ? agree(whole, file.model.records, most)
                              : whole == file.model.records);
    require(file.found(ReadExtent::records).size() >= file.model.counted);
    if (!file.isUnfinished) requireCompact(file);
}

void run(WrittenFile& file, const Operation& operation, std::uint8_t tear) {
    const test::FakeFile before = file.onCard();
    const bool isInsertion = operation.kind == Operation::write;
    Attempt last = attempt(file, operation, tear);
    file.isUnfinished = file.isUnfinished || last.isTorn;
    if (last.outcome == Outcome::isInterrupted) {
        checkInterrupted(file, operation);
        if ((tear & 0x20) != 0) return file.read();
        last = attempt(file, operation, 0);
    }
    const bool isKnown = isInsertion || operation.index < file.model.counted;
    require((last.outcome == Outcome::changed) == !isKnown);
    if (last.outcome != Outcome::done) return checkRefused(file, operation, before, last.outcome);
    require(!isInsertion || mayGoTo(file, last.index));
    file.model = file.model.after(operation, last.index);
    file.isUnfinished = last.isTorn;
    checkDone(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(ASN1::View(data, size));
    const unsigned choices = input.octet();
    const std::size_t mostRead = input.octet() + std::size_t{1};
    const std::size_t mostWritten = input.octet() + leastWrite;
    const std::size_t fileSize = input.octet() * std::size_t{4} + choices / 64;
    WrittenFile file(choices, mostRead, mostWritten, input.octets(fileSize));
    constexpr std::uint8_t mostOperations = 12;
    for (std::uint8_t name = 1; name <= mostOperations && !input.isEmpty(); ++name) {
        const Operation operation = operationFrom(input, name);
        run(file, operation, input.octet());
    }
    return 0;
}
