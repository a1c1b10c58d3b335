#include "Latency.h"

#ifndef _WIN32
#include <malloc.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "InstantServer.h"
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/Queue.h>

namespace Latency {

namespace {

using Clock = std::chrono::steady_clock;

const int delayMicroseconds = 200;

double microsecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double atMedian(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

double waitFor(Quire::Queue &queue, int stories, Clock::time_point start)
{
    while (queue.Size() < stories)
        std::this_thread::yield();
    return microsecondsSince(start);
}

} // namespace

bool firstChunk()
{
    // What one call really takes on this machine: a sleep is longer than it is asked to be.
    InstantServer::setDelay(delayMicroseconds);
    Quire::Queue::useThreading = true;
    std::vector<double> calls;
    std::vector<double> stories;
    std::vector<double> chunks;
    for (int round = 0; round < 31; ++round) {
        auto start = Clock::now();
        std::this_thread::sleep_for(std::chrono::microseconds(delayMicroseconds));
        calls.push_back(microsecondsSince(start));
        start = Clock::now();
        Quire::Queue queue(InstantServer::makeQueue(100));
        const auto made = Clock::now();
        stories.push_back(waitFor(queue, 1, made));
        chunks.push_back(waitFor(queue, 20, made));
    }
    InstantServer::setDelay(0);
    const double call = atMedian(calls);
    // A story takes a call for the list and three of its own before anything of it can be known.
    const double story = atMedian(stories) / (4 * call);
    const double chunk = atMedian(chunks) / ((1 + 3 * 20) * call);
    std::printf("first story visible after %.2f times its 4 calls, first chunk after %.2f times its 61 calls  "
                "(at most 1.3)\n",
                story, chunk);
    return story <= 1.3 && chunk <= 1.3;
}

bool reader()
{
    InstantServer::setDelay(delayMicroseconds);
    Quire::Queue::useThreading = true;
    Quire::Queue::setLoadIncrement(1000);
    std::vector<double> waits;
    {
        Quire::Queue queue(InstantServer::makeQueue(1000));
        while (!queue.IsComplete()) {
            const auto start = Clock::now();
            queue.Lock();
            const int size = queue.u_Size();
            if (size > 0 && queue.u_Nth(size - 1)->name.isEmpty())
                std::printf("an item without a name\n");
            queue.Unlock();
            waits.push_back(microsecondsSince(start));
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        }
    }
    InstantServer::setDelay(0);
    std::sort(waits.begin(), waits.end());
    const double late = waits[waits.size() * 99 / 100];
    std::printf("reader waits %.1f us at the median, %.1f us at the 99th percentile of %zu reads  (at most 1000)\n",
                waits[waits.size() / 2], late, waits.size());
    return late <= 1000;
}

bool heap()
{
#ifdef __GLIBC__
    const int stories = 100000;
    Quire::Queue::useThreading = false; // what another thread allocates mallinfo2 does not tell
    Quire::Queue::setLoadIncrement(2 * stories);
    const IDispatchPtr server = InstantServer::makeQueue(stories);
    const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    Quire::Queue queue(server);
    const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
    std::size_t texts = 0;
    for (int index = 0; index < queue.Size(); ++index) {
        const Quire::Item &item = *queue.Nth(index);
        texts += static_cast<std::size_t>(item.name.size()) * sizeof(QChar);
        for (const Quire::Attribute &attribute : item.attributes)
            texts += static_cast<std::size_t>(attribute.value.size()) * sizeof(QChar);
    }
    const double each = (double(after - before) - double(texts)) / stories;
    std::printf("heap for a loaded story: %.0f bytes beside %.0f bytes of its texts  (at most 300)\n", each,
                double(texts) / stories);
    return each <= 300;
#else
    return true;
#endif
}

} // namespace Latency
