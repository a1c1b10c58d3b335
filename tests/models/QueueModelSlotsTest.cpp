// What slots do to the queue that tells them something.

#include <QPersistentModelIndex>
#include <QPointer>
#include <QSortFilterProxyModel>

#include "models/Interruption.h"
#include "models/QueueModelFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

class QueueModelSlotsTest : public QueueModelTest
{
protected:
    static void act(QueueModel *model, const Moment &moment)
    {
        moment.act([&] {
            if (moment.does("Close"))
                model->close();
            else if (moment.does("OpenAnother"))
                model->open(text("Q.SHORT"));
            else if (moment.does("Refresh"))
                model->refresh();
            else if (moment.does("FetchMore"))
                model->fetchMore(QModelIndex());
            else
                delete model;
        });
    }

    /// Each kind of change: a row goes, one moves, one comes and one is another.
    void changeAll()
    {
        remove(12, 5);
        moveToEnd(12, 20);
        append(12, 77);
        changeTitle(12, 30, "Changed");
    }

    /// Reads the queue while a slot acts; then what has to come of it.
    static void expectOutcome(const QPointer<QueueModel> &model, const Moment &moment, int rows)
    {
        if (moment.does("Destroy")) {
            EXPECT_TRUE(model.isNull());
            return;
        }
        ASSERT_FALSE(model.isNull());
        ASSERT_TRUE(settles(*model));
        const bool isClosed = moment.does("Close");
        const bool isAnother = moment.does("OpenAnother");
        EXPECT_EQ(model->path(), text(isClosed ? "" : isAnother ? "Q.SHORT" : "Q.MANY"));
        EXPECT_EQ(model->error(), 0);
        EXPECT_TRUE(comes([&] {
            return model->rowCount() == (isClosed ? 0 : isAnother ? 5 : rows);
        })) << model->rowCount();
        EXPECT_EQ(model->columnCount() > 0, !isClosed);
        ASSERT_TRUE(settles(*model));
    }

    static std::unique_ptr<QSortFilterProxyModel> sortedView(QueueModel &model)
    {
        auto view = std::make_unique<QSortFilterProxyModel>();
        view->setSourceModel(&model);
        view->sort(0);
        return view;
    }
};

/// The first reading of a queue.
class QueueModelOpeningSlotsTest : public QueueModelSlotsTest, public ::testing::WithParamInterface<Moment>
{};

/// A queue that is read again after each kind of change.
class QueueModelRefreshingSlotsTest : public QueueModelSlotsTest, public ::testing::WithParamInterface<Moment>
{};

} // namespace

TEST_P(QueueModelOpeningSlotsTest, LeaveItInOrder)
{
    const Moment &moment = GetParam();
    QPointer<QueueModel> model = new QueueModel;
    SignalLog signals(*model);
    const auto view = sortedView(*model);
    const Interruption interruption(*model, moment.signal, [&] { act(model, moment); });
    model->setPollInterval(1);
    model->open(text("Q.MANY"));
    ASSERT_TRUE(comes([&] { return !model || (interruption.happened() && !model->isLoading()); }));
    expectOutcome(model, moment, 50);
    EXPECT_TRUE(isOrderly(signals.take()));
    delete model;
}

INSTANTIATE_TEST_SUITE_P(Moments, QueueModelOpeningSlotsTest,
                         ::testing::ValuesIn(moments({"modelReset", "columnsAboutToBeInserted", "columnsInserted",
                                                      "rowsAboutToBeInserted", "rowsInserted", "progress", "finished",
                                                      "loadingStarted", "loadingChanged"},
                                                     {"Close", "OpenAnother", "Refresh", "FetchMore", "Destroy"})),
                         momentName);

TEST_P(QueueModelRefreshingSlotsTest, LeaveItInOrder)
{
    const Moment &moment = GetParam();
    QPointer<QueueModel> model = new QueueModel;
    open(*model, "Q.MANY");
    SignalLog signals(*model);
    const auto view = sortedView(*model);
    QList<QPersistentModelIndex> places;
    for (int row = 0; row < model->rowCount(); ++row)
        places.append(model->index(row, 0));
    const Interruption interruption(*model, moment.signal, [&] { act(model, moment); });
    changeAll();
    model->refresh();
    ASSERT_TRUE(comes([&] { return !model || (interruption.happened() && !model->isLoading()); }));
    expectOutcome(model, moment, 50);
    if (moment.does("Refresh") || moment.does("FetchMore")) {
        EXPECT_TRUE(numbers(*model).endsWith(text("47 48 49 20 77"))) << numbers(*model).toStdString();
        EXPECT_EQ(model->index(28, 0).data(), text("Changed"));
        EXPECT_EQ(places.at(20).row(), 48);
    }
    EXPECT_TRUE(isOrderly(signals.take()));
    delete model;
}

INSTANTIATE_TEST_SUITE_P(Moments, QueueModelRefreshingSlotsTest,
                         ::testing::ValuesIn(moments({"rowsAboutToBeRemoved", "rowsRemoved", "rowsAboutToBeInserted",
                                                      "rowsInserted", "rowsAboutToBeMoved", "rowsMoved", "dataChanged",
                                                      "finished", "loadingStarted", "loadingChanged"},
                                                     {"Close", "OpenAnother", "Refresh", "FetchMore", "Destroy"})),
                         momentName);

TEST_F(QueueModelSlotsTest, TheNextQueueIsOpenedWhenOneHasFinished)
{
    QueueModel model;
    SignalLog signals(model);
    const Interruption next(model, "finished", [&] { model.open(text("Q.SHORT")); });
    open(model, "Q.NONE");
    EXPECT_EQ(model.rowCount(), 5);
    EXPECT_EQ(signals.takeRows(), texts({"reset", "columns 0-11", "reset", "columns 0-11", "inserted . 0-4"}));
}

TEST_F(QueueModelSlotsTest, TheNextQueueIsOpenedWhenOneHasFailed)
{
    for (const char *path : {"Q.NOWHERE", "Q.MANY"}) {
        server->faults().failNext(text("IQueue2::GetList"), Fault::hresult(E_FAIL));
        QueueModel model;
        SignalLog signals(model);
        const Interruption next(model, "failed", [&] {
            server->faults().clear();
            model.open(text("Q.SHORT"));
        });
        open(model, path);
        EXPECT_TRUE(next.happened());
        EXPECT_EQ(model.rowCount(), 5);
        EXPECT_EQ(model.error(), 0);
        EXPECT_TRUE(isOrderly(signals.take()));
    }
}

TEST_F(QueueModelSlotsTest, AModelMayGoWhenItHasFailed)
{
    for (const char *path : {"Q.NOWHERE", "Q.MANY"}) {
        server->faults().failNext(text("IQueue2::GetList"), Fault::hresult(E_FAIL));
        QPointer<QueueModel> model = new QueueModel;
        const Interruption end(*model, "failed", [&] { delete model; });
        model->open(text(path));
        EXPECT_TRUE(comes([&] { return !model; }));
        server->faults().clear();
    }
}

TEST_F(QueueModelSlotsTest, APathThatASlotHasReplacedIsNotTold)
{
    QueueModel model;
    QStringList paths;
    QObject::connect(&model, &QueueModel::pathChanged, [&](const QString &path) { paths.append(path); });
    const Interruption other(model, "modelReset", [&] { model.open(text("Q.MANY")); });
    model.open(text("Q.SHORT"));
    EXPECT_EQ(paths, texts({"Q.MANY"}));
}

TEST_F(QueueModelSlotsTest, AQueueThatFailedIsReadAgainFromTheSlot)
{
    QueueModel model;
    SignalLog signals(model);
    server->faults().failNext(text("IQueue2::GetList"), Fault::hresult(E_FAIL));
    const Interruption again(model, "failed", [&] { model.refresh(); });
    open(model, "Q.SHORT");
    EXPECT_EQ(model.rowCount(), 5);
    EXPECT_EQ(model.error(), 0);
    EXPECT_TRUE(isOrderly(signals.take()));
}
