#include <benchmark/benchmark.h>

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

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

std::unique_ptr<Quire::Queue> loadQueue(const IDispatchPtr &server, bool threaded, benchmark::State &state, int stories)
{
    Quire::Queue::useThreading = threaded;
    Quire::Queue::setLoadIncrement(2 * many);
    auto queue = std::make_unique<Quire::Queue>(server);
    while (threaded && !queue->IsComplete())
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    if (queue->Size() != stories)
        state.SkipWithError("not all stories arrived");
    return queue;
}

/// \a queues queues of \a stories stories, one after the other; all are kept, so that as many stories in long and in
/// short queues fill the same memory.
void runQueues(benchmark::State &state, int queues, int stories, bool threaded)
{
    const IDispatchPtr server = InstantServer::makeQueue(stories);
    for (auto _ : state) {
        std::vector<std::unique_ptr<Quire::Queue>> loaded;
        while (static_cast<int>(loaded.size()) < queues)
            loaded.push_back(loadQueue(server, threaded, state, stories));
    }
    state.SetItemsProcessed(state.iterations() * queues * stories);
}

void FloorBy20(benchmark::State &state)
{
    runFloor(state, many, threadedChunk, true);
}

void FloorBy100(benchmark::State &state)
{
    runFloor(state, many, synchronousChunk, false);
}

void Threaded(benchmark::State &state)
{
    runQueues(state, 1, many, true);
}

void ThreadedShort(benchmark::State &state)
{
    runQueues(state, many / fewer, fewer, true);
}

void Synchronous(benchmark::State &state)
{
    runQueues(state, 1, many, false);
}

void SynchronousShort(benchmark::State &state)
{
    runQueues(state, many / fewer, fewer, false);
}

/// A server that takes its time: what counts is the clock.
class SlowServer
{
public:
    SlowServer() { InstantServer::setDelay(delayMicroseconds); }
    ~SlowServer() { InstantServer::setDelay(0); }
    SlowServer(const SlowServer &) = delete;
    SlowServer &operator=(const SlowServer &) = delete;
};

void SlowFloor(benchmark::State &state)
{
    const SlowServer slow;
    runFloor(state, delayedStories, threadedChunk, true);
}

void SlowThreaded(benchmark::State &state)
{
    const SlowServer slow;
    runQueues(state, 1, delayedStories, true);
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
BENCHMARK(ThreadedShort)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FloorBy100)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Synchronous)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SynchronousShort)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SlowFloor)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SlowThreaded)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DirectoryFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(DirectoryPopulate)->Unit(benchmark::kMillisecond);
