#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace tovi::bench {

/// Prints the median of each benchmark and keeps its fastest repetition: on a machine that does
/// other work as well, the fastest is the one least disturbed.
class FastestTimes final : public benchmark::ConsoleReporter {
public:
    FastestTimes() : ConsoleReporter(OO_None) {}
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Nanoseconds of CPU time for one iteration; 0 for a benchmark that has not run.
    double nanoseconds(const std::string& name) const;
    /// Whether a benchmark gave up with an error.
    bool hasError() const { return hasError_; }

private:
    std::map<std::string, double> fastest_;
    bool hasError_ = false;
};

/// Runs all registered benchmarks, several times each in random order unless `argv` says otherwise.
/// False when `argv` is not understood or a result was wrong.
bool runAll(int argc, char** argv, FastestTimes& times);

}  // namespace tovi::bench
