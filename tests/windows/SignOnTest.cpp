// A session on a server that the registry names: sign-on, tree, stories, notices through real connection points.

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <quire/Quire.h>
#include <quire/platform/Bstr.h>

#include "windows/EventSink.h"
#include "windows/ServerFolder.h"
#include "windows/Walk.h"

using Platform::Bstr;
using Quire::QuireCOM;

namespace {

class RegisteredServer : public testing::Test
{
protected:
    void SetUp() override
    {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        ASSERT_TRUE(QuireCOM::registerCOM(m_folder.path()));
        ASSERT_TRUE(QuireCOM::GetQuireCOM(true)->IsLoaded());
    }

    void TearDown() override
    {
        QuireCOM::UnloadCOM();
        CoFreeUnusedLibrariesEx(0, 0);
        CoUninitialize();
    }

    long signOn(const char *password = "news")
    {
        return QuireCOM::TheQuireCOM->Connect(QString(), QStringLiteral("journalist"), QLatin1String(password), 0);
    }

private:
    ServerFolder m_folder;
};

/// One advised connection, taken back at the end.
class Advice
{
public:
    Advice(REFIID events, IUnknown *sink)
    {
        const IConnectionPointContainerPtr container(QuireCOM::TheQuireCOM->GetConnectionPoint(), false);
        if (container && SUCCEEDED(container->FindConnectionPoint(events, &m_point)))
            m_point->Advise(sink, &m_cookie);
    }
    ~Advice()
    {
        if (m_cookie)
            m_point->Unadvise(m_cookie);
    }
    bool isActive() const { return m_cookie != 0; }

private:
    IConnectionPointPtr m_point;
    DWORD m_cookie = 0;
};

template<typename Condition>
bool comesTrue(const Condition &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 10000)
        Sleep(10);
    return condition();
}

void editField(const Orvex::IStory2Ptr &story, const QString &field, const QString &value)
{
    Bstr holder;
    ASSERT_EQ(story->Lock(1, holder.out()), S_OK);
    ASSERT_EQ(story->put_Field(Bstr(field).get(), Bstr(value).get()), S_OK);
    ASSERT_EQ(story->Save(VARIANT_TRUE), S_OK);
    ASSERT_EQ(story->Unlock(), S_OK);
}

} // namespace

TEST_F(RegisteredServer, SignsOnAndTellsItsName)
{
    ASSERT_EQ(signOn(), S_OK);
    QString server;
    QString user;
    QString password;
    QuireCOM::TheQuireCOM->GetConnectInfo(server, user, password);
    EXPECT_FALSE(server.isEmpty());
    EXPECT_EQ(user, QStringLiteral("journalist"));
}

TEST_F(RegisteredServer, RefusesAWrongPasswordInWords)
{
    const long refused = signOn("wrong");
    EXPECT_LT(refused, 0);
    EXPECT_EQ(Quire::getErrorString(refused, true), QStringLiteral("Invalid user name or password."));
    EXPECT_FALSE(QuireCOM::TheQuireCOM->IsConnected());
}

TEST_F(RegisteredServer, ShowsItsTreeAndItsStories)
{
    ASSERT_EQ(signOn(), S_OK);
    const QString queue = firstQueueWithStories();
    ASSERT_FALSE(queue.isEmpty());
    const Orvex::IStory2Ptr story = storyAt(queue, 0);
    ASSERT_TRUE(story);
    Bstr text;
    ASSERT_EQ(story->get_SectionXml(127, text.out()), S_OK);
    EXPECT_TRUE(text.toString().startsWith(QLatin1String("<story>")));
}

TEST_F(RegisteredServer, KeepsBlobs)
{
    ASSERT_EQ(signOn(), S_OK);
    const char data[] = {'a', 0, 'b'};
    ASSERT_TRUE(QuireCOM::TheQuireCOM->SaveBlob(QStringLiteral("layout"), data, sizeof data));
    long size = 0;
    char *loaded = QuireCOM::TheQuireCOM->LoadBlob(QStringLiteral("layout"), &size, nullptr);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(QByteArray(loaded, static_cast<int>(size)), QByteArray(data, sizeof data));
    Quire::FreeBlob(loaded);
    EXPECT_TRUE(QuireCOM::TheQuireCOM->DeleteBlob(QStringLiteral("layout")));
}

TEST_F(RegisteredServer, TellsAWatchedQueuesChangeOnItsOwnThread)
{
    ASSERT_EQ(signOn(), S_OK);
    const QString path = firstQueueWithStories();
    EventSink sink;
    {
        const Advice advice(__uuidof(Orvex::_IAnNotifyFast2), &sink);
        ASSERT_TRUE(advice.isActive());
        const auto queue = Quire::Dispatch2Queue(QuireCOM::TheQuireCOM->GetCachedDir(path));
        Orvex::QueueIdentifier id{};
        ASSERT_EQ(queue->get_QueueID(&id), S_OK);
        ASSERT_EQ(queue->put_Update(VARIANT_TRUE), S_OK);
        editField(storyAt(path, 0), QStringLiteral("title"), QStringLiteral("Changed"));
        EXPECT_TRUE(comesTrue([&] { return sink.queueNotices > 0; }));
        EXPECT_EQ(sink.queue, id.number);
        EXPECT_NE(sink.thread, GetCurrentThreadId());
    }
    EXPECT_EQ(sink.references(), 0u);
}

TEST_F(RegisteredServer, DeliversSearchHitsAsRecords)
{
    ASSERT_EQ(signOn(), S_OK);
    QString server;
    QString rest;
    QuireCOM::TheQuireCOM->GetConnectInfo(server, rest, rest);
    EventSink sink;
    {
        const Advice advice(__uuidof(Orvex::_IAnNotifyFast), &sink);
        ASSERT_TRUE(advice.isActive());
        const long id = QuireCOM::TheQuireCOM->Search(QStringLiteral("{MaxFound=7 [%1].*}((the))").arg(server));
        ASSERT_GT(id, 0);
        EXPECT_TRUE(comesTrue([&] { return sink.finished.load(); }));
        EXPECT_EQ(sink.search, id);
        EXPECT_EQ(sink.hits, 7);
    }
    EXPECT_EQ(sink.references(), 0u);
}

TEST_F(RegisteredServer, LetsSinksGoWhenTheSessionIsUnloaded)
{
    ASSERT_EQ(signOn(), S_OK);
    EventSink sink;
    IConnectionPointPtr point;
    {
        const IConnectionPointContainerPtr container(QuireCOM::TheQuireCOM->GetConnectionPoint(), false);
        ASSERT_EQ(container->FindConnectionPoint(__uuidof(Orvex::_IAnNotifyFast2), &point), S_OK);
    }
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_GT(sink.references(), 0u);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    point = nullptr;
    QuireCOM::UnloadCOM();
    EXPECT_EQ(sink.references(), 0u);
}

TEST_F(RegisteredServer, SignsOnAgainAndAgain)
{
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(signOn(), S_OK);
        ASSERT_FALSE(firstQueueWithStories().isEmpty());
        QuireCOM::TheQuireCOM->Disconnect();
        ASSERT_FALSE(QuireCOM::TheQuireCOM->IsConnected());
        ASSERT_TRUE(QuireCOM::GetQuireCOM(true)->IsLoaded());
    }
}
