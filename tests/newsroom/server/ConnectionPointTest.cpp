#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

namespace Newsroom {

const IID &Fast = __uuidof(Orvex::_IAnNotifyFast);
const IID &Fast2 = __uuidof(Orvex::_IAnNotifyFast2);

class ConnectionPointTest : public ServerFixture
{
protected:
    ~ConnectionPointTest() override
    {
        signon = nullptr;
        EXPECT_EQ(0, TestSink::alive());
    }

    IConnectionPointPtr point(REFIID events)
    {
        const IConnectionPointContainerPtr container = signon;
        IConnectionPointPtr found;
        EXPECT_EQ(S_OK, container->FindConnectionPoint(events, &found));
        return found;
    }

    Orvex::ISignon4Ptr signon = server->createSignon();
};

TEST_F(ConnectionPointTest, EveryEventInterfaceHasItsPoint)
{
    for (const IID *events : {&Fast, &Fast2}) {
        IID iid = {};
        EXPECT_EQ(S_OK, point(*events)->GetConnectionInterface(&iid));
        EXPECT_TRUE(iid == *events);
        EXPECT_EQ(point(*events).GetInterfacePtr(), point(*events).GetInterfacePtr());
    }
    EXPECT_NE(point(Fast).GetInterfacePtr(), point(Fast2).GetInterfacePtr());
}

TEST_F(ConnectionPointTest, OtherInterfacesHaveNone)
{
    const IConnectionPointContainerPtr container = signon;
    IConnectionPoint *found = reinterpret_cast<IConnectionPoint *>(1);
    EXPECT_EQ(CONNECT_E_NOCONNECTION, container->FindConnectionPoint(IID_IDispatch, &found));
    EXPECT_EQ(nullptr, found);
    EXPECT_EQ(E_POINTER, container->FindConnectionPoint(Fast, nullptr));
}

TEST_F(ConnectionPointTest, PointLeadsBackToTheSignOn)
{
    IConnectionPointContainerPtr container;
    EXPECT_EQ(S_OK, point(Fast)->GetConnectionPointContainer(&container));
    EXPECT_TRUE(IUnknownPtr(container) == IUnknownPtr(signon));
}

TEST_F(ConnectionPointTest, PointKeepsTheSignOnAlive)
{
    const auto kept2 = point(Fast2);
    signon = nullptr;
    EXPECT_EQ(1, census->live(ObjectKind::Signon));
    IConnectionPointContainerPtr container;
    EXPECT_EQ(S_OK, kept2->GetConnectionPointContainer(&container));
    EXPECT_TRUE(Orvex::ISignon4Ptr(container));
}

TEST_F(ConnectionPointTest, AdviseHoldsTheSinkAndUnadviseReleasesIt)
{
    auto sink = makeSink();
    DWORD cookie = 0;
    EXPECT_EQ(S_OK, point(Fast)->Advise(sink.get(), &cookie));
    EXPECT_NE(0U, cookie);
    EXPECT_GT(sink->references(), 1U);
    EXPECT_EQ(1, census->live(ObjectKind::Connection));
    EXPECT_EQ(S_OK, point(Fast)->Unadvise(cookie));
    EXPECT_EQ(1U, sink->references());
    EXPECT_EQ(0, census->live(ObjectKind::Connection));
}

TEST_F(ConnectionPointTest, CookiesDiffer)
{
    auto sink = makeSink();
    const DWORD first = advise(signon, Fast, sink.get());
    const DWORD second = advise(signon, Fast, sink.get());
    EXPECT_NE(first, second);
    EXPECT_EQ(S_OK, unadvise(signon, Fast, first));
    EXPECT_EQ(S_OK, unadvise(signon, Fast, second));
}

TEST_F(ConnectionPointTest, UnadviseOfAnUnknownCookieIsRefused)
{
    auto sink = makeSink();
    const DWORD cookie = advise(signon, Fast, sink.get());
    EXPECT_EQ(CONNECT_E_NOCONNECTION, unadvise(signon, Fast, cookie + 1));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, unadvise(signon, Fast2, cookie));
    EXPECT_EQ(S_OK, unadvise(signon, Fast, cookie));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, unadvise(signon, Fast, cookie));
}

TEST_F(ConnectionPointTest, SinkWithoutTheInterfaceCannotConnect)
{
    auto fastOnly = makeSink(TestSink::Has::FastOnly);
    auto neither = makeSink(TestSink::Has::Neither);
    DWORD cookie = 7;
    EXPECT_EQ(CONNECT_E_CANNOTCONNECT, point(Fast2)->Advise(fastOnly.get(), &cookie));
    EXPECT_EQ(0U, cookie);
    EXPECT_EQ(CONNECT_E_CANNOTCONNECT, point(Fast)->Advise(neither.get(), &cookie));
    EXPECT_EQ(1U, fastOnly->references());
    EXPECT_EQ(1U, neither->references());
    EXPECT_NE(0U, advise(signon, Fast, fastOnly.get()));
}

TEST_F(ConnectionPointTest, AdviseWithoutSinkOrPlaceIsRefused)
{
    DWORD cookie = 7;
    EXPECT_EQ(E_POINTER, point(Fast)->Advise(nullptr, &cookie));
    EXPECT_EQ(0U, cookie);
    auto sink = makeSink();
    EXPECT_EQ(E_POINTER, point(Fast)->Advise(sink.get(), nullptr));
    EXPECT_EQ(1U, sink->references());
    EXPECT_EQ(E_POINTER, point(Fast)->GetConnectionInterface(nullptr));
    EXPECT_EQ(E_POINTER, point(Fast)->GetConnectionPointContainer(nullptr));
    EXPECT_EQ(E_POINTER, point(Fast)->EnumConnections(nullptr));
}

TEST_F(ConnectionPointTest, SignOnThatGoesReleasesItsSinks)
{
    auto sink = makeSink();
    advise(signon, Fast, sink.get());
    advise(signon, Fast2, sink.get());
    signon = nullptr;
    EXPECT_EQ(1U, sink->references());
}

TEST_F(ConnectionPointTest, DisconnectKeepsTheSinks)
{
    auto sink = makeSink();
    signon = signOn();
    advise(signon, Fast, sink.get());
    signon->Disconnect();
    EXPECT_EQ(1, census->live(ObjectKind::Connection));
}

// ---- enumerators

TEST_F(ConnectionPointTest, ConnectionsAreEnumerated)
{
    auto first = makeSink();
    auto second = makeSink();
    const DWORD cookies[] = {advise(signon, Fast, first.get()), advise(signon, Fast, second.get())};
    advise(signon, Fast2, first.get());
    IEnumConnectionsPtr connections;
    ASSERT_EQ(S_OK, point(Fast)->EnumConnections(&connections));
    CONNECTDATA data[3] = {};
    ULONG fetched = 0;
    EXPECT_EQ(S_FALSE, connections->Next(3, data, &fetched));
    ASSERT_EQ(2U, fetched);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(cookies[i], data[i].dwCookie);
        data[i].pUnk->Release();
    }
    EXPECT_EQ(static_cast<IUnknown *>(first.get()), data[0].pUnk);
}

TEST_F(ConnectionPointTest, ConnectionPointsAreEnumerated)
{
    const IConnectionPointContainerPtr container = signon;
    IEnumConnectionPointsPtr points;
    ASSERT_EQ(S_OK, container->EnumConnectionPoints(&points));
    for (const IID *events : {&Fast, &Fast2}) {
        IConnectionPointPtr each;
        EXPECT_EQ(S_OK, points->Next(1, &each, nullptr));
        EXPECT_EQ(point(*events).GetInterfacePtr(), each.GetInterfacePtr());
    }
    IConnectionPointPtr none;
    ULONG fetched = 7;
    EXPECT_EQ(S_FALSE, points->Next(1, &none, &fetched));
    EXPECT_EQ(0U, fetched);
}

TEST_F(ConnectionPointTest, EnumeratorSkipsResetsAndClones)
{
    const IConnectionPointContainerPtr container = signon;
    IEnumConnectionPointsPtr points;
    ASSERT_EQ(S_OK, container->EnumConnectionPoints(&points));
    EXPECT_EQ(S_OK, points->Skip(1));
    IEnumConnectionPointsPtr clone;
    ASSERT_EQ(S_OK, points->Clone(&clone));
    IConnectionPointPtr each;
    EXPECT_EQ(S_OK, points->Next(1, &each, nullptr));
    EXPECT_EQ(point(Fast2).GetInterfacePtr(), each.GetInterfacePtr());
    EXPECT_EQ(S_OK, clone->Next(1, &each, nullptr));
    EXPECT_EQ(point(Fast2).GetInterfacePtr(), each.GetInterfacePtr());
    EXPECT_EQ(S_FALSE, points->Skip(1));
    EXPECT_EQ(S_OK, points->Reset());
    EXPECT_EQ(S_FALSE, points->Skip(3));
    EXPECT_EQ(S_OK, points->Reset());
    EXPECT_EQ(S_OK, points->Next(1, &each, nullptr));
    EXPECT_EQ(point(Fast).GetInterfacePtr(), each.GetInterfacePtr());
}

TEST_F(ConnectionPointTest, EnumeratorWantsAPlaceForTheCount)
{
    const IConnectionPointContainerPtr container = signon;
    IEnumConnectionPointsPtr points;
    ASSERT_EQ(S_OK, container->EnumConnectionPoints(&points));
    IConnectionPoint *each[2] = {};
    EXPECT_EQ(E_POINTER, points->Next(2, each, nullptr));
    ULONG fetched = 7;
    EXPECT_EQ(E_POINTER, points->Next(1, nullptr, &fetched));
    EXPECT_EQ(0U, fetched);
    each[0] = reinterpret_cast<IConnectionPoint *>(1);
    server->faults().failNext(QStringLiteral("IEnumConnectionPoints::Next"), Fault::hresult(E_FAIL));
    EXPECT_EQ(E_FAIL, points->Next(1, each, &fetched));
    EXPECT_EQ(nullptr, each[0]);
    EXPECT_EQ(E_POINTER, points->Clone(nullptr));
    EXPECT_EQ(E_POINTER, container->EnumConnectionPoints(nullptr));
}

} // namespace Newsroom
