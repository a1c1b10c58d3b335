#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

namespace Newsroom {

/// What a sign-on is told of queues and of its logout.
class NoticesTest : public ServerFixture
{
protected:
    ~NoticesTest() override
    {
        sink.reset();
        server.reset();
        EXPECT_EQ(0, TestSink::alive());
    }

    void watch(const char *path = "NEWS.SPORT.TODAY")
    {
        ASSERT_EQ(S_OK, queue(signon, path)->put_Update(VARIANT_TRUE));
    }

    QStringList told()
    {
        EXPECT_TRUE(server->waitForEvents());
        return sink->take();
    }

    TestSinkPtr sink = makeSink();
    Orvex::ISignon4Ptr signon = signOn();
    Orvex::ISignon4Ptr other = signOn("iris");
    Orvex::IQueue2Ptr othersToday = queue(other);
    DWORD cookie = advise(signon, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
};

const QStringList Told12{QStringLiteral("queue 12")};

TEST_F(NoticesTest, QueueThatIsNotWatchedIsNotTold)
{
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, DeletingIsTold)
{
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(S_OK, othersToday->DeleteAll());
    EXPECT_EQ(Told12, told());
}

TEST_F(NoticesTest, CreatingIsTold)
{
    watch();
    Platform::Variant created;
    EXPECT_EQ(S_OK, othersToday->CreateStory(0, created.out()));
    EXPECT_EQ(Told12, told());
}

TEST_F(NoticesTest, SavingIsToldAndPuttingIsNot)
{
    watch();
    const auto hers = story(othersToday, 0);
    EXPECT_EQ(S_OK, hers->put_Field(In("title"), In("New")));
    EXPECT_EQ(QStringList(), told());
    EXPECT_EQ(S_OK, hers->Save(VARIANT_FALSE));
    EXPECT_EQ(Told12, told());
}

TEST_F(NoticesTest, LockingAndUnlockingIsTold)
{
    watch();
    const auto hers = story(othersToday, 0);
    Platform::Bstr holder;
    EXPECT_EQ(S_OK, hers->Lock(1, holder.out()));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(S_OK, hers->Unlock());
    EXPECT_EQ(Told12, told());
}

TEST_F(NoticesTest, LockReleasedByASignOffIsTold)
{
    const auto hers = story(othersToday, 0);
    Platform::Bstr holder;
    EXPECT_EQ(S_OK, hers->Lock(1, holder.out()));
    watch();
    other->Disconnect();
    EXPECT_EQ(Told12, told());
}

TEST_F(NoticesTest, OwnChangesAreToldToo)
{
    watch();
    EXPECT_EQ(S_OK, queue(signon)->Delete(index(0)));
    EXPECT_EQ(Told12, told());
}

TEST_F(NoticesTest, OtherQueuesAreNotTold)
{
    watch("NEWS.EMPTY");
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    Platform::Variant created;
    EXPECT_EQ(S_OK, queue(other, "NEWS.EMPTY")->CreateStory(0, created.out()));
    EXPECT_EQ(QStringList(QStringLiteral("queue 15")), told());
}

TEST_F(NoticesTest, ReportingCanBeSwitchedOff)
{
    watch();
    EXPECT_EQ(S_OK, queue(signon)->put_Update(VARIANT_FALSE));
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, RefusedChangesAreNotTold)
{
    watch("NEWS.SPORT.ARCHIVE");
    EXPECT_EQ(PurgeLocked, queue(other, "NEWS.SPORT.ARCHIVE")->Delete(index(0)));
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, NoticesComeInOrderOnTheServersOwnThread)
{
    watch();
    watch("NEWS.EMPTY");
    QStringList expected;
    for (int i = 0; i < 20; ++i) {
        Platform::Variant created;
        EXPECT_EQ(S_OK, queue(other, i % 3 ? "NEWS.EMPTY" : "NEWS.SPORT.TODAY")->CreateStory(0, created.out()));
        expected << (i % 3 ? QStringLiteral("queue 15") : QStringLiteral("queue 12"));
    }
    EXPECT_EQ(expected, told());
    EXPECT_NE(std::this_thread::get_id(), sink->lastThread());
}

TEST_F(NoticesTest, SinkOfTheOlderInterfaceIsNotToldOfQueues)
{
    ASSERT_EQ(S_OK, unadvise(signon, __uuidof(Orvex::_IAnNotifyFast2), cookie));
    advise(signon, __uuidof(Orvex::_IAnNotifyFast), sink.get());
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, SinkAtBothPointsIsToldOnce)
{
    advise(signon, __uuidof(Orvex::_IAnNotifyFast), sink.get());
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(1, server->triggerLogout(QStringLiteral("nora")));
    EXPECT_EQ(QStringList(QStringLiteral("logout")), told());
}

TEST_F(NoticesTest, TwoSinksAreBothTold)
{
    auto second = makeSink();
    advise(signon, __uuidof(Orvex::_IAnNotifyFast2), second.get());
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(Told12, second->take());
}

TEST_F(NoticesTest, SinkThatThrowsDoesNotKeepOthersFromBeingTold)
{
    auto second = makeSink();
    sink->hook = [] { throw _com_error(E_FAIL); };
    advise(signon, __uuidof(Orvex::_IAnNotifyFast2), second.get());
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(Told12, second->take());
}

TEST_F(NoticesTest, UnadvisedSinkIsNotToldWhatIsQueued)
{
    watch();
    server->delivery().pause();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(S_OK, unadvise(signon, __uuidof(Orvex::_IAnNotifyFast2), cookie));
    EXPECT_EQ(1U, sink->references());
    server->delivery().resume();
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, UnadviseWaitsForTheEventThatRuns)
{
    std::atomic<bool> inside{false};
    std::atomic<bool> left{false};
    sink->hook = [&] {
        inside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        left = true;
    };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    while (!inside)
        std::this_thread::yield();
    EXPECT_EQ(S_OK, unadvise(signon, __uuidof(Orvex::_IAnNotifyFast2), cookie));
    EXPECT_TRUE(left);
    EXPECT_EQ(1U, sink->references());
}

TEST_F(NoticesTest, UnadviseFromInsideTheEventDoesNotWait)
{
    HRESULT result = E_FAIL;
    sink->hook = [&] { result = unadvise(signon, __uuidof(Orvex::_IAnNotifyFast2), cookie); };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(S_OK, result);
    EXPECT_EQ(1U, sink->references());
}

TEST_F(NoticesTest, SinkMayCallTheServerFromInside)
{
    LONG count = 0;
    sink->hook = [&] { queue(signon)->get_Count(&count); };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(2, count);
}

TEST_F(NoticesTest, SinkMayReleaseTheSignOnFromInside)
{
    sink->hook = [&] { signon = nullptr; };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(1, server->model()->sessionCount());
    EXPECT_EQ(1U, sink->references());
}

// ---- at once

TEST_F(NoticesTest, AtOnceMeansOnTheCallersThreadInsideTheOperation)
{
    server->options().deliverAtOnce = true;
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(Told12, sink->take());
    EXPECT_EQ(std::this_thread::get_id(), sink->lastThread());
}

TEST_F(NoticesTest, AtOnceASinkMayChangeTheQueueAgain)
{
    server->options().deliverAtOnce = true;
    int calls = 0;
    sink->hook = [&] {
        if (++calls == 1)
            othersToday->Delete(index(0));
    };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    EXPECT_EQ(2, calls);
    EXPECT_EQ(1, server->model()->queue(12).value.count);
}

TEST_F(NoticesTest, AtOnceASaveIsToldWhileTheObjectCanBeUsed)
{
    server->options().deliverAtOnce = true;
    const auto hers = story(othersToday, 0);
    QString seen;
    sink->hook = [&] { seen = textOf([&](BSTR *text) { return hers->get_Field(In("title"), text); }); };
    watch();
    hers->put_Field(In("title"), In("New"));
    EXPECT_EQ(S_OK, hers->Save(VARIANT_FALSE));
    EXPECT_EQ(QStringLiteral("New"), seen);
}

TEST_F(NoticesTest, SwitchingOnCanBeAnsweredByANotice)
{
    server->options().noticeOnUpdate = true;
    watch();
    EXPECT_EQ(Told12, told());
    EXPECT_EQ(S_OK, queue(signon)->put_Update(VARIANT_FALSE));
    EXPECT_EQ(QStringList(), told());
    server->options().deliverAtOnce = true;
    watch();
    EXPECT_EQ(Told12, sink->take());
    EXPECT_EQ(std::this_thread::get_id(), sink->lastThread());
}

// ---- logout

TEST_F(NoticesTest, LogoutIsToldAndEndsTheSessionsOfTheUser)
{
    EXPECT_EQ(1, server->triggerLogout(QStringLiteral("NORA")));
    EXPECT_EQ(QStringList(QStringLiteral("logout")), told());
    VARIANT_BOOL connected = VARIANT_TRUE;
    EXPECT_EQ(S_OK, signon->get_Connected(&connected));
    EXPECT_EQ(VARIANT_FALSE, connected);
    EXPECT_EQ(S_OK, other->get_Connected(&connected));
    EXPECT_EQ(VARIANT_TRUE, connected);
}

TEST_F(NoticesTest, LogoutOfEverybody)
{
    EXPECT_EQ(2, server->triggerLogout());
    EXPECT_EQ(QStringList(QStringLiteral("logout")), told());
    EXPECT_EQ(0, server->model()->sessionCount());
    EXPECT_EQ(0, server->triggerLogout());
}

TEST_F(NoticesTest, LogoutAtOnce)
{
    server->options().deliverAtOnce = true;
    EXPECT_EQ(1, server->triggerLogout(QStringLiteral("nora")));
    EXPECT_EQ(QStringList(QStringLiteral("logout")), sink->take());
}

TEST_F(NoticesTest, LogoutOfNobody)
{
    EXPECT_EQ(0, server->triggerLogout(QStringLiteral("eve")));
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, SigningOffIsNotALogout)
{
    signon->Disconnect();
    EXPECT_EQ(QStringList(), told());
}

TEST_F(NoticesTest, SignOnAfterALogoutIsToldAgain)
{
    server->triggerLogout();
    told();
    ASSERT_EQ(S_OK, signon->Connect(In("nora"), In("news"), nullptr, 0));
    watch();
    const auto iris = signOn("iris");
    EXPECT_EQ(S_OK, queue(iris)->Delete(index(0)));
    EXPECT_EQ(Told12, told());
}

// ---- the end

TEST_F(NoticesTest, ServerThatGoesDropsWhatIsQueuedAndTheSinks)
{
    watch();
    server->delivery().pause();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    server.reset();
    EXPECT_EQ(QStringList(), sink->take());
    EXPECT_EQ(1U, sink->references());
}

TEST_F(NoticesTest, ServerThatGoesWaitsForTheEventThatRuns)
{
    std::atomic<bool> inside{false};
    std::atomic<bool> left{false};
    sink->hook = [&] {
        inside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        left = true;
    };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    while (!inside)
        std::this_thread::yield();
    server.reset();
    EXPECT_TRUE(left);
}

TEST_F(NoticesTest, ServerMayGoFromInsideAnEvent)
{
    std::atomic<bool> gone{false};
    sink->hook = [&] {
        server.reset();
        gone = true;
    };
    watch();
    EXPECT_EQ(S_OK, othersToday->Delete(index(0)));
    while (!gone)
        std::this_thread::yield();
    LONG count = 0;
    EXPECT_EQ(RPC_E_DISCONNECTED, othersToday->get_Count(&count));
}

} // namespace Newsroom
