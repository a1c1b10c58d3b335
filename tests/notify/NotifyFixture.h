#pragma once

#include <QMutex>
#include <QString>

#include <functional>
#include <vector>

#include <quire/notify/Notification.h>
#include <quire/notify/Search.h>
#include <quire/tree/SearchList.h>

#include "notify/FakePoint.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

namespace Quire {

/// The searcher's private workers, for tests.
struct SearchProbe
{
    static void add(long id, const Item &item)
    {
        std::vector<Item> items{item};
        searcher()->AddSearchResults(id, items);
    }
    static void complete(long id, long totalHits) { searcher()->SearchComplete(id, totalHits); }
    static void remove(SearchList *list) { searcher()->RemoveSearch(list); }
    static int index(long id) { return searcher()->GetSearchListIndex(id); }
    static int index(const SearchList *list) { return searcher()->GetSearchListIndex(list); }
    static int count() { return static_cast<int>(searcher()->m_Lists.size()); }
    static QMutex &mutex() { return searcher()->m_Mutex.native(); }
    static Search *searcher() { return Search::GetSearcher(); }
    /// As if there had never been a searcher.
    static void destroy()
    {
        delete Search::TheSearcher;
        Search::sSearchLimit = 500;
    }
};

} // namespace Quire

using Quire::SearchProbe;

/// A session that is signed on to a fake server with both connection points. After each test no notice is connected
/// any more, nobody holds a point, and there is no searcher.
class NotifyTest : public SessionTest
{
protected:
    NotifyTest();

    void SetUp() override;
    void TearDown() override;

    /// Starts notices without callbacks; searches get 7 as their number.
    void startNotices();
    /// Starts the search with that number; its list.
    Quire::SearchList *start(LONG id = 7);
    /// The sink that is connected.
    Orvex::_IAnNotifyFast *sink() { return fast.sink; }
    Orvex::_IAnNotifyFast2 *sink2() { return static_cast<Orvex::_IAnNotifyFast2 *>(fast2.sink.GetInterfacePtr()); }

    FakePoint fast;
    FakePoint fast2;
    bool hasFast = true;
    bool hasFast2 = true;
    Quire::Search *searcher = nullptr;
};

/// What callbacks were told; a callback has no object to tell.
struct Told
{
    struct Results
    {
        long searchId;
        SAFEARRAY *array;
        long totalHits;
        long finished;
    };

    std::vector<Results> results;
    std::vector<long> queues;
    int logouts = 0;
    std::function<void()> hook; ///< Called in each callback.

    static Told *current; ///< The newest; one at a time.

    Told() { current = this; }
    ~Told() { current = nullptr; }

    static void onResults(long searchId, SAFEARRAY *array, long totalHits, long finished);
    static void onQueue(long queueId);
    static void onLogout();

private:
    Q_DISABLE_COPY(Told)
};
