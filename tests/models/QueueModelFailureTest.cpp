// A queue whose server fails, hangs or is gone.

#include "models/QueueModelFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

class QueueModelFailureTest : public QueueModelTest
{
protected:
    /// That the model goes long before the server answers.
    void expectPromptEnd(std::unique_ptr<QueueModel> model)
    {
        ASSERT_TRUE(server->faults().waitForHang(patience));
        QElapsedTimer timer;
        timer.start();
        model.reset();
        EXPECT_LT(timer.elapsed(), hangTime / 2);
        EXPECT_EQ(server->faults().hanging(), 1);
    }
};

} // namespace

TEST_F(QueueModelFailureTest, WhatArrivedBeforeTheFailingChunkStays)
{
    for (int chunk = 1; chunk <= 3; ++chunk) {
        QueueModel model;
        SignalLog signals(model);
        server->faults().failNext(text("IQueue2::GetList"), Fault::hresult(static_cast<HRESULT>(0x80040409)), chunk);
        open(model, "Q.MANY");
        EXPECT_EQ(model.rowCount(), (chunk - 1) * 20);
        EXPECT_EQ(signals.take().last(), text("failed System error."));
        EXPECT_TRUE(model.canFetchMore(QModelIndex()));
        model.fetchMore(QModelIndex());
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(model.rowCount(), 50) << chunk;
        EXPECT_EQ(signals.take().last(), text("finished"));
        EXPECT_EQ(model.errorText(), QString());
    }
}

TEST_F(QueueModelFailureTest, AQueueWhoseRereadingFailsShowsWhatItShowed)
{
    QueueModel model;
    open(model, "Q.MANY");
    for (int chunk = 1; chunk <= 3; ++chunk) {
        SignalLog signals(model);
        server->faults().failNext(text("IQueue2::GetList"), Fault::raise(E_FAIL), chunk);
        model.refresh();
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(signals.takeRows(), QStringList());
        EXPECT_EQ(model.error(), E_FAIL);
        EXPECT_EQ(model.rowCount(), 50);
        EXPECT_EQ(model.index(49, 0).data(), text("Story 49"));
        EXPECT_FALSE(model.canFetchMore(QModelIndex()));
    }
    SignalLog signals(model);
    remove(12, 10);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.takeRows(), texts({"removed . 10-10"}));
}

TEST_F(QueueModelFailureTest, APathWithoutAQueueIsToldSo)
{
    QueueModel model;
    SignalLog signals(model);
    open(model, "Q.NOWHERE");
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "failed Entry no longer exists."}));
    open(model, "Q");
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "failed Entry no longer exists."}));
}

TEST_F(QueueModelFailureTest, AQueueThatCouldNotBeOpenedIsOpenedByRefresh)
{
    server->faults().failNext(text("IQueue2::get_QueueID"), Fault::hresult(E_FAIL));
    QueueModel model;
    SignalLog signals(model);
    open(model, "Q.SHORT");
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(model.columnCount(), 0);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 5);
}

TEST_F(QueueModelFailureTest, AQueueThatIsGoneKeepsItsRows)
{
    QueueModel model;
    open(model, "Q.SHORT");
    SignalLog signals(model);
    ASSERT_EQ(newsroom->removeEntry(text("Q.SHORT")), Newsroom::Refusal::None);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"loading", "failed Entry no longer exists."}));
    EXPECT_EQ(numbers(model), text("0 1 2 3 4"));
}

TEST_F(QueueModelFailureTest, AfterDisconnectingTheRowsStayAndTheUserIsNotLoggedIn)
{
    QueueModel model;
    open(model, "Q.LONG");
    SignalLog signals(model);
    session->Disconnect();
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"loading", "failed User not logged in."}));
    EXPECT_EQ(model.rowCount(), 200);
    EXPECT_EQ(model.index(199, 1).data(), text("Story 199"));
}

TEST_F(QueueModelFailureTest, FetchingMoreAfterDisconnectingFails)
{
    QueueModel model;
    open(model, "Q.LONG");
    SignalLog signals(model);
    session->Disconnect();
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"loading", "failed User not logged in."}));
    EXPECT_EQ(model.rowCount(), 200);
}

TEST_F(QueueModelFailureTest, AfterSigningOnAgainTheQueueIsReadAnew)
{
    QueueModel model;
    open(model, "Q.SHORT");
    session->Disconnect();
    model.refresh();
    ASSERT_TRUE(settles(model));
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("a"), 0), 0);
    SignalLog signals(model);
    remove(11, 0);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.takeRows(), texts({"removed . 0-0"}));
}

TEST_F(QueueModelFailureTest, ALogoutDuringALoadEndsIt)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    QueueModel model;
    SignalLog signals(model);
    model.setPollInterval(5);
    model.open(text("Q.MANY"));
    ASSERT_TRUE(server->faults().waitForHang(patience));
    server->triggerLogout();
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take().last(), text("failed User not logged in."));
    EXPECT_EQ(model.index(0, 0).data(), text("Story 0"));
}

TEST_F(QueueModelFailureTest, AModelGoesWhileTheQueueIsOpened)
{
    server->faults().failNext(text("IQueue2::get_QueueID"), Fault::hang(hangTime));
    auto model = std::make_unique<QueueModel>();
    model->open(text("Q.SHORT"));
    expectPromptEnd(std::move(model));
}

TEST_F(QueueModelFailureTest, AModelGoesWhileAChunkHangs)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(hangTime), 2);
    auto model = std::make_unique<QueueModel>();
    model->setPollInterval(5);
    model->open(text("Q.LIVE"));
    ASSERT_TRUE(comes([&] { return model->rowCount() == 20; }));
    expectPromptEnd(std::move(model));
}

TEST_F(QueueModelFailureTest, AModelGoesWhileALiveQueueIsRegistered)
{
    server->faults().failNext(text("IQueue2::put_Update"), Fault::hang(hangTime));
    auto model = std::make_unique<QueueModel>();
    model->setPollInterval(5);
    model->open(text("Q.LIVE"));
    ASSERT_TRUE(comes([&] { return model->rowCount() == 45; }));
    expectPromptEnd(std::move(model));
}

TEST_F(QueueModelFailureTest, AModelGoesWhileItsQueueIsReadAnew)
{
    auto model = std::make_unique<QueueModel>();
    open(*model, "Q.LIVE");
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(hangTime));
    model->refresh();
    expectPromptEnd(std::move(model));
}

TEST_F(QueueModelFailureTest, AModelGoesWhileAnotherOneHangs)
{
    auto model = std::make_unique<QueueModel>();
    open(*model, "Q.LIVE");
    QueueModel other;
    server->faults().failNext(text("IQueue2::get_QueueID"), Fault::hang(hangTime));
    other.open(text("Q.SHORT"));
    expectPromptEnd(std::move(model));
}

TEST_F(QueueModelFailureTest, ModelsThatComeAndGoAtAnyMomentLeaveNothing)
{
    NotificationInit(nullptr, nullptr, nullptr);
    for (int round = 0; round < 60; ++round) {
        QueueModel model;
        model.setPollInterval(1);
        model.open(text(round % 3 == 0 ? "Q.MANY" : "Q.LIVE"));
        if (round % 2 == 0)
            changeTitle(14, round % 45, "Again");
        for (int events = 0; events < round % 20; ++events)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 1);
        if (round % 5 == 0)
            model.refresh();
    }
}
