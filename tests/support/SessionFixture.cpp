#include "support/SessionFixture.h"

using FakeServer::Kind;
using Quire::QuireCOM;

void SessionTest::SetUp()
{
    server.add(Kind::Directory, QStringLiteral("NEWS"));
    server.add(Kind::Queue, QStringLiteral("MAIL"));
    server.add(Kind::Directory, QStringLiteral("NEWS.SPORT"));
    server.add(Kind::Queue, QStringLiteral("NEWS.WORLD"));
    server.add(Kind::Queue, QStringLiteral("NEWS.SPORT.SCORES"));
    session = QuireCOM::GetQuireCOM(true);
    ASSERT_NE(session, nullptr);
}

void SessionTest::TearDown()
{
    server.mend();
    QuireCOM::UnloadCOM();
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
    EXPECT_EQ(server.liveObjects(), 0);
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    EXPECT_TRUE(QuireCOM::m_ComMutex.tryLock());
    QuireCOM::m_ComMutex.unlock();
}

void SessionTest::connect()
{
    ASSERT_EQ(session->Connect(QStringLiteral("HUB"), QStringLiteral("ann"), QStringLiteral("secret"), 0), 0);
    server.forgetCalls();
}

void SessionTest::unload()
{
    server.creation = E_FAIL;
    session = QuireCOM::GetQuireCOM(true);
    ASSERT_NE(session, nullptr);
    ASSERT_FALSE(session->IsLoaded());
    server.forgetCalls();
}
