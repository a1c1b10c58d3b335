#include "Loading.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>

using namespace Quire;

namespace {

constexpr int rounds = 9;
constexpr int slowRounds = 3;
constexpr int callTime = 1000;   // microseconds, as over a network
constexpr double mostChunks = 2; // the window shows rows before the library has two chunks
constexpr int chunk = 20;        // stories that a threaded load asks for at a time
constexpr double mostMilliseconds = 100;
constexpr double mostHeap = 64; // bytes a story beside the list

double middle(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The library alone: from asking for the queue until its first chunk is there.
double oneChunk()
{
    QElapsedTimer timer;
    timer.start();
    const std::unique_ptr<Directory> list(Directory::NewDirectory(DeskWindow::path()));
    auto &queue = dynamic_cast<Queue &>(*list);
    while (queue.Size() < chunk)
        std::this_thread::yield();
    return millisecondsOf(timer);
}

} // namespace

namespace {

/// What was measured in some rounds; each the middle one.
struct FirstRows
{
    double ofChunk;
    double ofWindow;
    double rows;
};

FirstRows measure(DeskWindow &desk, int times)
{
    std::vector<double> ofChunk;
    std::vector<double> ofWindow;
    std::vector<double> rows;
    for (int round = 0; round < times; ++round) {
        desk.closeQueue();
        ServerModel::waitForServer(60000);
        ofChunk.push_back(oneChunk());
        QElapsedTimer timer;
        timer.start();
        desk.openQueue();
        waitFor([&] { return desk.model().rowCount() > 0; });
        desk.table().viewport()->repaint();
        ofWindow.push_back(millisecondsOf(timer));
        rows.push_back(desk.model().rowCount());
        waitFor([&] { return !desk.model().isLoading(); });
    }
    return {middle(ofChunk), middle(ofWindow), middle(rows)};
}

} // namespace

bool Loading::firstRows(DeskWindow &desk)
{
    const FirstRows fast = measure(desk, rounds);
    std::printf(
        "the first rows (%.0f) painted after %.1f ms, the library alone has its first chunk of %d after %.2f ms  "
        "(at most %.0f ms)\n",
        fast.rows, fast.ofWindow, chunk, fast.ofChunk, mostMilliseconds);
    desk.session().server()->faults().delayEveryCall(callTime);
    const FirstRows slow = measure(desk, slowRounds);
    desk.session().server()->faults().clear();
    std::printf(
        "where each call takes 1 ms: the first rows (%.0f) after %.0f ms, the library's chunk after %.0f ms  (at "
        "most %.1f times)\n",
        slow.rows, slow.ofWindow, slow.ofChunk, mostChunks);
    return fast.ofWindow <= mostMilliseconds && slow.ofWindow <= mostChunks * slow.ofChunk;
}

#ifdef __GLIBC__
namespace {

/// The whole queue in the library's list, read as the window reads it: a page, then the rest.
std::unique_ptr<Directory> wholeList()
{
    std::unique_ptr<Directory> list(Directory::NewDirectory(DeskWindow::path()));
    auto &queue = dynamic_cast<Queue &>(*list);
    waitFor([&] { return queue.IsComplete(); });
    Queue::setLoadIncrement(1000 * 1000);
    queue.LoadMore();
    waitFor([&] { return queue.IsComplete() && queue.Size() == DeskWindow::stories; });
    Queue::setLoadIncrement(200);
    return list;
}

} // namespace
#endif

bool Loading::heap(DeskWindow &desk)
{
#ifdef __GLIBC__
    const auto inUse = [] { return double(mallinfo2().uordblks) + double(mallinfo2().hblkhd); };
    desk.closeQueue();
    ServerModel::waitForServer(60000);
    wholeList(); // the newsroom keeps what it has composed once
    double before = inUse();
    std::unique_ptr<Directory> list = wholeList();
    const double ofList = (inUse() - before) / DeskWindow::stories;
    list.reset();
    before = inUse();
    desk.openQueue();
    waitFor([&] { return !desk.model().isLoading() && desk.model().rowCount() > 0; });
    desk.queue().loadAll();
    waitFor([&] { return !desk.model().isLoading() && desk.model().rowCount() == DeskWindow::stories; });
    const double ofWindow = (inUse() - before) / DeskWindow::stories;
    std::printf("heap for a story: %.0f bytes in the library's list, %.1f bytes beside it in the window  (at most "
                "%.0f)\n",
                ofList, ofWindow - ofList, mostHeap);
    return ofWindow - ofList <= mostHeap;
#else
    Q_UNUSED(desk)
    return true;
#endif
}
