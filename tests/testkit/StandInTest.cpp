#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

#include <quire/testkit/TestKit.h>

#include "support/QtPrinting.h"
#include "testkit/FailureCapture.h"

using namespace Quire;
using namespace Quire::TestKit;

namespace {

const char *const oneQueue = R"(
    server HUB-A
    user ann password=secret
    user bob password=b
    form STORY
      <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell></zeko:row></zeko:form>
    directory NEWS
      queue TODAY form=STORY
        story id=7
          title: Rain
)";

QString userOf(QuireCOM &session)
{
    QString server;
    QString user;
    QString password;
    session.GetConnectInfo(server, user, password);
    return user + text("@") + server;
}

} // namespace

TEST(StandIn, IsReachedThroughTheLibraryAsAServerIs)
{
    const StandIn newsroom(oneQueue);
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    ASSERT_TRUE(session->IsLoaded());
    EXPECT_TRUE(QUIRE_SUCCEEDED(session->Connect(QString(), text("bob"), text("b"), 0)));
    EXPECT_EQ(userOf(*session), text("bob@HUB-A"));
}

TEST(StandIn, SignsOnItsFirstUser)
{
    StandIn newsroom(oneQueue);
    QuireCOM *session = newsroom.signOn();
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(userOf(*session), text("ann@HUB-A"));
}

TEST(StandIn, GivesATextWithoutUsersOne)
{
    StandIn newsroom("queue MAIL\n");
    QuireCOM *session = newsroom.signOn();
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(userOf(*session), text("host@NEWSROOM-A"));
}

TEST(StandIn, IsTheSampleWithoutAText)
{
    StandIn newsroom;
    ASSERT_NE(newsroom.signOn(), nullptr);
    const std::unique_ptr<Directory> queue(Directory::NewDirectory(text("SHOWS.EVENING.RUNDOWN")));
    ASSERT_NE(queue, nullptr);
    EXPECT_TRUE(queue->IsQueue());
}

TEST(StandIn, TakesANewsroomThatIsThere)
{
    const auto model = Newsroom::Model::fromText(text(oneQueue));
    StandIn newsroom(model);
    EXPECT_EQ(&newsroom.model(), model.get());
}

TEST(StandIn, SeesWhatChangesInTheModel)
{
    StandIn newsroom(oneQueue);
    ASSERT_NE(newsroom.signOn(), nullptr);
    newsroom.model().addDirectory(text("ARCHIVE"));
    const std::unique_ptr<Directory> root(Directory::NewDirectory(text(".")));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->Size(), 2);
}

TEST(StandIn, AWrongTextIsReportedWithItsLineWhereItStands)
{
    const FailureCapture capture;
    const StandIn newsroom("queue MAIL\nbroom CLOSET\n");
    ASSERT_EQ(capture.texts(),
              QStringList{text("The text of the newsroom is wrong: line 2: \"broom\" is not known here")});
    EXPECT_EQ(capture.lines(), QList<int>{__LINE__ - 3});
}

TEST(StandIn, NoNewsroomIsReported)
{
    const FailureCapture capture;
    const StandIn newsroom{std::shared_ptr<Newsroom::Model>()};
    EXPECT_EQ(capture.texts(), QStringList{text("There is no newsroom")});
}

TEST(StandIn, ARefusedSignOnIsReportedInWords)
{
    const FailureCapture capture;
    StandIn newsroom(oneQueue);
    newsroom.faults().failNext(text("ISignon4::Connect"), Fault::hresult(static_cast<HRESULT>(0x80040802)));
    EXPECT_EQ(newsroom.signOn(), nullptr);
    EXPECT_EQ(capture.texts(),
              QStringList{text("Signing on as \"ann\" failed: The news system is offline. (0x80040802)")});
    EXPECT_EQ(capture.lines(), QList<int>{__LINE__ - 3});
}

TEST(StandIn, NobodyToSignOnIsReported)
{
    const FailureCapture capture;
    StandIn newsroom(std::make_shared<Newsroom::Model>());
    EXPECT_EQ(newsroom.signOn(), nullptr);
    EXPECT_EQ(capture.texts(), QStringList{text("The newsroom has no user to sign on")});
}

TEST(StandIn, ASecondOneIsReported)
{
    const FailureCapture capture;
    const StandIn first(oneQueue);
    const StandIn second(oneQueue);
    EXPECT_EQ(capture.texts(), QStringList{text("Another newsroom stands in already")});
    EXPECT_EQ(capture.lines(), QList<int>{__LINE__ - 2});
}

TEST(StandIn, RecordsCalls)
{
    StandIn newsroom(oneQueue);
    QuireCOM *session = newsroom.signOn();
    ASSERT_NE(session, nullptr);
    newsroom.startCalls();
    session->GetSysReadRate();
    EXPECT_TRUE(newsroom.takeCalls().contains(text("ISignon4::get_SysReadRate()")));
    EXPECT_EQ(newsroom.takeCalls(), QStringList());
}

TEST(StandIn, InjectsFailures)
{
    StandIn newsroom(oneQueue);
    QuireCOM *session = newsroom.signOn();
    ASSERT_NE(session, nullptr);
    newsroom.faults().failNext(text("get_SysReadRate"), Fault::raise(E_FAIL));
    EXPECT_TRUE(QUIRE_FAILED_WITH(E_FAIL, session->GetSysReadRate()));
    EXPECT_TRUE(QUIRE_SUCCEEDED(session->GetSysReadRate()));
}

TEST(StandIn, WakesCallsThatHangWhenItGoes)
{
    std::unique_ptr<Queue> queue;
    {
        StandIn newsroom(oneQueue);
        QuireCOM *session = newsroom.signOn();
        ASSERT_NE(session, nullptr);
        newsroom.faults().failNext(text("GetList"), Fault::hang(10 * patience));
        queue = std::make_unique<Queue>(session->GetCachedDir(text("NEWS.TODAY")));
        ASSERT_TRUE(newsroom.faults().waitForHang(patience));
        queue.reset(); // abandons its worker, which holds objects of the server until the call ends
    }
}

TEST(StandIn, EndsTheSessionAndTheNotices)
{
    {
        StandIn newsroom(oneQueue);
        ASSERT_NE(newsroom.signOn(), nullptr);
        NotificationInit(nullptr, nullptr, nullptr);
    }
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
}

TEST(StandIn, ForgetsTheFormsOfTheLibrary)
{
    const auto label = [](const char *form) {
        StandIn newsroom(form);
        if (!newsroom.signOn())
            return QString();
        const FormData *data = FormCache::getForm(text("F"));
        return data && !data->m_Fields.empty() ? data->m_Fields.front().m_Label : QString();
    };
    EXPECT_EQ(label("form F\n <zeko:form><zeko:row><zeko:cell idref=t>One</zeko:cell></zeko:row></zeko:form>"),
              text("One"));
    EXPECT_EQ(label("form F\n <zeko:form><zeko:row><zeko:cell idref=t>Two</zeko:cell></zeko:row></zeko:form>"),
              text("Two"));
}

TEST(StandIn, EndsTheSearchesThatTheHostLeft)
{
    for (const char *title : {"Storm one", "Storm two"}) {
        StandIn newsroom(text("queue NEWS\n  story id=7\n    title: ") + text(title) + text("\n"));
        ASSERT_NE(newsroom.signOn(), nullptr);
        NotificationInit(nullptr, nullptr, nullptr);
        Search *const searcher = Search::GetSearcher();
        SearchList *const search = searcher->StartSearch(text("NEWS"), text("storm"));
        ASSERT_NE(search, nullptr);
        const int id = search->SearchID();
        ASSERT_TRUE(newsroom.server().waitForEvents());
        EXPECT_TRUE(searcher->IsSearchDone(id)) << title;
        ItemList *const hits = searcher->AccessSearchResults(id);
        EXPECT_EQ(hits, search) << title;
        ASSERT_EQ(hits->u_Size(), 1) << title;
        EXPECT_EQ(hits->u_Nth(0)->name, text(title));
        searcher->EndAccessSearchResults(id);
    }
    EXPECT_EQ(Search::GetSearcher()->AccessSearchResults(1), nullptr);
}

TEST(StandIn, EndsASearchThatStillRuns)
{
    {
        StandIn newsroom("queue NEWS\n");
        ASSERT_NE(newsroom.signOn(), nullptr);
        NotificationInit(nullptr, nullptr, nullptr);
        newsroom.server().delivery().pause();
        ASSERT_NE(Search::GetSearcher()->StartSearch(text("NEWS"), text("storm")), nullptr);
        ASSERT_NE(Search::GetSearcher()->StartSearch(text("NEWS"), text("rain")), nullptr);
    }
    EXPECT_EQ(Search::GetSearcher()->AccessSearchResults(1), nullptr);
    EXPECT_EQ(Search::GetSearcher()->AccessSearchResults(2), nullptr);
}

TEST(StandIn, SetsTheSettingsBack)
{
    {
        const StandIn newsroom(oneQueue);
        Queue::useThreading = false;
    }
    EXPECT_TRUE(Queue::useThreading);
}

TEST(StandIn, ReportsWhatTheHostStillHolds)
{
    const FailureCapture capture;
    IDispatchPtr kept;
    const int line = __LINE__ + 2;
    {
        StandIn newsroom(oneQueue);
        newsroom.setLeftoverPatience(0);
        QuireCOM *session = newsroom.signOn();
        ASSERT_NE(session, nullptr);
        kept = session->GetCachedDir(text("NEWS.TODAY"));
    }
    EXPECT_EQ(capture.texts(), QStringList{text("The newsroom goes, but this is still held: Queue 1")});
    EXPECT_EQ(capture.lines(), QList<int>{line});
}

TEST(StandIn, WaitsForWhatIsGivenBackLater)
{
    const FailureCapture capture;
    {
        StandIn newsroom(oneQueue);
        QuireCOM *session = newsroom.signOn();
        ASSERT_NE(session, nullptr);
        const auto kept = std::make_shared<IDispatchPtr>(session->GetCachedDir(text("NEWS.TODAY")));
        QTimer::singleShot(0, [kept] { *kept = nullptr; });
    }
    EXPECT_EQ(capture.texts(), QStringList());
}

TEST(StandIn, DoesNotLookWithNegativePatience)
{
    const FailureCapture capture;
    IDispatchPtr kept;
    {
        StandIn newsroom(oneQueue);
        newsroom.setLeftoverPatience(-1);
        QuireCOM *session = newsroom.signOn();
        ASSERT_NE(session, nullptr);
        kept = session->GetCachedDir(text("NEWS.TODAY"));
    }
    EXPECT_EQ(capture.texts(), QStringList());
}

TEST(StandIn, ReportsALockThatIsStillHeld)
{
    const FailureCapture capture;
    {
        std::unique_ptr<QuireCOMMutex> lock;
        {
            StandIn newsroom(oneQueue);
            newsroom.setLeftoverPatience(0);
            lock = std::make_unique<QuireCOMMutex>("a test");
        }
    }
    ASSERT_EQ(capture.texts().size(), 1);
    EXPECT_TRUE(capture.texts().first().startsWith(
        text("The newsroom goes, but this is still held: the server access lock, by thread ")))
        << capture.texts().first().toStdString();
}
