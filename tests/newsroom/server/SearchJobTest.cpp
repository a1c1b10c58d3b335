#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

namespace Newsroom {

/// Searches and how their hits arrive.
class SearchJobTest : public ServerFixture
{
protected:
    ~SearchJobTest() override
    {
        sink.reset();
        server.reset();
        EXPECT_EQ(0, TestSink::alive());
    }

    LONG search(const char *query)
    {
        LONG id = 0;
        EXPECT_EQ(S_OK, signon->Search(In(query), &id));
        EXPECT_GT(id, 0);
        return id;
    }

    QStringList told()
    {
        EXPECT_TRUE(server->waitForEvents());
        return sink->take();
    }

    /// Puts that many stories into NEWS.EMPTY, each with the word "filler".
    void fill(int count)
    {
        for (int i = 0; i < count; ++i) {
            Model::NewStory story;
            story.queueNumber = 15;
            story.text.setField(QStringLiteral("title"), QStringLiteral("filler %1").arg(i));
            ASSERT_TRUE(server->model()->addStory(story).ok());
        }
    }

    /// "20 of 20 more", "5 of 45 end": the counts of each event.
    QStringList counts()
    {
        QStringList counts;
        for (const QString &line : told())
            counts << line.section(QLatin1Char('('), -1).remove(QLatin1Char(')'));
        return counts;
    }

    TestSinkPtr sink = makeSink();
    Orvex::ISignon4Ptr signon = signOn();
    DWORD cookie = advise(signon, __uuidof(Orvex::_IAnNotifyFast), sink.get());
};

TEST_F(SearchJobTest, HitsArriveWithNumberCountAndEnd)
{
    const LONG id = search("{[NEWSROOM-A].*}((rain))");
    EXPECT_EQ(QStringList(QStringLiteral("search %1: Rain delays the final (1 of 1) end").arg(id)), told());
    EXPECT_NE(std::this_thread::get_id(), sink->lastThread());
}

TEST_F(SearchJobTest, NoHitIsOneEmptyEvent)
{
    const LONG id = search("{[NEWSROOM-A].*}((nowhere))");
    EXPECT_EQ(QStringList(QStringLiteral("search %1:  (0 of 0) end").arg(id)), told());
}

TEST_F(SearchJobTest, ManyHitsArriveInBatchesWithTheCountSoFar)
{
    fill(45);
    search("{[]NEWS.EMPTY}((filler))");
    EXPECT_EQ(
        QStringList({QStringLiteral("20 of 20 more"), QStringLiteral("20 of 40 more"), QStringLiteral("5 of 45 end")}),
        counts());
}

TEST_F(SearchJobTest, FullLastBatchIsTheEnd)
{
    fill(40);
    search("{[]NEWS.EMPTY}((filler))");
    EXPECT_EQ(QStringList({QStringLiteral("20 of 20 more"), QStringLiteral("20 of 40 end")}), counts());
}

TEST_F(SearchJobTest, BatchSizeCanBeSet)
{
    fill(3);
    server->options().searchBatch = 1;
    search("{[]NEWS.EMPTY}((filler))");
    EXPECT_EQ(QStringList({QStringLiteral("1 of 1 more"), QStringLiteral("1 of 2 more"), QStringLiteral("1 of 3 end")}),
              counts());
    server->options().searchBatch = 0; // counts as 1
    search("{[]NEWS.EMPTY}((filler))");
    EXPECT_EQ(3, counts().size());
}

TEST_F(SearchJobTest, MaxFoundLimitsTheHits)
{
    fill(45);
    search("{MaxFound=25 []NEWS.EMPTY}((filler))");
    EXPECT_EQ(QStringList({QStringLiteral("20 of 20 more"), QStringLiteral("5 of 25 end")}), counts());
    search("{MaxFound=20 []NEWS.EMPTY}((filler))");
    EXPECT_EQ(QStringList(QStringLiteral("20 of 20 end")), counts());
    search("{MaxFound=100 []NEWS.EMPTY}((filler))");
    EXPECT_EQ(3, counts().size());
}

TEST_F(SearchJobTest, SearchThroughManyStoriesFindsTheLast)
{
    fill(1000);
    search("{[]NEWS.EMPTY}((\"filler 999\"))");
    EXPECT_EQ(QStringList(QStringLiteral("1 of 1 end")), counts());
}

TEST_F(SearchJobTest, ScopeIsAQueueOrASubtree)
{
    search("{[NEWSROOM-A]NEWS.SPORT.TODAY}((the))");
    EXPECT_EQ(QStringList(QStringLiteral("1 of 1 end")), counts());
    search("{[newsroom-a]NEWS.SPORT.*}((*))");
    EXPECT_EQ(QStringList(QStringLiteral("5 of 5 end")), counts());
    search("{[]MAIL.*}((rain))");
    EXPECT_EQ(QStringList(QStringLiteral("0 of 0 end")), counts());
}

TEST_F(SearchJobTest, MalformedQueriesAreRefused)
{
    LONG id = 7;
    for (const char *query : {"", "rain", "{[X]}", "{MaxFound=x []}((rain))", "{[]}((\"open))", "{[]}(())"}) {
        EXPECT_EQ(BadQuery, signon->Search(In(query), &id)) << query;
        EXPECT_EQ(0, id);
    }
    EXPECT_EQ(BadQuery, signon->Search(nullptr, &id));
    EXPECT_EQ(QStringList(), told());
}

TEST_F(SearchJobTest, OtherServersAndUnknownPathsAreRefused)
{
    LONG id = 7;
    EXPECT_EQ(NoSuchServer, signon->Search(In("{[ELSEWHERE].*}((rain))"), &id));
    EXPECT_EQ(Gone, signon->Search(In("{[]NEWS.NOWHERE}((rain))"), &id));
    EXPECT_EQ(0, id);
}

TEST_F(SearchJobTest, SearchesHaveDifferentNumbers)
{
    const LONG first = search("{[]}((rain))");
    EXPECT_NE(first, search("{[]}((rain))"));
}

TEST_F(SearchJobTest, StoppedSearchTellsNoMore)
{
    fill(100);
    server->delivery().pause();
    const LONG id = search("{[]NEWS.EMPTY}((filler))");
    EXPECT_EQ(S_OK, signon->StopSearch(id));
    server->delivery().resume();
    EXPECT_EQ(QStringList(), told());
}

TEST_F(SearchJobTest, SearchStoppedBetweenBatchesTellsNoMore)
{
    fill(100);
    LONG id = 0;
    HRESULT result = E_FAIL;
    sink->hook = [&] { result = signon->StopSearch(id); };
    server->delivery().pause();
    id = search("{[]NEWS.EMPTY}((filler))");
    server->delivery().resume();
    EXPECT_EQ(QStringList(QStringLiteral("20 of 20 more")), counts());
    EXPECT_EQ(S_OK, result);
}

TEST_F(SearchJobTest, StopOfASearchThatDoesNotRunIsRefused)
{
    const LONG id = search("{[]}((rain))");
    told();
    EXPECT_EQ(Gone, signon->StopSearch(id));
    EXPECT_EQ(Gone, signon->StopSearch(id + 1));
    EXPECT_EQ(Gone, signon->StopSearch(0));
}

TEST_F(SearchJobTest, SearchIsItsSignOnsOwn)
{
    const auto other = signOn("iris");
    auto othersSink = makeSink();
    advise(other, __uuidof(Orvex::_IAnNotifyFast), othersSink.get());
    server->delivery().pause();
    const LONG id = search("{[]}((rain))");
    EXPECT_EQ(Gone, other->StopSearch(id));
    server->delivery().resume();
    EXPECT_EQ(1, told().size());
    EXPECT_EQ(QStringList(), othersSink->take());
}

TEST_F(SearchJobTest, SigningOffEndsTheSearches)
{
    server->delivery().pause();
    search("{[]}((rain))");
    signon->Disconnect();
    server->delivery().resume();
    EXPECT_EQ(QStringList(), told());
}

TEST_F(SearchJobTest, TwoSearchesAreToldInTurn)
{
    fill(60);
    server->delivery().pause();
    search("{[]NEWS.EMPTY}((filler))");
    search("{[]NEWS.EMPTY}((filler))");
    server->delivery().resume();
    EXPECT_EQ(
        QStringList({QStringLiteral("20 of 20 more"), QStringLiteral("20 of 20 more"), QStringLiteral("20 of 40 more"),
                     QStringLiteral("20 of 40 more"), QStringLiteral("20 of 60 end"), QStringLiteral("20 of 60 end")}),
        counts());
}

TEST_F(SearchJobTest, SinkOfTheNewerInterfaceIsToldToo)
{
    ASSERT_EQ(S_OK, unadvise(signon, __uuidof(Orvex::_IAnNotifyFast), cookie));
    advise(signon, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
    search("{[]}((rain))");
    EXPECT_EQ(1, told().size());
}

TEST_F(SearchJobTest, SearchWithoutSinkIsNobodysBusiness)
{
    ASSERT_EQ(S_OK, unadvise(signon, __uuidof(Orvex::_IAnNotifyFast), cookie));
    search("{[]}((rain))");
    EXPECT_EQ(QStringList(), told());
}

TEST_F(SearchJobTest, SearchIsNotToldAtOnceEvenIfNoticesAre)
{
    server->options().deliverAtOnce = true;
    search("{[]}((rain))");
    EXPECT_EQ(1, told().size());
    EXPECT_NE(std::this_thread::get_id(), sink->lastThread());
}

TEST_F(SearchJobTest, ServerThatGoesEndsTheSearches)
{
    fill(500);
    server->options().searchBatch = 1;
    search("{[]NEWS.EMPTY}((filler))");
    sink->waitFor(1);
    server.reset();
    sink->take();
    EXPECT_EQ(QStringList(), sink->take());
}

} // namespace Newsroom
