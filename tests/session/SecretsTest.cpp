// The password stays between the host and the server, whatever the server does with it: no log line, label, error text
// or record has it.

#include <gtest/gtest.h>

#include <memory>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>

#include "support/DebugCapture.h"
#include "support/QtPrinting.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

const QString secretPassword = QStringLiteral("Un1que-Opens3same");
const QString wrongPassword = QStringLiteral("Un1que-Nearlys3same");
const QString mark = QStringLiteral("Un1que"); // in both

const char *const openNewsroom = "server HUB\n"
                                 "user ann password=Un1que-Opens3same\n"
                                 "directory NEWS\n"
                                 "  queue WORLD\n"
                                 "    story id=1:1:1\n"
                                 "      title: A title\n";

/// A session with everything switched on that writes, and all that was written.
class SecretsTest : public ::testing::Test
{
protected:
    SecretsTest()
        : m_server(Newsroom::Model::fromText(QString::fromUtf8(openNewsroom)))
        , m_registration(m_server.registerClass())
    {
        ListMutexLocker::sDebugListLocks = true;
        m_server.calls().start();
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): what the making of it writes is captured
        m_session = QuireCOM::GetQuireCOM(true);
    }
    ~SecretsTest() override
    {
        QuireCOM::UnloadCOM();
        ListMutexLocker::sDebugListLocks = false;
        m_written << QString::fromStdString(testing::internal::GetCapturedStdout())
                  << QString::fromStdString(testing::internal::GetCapturedStderr());
        m_written << m_debugging.log.texts() << m_debugging.output.lines() << m_server.calls().takeTexts();
        EXPECT_GT(m_written.size(), 5);
        for (const QString &line : qAsConst(m_written))
            EXPECT_FALSE(line.contains(mark)) << qPrintable(line);
    }

    long signOn(const QString &with = secretPassword)
    {
        const long result = m_session->Connect(QStringLiteral("HUB"), QStringLiteral("ann"), with, 0);
        note(static_cast<HRESULT>(result));
        return result;
    }
    /// Keeps what can be said of a failure, with what the server left of it.
    void note(HRESULT result)
    {
        m_written << getErrorString(result, true) << getErrorString(result, false);
        IErrorInfo *left = nullptr;
        if (GetErrorInfo(0, &left) == S_OK && left)
            note(_com_error(result, left));
    }
    void note(const _com_error &error)
    {
        Platform::Bstr description;
        Platform::Bstr source;
        description.reset(error.Description().copy());
        source.reset(error.Source().copy());
        m_written << description.toString() << source.toString() << getErrorString(error.Error(), true);
    }
    /// Does what hosts do with a session, whatever comes of it.
    void work()
    try {
        std::unique_ptr<Directory> news(Directory::NewDirectory(QStringLiteral("NEWS")));
        if (!news)
            return;
        std::unique_ptr<Directory> queue(news->GetSubDir(0));
        NotificationInit(nullptr, nullptr, nullptr);
        if (Search *const searcher = Search::TheSearcher)
            searcher->StartSearch(QStringLiteral("NEWS"), QStringLiteral("title"));
        NotificationRelease();
    } catch (const _com_error &error) {
        note(error);
    }

    LockDebugging m_debugging;
    Newsroom::Server m_server;
    Newsroom::Registration m_registration;
    QuireCOM *m_session = nullptr;
    QStringList m_written;
};

} // namespace

TEST_F(SecretsTest, ASignOnThatSucceedsTellsNobody)
{
    ASSERT_EQ(signOn(), 0);
    work();
    QString server;
    QString user;
    QString kept;
    m_session->GetConnectInfo(server, user, kept);
    EXPECT_EQ(kept, secretPassword);
    m_written << server << user;
}

TEST_F(SecretsTest, ASignOnThatIsRefusedTellsNobody)
{
    EXPECT_LT(signOn(wrongPassword), 0);
    work();
}

TEST_F(SecretsTest, SigningOnAgainTellsNobody)
{
    ASSERT_EQ(signOn(), 0);
    EXPECT_LT(signOn(wrongPassword), 0);
    ASSERT_EQ(signOn(), 0);
    m_session->Disconnect();
    ASSERT_EQ(signOn(), 0);
    ASSERT_NE(m_session = QuireCOM::GetQuireCOM(true), nullptr);
    ASSERT_EQ(signOn(), 0);
}

TEST_F(SecretsTest, AServerThatFailsTellsNobody)
{
    for (const char *operation : {"Connect", "get_ServerName", "GetDirectory", "get_Connected", "Disconnect"}) {
        for (const HRESULT code : {E_FAIL, static_cast<HRESULT>(0x80040405), static_cast<HRESULT>(0x800706BA)}) {
            m_server.faults().failNext(QString::fromLatin1(operation), Fault::hresult(code));
            signOn();
            work();
            m_server.faults().clear();
        }
    }
}

TEST_F(SecretsTest, AServerThatRaisesTellsNobody)
{
    for (const char *operation : {"Connect", "get_ServerName", "GetDirectory", "get_Connected", "Disconnect"}) {
        m_server.faults().failNext(QString::fromLatin1(operation), Fault::raise(E_FAIL));
        try {
            signOn();
        } catch (const _com_error &error) {
            note(error);
        }
        m_server.faults().clear();
    }
}

TEST_F(SecretsTest, ATextThatTheHostKeepsStaysTheHosts)
{
    ASSERT_EQ(signOn(), 0);
    QString server;
    QString user;
    QString kept;
    m_session->GetConnectInfo(server, user, kept);
    m_session->Disconnect();
    EXPECT_EQ(kept, secretPassword);
    EXPECT_EQ(secretPassword, QStringLiteral("Un1que-Opens3same"));
}

TEST_F(SecretsTest, TheSessionHasOneCopyOfItsOwn)
{
    ASSERT_EQ(signOn(), 0);
    QString server;
    QString user;
    QString kept;
    m_session->GetConnectInfo(server, user, kept);
    const QChar *const characters = kept.constData();
    EXPECT_NE(characters, secretPassword.constData()); // not the host's
    EXPECT_FALSE(kept.isDetached());                   // one copy, the session's
}
