#include <gtest/gtest.h>

#include <QStringList>
#include <QThread>

#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>

#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

using FakeServer::Kind;
using namespace Quire;

namespace {

/// A session whose tables a test fills with handles of its own.
class HandleTables : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        connect();
    }

    IDispatchPtr handle(Kind kind = Kind::Queue) { return IDispatchPtr(server.newObject(kind, text("X")), false); }

    bool has(const char *queuePath, const StoryID &story)
    {
        return session->GetCachedStory(text(queuePath), &story, true);
    }

    QStringList callsOf(const char *path)
    {
        server.forgetCalls();
        session->GetCachedDir(text(path));
        return server.calls();
    }

    const StoryID id{1, 2, 3};
};

QString nameOf(const IDispatchPtr &handle)
{
    BSTR name = nullptr;
    if (const Orvex::IDirectory2Ptr directory = Dispatch2Dir(handle))
        directory->get_Name(&name);
    else if (const Orvex::IQueue2Ptr queue = Dispatch2Queue(handle))
        queue->get_Name(&name);
    QString result = name ? QString(reinterpret_cast<const QChar *>(name)) : text("no directory and no queue");
    SysFreeString(name);
    return result;
}

} // namespace

// ---- directories by path --------------------------------------------------------------------------------------------

TEST_F(HandleTables, TheRootIsKeptUnderADotForBothOfItsPaths)
{
    session->RemoveDirFromCache(text("."));
    EXPECT_EQ(nameOf(session->GetCachedDir(QString())), text("."));
    server.forgetCalls();
    EXPECT_EQ(nameOf(session->GetCachedDir(text("."))), text("."));
    EXPECT_EQ(server.count(text("GetDirectory(.)")), 0);
}

TEST_F(HandleTables, TheRootIsAskedForAsADot)
{
    for (const char *path : {"", "."}) {
        session->RemoveDirFromCache(text("."));
        EXPECT_EQ(callsOf(path), texts({"get_Connected()", "GetDirectory(.)"})) << path;
    }
}

TEST_F(HandleTables, GetCachedDirWalksByNameAndKeepsEachLevel)
{
    EXPECT_EQ(callsOf("NEWS.SPORT.SCORES"),
              texts({"..get_Item(0)", "NEWS.get_Name()", "..get_Item(0)",             //
                     "NEWS.get_Item(0)", "NEWS.SPORT.get_Name()", "NEWS.get_Item(0)", //
                     "NEWS.SPORT.get_Item(0)", "NEWS.SPORT.SCORES.get_Name()", "NEWS.SPORT.get_Item(0)"}));
    for (const char *path : {"NEWS", "NEWS.SPORT", "NEWS.SPORT.SCORES"}) {
        EXPECT_EQ(callsOf(path), QStringList()) << path;
        EXPECT_EQ(nameOf(session->GetCachedDir(text(path))), text(path));
    }
}

TEST_F(HandleTables, GetCachedDirStartsAtTheNearestDirectoryThatIsKept)
{
    session->GetCachedDir(text("NEWS"));
    EXPECT_EQ(callsOf("NEWS.WORLD"), texts({"NEWS.get_Item(0)", "NEWS.SPORT.get_Name()", "NEWS.get_Item(1)",
                                            "NEWS.WORLD.get_Name()", "NEWS.get_Item(1)"}));
}

TEST_F(HandleTables, ASecondGetCachedDirMakesNoServerCall)
{
    const IDispatchPtr first = session->GetCachedDir(text("NEWS.SPORT"));
    server.forgetCalls();
    IDispatchPtr second = session->GetCachedDir(text("NEWS.SPORT"));
    EXPECT_EQ(server.calls(), QStringList());
    EXPECT_EQ(second.GetInterfacePtr(), first.GetInterfacePtr());
}

TEST_F(HandleTables, GetCachedDirFindsQueues)
{
    const IDispatchPtr queue = session->GetCachedDir(text("NEWS.WORLD"));
    EXPECT_TRUE(Dispatch2Queue(queue));
    EXPECT_FALSE(Dispatch2Dir(queue));
}

TEST_F(HandleTables, GetCachedDirComparesNamesWithoutCaseAndKeysWithIt)
{
    const IDispatchPtr upper = session->GetCachedDir(text("NEWS.SPORT"));
    EXPECT_EQ(nameOf(session->GetCachedDir(text("news.sport"))), text("NEWS.SPORT"));
    EXPECT_FALSE(callsOf("News.Sport").isEmpty());
    EXPECT_EQ(callsOf("news.sport"), QStringList());
    // The two spellings' entries go one by one.
    session->RemoveDirFromCache(text("NEWS.SPORT"));
    EXPECT_EQ(callsOf("news.sport"), QStringList());
}

TEST_F(HandleTables, GetCachedDirGivesAReferenceOfItsOwn)
{
    {
        const IDispatchPtr directory = session->GetCachedDir(text("NEWS"));
        session->Disconnect();
        EXPECT_EQ(server.liveObjects(), 2); // the sign-on object and this one
    }
    EXPECT_EQ(server.liveObjects(), 1);
}

// ---- where the walk does not lead -----------------------------------------------------------------------------------

TEST_F(HandleTables, GetCachedDirAsksForTheWholePathWhenTheItemsRunOut)
{
    EXPECT_EQ(callsOf("NOWHERE"), texts({"..get_Item(0)", "NEWS.get_Name()", "..get_Item(1)", "MAIL.get_Name()",
                                         "..get_Item(2)", "get_Connected()", "GetDirectory(NOWHERE)"}));
    EXPECT_FALSE(session->GetCachedDir(text("NOWHERE")));
}

TEST_F(HandleTables, GetCachedDirAsksForTheWholePathWhenThePathAboveIsAQueue)
{
    EXPECT_EQ(callsOf("MAIL.X"), texts({"..get_Item(0)", "NEWS.get_Name()", "..get_Item(1)", "MAIL.get_Name()",
                                        "..get_Item(1)", "get_Connected()", "GetDirectory(MAIL.X)"}));
}

TEST_F(HandleTables, GetCachedDirAsksForEachLevelBelowAMissingOne)
{
    EXPECT_EQ(callsOf("GONE.A.B").filter(text("GetDirectory")),
              texts({"GetDirectory(GONE)", "GetDirectory(GONE.A)", "GetDirectory(GONE.A.B)"}));
}

TEST_F(HandleTables, GetCachedDirFindsWhatOnlyTheServersOwnLookUpKnows)
{
    server.add(Kind::Queue, text("HIDDEN.DEEP")); // in no directory's items
    EXPECT_EQ(nameOf(session->GetCachedDir(text("HIDDEN.DEEP"))), text("HIDDEN.DEEP"));
    EXPECT_EQ(callsOf("HIDDEN.DEEP"), QStringList());
}

TEST_F(HandleTables, GetCachedDirStopsAtAnItemThatIsNeitherDirectoryNorQueue)
{
    server.remove(text("MAIL"));
    server.add(Kind::Bare, text("ODD"));
    server.add(Kind::Queue, text("MAIL"));
    EXPECT_EQ(callsOf("MAIL"),
              texts({"..get_Item(0)", "NEWS.get_Name()", "..get_Item(1)", "get_Connected()", "GetDirectory(MAIL)"}));
    EXPECT_TRUE(session->GetCachedDir(text("MAIL")));
}

TEST_F(HandleTables, GetCachedDirStopsAtAnItemWithoutAName)
{
    server.fail(text("get_Name"), E_FAIL);
    EXPECT_EQ(callsOf("MAIL"), texts({"..get_Item(0)", "NEWS.get_Name()", "get_Connected()", "GetDirectory(MAIL)"}));
}

TEST_F(HandleTables, GetCachedDirComparesWholeNames)
{
    server.add(Kind::Queue, text("NEWS2"));
    EXPECT_EQ(nameOf(session->GetCachedDir(text("NEWS2"))), text("NEWS2"));
    EXPECT_FALSE(session->GetCachedDir(text("NEW")));
}

TEST_F(HandleTables, GetCachedDirDropsAnErrorOfTheWalk)
{
    server.fail(text("get_Item"), hresult(0x80010108));
    EXPECT_EQ(nameOf(session->GetCachedDir(text("NEWS.SPORT"))), text("NEWS.SPORT"));
    EXPECT_EQ(server.calls().filter(text("GetDirectory")), texts({"GetDirectory(NEWS)", "GetDirectory(NEWS.SPORT)"}));
}

TEST_F(HandleTables, GetCachedDirDropsWhateverIsRaisedInTheWalk)
{
    int lookUps = 0;
    server.onCall = [&lookUps](const QString &operation) {
        if (operation == text("get_Item") || (operation == text("GetDirectory") && ++lookUps == 1))
            throw std::bad_alloc();
    };
    EXPECT_EQ(nameOf(session->GetCachedDir(text("NEWS.SPORT"))), text("NEWS.SPORT"));
    EXPECT_EQ(server.calls().filter(text("GetDirectory")), texts({"GetDirectory(NEWS)", "GetDirectory(NEWS.SPORT)"}));
}

TEST_F(HandleTables, GetCachedDirKeepsNothingWhenTheServerHandsOutNothing)
{
    server.directoriesExist = false;
    EXPECT_FALSE(session->GetCachedDir(text("GONE")));
    EXPECT_FALSE(session->GetCachedDir(text("GONE")));
    EXPECT_EQ(server.count(text("GetDirectory(GONE)")), 2);
}

TEST_F(HandleTables, GetCachedDirDropsARaisedQueryOfTheWalk)
{
    server.refuse(Kind::Queue, __uuidof(Orvex::IDirectory2), hresult(0x80010108));
    EXPECT_EQ(callsOf("MAIL").last(), text("GetDirectory(MAIL)"));
    EXPECT_TRUE(session->GetCachedDir(text("MAIL")));
}

TEST_F(HandleTables, GetCachedDirTakesAnItemWithoutIDispatchForNotFound)
{
    server.refuse(Kind::Queue, __uuidof(IDispatch), E_NOINTERFACE);
    EXPECT_EQ(callsOf("MAIL").last(), text("GetDirectory(MAIL)"));
}

TEST_F(HandleTables, GetCachedDirIsEmptyWhenTheServersLookUpFails)
{
    server.fail(text("get_Item"), E_FAIL);
    server.fail(text("GetDirectory"), hresult(0x80040405));
    EXPECT_FALSE(session->GetCachedDir(text("NEWS.SPORT")));
    server.mend();
    EXPECT_TRUE(session->GetCachedDir(text("NEWS.SPORT"))); // the failure was not kept
}

TEST_F(HandleTables, GetCachedDirGivesWhatIsKeptWhenNotConnected)
{
    session->GetCachedDir(text("NEWS"));
    server.connected = false;
    EXPECT_TRUE(session->GetCachedDir(text("NEWS")));
    session->RemoveDirFromCache(text("."));
    EXPECT_FALSE(session->GetCachedDir(text(".")));
    EXPECT_FALSE(session->GetCachedDir(text("MAIL")));
    EXPECT_EQ(server.calls().filter(text("GetDirectory")), QStringList());
}

TEST_F(SessionTest, GetCachedDirIsEmptyWhenNotLoaded)
{
    unload();
    EXPECT_FALSE(session->GetCachedDir(text("NEWS.SPORT")));
    EXPECT_FALSE(session->GetCachedDir(QString()));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(HandleTables, GetCachedDirTakesAPathThatEndsWithADot)
{
    EXPECT_FALSE(session->GetCachedDir(text("NEWS.")));
    EXPECT_EQ(server.calls().last(), text("GetDirectory(NEWS.)"));
}

TEST_F(HandleTables, GetCachedDirWalksAVeryDeepPathOnASmallStack)
{
    class SmallStack : public QThread
    {
    public:
        explicit SmallStack(QuireCOM *session)
            : m_session(session)
        {
            setStackSize(128 * 1024);
        }
        IDispatchPtr result;

    private:
        void run() override { result = m_session->GetCachedDir(QString(5000, QLatin1Char('.'))); }
        QuireCOM *m_session;
    };
    server.fail(text("get_Item"), E_FAIL);
    SmallStack thread(session);
    thread.start();
    thread.wait();
    EXPECT_FALSE(thread.result);
    EXPECT_EQ(server.calls().filter(text("GetDirectory")).size(), 4999); // one for each path below the root
}

// ---- overriding -----------------------------------------------------------------------------------------------------

namespace {

/// A session whose host answers for one path itself, refuses another and notes all that it is asked for.
class HostsSession final : public QuireCOM
{
public:
    IDispatchPtr GetCachedDir(const QString &path) override
    {
        asked.append(path);
        if (path == refusedPath)
            throw _com_error(E_ACCESSDENIED);
        return path == ownPath ? ownHandle : QuireCOM::GetCachedDir(path);
    }

    QStringList asked;
    QString ownPath = text("no path");
    QString refusedPath = ownPath;
    IDispatchPtr ownHandle;
};

class OverriddenGetCachedDir : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        QuireCOM::UnloadCOM();
        host = new HostsSession;
        session = host;
        connect();
    }
    void TearDown() override
    {
        delete host;
        SessionTest::TearDown();
    }

    HostsSession *host = nullptr;
};

} // namespace

TEST_F(OverriddenGetCachedDir, IsAskedForEveryDirectoryAbove)
{
    EXPECT_TRUE(session->GetCachedDir(text("NEWS.SPORT.SCORES")));
    EXPECT_EQ(host->asked, texts({"NEWS.SPORT.SCORES", "NEWS.SPORT", "NEWS", ""}));
}

TEST_F(OverriddenGetCachedDir, AnswersForADirectoryAbove)
{
    host->ownPath = text("ALIAS");
    host->ownHandle = session->GetCachedDir(text("NEWS"));
    server.forgetCalls();
    EXPECT_EQ(nameOf(session->GetCachedDir(text("ALIAS.SPORT"))), text("NEWS.SPORT"));
    EXPECT_EQ(server.calls().filter(text("GetDirectory")), QStringList());
    host->ownHandle = nullptr;
}

TEST_F(OverriddenGetCachedDir, MayRaiseForADirectoryAbove)
{
    host->refusedPath = text("NEWS");
    EXPECT_EQ(nameOf(session->GetCachedDir(text("NEWS.SPORT"))), text("NEWS.SPORT"));
    EXPECT_EQ(server.calls().filter(text("GetDirectory")), texts({"GetDirectory(NEWS.SPORT)"}));
}

TEST_F(OverriddenGetCachedDir, IsNotAskedForDirectoriesDeeperThan256Components)
{
    server.fail(text("get_Item"), E_FAIL);
    QStringList components;
    for (int i = 0; i < 300; ++i)
        components.append(text("D"));
    const QString path = components.join(QLatin1Char('.'));
    session->GetCachedDir(path);
    EXPECT_EQ(host->asked.size(), 1 + 256 + 1); // the path itself, what lies above, the root
    EXPECT_EQ(host->asked.at(1).count(QLatin1Char('.')) + 1, 256);
    EXPECT_EQ(server.calls().filter(text("GetDirectory")).size(), 300);
}

// ---- adding and removing --------------------------------------------------------------------------------------------

TEST_F(HandleTables, AddDirToCacheKeepsAHandle)
{
    const IDispatchPtr own = handle();
    session->AddDirToCache(text("ANY.PATH"), own);
    EXPECT_EQ(session->GetCachedDir(text("ANY.PATH")).GetInterfacePtr(), own.GetInterfacePtr());
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(HandleTables, AddDirToCacheReplacesAndReleases)
{
    session->AddDirToCache(text("A"), handle());
    const int before = server.liveObjects();
    const IDispatchPtr second = handle();
    session->AddDirToCache(text("A"), second);
    EXPECT_EQ(server.liveObjects(), before);
    EXPECT_EQ(session->GetCachedDir(text("A")).GetInterfacePtr(), second.GetInterfacePtr());
}

TEST_F(HandleTables, AddDirToCacheTakesAnEmptyPathForTheRoot)
{
    const IDispatchPtr own = handle();
    session->AddDirToCache(QString(), own);
    EXPECT_EQ(session->GetCachedDir(text(".")).GetInterfacePtr(), own.GetInterfacePtr());
}

TEST_F(HandleTables, RemoveDirFromCacheReleasesTheHandle)
{
    session->AddDirToCache(text("A"), handle());
    const int before = server.liveObjects();
    session->RemoveDirFromCache(text("A"));
    EXPECT_EQ(server.liveObjects(), before - 1);
}

TEST_F(HandleTables, RemoveDirFromCacheLeavesPathsBelow)
{
    session->GetCachedDir(text("NEWS.SPORT"));
    session->RemoveDirFromCache(text("NEWS"));
    EXPECT_EQ(callsOf("NEWS.SPORT"), QStringList());
    EXPECT_EQ(callsOf("NEWS"), texts({"..get_Item(0)", "NEWS.get_Name()", "..get_Item(0)"}));
}

TEST_F(HandleTables, RemoveDirFromCacheRemovesThePathsStories)
{
    session->AddStoryToCache(text("A"), &id, handle(Kind::Story));
    session->AddStoryToCache(text("A.B"), &id, handle(Kind::Story));
    session->RemoveDirFromCache(text("A"));
    EXPECT_FALSE(has("A", id));
    EXPECT_TRUE(has("A.B", id));
}

TEST_F(HandleTables, RemoveStoriesFromCacheIsTheSameRemoval)
{
    session->AddDirToCache(text("A"), handle());
    session->AddDirToCache(text("A.B"), handle());
    session->AddStoryToCache(text("A"), &id, handle(Kind::Story));
    session->AddStoryToCache(text("A.B"), &id, handle(Kind::Story));
    session->RemoveStoriesFromCache(text("A"));
    EXPECT_FALSE(has("A", id));
    EXPECT_TRUE(has("A.B", id));
    EXPECT_FALSE(callsOf("A").isEmpty());
    EXPECT_EQ(callsOf("A.B"), QStringList());
}

TEST_F(HandleTables, RemovingTheEmptyPathRemovesTheRootAndTheStoriesUnderADot)
{
    session->AddStoryToCache(text("."), &id, handle(Kind::Story));
    session->AddStoryToCache(text(""), &id, handle(Kind::Story));
    session->RemoveDirFromCache(QString());
    EXPECT_FALSE(has(".", id));
    EXPECT_TRUE(has("", id));
    EXPECT_EQ(callsOf("."), texts({"get_Connected()", "GetDirectory(.)"}));
}

TEST_F(HandleTables, RemovingWhatIsNotKeptDoesNothing)
{
    session->RemoveDirFromCache(text("NOTHING"));
    session->RemoveStoriesFromCache(text("NOTHING"));
    session->RemoveStoryFromCache(text("NOTHING"), &id);
    EXPECT_EQ(server.liveObjects(), 2);
}

TEST_F(HandleTables, KeysKnowLetterCase)
{
    session->AddStoryToCache(text("Queue"), &id, handle(Kind::Story));
    EXPECT_TRUE(has("Queue", id));
    EXPECT_FALSE(has("QUEUE", id));
}

// ---- stories --------------------------------------------------------------------------------------------------------

TEST_F(HandleTables, AddStoryToCacheKeepsAHandle)
{
    const IDispatchPtr own = handle(Kind::Story);
    session->AddStoryToCache(text("MAIL"), &id, own);
    EXPECT_EQ(session->GetCachedStory(text("MAIL"), &id, false).GetInterfacePtr(), own.GetInterfacePtr());
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(HandleTables, AddStoryToCacheReplacesAndReleases)
{
    session->AddStoryToCache(text("MAIL"), &id, handle(Kind::Story));
    const int before = server.liveObjects();
    session->AddStoryToCache(text("MAIL"), &id, handle(Kind::Story));
    EXPECT_EQ(server.liveObjects(), before);
}

TEST_F(HandleTables, StoriesWithTheSameFirstPartShareOneEntry)
{
    const StoryID other{1, 77, 88};
    const IDispatchPtr own = handle(Kind::Story);
    session->AddStoryToCache(text("MAIL"), &id, own);
    EXPECT_EQ(session->GetCachedStory(text("MAIL"), &other, true).GetInterfacePtr(), own.GetInterfacePtr());
    session->RemoveStoryFromCache(text("MAIL"), &other);
    EXPECT_FALSE(has("MAIL", id));
}

TEST_F(HandleTables, StoriesOfTwoQueuesAreKeptApart)
{
    session->AddStoryToCache(text("MAIL"), &id, handle(Kind::Story));
    EXPECT_FALSE(has("NEWS.WORLD", id));
}

TEST_F(HandleTables, TheEmptyQueuePathIsNotTheRootForStories)
{
    session->AddStoryToCache(QString(), &id, handle(Kind::Story));
    EXPECT_TRUE(has("", id));
    EXPECT_FALSE(has(".", id));
}

TEST_F(HandleTables, RemoveStoryFromCacheRemovesOneStory)
{
    const StoryID other{4, 2, 3};
    session->AddStoryToCache(text("MAIL"), &id, handle(Kind::Story));
    session->AddStoryToCache(text("MAIL"), &other, handle(Kind::Story));
    const int before = server.liveObjects();
    session->RemoveStoryFromCache(text("MAIL"), &id);
    EXPECT_EQ(server.liveObjects(), before - 1);
    EXPECT_FALSE(has("MAIL", id));
    EXPECT_TRUE(has("MAIL", other));
}

TEST_F(HandleTables, ANullIdentifierChangesNothingAndFindsNothing)
{
    session->AddStoryToCache(text("MAIL"), &id, handle(Kind::Story));
    session->AddStoryToCache(text("MAIL"), nullptr, handle(Kind::Story));
    session->RemoveStoryFromCache(text("MAIL"), nullptr);
    EXPECT_TRUE(has("MAIL", id));
    EXPECT_FALSE(session->GetCachedStory(text("MAIL"), nullptr, false));
    EXPECT_FALSE(session->GetStoryDirect(text("MAIL"), nullptr));
    EXPECT_FALSE(session->DeleteStoryDirect(text("MAIL"), nullptr));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(HandleTables, GetCachedStoryMakesNoServerCallWhenOnlyTheCacheCounts)
{
    EXPECT_FALSE(session->GetCachedStory(text("MAIL"), &id, true));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(HandleTables, GetCachedStoryAsksTheServerOnAMissAndKeepsTheAnswer)
{
    EXPECT_TRUE(session->GetCachedStory(text("MAIL"), &id, false));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "GetStory(MAIL, 1, 0, 0)"}));
    server.forgetCalls();
    EXPECT_TRUE(session->GetCachedStory(text("MAIL"), &id, false));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(HandleTables, GetStoryDirectAsksTheServerEachTimeAndReplacesTheHandle)
{
    IDispatchPtr first = session->GetStoryDirect(text("MAIL"), &id);
    const IDispatchPtr second = session->GetStoryDirect(text("MAIL"), &id);
    EXPECT_TRUE(Dispatch2Story(first));
    EXPECT_NE(first.GetInterfacePtr(), second.GetInterfacePtr());
    EXPECT_EQ(server.count(text("GetStory(MAIL, 1, 0, 0)")), 2);
    EXPECT_EQ(session->GetCachedStory(text("MAIL"), &id, true).GetInterfacePtr(), second.GetInterfacePtr());
    const int before = server.liveObjects();
    first = nullptr;
    EXPECT_EQ(server.liveObjects(), before - 1);
}

TEST_F(HandleTables, GetStoryDirectPassesANegativeNumber)
{
    const StoryID negative{-5, 0, 0};
    EXPECT_TRUE(session->GetStoryDirect(text("MAIL"), &negative));
    EXPECT_EQ(server.count(text("GetStory(MAIL, -5, 0, 0)")), 1);
    EXPECT_TRUE(has("MAIL", negative));
}

TEST_F(HandleTables, GetStoryDirectIsEmptyWhenNotConnected)
{
    server.connected = false;
    EXPECT_FALSE(session->GetStoryDirect(text("MAIL"), &id));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(HandleTables, GetStoryDirectIsEmptyWhenTheServerRefuses)
{
    server.fail(text("GetStory"), hresult(0x8004040B));
    EXPECT_FALSE(session->GetStoryDirect(text("MAIL"), &id));
    EXPECT_FALSE(has("MAIL", id));
}

TEST_F(HandleTables, GetStoryDirectIsEmptyWhenTheServerHandsOutNothing)
{
    server.storiesExist = false;
    EXPECT_FALSE(session->GetStoryDirect(text("MAIL"), &id));
    EXPECT_FALSE(has("MAIL", id));
}

TEST_F(HandleTables, GetStoryDirectIsEmptyForAStoryWithoutIDispatch)
{
    server.refuse(Kind::Story, __uuidof(IDispatch), E_NOINTERFACE);
    EXPECT_FALSE(session->GetStoryDirect(text("MAIL"), &id));
    server.mend();
    EXPECT_FALSE(has("MAIL", id));
}

TEST_F(HandleTables, GetStoryDirectRaisesAnotherFailureOfTheQuery)
{
    server.refuse(Kind::Story, __uuidof(IDispatch), hresult(0x80010108));
    try {
        session->GetStoryDirect(text("MAIL"), &id);
        ADD_FAILURE() << "nothing raised";
    } catch (const _com_error &error) {
        EXPECT_EQ(error.Error(), hresult(0x80010108));
    }
    EXPECT_EQ(server.liveObjects(), 2); // the story that raised is released
}

TEST_F(HandleTables, DeleteStoryDirectPassesAllThreeParts)
{
    EXPECT_TRUE(session->DeleteStoryDirect(text("MAIL"), &id));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "DeleteStory(MAIL, 1, 2, 3)"}));
}

TEST_F(HandleTables, DeleteStoryDirectLeavesTheHandle)
{
    session->GetStoryDirect(text("MAIL"), &id);
    EXPECT_TRUE(session->DeleteStoryDirect(text("MAIL"), &id));
    EXPECT_TRUE(has("MAIL", id));
}

TEST_F(HandleTables, DeleteStoryDirectTellsThatTheServerRefused)
{
    server.fail(text("DeleteStory"), hresult(0x8004040F));
    EXPECT_FALSE(session->DeleteStoryDirect(text("MAIL"), &id));
}

TEST_F(HandleTables, DeleteStoryDirectIsFalseWhenNotConnected)
{
    server.connected = false;
    EXPECT_FALSE(session->DeleteStoryDirect(text("MAIL"), &id));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SessionTest, TablesTakeNothingWhenNotLoaded)
{
    unload();
    const StoryID id{1, 2, 3};
    const IDispatchPtr handle(server.newObject(Kind::Queue, text("X")), false);
    session->AddDirToCache(text("X"), handle);
    session->AddStoryToCache(text("X"), &id, handle);
    session->RemoveDirFromCache(text("X"));
    session->RemoveStoryFromCache(text("X"), &id);
    EXPECT_FALSE(session->GetCachedDir(text("X")));
    EXPECT_FALSE(session->GetCachedStory(text("X"), &id, false));
    EXPECT_FALSE(session->GetStoryDirect(text("X"), &id));
    EXPECT_FALSE(session->DeleteStoryDirect(text("X"), &id));
}

// ---- labels ---------------------------------------------------------------------------------------------------------

TEST_F(HandleTables, ServerCallsForHandlesRunUnderTheirLabels)
{
    const LockDebugging labels;
    session->RemoveDirFromCache(text("."));
    EXPECT_EQ(QuireCOM::m_LockStr, text("QuireCOM::RemoveDirFromCache"));
    session->GetCachedDir(text("."));
    session->GetStoryDirect(text("MAIL"), &id);
    session->DeleteStoryDirect(text("MAIL"), &id);
    QStringList seen;
    const QVector<FakeServer::Call> calls = server.callsWithLocks();
    for (const FakeServer::Call &call : calls) {
        if (call.text != text("get_Connected()"))
            seen.append(call.text + text(" under ") + call.label);
    }
    EXPECT_EQ(seen,
              texts({"GetDirectory(.) under QuireCOM::GetDir", "GetStory(MAIL, 1, 0, 0) under QuireCOM::GetStoryDirect",
                     "DeleteStory(MAIL, 1, 2, 3) under QuireCOM::DeleteStoryDirect"}));
}

TEST_F(HandleTables, AddingAndRemovingRunUnderTheirLabels)
{
    const LockDebugging labels;
    session->AddDirToCache(text("A"), IDispatchPtr());
    EXPECT_EQ(QuireCOM::m_LockStr, text("QuireCOM::AddDirToCache"));
    session->RemoveStoriesFromCache(text("A"));
    EXPECT_EQ(QuireCOM::m_LockStr, text("QuireCOM::RemoveStoriesFromCache"));
    session->AddStoryToCache(text("A"), &id, IDispatchPtr());
    EXPECT_EQ(QuireCOM::m_LockStr, text("QuireCOM::AddStoryToCache"));
    session->RemoveStoryFromCache(text("A"), &id);
    EXPECT_EQ(QuireCOM::m_LockStr, text("QuireCOM::RemoveStoryFromCache"));
}

TEST_F(HandleTables, ItemsAreFetchedUnderTheCallersLock)
{
    const LockDebugging labels;
    {
        const QuireCOMMutex lock("Host::Browse");
        session->GetCachedDir(text("NEWS"));
    }
    const QVector<FakeServer::Call> calls = server.callsWithLocks();
    ASSERT_EQ(calls.size(), 3);
    for (const FakeServer::Call &call : calls)
        EXPECT_EQ(call.label, text("Host::Browse"));
}

TEST_F(HandleTables, LookUpsTakeNoLock)
{
    session->AddStoryToCache(text("MAIL"), &id, handle(Kind::Story));
    const QuireCOMMutex lock("test");
    const quint32 holder = QuireCOM::m_LockThreadID;
    QuireCOM::m_LockThreadID = holder + 1; // as another thread sees it: an operation that locked would hang here
    EXPECT_TRUE(session->GetCachedDir(text(".")));
    EXPECT_TRUE(session->GetCachedStory(text("MAIL"), &id, true));
    QuireCOM::m_LockThreadID = holder;
}
