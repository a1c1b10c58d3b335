// What the server access lock costs while nobody else wants it, beside the mutex that it is made of:
//
//   PlainMutex        lock and unlock of a QMutex
//   LockObject        a QuireCOMMutex with a literal label, made and destroyed
//   NestedLockObject  the same on a thread that holds the lock already
//   NamedLockObject   a QuireCOMMutex with a QString that exists already
//
// All in one run, interleaved at random, so that the machine's moods meet all of them. Then the ratios of the medians,
// each with its bound: a lock object costs at most 2 times the plain mutex, a nested one at most half of a lock object
// and of the plain mutex. The exit code tells whether they held.

#include <QMutex>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

#include <quire/session/QuireCOMMutex.h>

using Quire::QuireCOMMutex;

namespace {

void PlainMutex(benchmark::State &state)
{
    static QMutex mutex;
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
}

void LockObject(benchmark::State &state)
{
    for (auto _ : state) {
        const QuireCOMMutex lock("Benchmark::LockObject");
        benchmark::ClobberMemory();
    }
}

void NestedLockObject(benchmark::State &state)
{
    const QuireCOMMutex outer("Benchmark::NestedLockObject:outer");
    for (auto _ : state) {
        const QuireCOMMutex lock("Benchmark::NestedLockObject");
        benchmark::ClobberMemory();
    }
}

void NamedLockObject(benchmark::State &state)
{
    const QString name = QStringLiteral("Benchmark::NamedLockObject");
    for (auto _ : state) {
        const QuireCOMMutex lock(name);
        benchmark::ClobberMemory();
    }
}

/// The table on the console, and the median processor time of each benchmark.
class Medians : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }

    /// Prints the ratio of two medians; true when it is within its bound.
    bool holds(const char *what, const char *rival, double bound) const
    {
        const auto measured = m_medians.find(what);
        const auto compared = m_medians.find(rival);
        if (measured == m_medians.end() || compared == m_medians.end())
            return true; // left out by a filter
        const double ratio = measured->second / compared->second;
        std::printf("%-16s / %-10s = %.2f  (at most %.1f)\n", what, rival, ratio, bound);
        return ratio <= bound;
    }

private:
    std::map<std::string, double> m_medians;
};

} // namespace

BENCHMARK(PlainMutex);
BENCHMARK(LockObject);
BENCHMARK(NestedLockObject);
BENCHMARK(NamedLockObject);

int main(int argc, char **argv)
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
        return 2;

    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::printf("\n");
    bool held = medians.holds("LockObject", "PlainMutex", 2.0);
    held &= medians.holds("NestedLockObject", "PlainMutex", 0.5);
    held &= medians.holds("NestedLockObject", "LockObject", 0.5);
    return held ? 0 : 1;
}
