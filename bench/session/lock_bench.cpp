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

#include <quire/session/QuireCOMMutex.h>

#include "../Comparison.h"

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

} // namespace

BENCHMARK(PlainMutex);
BENCHMARK(LockObject);
BENCHMARK(NestedLockObject);
BENCHMARK(NamedLockObject);

int main(int argc, char **argv)
{
    Comparison comparison;
    if (!comparison.run(argc, argv))
        return 2;
    bool held = comparison.holds("LockObject", "PlainMutex", 2.0);
    held &= comparison.holds("NestedLockObject", "PlainMutex", 0.5);
    held &= comparison.holds("NestedLockObject", "LockObject", 0.5);
    return held ? 0 : 1;
}
