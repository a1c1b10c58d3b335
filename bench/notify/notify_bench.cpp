// What the hits of a search cost on their way from the server's records to a list, beside a bare loop:
//
//   ArrivingHits   100,000 hits of 10 fields in events of 100, from the sink into the list of a running search
//   BareLoop       the same records read into the same strings and items, one vector, no lock, no look-up
//   Completion     the end of that search: its 100,000 hits sorted, double ones dropped
//
// All in one run, interleaved at random. Then the ratio of the medians with its bound, and how often a second thread
// that keeps asking IsSearchDone while such hits arrive finds the searcher's mutex taken. The exit code tells whether
// the bounds held.

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

#include "bench/Comparison.h"

using namespace Quire;

namespace Quire {

/// The searcher's private workers, for measuring.
struct SearchProbe
{
    static void complete(long id, long totalHits) { Search::TheSearcher->SearchComplete(id, totalHits); }
    static QMutex &mutex() { return Search::TheSearcher->m_Mutex.native(); }
};

} // namespace Quire

namespace {

constexpr int HitsOfEvent = 100;
constexpr int FieldsOfHit = 10;
constexpr int Events = 1000;
constexpr int DifferentEvents = 50; // sent again and again

BSTR text(const QString &value)
{
    return Platform::toBstr(value);
}

SAFEARRAY *makeArray(std::size_t elementSize, int count)
{
    SAFEARRAY *array = nullptr;
    if (FAILED(SafeArrayAllocDescriptor(1, &array)))
        return nullptr;
    array->cbElements = static_cast<ULONG>(elementSize);
    array->rgsabound[0] = {static_cast<ULONG>(count), 0};
    SafeArrayAllocData(array);
    return array;
}

SAFEARRAY *makeFields(int story)
{
    SAFEARRAY *const array = makeArray(sizeof(Orvex::FieldValue), FieldsOfHit);
    auto *record = static_cast<Orvex::FieldValue *>(array->pvData);
    for (int field = 0; field < FieldsOfHit; ++field)
        *record++ = {text(QStringLiteral("field-name-%1").arg(field)),
                     text(QStringLiteral("value %1 of story number %2").arg(field).arg(story))};
    return array;
}

/// The events; they live as long as the process.
const std::vector<SAFEARRAY *> &events()
{
    static const std::vector<SAFEARRAY *> made = [] {
        std::vector<SAFEARRAY *> arrays;
        for (int event = 0; event < DifferentEvents; ++event) {
            SAFEARRAY *const array = makeArray(sizeof(Orvex::SearchHit), HitsOfEvent);
            auto *record = static_cast<Orvex::SearchHit *>(array->pvData);
            for (int hit = 0; hit < HitsOfEvent; ++hit) {
                const int story = event * HitsOfEvent + hit;
                *record++ = {text(QStringLiteral("Story %1").arg(story)),
                             text(QStringLiteral("NEWS.WORLD.DESK-%1").arg(story % 7)),
                             {story * 7919 % 100003, 2, 3},
                             makeFields(story)};
            }
            arrays.push_back(array);
        }
        return arrays;
    }();
    return made;
}

/// A session with notices on a newsroom that holds its own events back, so that only ours arrive.
class Host
{
public:
    Host()
        : m_server(Newsroom::sampleModel())
        , m_registration(m_server.registerClass())
    {
        m_server.delivery().pause();
        QuireCOM *const session = QuireCOM::GetQuireCOM(true);
        session->Connect(QString(), QStringLiteral("journalist"), QStringLiteral("news"), 0);
        NotificationInit(nullptr, nullptr, nullptr);
        findSink(session);
    }
    ~Host()
    {
        m_sink = nullptr;
        NotificationRelease();
        QuireCOM::UnloadCOM();
    }

    long startSearch()
    {
        return Search::TheSearcher->StartSearch(QStringLiteral(".*"), QStringLiteral("*"))->SearchID();
    }
    void sendAll(long id)
    {
        for (int event = 0; event < Events; ++event)
            m_sink->raw_OnNotifySearchResults(static_cast<LONG>(id), events()[event % DifferentEvents],
                                              Events * HitsOfEvent, 0);
    }

private:
    Q_DISABLE_COPY(Host)

    /// Asks the server for the sink that the library has put there.
    void findSink(QuireCOM *session)
    {
        const IConnectionPointContainerPtr container(session->GetConnectionPoint(), false);
        IConnectionPointPtr point;
        container->FindConnectionPoint(__uuidof(Orvex::_IAnNotifyFast), &point);
        IEnumConnectionsPtr connections;
        point->EnumConnections(&connections);
        CONNECTDATA data = {};
        connections->Next(1, &data, nullptr);
        m_sink = IUnknownPtr(data.pUnk, false);
    }

    Newsroom::Server m_server;
    Newsroom::Registration m_registration;
    Orvex::_IAnNotifyFastPtr m_sink;
};

Host *host = nullptr;

void ArrivingHits(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const long id = host->startSearch();
        state.ResumeTiming();
        host->sendAll(id);
        state.PauseTiming();
        Search::TheSearcher->DeleteSearch(id);
        state.ResumeTiming();
    }
}

void readAll(SAFEARRAY *array, std::vector<Item> &items)
{
    const Platform::SafeArrayAccess access(array);
    const auto *hit = access.as<const Orvex::SearchHit>();
    for (ULONG i = 0; i < access.size(); ++i, ++hit) {
        Item item(Platform::toQString(hit->name), Item_SearchHit);
        const QString queue = Platform::toQString(hit->queuePath);
        const QString story = StoryID2String({hit->id.part1, hit->id.part2, hit->id.part3}, false);
        item.sortKey = queue + QLatin1Char(':') + story;
        const Platform::SafeArrayAccess fields(hit->fields);
        item.attributes.reserve(2 + fields.size());
        item.AddAttr(QLatin1String(Attr_Queue), queue);
        item.AddAttr(QLatin1String(Attr_Storyid), story);
        const auto *field = fields.as<const Orvex::FieldValue>();
        for (ULONG j = 0; j < fields.size(); ++j, ++field)
            item.AddAttr(Platform::toQString(field->name), Platform::toQString(field->value));
        items.push_back(std::move(item));
    }
}

void BareLoop(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<Item> items;
        state.ResumeTiming();
        for (int event = 0; event < Events; ++event)
            readAll(events()[event % DifferentEvents], items);
        state.PauseTiming();
        items = {};
        state.ResumeTiming();
    }
}

void Completion(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const long id = host->startSearch();
        host->sendAll(id);
        state.ResumeTiming();
        SearchProbe::complete(id, long{Events} * HitsOfEvent);
        state.PauseTiming();
        Search::TheSearcher->DeleteSearch(id);
        state.ResumeTiming();
    }
}

/// What a thread sees that keeps asking IsSearchDone while hits arrive.
struct Looks
{
    long all = 0;
    long taken = 0; // the searcher's mutex was

    double share() const { return static_cast<double>(taken) / static_cast<double>(std::max(all, 1L)); }
};

void lookAtOneSearch(Looks &looks)
{
    std::atomic<bool> arrived{false};
    const long id = host->startSearch();
    std::thread poll([&] {
        for (; !arrived; ++looks.all) {
            benchmark::DoNotOptimize(Search::TheSearcher->IsSearchDone(id));
            if (SearchProbe::mutex().tryLock())
                SearchProbe::mutex().unlock();
            else
                ++looks.taken;
            for (int pause = 0; pause < 1000; ++pause) // not to be in the way all the time
                benchmark::DoNotOptimize(pause);
        }
    });
    host->sendAll(id);
    arrived = true;
    poll.join();
    Search::TheSearcher->DeleteSearch(id);
}

} // namespace

BENCHMARK(ArrivingHits)->Unit(benchmark::kMillisecond);
BENCHMARK(BareLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(Completion)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    Host ours;
    host = &ours;
    Comparison comparison;
    if (!comparison.run(argc, argv))
        return 2;
    bool held = comparison.holds("ArrivingHits", "BareLoop", 1.3);
    Looks looks;
    for (int search = 0; search < 20; ++search)
        lookAtOneSearch(looks);
    const double taken = 100 * looks.share();
    std::printf("%-16s found taken in %.1f%% of %ld looks  (below 5%%)\n", "searcher's mutex", taken, looks.all);
    held &= taken < 5;
    return held ? 0 : 1;
}
