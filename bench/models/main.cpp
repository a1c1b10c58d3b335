// What the models cost, on a newsroom with one queue of 100,000 stories:
//
//   Cell, ListAttribute       a cell that has been read before; the same by way of the queue's list
//   NameCell                  a name
//   FirstCell, ItemExpansion  the first cell of a row, whose story is expanded; expanding an item
//
// Then how soon rows are there, how long the event loop is held while they come and change, and the heap that a row
// takes beside the list. The exit code tells whether all bounds held.

#include <QCoreApplication>

#include "../Comparison.h"
#include "Cells.h"
#include "Rows.h"
#include <quire/platform/Automation.h>

namespace {

bool measure(int argc, char **argv)
{
    LongQueue all;
    bool held = Rows::heap(all);
    held &= Rows::arrival();
    held &= Rows::update(all);
    const std::unique_ptr<Quire::QueueModel> model = all.load();
    const std::unique_ptr<Quire::Queue> queue = LongQueue::loadList();
    Cells::registerAll(*model, *queue);
    Comparison comparison;
    if (!comparison.run(argc, argv))
        return false;
    held &= comparison.holds("Cell", "ListAttribute", 2.0);
    held &= comparison.takes("Cell", 1000);
    held &= comparison.holds("FirstCell", "ItemExpansion", 1.5);
    return held;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const bool held = measure(argc, argv);
    CoUninitialize();
    return held ? 0 : 1;
}
