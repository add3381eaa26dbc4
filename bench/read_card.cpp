// Reads a card wholly, from the first SELECT to the model in memory, and destroys the model: 10,
// 100, 1,000 and 10,000 objects, nine in ten of them key pairs with certificates, records of about
// 80 octets. Once with ids and files of their own, once with a single id and a single file for all
// objects, where whatever compares objects with each other has the most to do. The time for one
// object must not depend on their number.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "bench/FastestTimes.h"
#include "bench/HeldContainer.h"
#include "bench/SyntheticCard.h"
#include "tovi/card/ISO7816CardOS.h"

namespace {

using tovi::bench::CardContents;
using tovi::bench::FastestTimes;
using tovi::bench::HeldContainer;

constexpr std::size_t sizes[] = {10, 100, 1000, 10000};
constexpr double allowedGrowth = 1.5;

template <class Infos, class Raws>
bool allDecoded(const Infos& infos, const Raws& raws, std::size_t count) {
    return infos.size() == count &&
           std::all_of(raws.begin(), raws.end(), [](const auto& raw) { return raw.isDecoded; });
}

bool isRight(const tovi::PKCS15Container& model, const CardContents& contents) {
    const bool complete =
        allDecoded(model.getPrivateKeyInfos(), model.getRawPrivateKeys(), contents.keyPairs) &&
        allDecoded(model.getPublicKeyInfos(), model.getRawPublicKeys(), contents.keyPairs) &&
        allDecoded(model.getCertificateInfos(), model.getRawCertificates(),
                   contents.certificates) &&
        allDecoded(model.getBlockCipherKeyInfos(), model.getRawSecretKeys(), contents.secretKeys) &&
        allDecoded(model.getDataInfos(), model.getRawDataObjects(), contents.dataObjects) &&
        allDecoded(model.getAuthInfos(), model.getRawAuthObjects(), contents.authObjects);
    const bool shares = contents.isShared && contents.keyPairs > 1;
    return complete &&
           std::all_of(model.getPrivateKeyInfos().begin(), model.getPrivateKeyInfos().end(),
                       [&](const auto& key) { return key.sharesFile == shares; });
}

void readCard(benchmark::State& state, CardContents contents) {
    tovi::VirtualCard card = tovi::bench::syntheticCard(contents);
    tovi::VirtualCardChannel channel(card);
    tovi::ISO7816CardOS os(channel);
    {
        HeldContainer model;
        model->readFromCard(&os);
        if (!isRight(*model, contents)) return state.SkipWithError("wrong result");
    }
    for (auto _ : state) {
        HeldContainer model;
        model->readFromCard(&os);
    }
    state.counters["object"] = benchmark::Counter(
        static_cast<double>(contents.count()),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::string nameOf(bool isShared, std::size_t count) {
    return (isShared ? "oneFileAndId/" : "ownFilesAndIds/") + std::to_string(count);
}

void printSummary(bool isShared, const FastestTimes& times) {
    const double few = times.nanoseconds(nameOf(isShared, 100)) / 100;
    const double many = times.nanoseconds(nameOf(isShared, 10000)) / 10000;
    if (few <= 0 || many <= 0) return;  // filtered out
    std::printf(
        "reading, %s: %.2f us an object at 100, %.2f us at 10,000, %.2f times (at most %.1f)\n",
        isShared ? "one file and id" : "own files and ids", few / 1000, many / 1000, many / few,
        allowedGrowth);
}

}  // namespace

int main(int argc, char** argv) {
    for (const bool isShared : {false, true}) {
        for (const std::size_t count : sizes) {
            CardContents contents = tovi::bench::mixedContents(count);
            contents.isShared = isShared;
            benchmark::RegisterBenchmark(nameOf(isShared, count).c_str(), readCard, contents)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    FastestTimes times;
    const bool isRight = tovi::bench::runAll(argc, argv, times);
    std::printf("\n");
    printSummary(false, times);
    printSummary(true, times);
    return isRight ? 0 : 1;
}
