#include "bench/FastestTimes.h"

namespace tovi::bench {

void FastestTimes::ReportRuns(const std::vector<Run>& runs) {
    std::vector<Run> printed;
    for (const Run& run : runs)
        if (run.error_occurred || runs.size() == 1 || run.aggregate_name == "median")
            printed.push_back(run);
    ConsoleReporter::ReportRuns(printed);
    for (const Run& run : runs) {
        if (run.error_occurred) hasError_ = true;
        if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
        const double time = run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e9;
        double& fastest = fastest_.try_emplace(run.run_name.function_name, time).first->second;
        if (time < fastest) fastest = time;
    }
}

double FastestTimes::nanoseconds(const std::string& name) const {
    const auto found = fastest_.find(name);
    return found == fastest_.end() ? 0 : found->second;
}

bool runAll(int argc, char** argv, FastestTimes& times) {
    // Earlier arguments give way to later ones.
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=5";
    char minTime[] = "--benchmark_min_time=0.1";
    std::vector<char*> arguments{argv[0], interleave, repetitions, minTime};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return false;
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::Shutdown();
    return !times.hasError();
}

}  // namespace tovi::bench
