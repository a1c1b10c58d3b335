// The session on the newsroom in a box: what it reads there, from one thread and from many, and what it leaves behind.

#include <QStringList>
#include <QVector>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>

#include "support/QtPrinting.h"
#include "support/Stress.h"
#include "support/Text.h"
#include "support/Watchdog.h"

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define QUIRE_COUNTS_MEMORY
#include <malloc.h>
#endif

using namespace Quire;
using Newsroom::ObjectKind;

namespace {

const char *const newsroomText = R"(
server HUB-A alias=HUB-B read-rate=200 word-length=6
user ann password=secret full="Ann Sample" mail=MAIL.ANN device=DESK-4 number=41 rights=3
form RUNDOWN
  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell></zeko:row></zeko:form>
directory NEWS
  directory SPORT
    queue SCORES form=RUNDOWN
      story id=101:5:6
        title: Final
      story id=102:5:6
        title: Semi-final
  queue WORLD form=RUNDOWN
    story id=103:7:8
      title: Élection – 選挙
directory MAIL
  queue ANN
)";

const QStringList allPaths{text("."),          text("NEWS"), text("NEWS.SPORT"), text("NEWS.SPORT.SCORES"),
                           text("NEWS.WORLD"), text("MAIL"), text("MAIL.ANN")};

/// The path that a handle's object says it has, empty when it is neither directory nor queue.
QString pathOf(const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("Test::pathOf");
    Platform::Bstr name;
    if (const Orvex::IDirectory2Ptr directory = Dispatch2Dir(handle))
        directory->get_Name(name.out());
    else if (const Orvex::IQueue2Ptr queue = Dispatch2Queue(handle))
        queue->get_Name(name.out());
    return name.toString();
}

/// The identifier that a handle's object says it has, empty when it is no story.
QString identifierOf(const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("Test::identifierOf");
    Platform::Bstr identifier;
    if (const Orvex::IStory2Ptr story = Dispatch2Story(handle))
        story->get_StoryUnique(identifier.out());
    return identifier.toString();
}

/// A session and a newsroom behind it. After each test the newsroom holds no object of a client any more.
class SessionNewsroom : public ::testing::Test
{
protected:
    SessionNewsroom()
        : model(Newsroom::Model::fromText(text(newsroomText)))
        , server(model)
        , registration(server.registerClass())
        , m_liveAtFirst(server.census()->live())
        , m_textsAtFirst(Newsroom::Census::liveTexts())
        , m_arraysAtFirst(Newsroom::Census::liveArrays())
    {}

    void SetUp() override
    {
        ASSERT_NE(model, nullptr);
        session = QuireCOM::GetQuireCOM(true);
        ASSERT_TRUE(session->IsLoaded());
    }
    void TearDown() override
    {
        QuireCOM::UnloadCOM();
        expectNothingLeft();
        EXPECT_EQ(model->sessionCount(), 0);
    }

    long signOn() { return session->Connect(text("hub-b"), text("ann"), text("secret"), 0); }

    void expectNothingLeft()
    {
        EXPECT_TRUE(server.waitForEvents());
        SetErrorInfo(0, nullptr); // what the last refusal left with this thread
        EXPECT_EQ(server.census()->live(), m_liveAtFirst) << server.census()->text().toStdString();
        EXPECT_EQ(Newsroom::Census::liveTexts(), m_textsAtFirst);
        EXPECT_EQ(Newsroom::Census::liveArrays(), m_arraysAtFirst);
    }

    /// The paths of all directories and queues, by walking down from the root.
    QStringList walk();

    std::shared_ptr<Newsroom::Model> model;
    Newsroom::Server server;
    Newsroom::Registration registration;
    QuireCOM *session = nullptr;

private:
    int m_liveAtFirst;
    qint64 m_textsAtFirst;
    qint64 m_arraysAtFirst;
};

using SessionStress = SessionNewsroom;
using SessionSoak = SessionNewsroom;

QStringList SessionNewsroom::walk()
{
    QStringList found;
    QStringList ahead{text(".")};
    while (!ahead.isEmpty()) {
        const QString path = ahead.takeLast();
        found.append(path);
        const Orvex::IDirectory2Ptr directory = Dispatch2Dir(session->GetCachedDir(path));
        for (LONG index = 0; directory; ++index) {
            const QuireCOMMutex lock("Test::walk");
            Platform::Variant item;
            if (FAILED(directory->get_Item(Platform::Variant(index).get(), item.out())))
                break;
            ahead.append(pathOf(item.toDispatch()));
        }
    }
    found.sort();
    return found;
}

} // namespace

// ---- one thread -----------------------------------------------------------------------------------------------------

TEST_F(SessionNewsroom, SignsOnUnderTheNewsroomsOwnName)
{
    ASSERT_EQ(signOn(), 0);
    QString hub;
    QString user;
    QString password;
    session->GetConnectInfo(hub, user, password);
    EXPECT_EQ(QStringList({hub, user, password}), QStringList({text("HUB-A"), text("ann"), text("secret")}));
    EXPECT_EQ(model->sessionCount(), 1);
    session->Disconnect();
    EXPECT_EQ(model->sessionCount(), 0);
}

TEST_F(SessionNewsroom, PutsRefusedSignOnsInWords)
{
    const auto refusal = [this](const char *hub, const char *user, const char *password) {
        return getErrorString(session->Connect(text(hub), text(user), text(password), 0), true);
    };
    EXPECT_EQ(refusal("hub-a", "ann", "wrong"), text("Invalid user name or password."));
    EXPECT_EQ(refusal("hub-a", "nobody", "secret"), text("Invalid user name or password."));
    EXPECT_EQ(refusal("elsewhere", "ann", "secret"), text("News server not found."));
    Newsroom::SystemValues values = model->system();
    values.offline = true;
    model->setSystem(values);
    EXPECT_EQ(refusal("hub-a", "ann", "secret"), text("The news system is offline."));
    EXPECT_FALSE(session->IsConnected());
}

TEST_F(SessionNewsroom, WalksTheWholeTree)
{
    ASSERT_EQ(signOn(), 0);
    QStringList expected = allPaths;
    expected.sort();
    EXPECT_EQ(walk(), expected);
}

TEST_F(SessionNewsroom, FindsEveryPathWhateverItsCase)
{
    ASSERT_EQ(signOn(), 0);
    for (const QString &path : allPaths) {
        EXPECT_EQ(pathOf(session->GetCachedDir(path.toLower())), path);
        EXPECT_EQ(pathOf(session->GetCachedDir(path)), path);
    }
    EXPECT_FALSE(session->GetCachedDir(text("NEWS.NOWHERE")));
}

TEST_F(SessionNewsroom, ReadsAndDeletesAStory)
{
    ASSERT_EQ(signOn(), 0);
    const StoryID id{103, 7, 8};
    EXPECT_EQ(identifierOf(session->GetCachedStory(text("NEWS.WORLD"), &id, false)), text("103:7:8"));
    EXPECT_TRUE(session->DeleteStoryDirect(text("NEWS.WORLD"), &id));
    EXPECT_FALSE(session->DeleteStoryDirect(text("NEWS.WORLD"), &id));
    EXPECT_TRUE(session->GetCachedStory(text("NEWS.WORLD"), &id, true));
    session->RemoveStoryFromCache(text("NEWS.WORLD"), &id);
    EXPECT_FALSE(session->GetCachedStory(text("NEWS.WORLD"), &id, false));
}

TEST_F(SessionNewsroom, ReadsSystemValuesAndUser)
{
    ASSERT_EQ(signOn(), 0);
    EXPECT_EQ(session->GetSysReadRate(), 200);
    EXPECT_EQ(session->GetSysWordLength(), 6);
    QString form;
    session->GetSystemForm(text("RUNDOWN"), form);
    EXPECT_TRUE(form.startsWith(text("<zeko:form>"))) << form.toStdString();
    UserInfo info;
    session->GetUserInfo(info);
    EXPECT_EQ(QStringList({info.text1, info.text2, info.text3, info.text4}).filter(text("Ann Sample")).size(), 1);
    EXPECT_EQ(info.number1, 41);
    EXPECT_EQ(info.number2, 3);
}

TEST_F(SessionNewsroom, StoresAndFetchesBlobs)
{
    ASSERT_EQ(signOn(), 0);
    ASSERT_TRUE(session->SaveBlob(text("desk/layout"), "a\0b", 3));
    long size = 0;
    char *blob = session->LoadBlob(text("desk/layout"), &size, nullptr);
    ASSERT_NE(blob, nullptr);
    EXPECT_EQ(QByteArray(blob, static_cast<int>(size)), QByteArray("a\0b", 3));
    FreeBlob(blob);
    EXPECT_TRUE(session->DeleteBlob(text("desk/layout")));
    EXPECT_EQ(session->LoadBlob(text("desk/layout"), &size, nullptr), nullptr);
    EXPECT_FALSE(session->DeleteBlob(text("desk/layout")));
}

TEST_F(SessionNewsroom, StartsAndStopsSearches)
{
    ASSERT_EQ(signOn(), 0);
    const long first = session->Search(text("{MaxFound=5 [HUB-A]}((final))"));
    const long second = session->Search(text("{MaxFound=5 [HUB-A]}((final))"));
    EXPECT_NE(first, 0);
    EXPECT_NE(second, 0);
    EXPECT_NE(first, second);
    EXPECT_EQ(session->Search(text("no query at all")), 0);
    session->StopSearch(first);
    EXPECT_FALSE(session->StopSearch(first + second + 1000));
}

TEST_F(SessionNewsroom, IsNotConnectedAfterALogout)
{
    ASSERT_EQ(signOn(), 0);
    EXPECT_EQ(server.triggerLogout(), 1);
    EXPECT_FALSE(session->IsConnected());
    EXPECT_EQ(session->GetSysReadRate(), 180);
    ASSERT_EQ(signOn(), 0);
    EXPECT_EQ(session->GetSysReadRate(), 200);
}

// ---- again and again ------------------------------------------------------------------------------------------------

TEST_F(SessionSoak, RepeatedSignOnsLeaveNothingBehind)
{
    const int rounds = soakRounds(200);
    const auto round = [this] {
        ASSERT_EQ(signOn(), 0);
        ASSERT_EQ(walk().size(), allPaths.size());
        const StoryID id{101, 5, 6};
        ASSERT_TRUE(session->GetCachedStory(text("NEWS.SPORT.SCORES"), &id, false));
        session->Disconnect();
        ASSERT_EQ(server.census()->live(),
                  server.census()->live(ObjectKind::Signon) + server.census()->live(ObjectKind::ClassFactory));
    };
    for (int i = 0; i < 50; ++i) // what is made once and kept
        round();
#ifdef QUIRE_COUNTS_MEMORY
    const std::size_t before = mallinfo2().uordblks;
#endif
    for (int i = 0; i < rounds && !HasFatalFailure(); ++i)
        round();
#ifdef QUIRE_COUNTS_MEMORY
    EXPECT_LT(mallinfo2().uordblks, before + std::size_t{16} * 1024);
#endif
}

TEST_F(SessionSoak, RecreatedSessionsLeaveNothingBehind)
{
    const int rounds = soakRounds(200);
    for (int i = 0; i < rounds; ++i) {
        session = QuireCOM::GetQuireCOM(true);
        ASSERT_EQ(signOn(), 0);
        ASSERT_TRUE(session->GetCachedDir(text("NEWS.SPORT")));
        ASSERT_EQ(server.census()->live(ObjectKind::Signon), 1);
    }
}

// ---- many threads ---------------------------------------------------------------------------------------------------

namespace {

/// Counts what went wrong; any thread.
class Verdict
{
public:
    void check(bool right, const char *what)
    {
        ++m_checks;
        if (right)
            return;
        if (m_wrong++ == 0)
            m_first = what;
    }
    void expectAllRight() const
    {
        const char *first = m_first;
        EXPECT_EQ(m_wrong, 0) << "the first of them: " << (first ? first : "");
        EXPECT_GT(m_checks, 0);
    }

private:
    std::atomic<qint64> m_checks{0};
    std::atomic<qint64> m_wrong{0};
    std::atomic<const char *> m_first{nullptr};
};

/// Runs \a work on 16 threads, again and again.
void runOnManyThreads(const std::function<void(int thread, int round)> &work)
{
    const int threadCount = 16;
    const auto end = std::chrono::steady_clock::now() + stressTime();
    Watchdog watchdog(threadCount);
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; std::chrono::steady_clock::now() < end; ++round) {
                work(thread, round);
                watchdog.alive(thread);
            }
            watchdog.gone(thread);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    ::testing::Test::RecordProperty("rounds", std::to_string(watchdog.rounds()));
}

/// A blob's bytes, of the writer's own making from first to last.
QByteArray patternOf(int thread, int round)
{
    return QByteArray(1 + round % 300, static_cast<char>('a' + thread));
}

bool isPattern(const QByteArray &bytes)
{
    return !bytes.isEmpty() && bytes.count(bytes.at(0)) == bytes.size();
}

QByteArray takeBlob(char *blob, long size)
{
    QByteArray bytes = blob ? QByteArray(blob, static_cast<int>(size)) : QByteArray();
    FreeBlob(blob);
    return bytes;
}

bool same(const IDispatchPtr &left, const IDispatchPtr &right)
{
    return left.GetInterfacePtr() == right.GetInterfacePtr();
}

void useHandles(QuireCOM *session, Verdict &verdict, int thread, int round, bool signedOn)
{
    const QString &path = allPaths.at((thread + round) % allPaths.size());
    const IDispatchPtr directory = session->GetCachedDir(path);
    verdict.check(directory ? !signedOn || pathOf(directory) == path : !signedOn, "GetCachedDir");

    const QString ownPath = QStringLiteral("OWN.%1").arg(thread);
    if (directory) {
        session->AddDirToCache(ownPath, directory);
        verdict.check(!signedOn || same(session->GetCachedDir(ownPath), directory), "AddDirToCache");
        session->RemoveDirFromCache(ownPath);
    }

    const StoryID id{101 + round % 2, 5, 6};
    const QString queue = text("NEWS.SPORT.SCORES");
    const IDispatchPtr story =
        round % 5 ? session->GetCachedStory(queue, &id, false) : session->GetStoryDirect(queue, &id);
    verdict.check(story ? !signedOn || identifierOf(story) == StoryID2String(id, true) : !signedOn, "GetCachedStory");
    const StoryID ownId{100000 + thread, 0, 0};
    session->AddStoryToCache(queue, &ownId, story);
    const IDispatchPtr own = session->GetCachedStory(queue, &ownId, true);
    verdict.check(!own || same(own, story), "AddStoryToCache"); // another thread may have removed the queue's stories
    session->RemoveStoryFromCache(queue, &ownId);
    if (round % 7 == 0)
        session->RemoveStoriesFromCache(queue);
    if (round % 11 == 0)
        session->RemoveDirFromCache(path);
    verdict.check(!session->DeleteStoryDirect(queue, &ownId), "DeleteStoryDirect");
}

void useBlobs(QuireCOM *session, Verdict &verdict, int thread, int round, bool signedOn)
{
    const QString name = QStringLiteral("blob %1").arg(thread);
    const QByteArray bytes = patternOf(thread, round);
    const bool saved = session->SaveBlob(name, bytes.constData(), bytes.size());
    verdict.check(saved || !signedOn, "SaveBlob");
    long size = -1;
    long extra = -1;
    char *blob = session->LoadBlob(name, &size, &extra);
    const QByteArray loaded = takeBlob(blob, size);
    verdict.check(blob ? (saved ? loaded == bytes : isPattern(loaded)) : !signedOn, "LoadBlob");
    verdict.check(session->DeleteBlob(name) || !signedOn, "DeleteBlob");

    verdict.check(session->SaveUserBlob(bytes.constData(), bytes.size()) || !signedOn, "SaveUserBlob");
    blob = session->LoadUserBlob(&size, &extra);
    verdict.check(blob ? isPattern(takeBlob(blob, size)) : !signedOn, "LoadUserBlob");
}

template<typename Operation>
long valueOrRaised(Operation operation, long raised)
{
    try {
        return operation();
    } catch (const _com_error &) {
        return raised;
    }
}

void useValues(QuireCOM *session, Verdict &verdict, bool signedOn)
{
    const long rate = valueOrRaised([session] { return session->GetSysReadRate(); }, -1);
    verdict.check(rate == 200 || (!signedOn && (rate == 180 || rate == -1)), "GetSysReadRate");
    const long length = valueOrRaised([session] { return session->GetSysWordLength(); }, -1);
    verdict.check(length == 6 || (!signedOn && (length == 0 || length == -1)), "GetSysWordLength");
    QString form;
    session->GetSystemForm(text("RUNDOWN"), form);
    verdict.check(form.startsWith(text("<zeko:form>")) || (!signedOn && form.isEmpty()), "GetSystemForm");
    UserInfo info;
    session->GetUserInfo(info);
    verdict.check(info.number1 == 41 || (!signedOn && info.number1 == 0), "GetUserInfo");
}

void useTheRest(QuireCOM *session, Verdict &verdict, bool signedOn)
{
    verdict.check(session->IsLoaded() && session->GetCOMError() == 0, "IsLoaded");
    verdict.check(session->IsConnected() || !signedOn, "IsConnected");
    QString hub;
    QString user;
    QString password;
    session->GetConnectInfo(hub, user, password);
    const bool known = hub == text("HUB-A") && user == text("ann") && password == text("secret");
    verdict.check(known || (!signedOn && hub.isEmpty() && user.isEmpty() && password.isEmpty()), "GetConnectInfo");
    verdict.check(session->GetSignon(), "GetSignon");
    IConnectionPointContainer *container = session->GetConnectionPoint();
    verdict.check(container, "GetConnectionPoint");
    if (container)
        container->Release();
    const long search = session->Search(text("{MaxFound=1 [HUB-A]MAIL.ANN}((nothing))"));
    verdict.check(search > 0 || !signedOn, "Search");
    session->StopSearch(search);
    verdict.check(!session->StopSearch(0), "StopSearch");
    verdict.check(QuireCOM::GetQuireCOM(false) == session, "GetQuireCOM");
    verdict.check(getErrorString(0x80040802L, true) == text("The news system is offline."), "getErrorString");
}

} // namespace

TEST_F(SessionStress, SixteenThreadsGetRightAnswers)
{
    ASSERT_EQ(signOn(), 0);
    Verdict verdict;
    runOnManyThreads([&](int thread, int round) {
        useHandles(session, verdict, thread, round, true);
        useBlobs(session, verdict, thread, round, true);
        useValues(session, verdict, true);
        useTheRest(session, verdict, true);
    });
    verdict.expectAllRight();
}

// Whoever works while others sign off and on gets the right answer or that of a session that is not connected.
TEST_F(SessionStress, SixteenThreadsWorkWhileSomeSignOffAndOn)
{
    Verdict verdict;
    runOnManyThreads([&](int thread, int round) {
        if (thread < 2) {
            if (round % 3)
                verdict.check(signOn() == 0, "Connect");
            else
                session->Disconnect();
        }
        useHandles(session, verdict, thread, round, false);
        useBlobs(session, verdict, thread, round, false);
        useValues(session, verdict, false);
        useTheRest(session, verdict, false);
    });
    verdict.expectAllRight();
    session->Disconnect();
}
