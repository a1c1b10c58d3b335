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
constexpr int chunk = 20; // stories that a threaded load asks for at a time
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

bool Loading::firstRows(DeskWindow &desk)
{
    std::vector<double> ofChunk;
    std::vector<double> ofWindow;
    std::vector<double> rows;
    for (int round = 0; round < rounds; ++round) {
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
    std::printf("the first rows (%.0f) painted after %.1f ms; the library alone has its first chunk of %d after %.2f "
                "ms  (at most %.0f ms)\n",
                middle(rows), middle(ofWindow), chunk, middle(ofChunk), mostMilliseconds);
    return middle(ofWindow) <= mostMilliseconds;
}

bool Loading::heap(DeskWindow &desk)
{
#ifdef __GLIBC__
    const auto inUse = [] { return double(mallinfo2().uordblks) + double(mallinfo2().hblkhd); };
    const auto loadAll = [&] {
        desk.openQueue();
        waitFor([&] { return !desk.model().isLoading() && desk.model().rowCount() > 0; });
        desk.queue().loadAll();
        waitFor([&] { return !desk.model().isLoading() && desk.model().rowCount() == DeskWindow::stories; });
    };
    loadAll(); // the newsroom keeps what it has composed once
    desk.closeQueue();
    ServerModel::waitForServer(60000);
    double before = inUse();
    Queue::setLoadIncrement(2 * DeskWindow::stories);
    std::unique_ptr<Directory> list(Directory::NewDirectory(DeskWindow::path()));
    auto &queue = dynamic_cast<Queue &>(*list);
    waitFor([&] { return queue.IsComplete(); });
    const double ofList = (inUse() - before) / DeskWindow::stories;
    list.reset();
    before = inUse();
    loadAll();
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
