#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <string>

// Prints the usual console report and keeps the fastest time per iteration of
// every benchmark, so repetitions only ever make the summary tables less noisy.
class BestTimeReporter : public benchmark::ConsoleReporter
{
public:
    enum class Clock { Cpu, Wall };

    explicit BestTimeReporter(Clock clock = Clock::Cpu)
        : m_clock(clock)
    {
    }

    void ReportRuns(const std::vector<Run> &reports) override
    {
        for (const Run &run : reports) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
                continue;
            const double total = m_clock == Clock::Cpu ? run.cpu_accumulated_time : run.real_accumulated_time;
            const double seconds = total / double(run.iterations);
            const std::string key = Key(run.run_name.function_name, run.run_name.args);
            const auto found = m_seconds.find(key);
            if (found == m_seconds.end() || seconds < found->second)
                m_seconds[key] = seconds;
        }
        ConsoleReporter::ReportRuns(reports);
    }

    // `args` as the benchmark names them: "20000", "20000/3", or empty.
    double seconds(const std::string &name, const std::string &args = std::string()) const
    {
        const auto found = m_seconds.find(Key(name, args));
        return found == m_seconds.end() ? NAN : found->second;
    }
    double seconds(const std::string &name, int scale) const { return seconds(name, std::to_string(scale)); }

private:
    static std::string Key(const std::string &name, const std::string &args)
    {
        return args.empty() ? name : name + "/" + args;
    }

    Clock m_clock;
    std::map<std::string, double> m_seconds;
};

// Time growth per tenfold size, whatever the step between the two sizes.
inline double PerTenfold(double small, double large, int smallScale, int largeScale)
{
    return std::pow(10.0, std::log(large / small) / std::log(double(largeScale) / smallScale));
}

// Reads the benchmark flags and runs every registered benchmark into `reporter`; false
// when the command line holds a flag the benchmark library does not know.
inline bool RunBenchmarks(int &argc, char **argv, BestTimeReporter &reporter)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return false;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return true;
}
