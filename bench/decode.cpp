// Decodes directory records one by one, as reading a card does, and destroys each result: the
// sample records and those of real cards' files, between 8 and 300 octets each, by kind and all
// together. Beside it, over the same octets in the same run, the decoder that asn1c generates.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/FastestTimes.h"
#include "bench/Peer.h"
#include "bench/SampleRecords.h"
#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/PKCS15.h"

namespace {

using tovi::bench::FastestTimes;
using tovi::bench::Peer;
using tovi::bench::SampleRecord;

template <class T>
bool decode(ASN1::View record) {
    T value;
    ASN1::Error error;
    const bool decoded = ASN1::decode(record, value, error);
    benchmark::DoNotOptimize(value);
    return decoded;
}

template <class T>
ASN1::Octets recode(ASN1::View record) {
    T value;
    ASN1::Error error;
    return ASN1::decode(record, value, error) ? ASN1::encode(value) : ASN1::Octets();
}

/// One kind of record, its two decoders and its records.
struct Scenario {
    std::string type;
    bool (*decode)(ASN1::View);
    ASN1::Octets (*recode)(ASN1::View);
    std::vector<ASN1::Octets> records = {};

    std::string ours() const { return "tovi/" + type; }
    std::string peers() const { return "asn1c/" + type; }
};

std::vector<Scenario> allScenarios() {
    return {
        {"PrivateKeyType", decode<PKCS15::PrivateKeyType>, recode<PKCS15::PrivateKeyType>},
        {"PublicKeyType", decode<PKCS15::PublicKeyType>, recode<PKCS15::PublicKeyType>},
        {"SecretKeyType", decode<PKCS15::SecretKeyType>, recode<PKCS15::SecretKeyType>},
        {"CertificateType", decode<PKCS15::CertificateType>, recode<PKCS15::CertificateType>},
        {"DataType", decode<PKCS15::DataType>, recode<PKCS15::DataType>},
        {"AuthenticationType", decode<PKCS15::AuthenticationType>,
         recode<PKCS15::AuthenticationType>},
        {"PKCS15Objects", decode<PKCS15::PKCS15Objects>, recode<PKCS15::PKCS15Objects>},
        {"TokenInfo", decode<PKCS15::TokenInfo>, recode<PKCS15::TokenInfo>},
        {"UnusedSpace", decode<PKCS15::UnusedSpace>, recode<PKCS15::UnusedSpace>},
        {"DIRRecord", decode<PKCS15::DIRRecord>, recode<PKCS15::DIRRecord>},
    };
}

/// Whether both decoders take the record, and ours gives its octets back. A record that neither
/// gives back is no DER and cannot be held to that; it is left out and named.
bool isFitForTiming(const Scenario& scenario, const SampleRecord& record, bool& isWrong) {
    const Peer peer(scenario.type);
    const bool ours = scenario.recode(record.octets) == record.octets;
    const bool peers = peer.recode(record.octets) == record.octets;
    if (ours && peer.decode(record.octets)) return true;
    std::printf("%s: %s\n", record.name.c_str(),
                ours    ? "asn1c refuses it"
                : peers ? "WRONG RESULT"
                        : "not DER, left out");
    isWrong = isWrong || (peers && !ours);
    return false;
}

/// False when a result of ours is wrong.
bool distribute(const std::vector<SampleRecord>& records, std::vector<Scenario>& scenarios) {
    bool isWrong = false;
    for (const SampleRecord& record : records)
        for (Scenario& scenario : scenarios)
            if (scenario.type == record.type && isFitForTiming(scenario, record, isWrong))
                scenario.records.push_back(record.octets);
    return !isWrong;
}

void timeOurs(benchmark::State& state, const Scenario& scenario) {
    for (auto _ : state)
        for (const ASN1::Octets& record : scenario.records)
            if (!scenario.decode(record)) return state.SkipWithError("refused");
}

void timePeer(benchmark::State& state, const Scenario& scenario) {
    const Peer peer(scenario.type);
    for (auto _ : state)
        for (const ASN1::Octets& record : scenario.records)
            if (!peer.decode(record)) return state.SkipWithError("refused");
}

void printRow(const std::string& name, std::size_t count, double ours, double peers) {
    const double records = static_cast<double>(count);
    std::printf("%-20s %7zu %11.0f %11.0f %9.1f\n", name.c_str(), count, ours / records,
                peers / records, peers / ours);
}

void printSummary(const std::vector<Scenario>& scenarios, const FastestTimes& times) {
    std::printf("\n%-20s %7s %11s %11s %9s\n", "type", "records", "tovi ns", "asn1c ns", "speedup");
    double ours = 0, peers = 0;
    std::size_t count = 0;
    for (const Scenario& scenario : scenarios) {
        const double our = times.nanoseconds(scenario.ours()),
                     peer = times.nanoseconds(scenario.peers());
        if (our <= 0 || peer <= 0) continue;  // filtered out
        printRow(scenario.type, scenario.records.size(), our, peer);
        ours += our, peers += peer, count += scenario.records.size();
    }
    if (count == 0) return;
    printRow("all", count, ours, peers);
    std::printf("decoding: %.1f times asn1c\n", peers / ours);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<Scenario> scenarios = allScenarios();
    if (!distribute(tovi::bench::sampleRecords(TOVI_TEST_DATA), scenarios)) return 1;
    for (const Scenario& scenario : scenarios) {
        if (scenario.records.empty()) continue;
        benchmark::RegisterBenchmark(scenario.ours().c_str(), timeOurs, scenario);
        benchmark::RegisterBenchmark(scenario.peers().c_str(), timePeer, scenario);
    }
    FastestTimes times;
    const bool isRight = tovi::bench::runAll(argc, argv, times);
    printSummary(scenarios, times);
    return isRight ? 0 : 1;
}
