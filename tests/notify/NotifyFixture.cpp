#include "notify/NotifyFixture.h"

using namespace Quire;

NotifyTest::NotifyTest()
    : fast(__uuidof(Orvex::_IAnNotifyFast))
    , fast2(__uuidof(Orvex::_IAnNotifyFast2))
{}

void NotifyTest::SetUp()
{
    SessionTest::SetUp();
    server.findConnectionPoint = [this](REFIID iid, IConnectionPoint **point) {
        const bool isFast = IsEqualGUID(iid, __uuidof(Orvex::_IAnNotifyFast));
        const bool isFast2 = IsEqualGUID(iid, __uuidof(Orvex::_IAnNotifyFast2));
        *point = isFast && hasFast ? &fast : isFast2 && hasFast2 ? &fast2 : nullptr;
        if (!*point)
            return CONNECT_E_NOCONNECTION;
        (*point)->AddRef();
        return S_OK;
    };
    server.searchId = 7;
    connect();
    searcher = Search::GetSearcher();
}

void NotifyTest::TearDown()
{
    server.onCall = nullptr;
    NotificationRelease();
    fast.sink = nullptr;
    fast2.sink = nullptr;
    EXPECT_EQ(fast.references, 1);
    EXPECT_EQ(fast2.references, 1);
    SearchProbe::destroy();
    EXPECT_EQ(Search::TheSearcher, nullptr);
    SessionTest::TearDown();
}

void NotifyTest::startNotices()
{
    NotificationInit(nullptr, nullptr, nullptr);
    ASSERT_TRUE(searcher->CanSearch());
}

SearchList *NotifyTest::start(LONG id)
{
    server.searchId = id;
    return searcher->StartSearch(QStringLiteral("NEWS"), QStringLiteral("storm"));
}

Told *Told::current = nullptr;

void Told::onResults(long searchId, SAFEARRAY *array, long totalHits, long finished)
{
    current->results.push_back({searchId, array, totalHits, finished});
    if (current->hook)
        current->hook();
}

void Told::onQueue(long queueId)
{
    current->queues.push_back(queueId);
    if (current->hook)
        current->hook();
}

void Told::onLogout()
{
    ++current->logouts;
    if (current->hook)
        current->hook();
}
