// How many commands, and how many octets to the card, an operation of a container takes that has
// read the card; beside it the least that would do. No clock: a contactless card answers a command
// in some 20 ms whatever we compute. A DODF of 20 records of 60 octets, behind short commands and
// behind extended ones:
//   - a record is appended;
//   - one attribute of the first record changes, its length does not;
//   - a label becomes longer by one character, that of the first record and of the last, and the
//     file is full to the last octet then;
//   - the first record is deleted.
//
// The least is for a writer that overwrites nothing unseen, and may leave what it likes when the
// card is pulled out:
//   - one SELECT;
//   - as many READ BINARY as it takes to look at every octet between the first and the last that
//     changes;
//   - as many UPDATE BINARY as it takes to write them.
// What is more than that is the price of moving whole records, so that a card that is pulled out
// holds every other record. Where one command writes all that changes, there is none.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "bench/HeldContainer.h"
#include "tests/support/CardFile.h"
#include "tests/support/Objects.h"
#include "tovi/card/CountingChannel.h"
#include "tovi/card/ISO7816CardOS.h"

namespace {

using tovi::Blob;
using tovi::bench::HeldContainer;
using tovi::test::Content;

constexpr tovi::test::Directory kind = tovi::test::Directory::dataObjects;
constexpr std::size_t recordCount = 20;
constexpr std::size_t labelSize = 32;  // makes a record of 60 octets
constexpr std::size_t recordSize = 60;

using Operation = std::function<void(tovi::PKCS15Container&, tovi::ISCardOS*)>;

struct Scenario {
    const char* name;
    std::size_t room;  ///< octets of padding before the operation
    Operation operation;
};

Content contentOf(std::size_t i, std::size_t characters) {
    Content content;
    content.label = std::string(characters, static_cast<char>('a' + i));
    content.name = "wallet";
    content.number = static_cast<std::uint16_t>(0x4B00 + i);
    return content;
}

Blob path() { return tovi::test::absolutePath(tovi::test::directoryFID(kind)); }

tovi::VirtualCard cardWithRoom(std::size_t room) {
    std::vector<Blob> records;
    for (std::size_t i = 0; i < recordCount; ++i)
        records.push_back(recordOf(kind, contentOf(i, labelSize)));
    tovi::VirtualCard card = tovi::test::CardBuilder()
                                 .directory(kind, {})
                                 .withoutFile(tovi::test::directoryFID(kind))
                                 .build();
    addDirectoryFile(card, path(), tovi::test::FileShape::filledWith00, records, room);
    return card;
}

Operation append() {
    return [](tovi::PKCS15Container& container, tovi::ISCardOS* os) {
        writeObject(container, os, kind, contentOf(recordCount, labelSize));
    };
}

Operation update(std::size_t position, std::size_t characters) {
    return [=](tovi::PKCS15Container& container, tovi::ISCardOS* os) {
        relabelObject(container, os, kind, position, std::string(characters, 'z'));
    };
}

Operation removeFirst() {
    return [](tovi::PKCS15Container& container, tovi::ISCardOS* os) {
        deleteObject(container, os, kind, 0);
    };
}

std::size_t quotient(std::size_t octets, std::size_t most) { return (octets + most - 1) / most; }

struct Cost {
    std::size_t commands = 0;
    std::size_t octets = 0;
};

/// From the first to the last octet that differs.
std::size_t changedOctets(const Blob& before, const Blob& after) {
    const auto front = std::mismatch(before.begin(), before.end(), after.begin());
    if (front.first == before.end()) return 0;
    auto last = before.size();
    while (before[last - 1] == after[last - 1]) --last;
    return last - static_cast<std::size_t>(front.first - before.begin());
}

/// Octets of the headers and length fields of commands for so many octets, each for `most` of them
/// and the last for the rest; lengths over `mostShort` need the longer fields.
std::size_t headerOctets(std::size_t octets, std::size_t most, std::size_t mostShort) {
    constexpr std::size_t shortHeader = 5, extendedHeader = 7;
    std::size_t all = 0;
    for (std::size_t done = 0; done < octets; done += most)
        all += std::min(most, octets - done) > mostShort ? extendedHeader : shortHeader;
    return all;
}

/// `select` is what it costs to select the file.
Cost leastCost(std::size_t changed, const tovi::ISCardOS& os, const Cost& select) {
    constexpr std::size_t mostShortRead = 256, mostShortWrite = 255;
    return {select.commands + quotient(changed, os.maxRead()) + quotient(changed, os.maxWrite()),
            select.octets + headerOctets(changed, os.maxRead(), mostShortRead) +
                headerOctets(changed, os.maxWrite(), mostShortWrite) + changed};
}

/// Whether a container that reads the card now finds what this one holds.
bool isOnCard(const tovi::PKCS15Container& container, tovi::ISCardOS* os) {
    HeldContainer other;
    other->readFromCard(os);
    const auto& held = container.getDataInfos();
    const auto& found = other->getDataInfos();
    return std::equal(held.begin(), held.end(), found.begin(), found.end(),
                      [](const auto& a, const auto& b) { return a.label == b.label; });
}

bool measure(const Scenario& scenario, bool isExtended) {
    tovi::VirtualCard card = cardWithRoom(scenario.room);
    tovi::VirtualCardChannel channel(card);
    tovi::CountingChannel counter(channel);
    tovi::ISO7816CardOS os(counter, {.extendedLength = isExtended});
    HeldContainer container;
    container->readFromCard(&os);
    const Blob before = card.files().find(path())->contents;

    counter.clear();
    os.selectFile(path());
    const Cost select = {counter.counts().commands, counter.counts().octetsToCard};
    counter.clear();
    scenario.operation(*container, &os);
    const Cost cost = {counter.counts().commands, counter.counts().octetsToCard};

    const std::size_t changed = changedOctets(before, card.files().find(path())->contents);
    const Cost least = leastCost(changed, os, select);
    std::printf("%-34s %-9s %8zu %6zu %11zu %6zu %9zu\n", scenario.name,
                isExtended ? "extended" : "short", cost.commands, least.commands, cost.octets,
                least.octets, changed);
    return changed > 0 && isOnCard(*container, &os);
}

}  // namespace

int main() {
    if (recordOf(kind, contentOf(0, labelSize)).size() != recordSize) return 1;
    const Scenario scenarios[] = {
        {"append", recordSize, append()},
        {"update, same length", recordSize, update(0, labelSize)},
        {"update first, longer, full then", 1, update(0, labelSize + 1)},
        {"update last, longer, full then", 1, update(recordCount - 1, labelSize + 1)},
        {"delete first of 20", recordSize, removeFirst()},
    };
    std::printf("%-34s %-9s %8s %6s %11s %6s %9s\n", "operation", "commands", "commands", "least",
                "octets sent", "least", "changed");
    bool isRight = true;
    for (const Scenario& scenario : scenarios)
        for (const bool isExtended : {false, true})
            isRight = measure(scenario, isExtended) && isRight;
    if (!isRight) std::printf("wrong result\n");
    return isRight ? 0 : 1;
}
