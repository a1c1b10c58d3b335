#include <QPersistentModelIndex>

#include "models/SearchModelFixture.h"
#include "tree/SearcherEnd.h"

using namespace Quire;
using Newsroom::Fault;

TEST_F(SearchModelTest, WithoutASearchThereAreColumnsOnly)
{
    SearchModel model;
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 2);
    EXPECT_EQ(model.headerData(0, Qt::Horizontal), text("Story"));
    EXPECT_EQ(model.headerData(1, Qt::Horizontal), text("Queue"));
    EXPECT_EQ(model.totalHits(), 0);
    model.stop();
    EXPECT_FALSE(model.isLoading());
}

TEST_F(SearchModelTest, HitsOfADirectoryAreSortedAtTheEnd)
{
    SearchModel model;
    SignalLog signals(model);
    start(model);
    EXPECT_EQ(signals.take(), texts({"reset", "loading"}));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(names(model), texts({"Storm three", "Storm one", "Storm two"}));
    EXPECT_EQ(signals.take().last(), text("finished"));
    EXPECT_EQ(model.totalHits(), 3);
}

TEST_F(SearchModelTest, AQueueIsSearchedAlone)
{
    SearchModel model;
    start(model, "NEWS.WORLD", Item_Queue);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(names(model), texts({"Storm one", "Storm two"}));
}

TEST_F(SearchModelTest, ADirectoryIsSearchedWithAllBelowAndNothingElse)
{
    for (const char *const name : {"NEWS.DEEP", "OLD"}) {
        const QString queue = text(name) + text(".QUEUE");
        ASSERT_EQ(newsroom->addDirectory(text(name)), Newsroom::Refusal::None);
        Newsroom::Model::NewStory story;
        story.queueNumber = newsroom->addQueue(queue, {}).value;
        story.text.setField(text("title"), text("Storm of ") + text(name));
        ASSERT_TRUE(newsroom->addStory(story).ok());
    }
    SearchModel model;
    start(model, "NEWS", Item_Directory);
    ASSERT_TRUE(settles(model));
    QStringList found = names(model);
    found.sort();
    EXPECT_EQ(found, texts({"Storm of NEWS.DEEP", "Storm one", "Storm three", "Storm two"}));
}

TEST_F(SearchModelTest, HitsGrowWhileTheyArriveAndAreSortedThen)
{
    SearchModel model;
    SignalLog signals(model);
    startSilently(model);
    addHit("Z", "z");
    addHit("Z again", "z");
    ASSERT_TRUE(comes([&] { return model.rowCount() == 2; }));
    addHit("A", "A");
    ASSERT_TRUE(comes([&] { return model.rowCount() == 3; }));
    EXPECT_EQ(names(model), texts({"Z", "Z again", "A"}));
    EXPECT_EQ(signals.takeRows(), texts({"reset", "inserted . 0-2"}));
    EXPECT_TRUE(model.isLoading());
    const QPersistentModelIndex z = model.index(0, 1);
    const QPersistentModelIndex again = model.index(1, 0);
    const QPersistentModelIndex a = model.index(2, 0);
    server->options().searchBatch = 100;
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(names(model), texts({"A", "Storm three", "Storm one", "Storm two", "Z"}));
    const QStringList rows = signals.takeRows();
    EXPECT_TRUE(rows.contains(text("removed . 1-1"))) << rows.join(text(", ")).toStdString();
    EXPECT_TRUE(rows.contains(text("layout")));
    EXPECT_EQ(z.row(), 4);
    EXPECT_EQ(z.column(), 1);
    EXPECT_EQ(a.row(), 0);
    EXPECT_FALSE(again.isValid());
}

TEST_F(SearchModelTest, RolesAndColumnsTellOfTheHit)
{
    SearchModel model;
    model.setFieldColumns({text("Note")});
    start(model);
    ASSERT_TRUE(settles(model));
    const QModelIndex one = model.index(1, model.columnOf(text("note")));
    EXPECT_EQ(one.data(), text("first"));
    EXPECT_EQ(one.data(NameRole), text("Storm one"));
    EXPECT_EQ(one.data(IdentifierRole), text("1:1"));
    EXPECT_EQ(one.data(PathRole), text("NEWS.WORLD"));
    EXPECT_EQ(one.data(TypeRole), int{Item_SearchHit});
    EXPECT_EQ(model.index(1, 1).data(), text("NEWS.WORLD"));
    EXPECT_EQ(model.headerData(2, Qt::Horizontal), text("Note"));
    EXPECT_EQ(model.columns().size(), 3);
}

TEST_F(SearchModelTest, AStoppedSearchKeepsItsHits)
{
    SearchModel model;
    SignalLog signals(model);
    startSilently(model);
    addHit("Z", "z");
    addHit("A", "a");
    ASSERT_TRUE(comes([&] { return model.rowCount() == 2; }));
    model.stop();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(names(model), texts({"Z", "A"}));
    EXPECT_EQ(signals.take().last(), text("finished"));
    server->delivery().resume();
}

TEST_F(SearchModelTest, ASearchThatIsStoppedBeforeItBeganEnds)
{
    server->delivery().pause();
    SearchModel model;
    start(model);
    model.stop();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 0);
    server->delivery().resume();
}

TEST_F(SearchModelTest, AStopReachesNoneButTheSearchThatWasStopped)
{
    server->delivery().pause();
    SearchModel model;
    start(model);
    model.stop();
    start(model);
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    QCoreApplication::processEvents(); // it has begun
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    Search *const searcher = Search::GetSearcher();
    EXPECT_FALSE(searcher->IsSearchDone(1) && searcher->IsSearchDone(2)); // the first one need not have begun at all
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(SearchModelTest, ClearingStopsTheSearch)
{
    SearchModel model;
    startSilently(model);
    model.clear();
    EXPECT_TRUE(comes([] { return Search::GetSearcher()->IsSearchDone(1); }));
    server->delivery().resume();
}

TEST_F(SearchModelTest, HitsThatAreFirstSeenAtTheEndAreCountedToo)
{
    SearchModel model;
    SignalLog signals(model);
    model.setPollInterval(50);
    startSilently(model);
    server->delivery().resume();
    ASSERT_TRUE(server->waitForEvents());
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take().filter(text("progress")), texts({"progress 3"}));
}

TEST_F(SearchModelTest, ANewSearchStopsTheOneBefore)
{
    SearchModel model;
    startSilently(model);
    start(model, "NEWS.LOCAL", Item_Queue);
    ASSERT_TRUE(comes([] { return Search::GetSearcher()->IsSearchDone(1); }));
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(names(model), texts({"Storm three"}));
    EXPECT_EQ(server->calls().takeTexts().filter(text("StopSearch")).size(), 1);
}

TEST_F(SearchModelTest, AnEndedSearchIsNotStoppedOnTheServer)
{
    {
        SearchModel model;
        start(model);
        ASSERT_TRUE(settles(model));
    }
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(server->calls().takeTexts().filter(text("StopSearch")), QStringList());
    EXPECT_EQ(Search::GetSearcher()->AccessSearchResults(1), nullptr);
}

TEST_F(SearchModelTest, ClearingShowsNothing)
{
    SearchModel model;
    start(model);
    ASSERT_TRUE(settles(model));
    model.clear();
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.totalHits(), 0);
}

TEST_F(SearchModelTest, WithoutNoticesASearchFails)
{
    NotificationRelease();
    SearchProbe::destroy();
    SearchModel model;
    SignalLog signals(model);
    start(model);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(signals.take().last(), text("failed ") + getErrorString(E_FAIL, false));
}

TEST_F(SearchModelTest, ARefusedSearchFails)
{
    server->faults().failNext(text("ISignon4::Search"), Fault::hresult(E_FAIL));
    SearchModel model;
    start(model);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(SearchModelTest, AfterDisconnectingTheUserIsNotLoggedIn)
{
    session->Disconnect();
    SearchModel model;
    start(model);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), text("User not logged in."));
}

TEST_F(SearchModelTest, ALogoutByTheServerEndsTheSearchAndTheHitsStay)
{
    SearchModel model;
    SignalLog signals(model);
    startSilently(model);
    addHit("Z", "z");
    ASSERT_TRUE(comes([&] { return model.rowCount() == 1; }));
    ASSERT_EQ(server->triggerLogout(), 1);
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(static_cast<quint32>(model.error()), 0x80040416U);
    EXPECT_EQ(signals.take().last(), text("failed User not logged in."));
    EXPECT_EQ(names(model), texts({"Z"}));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(Search::GetSearcher()->AccessSearchResults(1), nullptr); // nobody asks for it any more
}

TEST_F(SearchModelTest, DisconnectingEndsTheSearch)
{
    SearchModel model;
    startSilently(model);
    session->Disconnect();
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), text("User not logged in."));
}

TEST_F(SearchModelTest, SigningOnAnewEndsTheSearchOfTheSessionBefore)
{
    SearchModel model;
    startSilently(model);
    session->Disconnect();
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("a"), 0), 0);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), text("User not logged in."));
    start(model); // the next one is of the new session
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(SearchModelTest, ASlowSearchGoesOnWhileTheUserIsLoggedIn)
{
    SearchModel model;
    startSilently(model);
    server->calls().take();
    QStringList questions;
    ASSERT_TRUE(comes([&] {
        questions += server->calls().takeTexts().filter(text("get_Connected"));
        return questions.size() >= 2;
    }));
    EXPECT_TRUE(model.isLoading());
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(SearchModelTest, AModelGoesWhileTheServerHangs)
{
    server->faults().failNext(text("ISignon4::Search"), Fault::hang(hangTime));
    auto model = std::make_unique<SearchModel>();
    start(*model);
    ASSERT_TRUE(server->faults().waitForHang(patience));
    QElapsedTimer timer;
    timer.start();
    model.reset();
    EXPECT_LT(timer.elapsed(), hangTime / 2);
    EXPECT_EQ(server->faults().hanging(), 1);
    server->faults().clear();
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(Search::GetSearcher()->AccessSearchResults(1), nullptr); // nobody wants it any more
}

TEST_F(SearchModelTest, PassesQtsOwnCheck)
{
    server->options().searchBatch = 1;
    SearchModel model;
    const ModelCheck check(model);
    start(model);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 3);
    server->delivery().pause();
    start(model);
    ASSERT_TRUE(comes([] { return Search::GetSearcher()->AccessSearchResults(2) != nullptr; }));
    Search::GetSearcher()->EndAccessSearchResults(2);
    for (const char *key : {"z", "y", "z", "A"})
        addHit(key, key);
    ASSERT_TRUE(comes([&] { return model.rowCount() == 4; }));
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 6);
    model.clear();
}
