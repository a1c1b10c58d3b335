// Models that get no thread from the system. Where the test can bring that about.

#ifdef __linux__

#include <quire/models/DirectoryModel.h>
#include <quire/models/QueueModel.h>
#include <quire/models/SearchModel.h>
#include <quire/models/StoryFieldsModel.h>

#include "models/ModelFixture.h"
#include "support/NoThreads.h"

using namespace Quire;

namespace {

class WithoutThreadTest : public ModelTest
{
protected:
    void SetUp() override
    {
        start(text("form STORY\n"
                   "  <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell></zeko:row></zeko:form>\n"
                   "directory Q\n"
                   "  queue X number=12 form=STORY\n"
                   "    story id=5:12:1\n"
                   "      title: Rain\n"));
    }

    static void open(StoryFieldsModel &model)
    {
        model.open(text("Q.X"), StoryID{5, 0, 0});
        ASSERT_TRUE(settles(model));
        ASSERT_EQ(model.rowCount(), 1);
        ASSERT_TRUE(ServerModel::waitForServer(patience));
    }
};

TEST_F(WithoutThreadTest, ALoadFailsAndTheNextOneTriesAgain)
{
    DirectoryModel model;
    SignalLog signals(model);
    {
        const NoThreads scope;
        model.fetchMore(QModelIndex());
        EXPECT_EQ(signals.take(), texts({"loading"})); // not on the caller's time
        ASSERT_TRUE(settles(model));
    }
    EXPECT_EQ(model.error(), E_OUTOFMEMORY);
    EXPECT_EQ(signals.take(), QStringList{text("failed ") + getErrorString(E_OUTOFMEMORY, false)});
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(model.rowCount(), 1);
}

TEST_F(WithoutThreadTest, AChangeFailsAndTheValueComesBack)
{
    StoryFieldsModel model;
    open(model);
    const QModelIndex title = model.index(0, StoryFieldsModel::ValueColumn);
    {
        const NoThreads scope;
        ASSERT_TRUE(model.setData(title, text("Hail")));
        ASSERT_TRUE(settles(model));
    }
    EXPECT_EQ(model.error(), E_OUTOFMEMORY);
    EXPECT_EQ(title.data(), text("Rain"));
}

TEST_F(WithoutThreadTest, ALockIsGivenBackByTheNextThread)
{
    StoryFieldsModel model;
    open(model);
    model.lock();
    ASSERT_TRUE(settles(model));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    {
        const NoThreads scope;
        model.unlock();
        EXPECT_FALSE(ServerModel::waitForServer(0));
    }
    EXPECT_EQ(newsroom->lockHolder(5).value, text("ann"));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(newsroom->lockHolder(5).value, QString());
}

TEST_F(WithoutThreadTest, WhatAModelLeavesIsEndedByTheNextThread)
{
    auto model = std::make_unique<QueueModel>();
    model->open(text("Q.X"));
    ASSERT_TRUE(settles(*model));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    const NoThreads scope;
    model.reset();
    EXPECT_FALSE(ServerModel::waitForServer(0)); // the rest is seen when the test ends
}

TEST_F(WithoutThreadTest, ASearchThatRunsGoesOn)
{
    NotificationInit(nullptr, nullptr, nullptr);
    server->delivery().pause();
    SearchModel model;
    model.setPollInterval(5);
    model.start(text("Q"), Item_Directory, text("rain"));
    ASSERT_TRUE(comes([] { return !Search::GetSearcher()->IsSearchDone(1); }));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    {
        const NoThreads scope;
        QElapsedTimer timer;
        timer.start();
        ASSERT_TRUE(comes([&] { return timer.hasExpired(1200); })); // longer than the user's session goes unwatched
    }
    EXPECT_TRUE(model.isLoading());
    server->delivery().resume();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), 0);
}

} // namespace

#endif
