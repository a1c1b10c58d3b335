#include <quire/session/QuireCOM.h>

#include <gtest/gtest.h>

#include <new>
#include <type_traits>

#include <quire/Quire.h>

#include "session/ConnectInfo.h"
#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

using FakeServer::Kind;
using namespace Quire;

namespace {

/// The connection's three texts on one line.
/// A copy of a session that a test can destroy.
class Copy final : public QuireCOM
{
public:
    explicit Copy(const QuireCOM &other)
        : QuireCOM(other)
    {}
};

} // namespace

// ---- the one session ------------------------------------------------------------------------------------------------

TEST_F(SessionTest, IsThePointerThatEverybodySees)
{
    EXPECT_EQ(QuireCOM::TheQuireCOM, session);
}

TEST_F(SessionTest, GetQuireCOMReturnsTheSessionThatIsThere)
{
    EXPECT_EQ(QuireCOM::GetQuireCOM(false), session);
    EXPECT_EQ(server.liveObjects(), 1);
}

TEST_F(SessionTest, GetQuireCOMMakesASessionWhenThereIsNone)
{
    QuireCOM::UnloadCOM();
    QuireCOM *made = QuireCOM::GetQuireCOM(false);
    EXPECT_NE(made, nullptr);
    EXPECT_EQ(QuireCOM::TheQuireCOM, made);
}

TEST_F(SessionTest, GetQuireCOMRecreatesTheSession)
{
    connect();
    QuireCOM *made = QuireCOM::GetQuireCOM(true);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(QuireCOM::TheQuireCOM, made);
    EXPECT_EQ(server.count(text("Disconnect()")), 1);
    EXPECT_EQ(connectInfo(*made), text(nobody));
    EXPECT_EQ(server.liveObjects(), 1); // the new sign-on object alone
}

TEST_F(SessionTest, UnloadCOMDestroysTheSession)
{
    QuireCOM::UnloadCOM();
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
    EXPECT_EQ(server.liveObjects(), 0);
}

TEST_F(SessionTest, UnloadCOMSignsOffFirst)
{
    connect();
    QuireCOM::UnloadCOM();
    const QStringList expected{text("get_Connected()"), text("Disconnect()")};
    EXPECT_EQ(server.calls(), expected);
}

TEST_F(SessionTest, UnloadCOMDoesNotSignOffWhenNotConnected)
{
    QuireCOM::UnloadCOM();
    EXPECT_EQ(server.calls(), QStringList{text("get_Connected()")});
}

TEST_F(SessionTest, UnloadCOMReleasesHandlesThatADisconnectedSessionStillKeeps)
{
    connect();
    server.connected = false; // the server ended the session
    QuireCOM::UnloadCOM();
    EXPECT_EQ(server.count(text("Disconnect()")), 0);
    EXPECT_EQ(server.liveObjects(), 0);
}

TEST_F(SessionTest, UnloadCOMDoesNothingWithoutASession)
{
    QuireCOM::UnloadCOM();
    QuireCOM::UnloadCOM();
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
}

TEST(QuireCOMShape, HasOneVirtualOperationAndNoVirtualDestructor)
{
    EXPECT_TRUE(std::is_polymorphic_v<QuireCOM>);
    EXPECT_FALSE(std::has_virtual_destructor_v<QuireCOM>);
    EXPECT_FALSE(std::is_default_constructible_v<QuireCOM>);
    EXPECT_FALSE(std::is_destructible_v<QuireCOM>);
    EXPECT_TRUE(std::is_copy_assignable_v<QuireCOM>);
}

// ---- loading --------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, IsLoadedWithTheSignOnObject)
{
    EXPECT_TRUE(session->IsLoaded());
    EXPECT_EQ(session->GetCOMError(), 0);
    EXPECT_TRUE(session->GetSignon());
}

TEST_F(SessionTest, CreationMakesNoServerCall)
{
    EXPECT_EQ(server.calls(), QStringList());
}

TEST(QuireCOMWithoutServer, KeepsWhyItCouldNotLoad)
{
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(QuireCOM::TheQuireCOM, session);
    EXPECT_FALSE(session->IsLoaded());
    EXPECT_EQ(session->GetCOMError(), asLong(0x80040154)); // class not registered
    EXPECT_FALSE(session->GetSignon());
    QuireCOM::UnloadCOM();
}

TEST_F(SessionTest, KeepsTheErrorOfAServerThatCannotBeCreated)
{
    server.creation = hresult(0x80040802);
    session = QuireCOM::GetQuireCOM(true);
    EXPECT_FALSE(session->IsLoaded());
    EXPECT_EQ(session->GetCOMError(), asLong(0x80040802));
}

TEST_F(SessionTest, KeepsTheErrorOfAServerOfAnotherKind)
{
    server.refuse(Kind::Bare, __uuidof(Orvex::ISignon4), E_NOINTERFACE);
    session = QuireCOM::GetQuireCOM(true);
    EXPECT_FALSE(session->IsLoaded());
    EXPECT_EQ(session->GetCOMError(), asLong(0x80004002));
    EXPECT_EQ(server.liveObjects(), 0);
}

TEST_F(SessionTest, RecoversByBeingRecreated)
{
    unload();
    server.creation = S_OK;
    EXPECT_FALSE(QuireCOM::GetQuireCOM(false)->IsLoaded());
    session = QuireCOM::GetQuireCOM(true);
    EXPECT_TRUE(session->IsLoaded());
}

TEST_F(SessionTest, GetSignonGivesAReferenceOfItsOwn)
{
    {
        const Orvex::ISignon4Ptr signon = session->GetSignon();
        QuireCOM::UnloadCOM();
        EXPECT_EQ(server.liveObjects(), 1);
    }
    EXPECT_EQ(server.liveObjects(), 0);
}

// ---- unloaded -------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, ConnectOnAnUnloadedSessionReturnsMinusOneWithoutAServerCall)
{
    unload();
    EXPECT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 0), -1);
    EXPECT_EQ(server.calls(), QStringList());
    EXPECT_EQ(connectInfo(*session), text(nobody));
}

TEST_F(SessionTest, AnUnloadedSessionIsNotConnected)
{
    unload();
    EXPECT_FALSE(session->IsConnected());
    session->Disconnect();
}

// ---- the server's library -------------------------------------------------------------------------------------------

namespace {

class LibraryName : public ::testing::Test
{
protected:
    void TearDown() override { QuireCOM::SetUnicode(true); }
};

} // namespace

TEST_F(LibraryName, IsTheUnicodeOneByDefault)
{
    EXPECT_TRUE(QuireCOM::sUseUnicodeInterface);
    EXPECT_TRUE(QuireCOM::IsUnicode());
    EXPECT_EQ(QuireCOM::GetDLLName(), text("OrvexCOMU_64.dll"));
}

TEST_F(LibraryName, IsTheOtherOneWithoutUnicode)
{
    QuireCOM::SetUnicode(false);
    EXPECT_FALSE(QuireCOM::sUseUnicodeInterface);
    EXPECT_FALSE(QuireCOM::IsUnicode());
    EXPECT_EQ(QuireCOM::GetDLLName(), text("OrvexCOM.dll"));
}

TEST_F(LibraryName, FollowsTheExportedSetting)
{
    QuireCOM::sUseUnicodeInterface = false;
    EXPECT_FALSE(QuireCOM::IsUnicode());
    EXPECT_EQ(QuireCOM::GetDLLName(), text("OrvexCOM.dll"));
}

TEST_F(SessionTest, TheUnicodeSettingDoesNotAffectLoading)
{
    QuireCOM::SetUnicode(false);
    session = QuireCOM::GetQuireCOM(true);
    QuireCOM::SetUnicode(true);
    EXPECT_TRUE(session->IsLoaded());
}

// ---- Connect --------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, ConnectSignsOnAsksForTheNameAndPrimesTheRoot)
{
    server.serverName = text("hub-a");
    EXPECT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 17), 0);
    const QStringList expected{
        text("get_Connected()"),               // nobody to sign off
        text("Connect(ann, secret, HUB, 17)"), // user first
        text("get_ServerName()"),
        text("get_Connected()"), // before the root
        text("GetDirectory(.)"),
    };
    EXPECT_EQ(server.calls(), expected);
    EXPECT_TRUE(session->IsConnected());
}

TEST_F(SessionTest, ConnectKeepsTheServersOwnName)
{
    server.serverName = text("hub-a");
    session->Connect(text("HUB"), text("ann"), text("secret"), 0);
    EXPECT_EQ(connectInfo(*session), text("[hub-a] [ann] [secret]"));
}

TEST_F(SessionTest, ConnectKeepsAnEmptyNameThatTheServerGivesItself)
{
    server.serverName = text("");
    session->Connect(text("HUB"), text("ann"), text("secret"), 0);
    EXPECT_EQ(connectInfo(*session), text("[] [ann] [secret]"));
}

TEST_F(SessionTest, ConnectKeepsTheServerAsGivenWhenItsNameCannotBeRead)
{
    server.serverName = text("hub-a");
    server.fail(text("get_ServerName"), E_FAIL);
    EXPECT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 0), 0);
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
}

TEST_F(SessionTest, ConnectKeepsTheServerAsGivenWhenItsNameIsNull)
{
    server.serverName = QString();
    session->Connect(text("HUB"), text("ann"), text("secret"), 0);
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
}

TEST_F(SessionTest, ConnectPassesTextsAsTheyStand)
{
    const QString user = QString::fromUtf8("J\xC3\xBCrgen \xE6\x97\xA5");
    EXPECT_EQ(session->Connect(text(" HUB.x "), user, text(""), -1), 0);
    EXPECT_EQ(server.count(QStringLiteral("Connect(%1, ,  HUB.x , -1)").arg(user)), 1);
}

TEST_F(SessionTest, ConnectPassesTheLow32BitsOfTheOption)
{
    session->Connect(text("HUB"), text("ann"), text("secret"), static_cast<long>(0x80000001L));
    EXPECT_EQ(server.count(text("Connect(ann, secret, HUB, -2147483647)")), 1);
}

TEST_F(SessionTest, ConnectPutsTheRootIntoTheTable)
{
    connect();
    EXPECT_TRUE(session->GetCachedDir(text(".")));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SessionTest, ConnectSucceedsWhenTheRootCannotBeRead)
{
    server.fail(text("GetDirectory"), E_FAIL);
    EXPECT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 0), 0);
    EXPECT_TRUE(session->IsConnected());
}

TEST_F(SessionTest, ConnectTakesAPositiveResultForSuccess)
{
    server.fail(text("Connect"), 1);
    EXPECT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 0), 1);
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
    EXPECT_EQ(server.count(text("GetDirectory(.)")), 1);
}

TEST_F(SessionTest, ConnectReturnsTheServersRefusalUnchanged)
{
    server.fail(text("Connect"), hresult(0x80070057));
    const long result = session->Connect(text("HUB"), text("ann"), text("wrong"), 0);
    EXPECT_EQ(result, asLong(0x80070057));
    EXPECT_LT(result, 0);
    EXPECT_EQ(getErrorString(result, true), text("Invalid user name or password."));
}

TEST_F(SessionTest, ARefusedConnectAsksTheServerNothingMore)
{
    server.fail(text("Connect"), hresult(0x80070057));
    session->Connect(text("HUB"), text("ann"), text("wrong"), 0);
    const QStringList expected{text("get_Connected()"), text("Connect(ann, wrong, HUB, 0)")};
    EXPECT_EQ(server.calls(), expected);
    EXPECT_EQ(connectInfo(*session), text(nobody));
}

TEST_F(SessionTest, ARefusedConnectAfterASuccessfulOneLeavesNobodySignedOn)
{
    connect();
    server.fail(text("Connect"), hresult(0x80040802));
    EXPECT_EQ(session->Connect(text("OTHER"), text("bob"), text("pw"), 0), asLong(0x80040802));
    EXPECT_FALSE(session->IsConnected());
    EXPECT_EQ(connectInfo(*session), text(nobody));
}

TEST_F(SessionTest, ARefusedConnectAfterTheServerHasEndedTheConnectionLeavesNobodySignedOn)
{
    connect();
    server.connected = false;
    server.fail(text("Connect"), hresult(0x80040802));
    EXPECT_EQ(session->Connect(text("OTHER"), text("bob"), text("pw"), 0), asLong(0x80040802));
    EXPECT_EQ(connectInfo(*session), text(nobody));
}

TEST_F(SessionTest, ARaisingConnectAfterTheServerHasEndedTheConnectionLeavesNobodySignedOn)
{
    connect();
    server.connected = false;
    server.raise(text("Connect"), E_FAIL);
    EXPECT_THROW(session->Connect(text("OTHER"), text("bob"), text("pw"), 0), _com_error);
    EXPECT_EQ(connectInfo(*session), text(nobody));
}

TEST_F(SessionTest, AfterTheServerHasEndedTheConnectionTheNextKeepsTheReadRateAndTheHandlesButTheRoot)
{
    server.readRate = 200;
    connect();
    EXPECT_EQ(session->GetSysReadRate(), 200);
    const IDispatchPtr root = session->GetCachedDir(text("."));
    const IDispatchPtr news = session->GetCachedDir(text("NEWS"));
    const StoryID id{1, 2, 3};
    const IDispatchPtr story = session->GetStoryDirect(text("MAIL"), &id);
    ASSERT_TRUE(root && news && story);
    server.connected = false;
    server.readRate = 300;
    connect();
    EXPECT_EQ(session->GetSysReadRate(), 200);
    EXPECT_EQ(session->GetCachedDir(text("NEWS")).GetInterfacePtr(), news.GetInterfacePtr());
    EXPECT_EQ(session->GetCachedStory(text("MAIL"), &id, true).GetInterfacePtr(), story.GetInterfacePtr());
    EXPECT_NE(session->GetCachedDir(text(".")).GetInterfacePtr(), root.GetInterfacePtr());
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SessionTest, EachSignOnCounts)
{
    const quint32 before = QuireCOM::SignOnCount();
    connect();
    EXPECT_EQ(QuireCOM::SignOnCount(), before + 1);
    session->Disconnect();
    EXPECT_EQ(QuireCOM::SignOnCount(), before + 1);
    session = QuireCOM::GetQuireCOM(true); // which counts on
    EXPECT_EQ(QuireCOM::SignOnCount(), before + 1);
    connect();
    EXPECT_EQ(QuireCOM::SignOnCount(), before + 2);
}

TEST_F(SessionTest, ARefusedConnectDoesNotCount)
{
    const quint32 before = QuireCOM::SignOnCount();
    server.fail(text("Connect"), E_FAIL);
    ASSERT_EQ(static_cast<HRESULT>(session->Connect(text("HUB"), text("ann"), text("a"), 0)), E_FAIL);
    EXPECT_EQ(QuireCOM::SignOnCount(), before);
}

TEST_F(SessionTest, ConnectSignsOffFirst)
{
    connect();
    EXPECT_EQ(session->Connect(text("OTHER"), text("bob"), text("pw"), 0), 0);
    const QStringList calls = server.calls();
    EXPECT_EQ(calls.mid(0, 3),
              (QStringList{text("get_Connected()"), text("Disconnect()"), text("Connect(bob, pw, OTHER, 0)")}));
    EXPECT_EQ(connectInfo(*session), text("[OTHER] [bob] [pw]"));
}

TEST_F(SessionTest, ConnectForgetsTheHandlesOfTheConnectionBefore)
{
    connect();
    session->GetCachedDir(text("NEWS.SPORT"));
    connect();
    EXPECT_EQ(server.liveObjects(), 2); // the sign-on object and the root
}

// ---- Disconnect and IsConnected -------------------------------------------------------------------------------------

TEST_F(SessionTest, DisconnectForgetsWhoWasSignedOn)
{
    connect();
    session->Disconnect();
    EXPECT_EQ(connectInfo(*session), text(nobody));
    EXPECT_FALSE(session->IsConnected());
}

TEST_F(SessionTest, DisconnectEmptiesBothTables)
{
    connect();
    const StoryID id{1, 2, 3};
    ASSERT_TRUE(session->GetCachedDir(text("NEWS")));
    ASSERT_TRUE(session->GetStoryDirect(text("MAIL"), &id));
    EXPECT_EQ(server.liveObjects(), 4);
    session->Disconnect();
    EXPECT_EQ(server.liveObjects(), 1);
    EXPECT_FALSE(session->GetCachedStory(text("MAIL"), &id, true));
}

TEST_F(SessionTest, DisconnectIgnoresTheServersResult)
{
    connect();
    server.fail(text("Disconnect"), E_FAIL);
    session->Disconnect();
    EXPECT_EQ(connectInfo(*session), text(nobody));
    EXPECT_EQ(server.liveObjects(), 1);
}

TEST_F(SessionTest, DisconnectForgetsTheSystemValues)
{
    server.readRate = 200;
    connect();
    EXPECT_EQ(session->GetSysReadRate(), 200);
    session->Disconnect();
    server.readRate = 300;
    connect();
    EXPECT_EQ(session->GetSysReadRate(), 300);
}

TEST_F(SessionTest, DisconnectWhileNotConnectedLeavesTheTablesUntouched)
{
    connect();
    server.connected = false;
    session->Disconnect();
    EXPECT_EQ(server.calls(), QStringList{text("get_Connected()")});
    EXPECT_TRUE(session->GetCachedDir(text(".")));
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
}

TEST_F(SessionTest, IsConnectedIsWhatTheServerSays)
{
    EXPECT_FALSE(session->IsConnected());
    server.connected = true;
    EXPECT_TRUE(session->IsConnected());
}

TEST_F(SessionTest, AnyAnswerButFalseReadsAsConnected)
{
    server.connected = true;
    server.yes = 1;
    EXPECT_TRUE(session->IsConnected());
}

TEST_F(SessionTest, AFailedQuestionReadsAsNotConnected)
{
    connect();
    server.fail(text("get_Connected"), E_FAIL);
    EXPECT_FALSE(session->IsConnected());
}

TEST_F(SessionTest, GetConnectInfoMakesNoServerCall)
{
    connect();
    connectInfo(*session);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SessionTest, OperationsWithoutLockWorkWhileAnotherThreadHoldsIt)
{
    connect();
    const QuireCOMMutex lock("test");
    const quint32 holder = QuireCOM::m_LockThreadID;
    QuireCOM::m_LockThreadID = holder + 1; // as another thread sees it: an operation that locked would hang here
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
    EXPECT_TRUE(session->GetSignon());
    EXPECT_TRUE(session->IsLoaded());
    EXPECT_EQ(session->GetCOMError(), 0);
    IConnectionPointContainer *container = session->GetConnectionPoint();
    ASSERT_NE(container, nullptr);
    container->Release();
    EXPECT_EQ(QuireCOM::GetQuireCOM(false), session);
    QuireCOM::m_LockThreadID = holder;
}

// ---- connection points ----------------------------------------------------------------------------------------------

TEST_F(SessionTest, GetConnectionPointGivesTheContainerWithAReference)
{
    IConnectionPointContainer *container = session->GetConnectionPoint();
    ASSERT_NE(container, nullptr);
    QuireCOM::UnloadCOM();
    EXPECT_EQ(server.liveObjects(), 1);
    container->Release();
    EXPECT_EQ(server.liveObjects(), 0);
}

TEST_F(SessionTest, GetConnectionPointIsNullWhenTheServerHasNone)
{
    server.connectionPoints = false;
    EXPECT_EQ(session->GetConnectionPoint(), nullptr);
}

TEST_F(SessionTest, GetConnectionPointRaisesAnotherFailureOfTheQuery)
{
    server.refuse(Kind::Bare, __uuidof(IConnectionPointContainer), hresult(0x80010108));
    EXPECT_THROW(session->GetConnectionPoint(), _com_error);
}

TEST_F(SessionTest, GetConnectionPointRaisesWhenNotLoaded)
{
    unload();
    try {
        session->GetConnectionPoint();
        ADD_FAILURE() << "nothing raised";
    } catch (const _com_error &error) {
        EXPECT_EQ(error.Error(), E_POINTER);
    }
}

// ---- copies ---------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, ACopyHasTheSameConnectionAndHandles)
{
    connect();
    {
        Copy copy(*session);
        EXPECT_EQ(QuireCOM::TheQuireCOM, session);
        EXPECT_TRUE(copy.IsLoaded());
        EXPECT_EQ(copy.GetCOMError(), 0);
        EXPECT_EQ(connectInfo(copy), text("[HUB] [ann] [secret]"));
        EXPECT_TRUE(copy.GetSignon() == session->GetSignon());
        const StoryID id{1, 2, 3};
        copy.AddStoryToCache(text("MAIL"), &id, session->GetCachedDir(text(".")));
        EXPECT_TRUE(session->GetCachedStory(text("MAIL"), &id, true)); // one table for both
        server.connected = false;
    }
    QuireCOM::TheQuireCOM = session; // the copy's end took it away
}

TEST_F(SessionTest, ACopyKeepsTheSystemValues)
{
    server.readRate = 200;
    connect();
    session->GetSysReadRate();
    server.forgetCalls();
    {
        Copy copy(*session);
        EXPECT_EQ(copy.GetSysReadRate(), 200);
        EXPECT_EQ(server.calls(), QStringList());
        server.connected = false;
    }
    QuireCOM::TheQuireCOM = session;
}

TEST_F(SessionTest, ACopySharesTheSignOnObject)
{
    {
        const Copy copy(*session);
        EXPECT_EQ(server.liveObjects(), 1);
        QuireCOM::UnloadCOM();
        EXPECT_EQ(server.liveObjects(), 1);
    }
    EXPECT_EQ(server.liveObjects(), 0);
}

TEST_F(SessionTest, AssignmentTakesTheOthersConnectionAndReleasesItsOwnSignOnObject)
{
    connect();
    {
        const Copy source(*session);
        session = QuireCOM::GetQuireCOM(true); // signs off; another sign-on object
        EXPECT_EQ(server.liveObjects(), 2);
        server.connected = true;
        *session = source;
        EXPECT_EQ(server.liveObjects(), 1);
        EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
        EXPECT_EQ(QuireCOM::TheQuireCOM, session);
        server.connected = false;
    }
    QuireCOM::TheQuireCOM = session;
}

TEST_F(SessionTest, AssignmentTakesTheOthersHandlesAndReadRate)
{
    server.readRate = 200;
    connect();
    session->GetSysReadRate();
    {
        Copy source(*session);
        session = QuireCOM::GetQuireCOM(true);
        server.connected = true;
        server.readRate = 300;
        *session = source;
        EXPECT_EQ(session->GetSysReadRate(), 200);
        const StoryID id{1, 2, 3};
        source.AddStoryToCache(text("MAIL"), &id, source.GetCachedDir(text(".")));
        EXPECT_TRUE(session->GetCachedStory(text("MAIL"), &id, true)); // one table for both
        server.connected = false;
    }
    QuireCOM::TheQuireCOM = session;
}

TEST_F(SessionTest, AssignmentToItselfChangesNothing)
{
    connect();
    QuireCOM &same = *session;
    *session = same;
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
    EXPECT_TRUE(session->GetCachedDir(text(".")));
    EXPECT_EQ(server.liveObjects(), 2);
}

// ---- labels and the lock --------------------------------------------------------------------------------------------

TEST_F(SessionTest, ServerCallsOfSigningOnAndOffRunUnderTheirLabels)
{
    const LockDebugging labels;
    session->Connect(text("HUB"), text("ann"), text("secret"), 0);
    session->Disconnect();
    QStringList seen;
    const QVector<FakeServer::Call> calls = server.callsWithLocks();
    for (const FakeServer::Call &call : calls) {
        EXPECT_TRUE(call.lockedByCaller) << call.text.toStdString();
        seen.append(call.text.section(QLatin1Char('('), 0, 0) + text(" under ") + call.label);
    }
    const QStringList expected{
        text("get_Connected under QuireCOM::IsConnected"), text("Connect under QuireCOM::Connect"),
        text("get_ServerName under QuireCOM::Connect"),    text("get_Connected under QuireCOM::IsConnected"),
        text("GetDirectory under QuireCOM::GetDir"),       text("get_Connected under QuireCOM::IsConnected"),
        text("Disconnect under QuireCOM::Disconnect"),
    };
    EXPECT_EQ(seen, expected);
}

TEST_F(SessionTest, AServerThatRaisesLeavesTheLockFree)
{
    unload();
    EXPECT_THROW(session->Search(text("x")), _com_error);
    EXPECT_TRUE(QuireCOM::m_ComMutex.tryLock());
    QuireCOM::m_ComMutex.unlock();
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}
