#include "Rows.h"

#ifndef _WIN32
#include <malloc.h>
#endif

#include <cstdio>

using namespace Quire;

#ifdef __GLIBC__
namespace {

std::size_t heapInUse()
{
    return mallinfo2().uordblks + mallinfo2().hblkhd;
}

} // namespace
#endif

bool Rows::arrival()
{
    ServerModel::waitForServer(60000); // until what was shown before is gone
    QueueModel model;
    const auto start = Clock::now();
    model.open(LongQueue::path());
    waitFor([&] { return model.rowCount() > 0; });
    const double first = millisecondsSince(start);
    const int rows = model.rowCount();
    const Held held = waitFor([&] { return !model.isLoading(); });
    const double all = millisecondsSince(start);
    std::printf("the first %d rows after %.1f ms, all %d after %.0f ms  (first at most 100 ms)\n", rows, first,
                model.rowCount(), all);
    std::printf("the event loop was held %.1f ms at most, %.1f %% of the time  (at most 50 ms)\n", held.longest,
                100 * held.all / all);
    return first <= 100 && held.longest <= 50;
}

bool Rows::update(LongQueue &queue)
{
    const std::unique_ptr<QueueModel> model = queue.load();
    int changes = 0;
    QObject::connect(model.get(), &QueueModel::dataChanged, [&] { ++changes; });
    queue.change(LongQueue::stories / 2);
    const auto start = Clock::now();
    model->refresh();
    const double begin = millisecondsSince(start);
    const Held held = waitFor([&] { return !model->isLoading(); });
    std::printf("read again in %.0f ms, %d row changed: the event loop was held %.1f ms at the begin and %.1f ms at "
                "most then  (at most 100 ms)\n",
                millisecondsSince(start), changes, begin, held.longest);
    return changes == 1 && begin <= 100 && held.longest <= 100;
}

bool Rows::heap(LongQueue &queue)
{
#ifdef __GLIBC__
    queue.load(); // the newsroom keeps what it has composed once
    ServerModel::waitForServer(60000);
    const std::size_t before = heapInUse();
    auto list = queue.loadList();
    const std::size_t ofList = heapInUse() - before;
    list.reset();
    const std::size_t between = heapInUse();
    const std::unique_ptr<QueueModel> model = queue.load();
    const std::size_t ofModel = heapInUse() - between;
    const double each = (double(ofModel) - double(ofList)) / LongQueue::stories;
    std::printf("heap for a row: %.0f bytes in the queue's list and %.1f bytes in the model  (at most 24)\n",
                double(ofList) / LongQueue::stories, each);
    return each <= 24;
#else
    Q_UNUSED(queue)
    return true;
#endif
}
