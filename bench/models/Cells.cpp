#include "Cells.h"

#include <benchmark/benchmark.h>

#include <quire/Quire.h>

// Reading cells, beside the list that they come from.

namespace {

using namespace Quire;

const int shownRows = 50;

QueueModel *shownModel = nullptr;
Queue *readQueue = nullptr;

/// The texts of a screen of rows, a field of the form each: all have been read before.
void Cell(benchmark::State &state)
{
    const int column = shownModel->columnOf(QStringLiteral("field-7"));
    int row = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(shownModel->data(shownModel->index(row, column)));
        row = (row + 1) % shownRows;
    }
}

/// The same out of a queue, by the library's own means.
void ListAttribute(benchmark::State &state)
{
    std::vector<Attribute> wanted(1);
    int row = 0;
    for (auto _ : state) {
        wanted[0] = {QStringLiteral("field-7"), QString(), 0};
        readQueue->Lock();
        readQueue->u_Nth(row)->RetrieveAttrs(wanted);
        readQueue->Unlock();
        benchmark::DoNotOptimize(wanted[0].value);
        row = (row + 1) % shownRows;
    }
}

/// The name, for which nothing has to be looked up.
void NameCell(benchmark::State &state)
{
    int row = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(shownModel->data(shownModel->index(row, 0)));
        row = (row + 1) % shownRows;
    }
}

/// The first cell of a row: its story is expanded.
void FirstCell(benchmark::State &state)
{
    const int column = shownModel->columnOf(QStringLiteral("field-7"));
    static int row = shownRows; // goes on: a story is expanded once
    for (auto _ : state) {
        if (++row == LongQueue::stories) {
            state.SkipWithError("all stories have been expanded");
            break;
        }
        benchmark::DoNotOptimize(shownModel->data(shownModel->index(row, column)));
    }
}

/// The same out of a copy of an item that nobody has expanded.
void ItemExpansion(benchmark::State &state)
{
    std::vector<Attribute> wanted(1);
    for (auto _ : state) {
        state.PauseTiming();
        Item item = *readQueue->Nth(LongQueue::stories / 2);
        state.ResumeTiming();
        wanted[0] = {QStringLiteral("field-7"), QString(), 0};
        item.RetrieveAttrs(wanted);
        benchmark::DoNotOptimize(wanted[0].value);
    }
}

} // namespace

void Cells::registerAll(QueueModel &model, Queue &queue)
{
    shownModel = &model;
    readQueue = &queue;
    benchmark::RegisterBenchmark("Cell", Cell);
    benchmark::RegisterBenchmark("ListAttribute", ListAttribute);
    benchmark::RegisterBenchmark("NameCell", NameCell);
    // In all repetitions together fewer than there are rows.
    benchmark::RegisterBenchmark("FirstCell", FirstCell)->Iterations(5000)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("ItemExpansion", ItemExpansion)->Iterations(5000)->Unit(benchmark::kMicrosecond);
}
