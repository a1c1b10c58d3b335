#include <gtest/gtest.h>

#include <functional>

#include <quire/platform/System.h>
#include <quire/session/QuireCOM.h>

#include "session/ConnectInfo.h"
#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

// A server that raises out of its operations: the lock is free afterwards, nothing is left over, the session works on.

using namespace Quire;

namespace {

const StoryID anyStory{1, 2, 3};

/// A call of the session, and the server's operation that raises in it.
struct Raising
{
    const char *operation;
    void (*call)(QuireCOM &session);
};

const Raising raising[] = {
    {"get_Connected", [](QuireCOM &session) { session.IsConnected(); }},
    {"get_Connected", [](QuireCOM &session) { session.Disconnect(); }},
    {"Disconnect", [](QuireCOM &session) { session.Disconnect(); }},
    {"GetDirectory", [](QuireCOM &session) { session.GetCachedDir(QStringLiteral("NOWHERE")); }},
    {"GetStory", [](QuireCOM &session) { session.GetStoryDirect(QStringLiteral("MAIL"), &anyStory); }},
    {"GetStory", [](QuireCOM &session) { session.GetCachedStory(QStringLiteral("MAIL"), &anyStory, false); }},
    {"DeleteStory", [](QuireCOM &session) { session.DeleteStoryDirect(QStringLiteral("MAIL"), &anyStory); }},
    {"get_SysReadRate", [](QuireCOM &session) { session.GetSysReadRate(); }},
    {"get_SysWordLength", [](QuireCOM &session) { session.GetSysWordLength(); }},
    {"GetSystemForm",
     [](QuireCOM &session) {
         QString form;
         session.GetSystemForm(QStringLiteral("FORM"), form);
     }},
    {"GetUserInfo",
     [](QuireCOM &session) {
         UserInfo info;
         session.GetUserInfo(info);
     }},
    {"SaveBlob", [](QuireCOM &session) { session.SaveBlob(QStringLiteral("BLOB"), "abc", 3); }},
    {"LoadBlob", [](QuireCOM &session) { session.LoadBlob(QStringLiteral("BLOB"), nullptr, nullptr); }},
    {"DeleteBlob", [](QuireCOM &session) { session.DeleteBlob(QStringLiteral("BLOB")); }},
    {"SaveUserBlob", [](QuireCOM &session) { session.SaveUserBlob("abc", 3); }},
    {"LoadUserBlob", [](QuireCOM &session) { session.LoadUserBlob(nullptr, nullptr); }},
    {"Search", [](QuireCOM &session) { session.Search(QStringLiteral("QUERY")); }},
    {"StopSearch", [](QuireCOM &session) { session.StopSearch(1); }},
};

long connectAgain(QuireCOM &session)
{
    return session.Connect(text("OTHER"), text("bob"), text("word"), 0);
}

bool lockIsFree()
{
    if (!QuireCOM::m_ComMutex.tryLock())
        return false;
    QuireCOM::m_ComMutex.unlock();
    return QuireCOM::m_LockThreadID == 0;
}

/// Runs what is expected to raise E_ABORT.
void expectRaised(const std::function<void()> &call)
{
    try {
        call();
        ADD_FAILURE() << "nothing raised";
    } catch (const _com_error &error) {
        EXPECT_EQ(error.Error(), E_ABORT);
    }
}

class RaisingOperation : public SessionTest, public ::testing::WithParamInterface<Raising>
{};

using RaisingServer = SessionTest;

} // namespace

TEST_P(RaisingOperation, LeavesTheLockFreeAndNothingBehind)
{
    connect();
    const auto bstrs = Platform::liveBstrs();
    const auto arrays = Platform::liveArrays();
    server.raise(text(GetParam().operation), E_ABORT);
    expectRaised([this] { GetParam().call(*session); });
    EXPECT_TRUE(lockIsFree());
    EXPECT_EQ(Platform::liveBstrs(), bstrs);
    EXPECT_EQ(Platform::liveArrays(), arrays);
    server.mend();
    EXPECT_TRUE(session->GetCachedDir(text("NEWS.SPORT")));
    EXPECT_TRUE(session->IsConnected());
}

INSTANTIATE_TEST_SUITE_P(AllOperations, RaisingOperation, ::testing::ValuesIn(raising),
                         [](const ::testing::TestParamInfo<Raising> &each) {
                             return std::string(each.param.operation) + "_" + std::to_string(each.index);
                         });

TEST_F(RaisingServer, ConnectKeepsNothingOfARaisedSignOn)
{
    connect();
    server.raise(text("Connect"), E_ABORT);
    expectRaised([this] { connectAgain(*session); });
    EXPECT_TRUE(lockIsFree());
    EXPECT_EQ(connectInfo(*session), text(nobody));
    EXPECT_FALSE(session->GetCachedDir(text(".")));
}

TEST_F(RaisingServer, ConnectKeepsNothingWhenAskingForTheNameRaises)
{
    server.raise(text("get_ServerName"), E_ABORT);
    expectRaised([this] { connectAgain(*session); });
    EXPECT_TRUE(lockIsFree());
    EXPECT_EQ(connectInfo(*session), text(nobody));
}

TEST_F(RaisingServer, ConnectHasKeptWhoIsSignedOnWhenReadingTheRootRaises)
{
    server.raise(text("GetDirectory"), E_ABORT);
    expectRaised([this] { connectAgain(*session); });
    EXPECT_TRUE(lockIsFree());
    EXPECT_EQ(connectInfo(*session), text("[OTHER] [bob] [word]"));
    EXPECT_TRUE(session->IsConnected());
}

TEST_F(RaisingServer, DisconnectKeepsWhatItHadWhenTheServerRaises)
{
    connect();
    server.raise(text("Disconnect"), E_ABORT);
    expectRaised([this] { session->Disconnect(); });
    EXPECT_EQ(connectInfo(*session), text("[HUB] [ann] [secret]"));
    EXPECT_TRUE(session->GetCachedDir(text(".")));
    EXPECT_EQ(server.count(text("GetDirectory(.)")), 0);
}

TEST_F(RaisingServer, GetCachedDirAsksForTheWholePathWhenTheWalkRaises)
{
    connect();
    server.raise(text("get_Item"), E_ABORT);
    EXPECT_TRUE(session->GetCachedDir(text("NEWS")));
    EXPECT_EQ(server.calls().last(), text("GetDirectory(NEWS)"));
    EXPECT_TRUE(lockIsFree());
}

TEST_F(RaisingServer, UnloadCOMDestroysTheSessionAllTheSame)
{
    connect();
    server.raise(text("Disconnect"), E_ABORT);
    QuireCOM::UnloadCOM();
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
    EXPECT_EQ(server.liveObjects(), 0);
    EXPECT_TRUE(lockIsFree());
}
