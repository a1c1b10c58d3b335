#include "NotifyChecks.h"

#include <algorithm>
#include <memory>

#include <quire/Quire.h>
#include <quire/platform/Apartment.h>

#include "HitRow.h"
#include "tests/notify/FakePoint.h"
#include "tests/platform/CountedDispatch.h"
#include "tests/support/FakeServer.h"

namespace NotifyFuzz {

namespace {

using namespace Quire;

/// A search on a server that only waits for what it is told to send.
class Searching
{
public:
    Searching()
        : m_point(__uuidof(Orvex::_IAnNotifyFast))
    {
        m_server.searchId = 7;
        m_server.findConnectionPoint = [this](REFIID iid, IConnectionPoint **point) {
            if (!IsEqualGUID(iid, __uuidof(Orvex::_IAnNotifyFast)))
                return CONNECT_E_NOCONNECTION;
            *point = &m_point;
            m_point.AddRef();
            return S_OK;
        };
        QuireCOM::GetQuireCOM(true)->Connect(QString(), QStringLiteral("ann"), QString(), 0);
        NotificationInit(nullptr, nullptr, nullptr);
        list = Search::GetSearcher()->StartSearch(QStringLiteral("NEWS"), QStringLiteral("storm"));
    }
    ~Searching()
    {
        Search::GetSearcher()->DeleteSearch(7);
        NotificationRelease();
        m_point.sink = nullptr;
        QuireCOM::UnloadCOM();
    }

    void send(SAFEARRAY *hits, LONG total, LONG finished)
    {
        m_point.sink->raw_OnNotifySearchResults(7, hits, total, finished);
    }

    SearchList *list;

private:
    Q_DISABLE_COPY(Searching)

    const Platform::Apartment m_apartment;
    FakeServer::Server m_server;
    FakePoint m_point;
};

/// What the list of the search must be.
struct Expected
{
    std::vector<Item> items;
    LONG total = 0;
    bool complete = false;

    void add(const std::vector<Item> &hits, LONG totalHits, LONG finished)
    {
        if (complete)
            return;
        items.insert(items.end(), hits.begin(), hits.end());
        complete = totalHits == 0 || finished >= 1;
        if (!complete)
            return;
        total = totalHits;
        std::stable_sort(items.begin(), items.end());
        items.erase(std::unique(items.begin(), items.end()), items.end());
    }
};

bool isSame(const Item &a, const Item &b)
{
    const auto isSameAttribute = [](const Attribute &x, const Attribute &y) {
        return x.name == y.name && x.value == y.value && x.flags == y.flags;
    };
    return a.name == b.name && a.type == b.type && a.sortKey == b.sortKey &&
           std::equal(a.attributes.begin(), a.attributes.end(), b.attributes.begin(), b.attributes.end(),
                      isSameAttribute);
}

QString difference(SearchList &list, const Expected &expected)
{
    if (list.IsSearchComplete() != expected.complete || list.GetTotalHits() != expected.total)
        return QStringLiteral("ended otherwise than the server said");
    if (list.Size() != static_cast<int>(expected.items.size()))
        return QStringLiteral("%1 hits instead of %2").arg(list.Size()).arg(expected.items.size());
    for (int index = 0; index < list.Size(); ++index) {
        if (!isSame(*list.Nth(index), expected.items[static_cast<std::size_t>(index)]))
            return QStringLiteral("hit %1 is another").arg(index);
    }
    return QString();
}

bool canBeLocked(SAFEARRAY *array)
{
    return SUCCEEDED(SafeArrayLock(array)) && SUCCEEDED(SafeArrayUnlock(array));
}

void sendEvent(Fuzz::Input &input, Searching &search, IDispatch *object, Expected *expected)
{
    const LONG total = input.below(4) == 0 ? input.number() : 1;
    const LONG finished = input.below(4) == 0 ? input.number() : 0;
    if (input.below(4) != 0) {
        const HitRow hits(input, object);
        search.send(hits.get(), total, finished);
        if (canBeLocked(hits.get()))
            expected->add(hits.expected(), total, finished);
        return;
    }
    const Fuzz::StrangeArray array(input, object, true);
    search.send(array.get(), total, finished);
    const bool isRow = array.type() == VT_EMPTY && array.isPlainRow();
    const bool holdsHits = isRow && array.elementSize() == sizeof(Orvex::SearchHit);
    const std::vector<Item> hits(holdsHits ? array.size() : 0, itemOf(QString(), QString(), {0, 0, 0}));
    if (canBeLocked(array.get()))
        expected->add(hits, total, finished);
}

} // namespace

QString checkEvents(const QByteArray &bytes)
{
    Fuzz::Input input(bytes);
    CountedDispatch object;
    Searching search;
    Expected expected;
    while (!input.atEnd()) {
        sendEvent(input, search, &object, &expected);
        QString wrong = difference(*search.list, expected);
        if (!wrong.isEmpty())
            return wrong;
    }
    return object.references == 0 ? QString() : QStringLiteral("an array is still held");
}

} // namespace NotifyFuzz
