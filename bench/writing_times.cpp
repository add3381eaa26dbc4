// What writing costs on our side of the card, which is one in memory and answers at once.
//
// appends/N: a file of 64 KiB is filled with N records of 60 octets, one write after the other. An
// append looks through the file that it writes to, so the time for one depends on the size of the
// file, but not on the number of records in it.
//
// update/first/N and update/last/N: the record of one object is replaced in memory alone, without
// a card, among N objects; what remains is the work of the model. An object is found from its
// record number by a search through the infos.
//
// container/N: a key container, which is in memory only, is added to N objects and deleted: a
// search through the table for a free row, and the same again.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "bench/FastestTimes.h"
#include "bench/HeldContainer.h"
#include "bench/SyntheticCard.h"
#include "tests/support/CardFile.h"
#include "tests/support/Objects.h"
#include "tovi/card/ISO7816CardOS.h"

namespace {

using tovi::Blob;
using tovi::bench::FastestTimes;
using tovi::bench::HeldContainer;
using tovi::test::Content;

constexpr tovi::test::Directory kind = tovi::test::Directory::dataObjects;
constexpr std::size_t fileSize = 65536;
constexpr std::size_t appendCounts[] = {100, 500, 1000};
constexpr std::size_t objectCounts[] = {10, 100, 1000, 10000};

Content contentOf(std::size_t i) {
    Content content;
    content.label = std::string(32, static_cast<char>('a' + i % 26));
    content.name = "wallet";
    content.number = static_cast<std::uint16_t>(0x1000 + i);
    return content;
}

tovi::VirtualCard emptyCard() {
    tovi::VirtualCard card = tovi::test::CardBuilder()
                                 .directory(kind, {})
                                 .withoutFile(tovi::test::directoryFID(kind))
                                 .build();
    addDirectoryFile(card, tovi::test::absolutePath(tovi::test::directoryFID(kind)),
                     tovi::test::FileShape::filledWith00, {}, fileSize);
    return card;
}

bool holds(const tovi::PKCS15Container& container, std::size_t count) {
    const auto& infos = container.getDataInfos();
    if (infos.size() != count || container.getRawDataObjects().size() != count) return false;
    for (std::size_t i = 0; i < count; ++i)
        if (infos[i].label != tovi::test::text(contentOf(i).label) ||
            infos[i].recordNumber != i + 1)
            return false;
    return true;
}

/// Fills the file and looks whether container and card hold all records.
bool fillsRightly(std::size_t count) {
    tovi::VirtualCard card = emptyCard();
    tovi::VirtualCardChannel channel(card);
    tovi::ISO7816CardOS os(channel);
    HeldContainer container, other;
    container->readFromCard(&os);
    for (std::size_t i = 0; i < count; ++i) writeObject(*container, &os, kind, contentOf(i));
    other->readFromCard(&os);
    return holds(*container, count) && holds(*other, count);
}

void append(benchmark::State& state, std::size_t count) {
    if (!fillsRightly(count)) return state.SkipWithError("wrong result");
    for (auto _ : state) {
        state.PauseTiming();
        tovi::VirtualCard card = emptyCard();
        tovi::VirtualCardChannel channel(card);
        tovi::ISO7816CardOS os(channel);
        HeldContainer container;
        container->readFromCard(&os);
        state.ResumeTiming();
        for (std::size_t i = 0; i < count; ++i) writeObject(*container, &os, kind, contentOf(i));
    }
    state.counters["append"] = benchmark::Counter(
        static_cast<double>(count),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// A container that has read a card of so many data objects.
void readObjects(tovi::PKCS15Container& container, std::size_t count) {
    tovi::VirtualCard card = tovi::bench::syntheticCard({.dataObjects = count});
    tovi::VirtualCardChannel channel(card);
    tovi::ISO7816CardOS os(channel);
    container.readFromCard(&os);
}

void update(benchmark::State& state, bool isFirst, std::size_t count) {
    HeldContainer container;
    readObjects(*container, count);
    if (container->getDataInfos().size() != count) return state.SkipWithError("wrong card");
    auto info = isFirst ? container->getDataInfos().front() : container->getDataInfos().back();
    info.label = tovi::test::text("another label");
    const auto number = static_cast<unsigned long>(info.recordNumber);
    container->updateDataInfo(nullptr, info);
    if (container->getDataInfo(number).label != info.label)
        return state.SkipWithError("wrong result");
    for (auto _ : state) container->updateDataInfo(nullptr, info);
}

void changeContainers(benchmark::State& state, std::size_t count) {
    HeldContainer container;
    readObjects(*container, count);
    tovi::PKCS15ObjectInfo<tovi::ContainerInfo> info;
    const std::size_t rows = container->getFATRecords().size();
    if (container->writeContainerInfo(info) != rows) return state.SkipWithError("wrong result");
    container->deleteObjectInfo(nullptr, static_cast<unsigned long>(rows));
    if (!container->getContainerInfos().empty()) return state.SkipWithError("wrong result");
    for (auto _ : state) container->deleteObjectInfo(nullptr, container->writeContainerInfo(info));
}

std::string nameOf(const char* what, std::size_t count) {
    return std::string(what) + "/" + std::to_string(count);
}

void registerAll() {
    for (const std::size_t count : appendCounts)
        benchmark::RegisterBenchmark(nameOf("appends", count).c_str(), append, count)
            ->Unit(benchmark::kMillisecond);
    for (const std::size_t count : objectCounts) {
        benchmark::RegisterBenchmark(nameOf("update/first", count).c_str(), update, true, count);
        benchmark::RegisterBenchmark(nameOf("update/last", count).c_str(), update, false, count);
        benchmark::RegisterBenchmark(nameOf("container", count).c_str(), changeContainers, count);
    }
}

void printGrowth(const FastestTimes& times, const char* what) {
    const double few = times.nanoseconds(nameOf(what, 10));
    const double many = times.nanoseconds(nameOf(what, 10000));
    if (few <= 0 || many <= 0) return;  // filtered out
    std::printf("%s: %.0f ns among 10 objects, %.0f ns among 10,000: %.2f ns an object\n", what,
                few, many, (many - few) / 9990);
}

}  // namespace

int main(int argc, char** argv) {
    registerAll();
    FastestTimes times;
    const bool isRight = tovi::bench::runAll(argc, argv, times);
    std::printf("\n");
    for (const std::size_t count : appendCounts)
        if (const double time = times.nanoseconds(nameOf("appends", count)); time > 0)
            std::printf("%zu appends into %zu octets: %.1f ms, %.1f us each\n", count, fileSize,
                        time / 1e6, time / 1e3 / static_cast<double>(count));
    for (const char* what : {"update/first", "update/last", "container"}) printGrowth(times, what);
    return isRight ? 0 : 1;
}
