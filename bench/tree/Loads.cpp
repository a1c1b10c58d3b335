#include <benchmark/benchmark.h>

#include <chrono>
#include <future>
#include <thread>

#include "Floor.h"
#include "InstantServer.h"
#include <quire/tree/Directory.h>
#include <quire/tree/Queue.h>

// Reading a long queue and a large directory, beside the bare loop.

namespace {

const int many = 100000;
const int fewer = 10000;
const int entries = 20000;
const int threadedChunk = 20;
const int synchronousChunk = 100;
const int delayedStories = 500;
const int delayMicroseconds = 200;

void runFloor(benchmark::State &state, int stories, int chunk, bool threaded)
{
    const IDispatchPtr server = InstantServer::makeQueue(stories);
    for (auto _ : state) {
        // On a thread as well: what a thread allocates costs differently.
        const auto load = [&] { return Floor::loadQueue(server, chunk); };
        const auto texts = threaded ? std::async(std::launch::async, load).get() : load();
        if (texts.size() != static_cast<std::size_t>(stories))
            state.SkipWithError("not all stories arrived");
    }
    state.SetItemsProcessed(state.iterations() * stories);
}

void loadQueue(const IDispatchPtr &server, bool threaded, benchmark::State &state, int stories)
{
    Quire::Queue::useThreading = threaded;
    Quire::Queue::setLoadIncrement(2 * many);
    Quire::Queue queue(server);
    while (threaded && !queue.IsComplete())
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    if (queue.Size() != stories)
        state.SkipWithError("not all stories arrived");
}

void runQueue(benchmark::State &state, int stories, bool threaded)
{
    const IDispatchPtr server = InstantServer::makeQueue(stories);
    for (auto _ : state)
        loadQueue(server, threaded, state, stories);
    state.SetItemsProcessed(state.iterations() * stories);
}

void FloorBy20(benchmark::State &state)
{
    runFloor(state, many, threadedChunk, true);
}

void FloorBy20_10000(benchmark::State &state)
{
    runFloor(state, fewer, threadedChunk, true);
}

void FloorBy100_10000(benchmark::State &state)
{
    runFloor(state, fewer, synchronousChunk, false);
}

void FloorBy100(benchmark::State &state)
{
    runFloor(state, many, synchronousChunk, false);
}

void Threaded(benchmark::State &state)
{
    runQueue(state, many, true);
}

void Threaded10000(benchmark::State &state)
{
    runQueue(state, fewer, true);
}

void Synchronous(benchmark::State &state)
{
    runQueue(state, many, false);
}

void Synchronous10000(benchmark::State &state)
{
    runQueue(state, fewer, false);
}

/// A server that takes its time: what counts is the clock.
class SlowServer
{
public:
    SlowServer() { InstantServer::setDelay(delayMicroseconds); }
    ~SlowServer() { InstantServer::setDelay(0); }
};

void SlowFloor(benchmark::State &state)
{
    const SlowServer slow;
    runFloor(state, delayedStories, threadedChunk, true);
}

void SlowThreaded(benchmark::State &state)
{
    const SlowServer slow;
    runQueue(state, delayedStories, true);
}

void DirectoryFloor(benchmark::State &state)
{
    const IDispatchPtr server = InstantServer::makeDirectory(entries);
    for (auto _ : state)
        benchmark::DoNotOptimize(Floor::readDirectory(server));
}

void DirectoryPopulate(benchmark::State &state)
{
    const IDispatchPtr server = InstantServer::makeDirectory(entries);
    for (auto _ : state) {
        Quire::Directory directory(server);
        if (directory.Size() != entries)
            state.SkipWithError("not all entries arrived");
    }
}

} // namespace

BENCHMARK(FloorBy20)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Threaded)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Threaded10000)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FloorBy20_10000)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FloorBy100_10000)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FloorBy100)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Synchronous)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Synchronous10000)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SlowFloor)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SlowThreaded)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DirectoryFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(DirectoryPopulate)->Unit(benchmark::kMillisecond);
