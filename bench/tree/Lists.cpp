#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include <quire/tree/ItemList.h>

// Sorting and searching a list of 100,000 items, beside the standard library on the keys alone and a plain scan.

namespace {

using Quire::Attribute;
using Quire::Item;
using Quire::ItemList;

const int size = 100000;
const int differentKeys = size / 5 * 4;

/// Keys as search hits have them, a fifth of them double, in no order.
std::vector<QString> makeKeys()
{
    std::vector<QString> keys;
    std::mt19937 random(1);
    for (int index = 0; index < size; ++index) {
        const int number = index < differentKeys ? index : static_cast<int>(random() % differentKeys);
        keys.push_back(QStringLiteral("ARCHIVE.%1.NEWS:%2:101").arg(number % 37).arg(number));
    }
    std::shuffle(keys.begin(), keys.end(), random);
    return keys;
}

const std::vector<QString> &keys()
{
    static const std::vector<QString> made = makeKeys();
    return made;
}

/// Texts of their own, as texts that came from a server have.
QString copyOf(const QString &text)
{
    return QString(text.constData(), text.size());
}

std::vector<Item> makeItems()
{
    std::vector<Item> items;
    for (const QString &key : keys()) {
        Item item(QStringLiteral("Story ") + key, Quire::Item_SearchHit);
        item.sortKey = copyOf(key);
        item.AddAttr(QStringLiteral("_queue"), QStringLiteral("ARCHIVE"));
        item.AddAttr(QStringLiteral("_storyid"), copyOf(key));
        items.push_back(item);
    }
    return items;
}

const std::vector<Item> &items()
{
    static const std::vector<Item> made = makeItems();
    return made;
}

void fill(ItemList &list)
{
    for (const Item &item : items())
        list.Append(item);
}

void SortOfKeys(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<QString> own;
        for (const QString &key : keys())
            own.push_back(copyOf(key));
        state.ResumeTiming();
        std::stable_sort(own.begin(), own.end());
        own.erase(std::unique(own.begin(), own.end()), own.end());
        benchmark::DoNotOptimize(own.size());
        state.PauseTiming();
        own.clear();
        state.ResumeTiming();
    }
}

void SortUnique(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<ItemList>();
        fill(*list);
        state.ResumeTiming();
        list->SortUnique();
        state.PauseTiming();
        if (list->Size() != size / 5 * 4)
            state.SkipWithError("wrong number of items");
        list.reset();
        state.ResumeTiming();
    }
}

const QString &wantedKey()
{
    static const QString wanted = QStringLiteral("nowhere to be found, but as long as the others are");
    return wanted;
}

void ScanNames(benchmark::State &state)
{
    const QString wanted = items().back().name.toUpper();
    const std::vector<Item> &own = items();
    for (auto _ : state) {
        int found = -1;
        for (std::size_t index = 0; index < own.size(); ++index) {
            if (own[index].name.size() == wanted.size() && own[index].name.compare(wanted, Qt::CaseInsensitive) == 0) {
                found = static_cast<int>(index);
                break;
            }
        }
        benchmark::DoNotOptimize(found);
    }
}

void Find(benchmark::State &state)
{
    const QString wanted = items().back().name.toUpper();
    ItemList list;
    fill(list);
    for (auto _ : state)
        benchmark::DoNotOptimize(list.Find(wanted));
}

void ScanAttributes(benchmark::State &state)
{
    const QString name = QStringLiteral("_storyid");
    const std::vector<Item> &own = items();
    for (auto _ : state) {
        int found = -1;
        for (std::size_t index = 0; index < own.size() && found < 0; ++index) {
            for (const Attribute &attribute : own[index].attributes) {
                if (attribute.name == name) {
                    if (attribute.value == wantedKey())
                        found = static_cast<int>(index);
                    break;
                }
            }
        }
        benchmark::DoNotOptimize(found);
    }
}

void FindByAttribute(benchmark::State &state)
{
    const QString name = QStringLiteral("_storyid");
    ItemList list;
    fill(list);
    for (auto _ : state)
        benchmark::DoNotOptimize(list.FindByAttribute(name, wantedKey()));
}

} // namespace

BENCHMARK(SortOfKeys)->Unit(benchmark::kMillisecond);
BENCHMARK(SortUnique)->Unit(benchmark::kMillisecond);
BENCHMARK(ScanNames)->Unit(benchmark::kMicrosecond);
BENCHMARK(Find)->Unit(benchmark::kMicrosecond);
BENCHMARK(ScanAttributes)->Unit(benchmark::kMicrosecond);
BENCHMARK(FindByAttribute)->Unit(benchmark::kMicrosecond);
