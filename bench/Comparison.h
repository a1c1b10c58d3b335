#pragma once

/// \file
/// Runs a program's benchmarks against each other and tells whether their bounds hold.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

/// The benchmarks of one program, run interleaved at random, so that the machine's moods meet all of them; their table
/// on the console, and their median processor times, or real times where they ask for these. A bound of a benchmark
/// that a filter left out counts as held.
class Comparison : private benchmark::ConsoleReporter
{
public:
    /// Runs them. False, with nothing run, when the command line is wrong.
    bool run(int argc, char **argv)
    {
        // Defaults for a comparison; what the command line says comes after them and wins.
        std::vector<char *> arguments(argv, argv + argc);
        static char repetitions[] = "--benchmark_repetitions=15";
        static char interleaving[] = "--benchmark_enable_random_interleaving=true";
        static char aggregates[] = "--benchmark_report_aggregates_only=true";
        arguments.insert(arguments.begin() + 1, {repetitions, interleaving, aggregates});
        int count = static_cast<int>(arguments.size());
        benchmark::Initialize(&count, arguments.data());
        if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
            return false;
        benchmark::RunSpecifiedBenchmarks(this);
        std::printf("\n");
        return true;
    }

    /// Prints the ratio of two medians; true when it is within its bound.
    bool holds(const char *what, const char *rival, double bound) const
    {
        const auto measured = m_medians.find(what);
        const auto compared = m_medians.find(rival);
        if (measured == m_medians.end() || compared == m_medians.end())
            return true;
        const double ratio = measured->second / compared->second;
        std::printf("%-16s / %-16s = %.2f  (at most %.2f)\n", what, rival, ratio, bound);
        return ratio <= bound;
    }

    /// Prints a median; true when it is within its bound in nanoseconds. For benchmarks that are shown in these.
    bool takes(const char *what, double nanoseconds) const
    {
        const auto measured = m_medians.find(what);
        if (measured == m_medians.end())
            return true;
        std::printf("%-16s = %.1f ns  (at most %.1f)\n", what, measured->second, nanoseconds);
        return measured->second <= nanoseconds;
    }

private:
    /// Processor time, but for benchmarks that wait and ask for the clock.
    static double timeOf(const Run &run)
    {
        return run.run_name.time_type == "real_time" ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = timeOf(run);
        }
    }

    std::map<std::string, double> m_medians;
};
