#include <gtest/gtest.h>

#include <quire/platform/System.h>
#include <quire/session/QuireCOM.h>

#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

// A server that fails and hands something out all the same: the answer is not used, and it is freed.

using namespace Quire;

namespace {

class FailedAnswer : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        server.failsWithAnswer = true;
        server.serverName = text("HUB1");
        server.form = text("FORM");
        server.blobs[QString()] = QByteArray("abc");
        server.blobs[text("BLOB")] = QByteArray("abc");
        connect();
        m_bstrs = Platform::liveBstrs();
        m_arrays = Platform::liveArrays();
    }
    void TearDown() override
    {
        EXPECT_EQ(Platform::liveBstrs(), m_bstrs);
        EXPECT_EQ(Platform::liveArrays(), m_arrays);
        SessionTest::TearDown();
    }

private:
    __int64 m_bstrs = 0;
    __int64 m_arrays = 0;
};

} // namespace

TEST_F(FailedAnswer, OfTheServersNameIsNotItsName)
{
    server.fail(text("get_ServerName"), E_FAIL);
    connect();
    QString name;
    QString user;
    QString password;
    session->GetConnectInfo(name, user, password);
    EXPECT_EQ(name, text("HUB"));
}

TEST_F(FailedAnswer, OfAnItemsNameIsNotItsName)
{
    server.fail(text("get_Name"), E_FAIL);
    EXPECT_TRUE(session->GetCachedDir(text("NEWS")));
    EXPECT_EQ(server.count(text("GetDirectory(NEWS)")), 1);
}

TEST_F(FailedAnswer, OfADirectoryIsNeitherGivenNorKept)
{
    server.fail(text("get_Item"), E_FAIL);
    server.fail(text("GetDirectory"), E_FAIL);
    EXPECT_FALSE(session->GetCachedDir(text("NEWS")));
    server.mend();
    server.forgetCalls();
    EXPECT_TRUE(session->GetCachedDir(text("NEWS")));
    EXPECT_NE(server.calls(), QStringList());
}

TEST_F(FailedAnswer, OfAStoryIsNeitherGivenNorKept)
{
    server.fail(text("GetStory"), E_FAIL);
    const StoryID id{1, 2, 3};
    EXPECT_FALSE(session->GetStoryDirect(text("MAIL"), &id));
    EXPECT_FALSE(session->GetCachedStory(text("MAIL"), &id, true));
}

TEST_F(FailedAnswer, OfASearchIsNoSearch)
{
    server.searchId = 7;
    server.fail(text("Search"), E_FAIL);
    EXPECT_EQ(session->Search(text("storm")), 0);
}

TEST_F(FailedAnswer, OfASystemFormLeavesTheFormEmpty)
{
    server.fail(text("GetSystemForm"), E_FAIL);
    QString form = text("old");
    session->GetSystemForm(text("X"), form);
    EXPECT_EQ(form, QString());
}

TEST_F(FailedAnswer, OfABlobIsNoBlob)
{
    server.fail(text("LoadBlob"), E_FAIL);
    long size = -1;
    long extra = -2;
    EXPECT_EQ(session->LoadBlob(text("BLOB"), &size, &extra), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(extra, -2);
}

TEST_F(FailedAnswer, OfTheUsersBlobIsNoBlob)
{
    server.fail(text("LoadUserBlob"), E_FAIL);
    long size = -1;
    long extra = -2;
    EXPECT_EQ(session->LoadUserBlob(&size, &extra), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(extra, -2);
}
