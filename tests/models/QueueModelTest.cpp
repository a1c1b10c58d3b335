// What a queue's model shows, and how it loads.

#include <QAbstractEventDispatcher>

#include <algorithm>

#include "models/QueueModelFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

/// The intervals of the timers that the model has running, in milliseconds, the shortest first.
QVector<int> intervals(QueueModel &model)
{
    QVector<int> all;
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&model);
    for (const auto &timer : timers)
        all.append(timer.interval);
    std::sort(all.begin(), all.end());
    return all;
}

/// Counts how often a model's timers have fired.
class TimerCount : public QObject
{
public:
    explicit TimerCount(QueueModel &model) { model.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
    int count = 0;
};

} // namespace

TEST_F(QueueModelTest, WithoutAQueueThereIsNothing)
{
    QueueModel model;
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 0);
    EXPECT_EQ(model.path(), QString());
    EXPECT_FALSE(model.isLive());
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
    EXPECT_EQ(model.pollInterval(), 100);
    model.refresh();
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(server->calls().takeTexts(), QStringList());
}

TEST_F(QueueModelTest, ColumnsComeFirstThenTheRows)
{
    QueueModel model;
    SignalLog signals(model);
    open(model, "Q.SHORT");
    EXPECT_EQ(signals.takeRows(), texts({"reset", "columns 0-11", "inserted . 0-4"}));
    EXPECT_EQ(numbers(model), text("0 1 2 3 4"));
    EXPECT_EQ(model.path(), text("Q.SHORT"));
}

TEST_F(QueueModelTest, LoadingIsToldFromItsBeginToItsEnd)
{
    QueueModel model;
    SignalLog signals(model);
    model.setPollInterval(5);
    model.open(text("Q.SHORT"));
    EXPECT_TRUE(model.isLoading());
    EXPECT_EQ(signals.take(), texts({"reset", "loading"}));
    EXPECT_EQ(model.rowCount(), 0); // not on the caller's time
    ASSERT_TRUE(settles(model));
    const QStringList lines = signals.take();
    EXPECT_EQ(lines.last(), text("finished"));
    EXPECT_EQ(lines.filter(text("progress")).last(), text("progress 5"));
    EXPECT_EQ(model.error(), 0);
}

TEST_F(QueueModelTest, AnEmptyQueueHasColumns)
{
    QueueModel model;
    SignalLog signals(model);
    open(model, "Q.NONE");
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "columns 0-11", "finished"}));
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
}

TEST_F(QueueModelTest, ColumnsAreTheNameThenTheFormThenTheHeader)
{
    QueueModel model;
    open(model, "Q.SHORT");
    QStringList titles;
    for (int column = 0; column < model.columnCount(); ++column)
        titles.append(model.headerData(column, Qt::Horizontal).toString());
    EXPECT_EQ(titles, texts({"Story", "Title", "By", "note", "Lock", "Words", "Rate", "Break", "Float", "Hold", "Wire",
                             "Mail"})); // each field once
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, IdentifierRole), text("title"));
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, WidthRole), 20);
    EXPECT_EQ(model.headerData(2, Qt::Horizontal, WidthRole), 10); // of the label
    EXPECT_EQ(model.headerData(2, Qt::Horizontal, StyleRole), 1);
    EXPECT_EQ(model.headerData(2, Qt::Horizontal, Qt::TextAlignmentRole), int{Qt::AlignRight | Qt::AlignVCenter});
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, WidthRole), 0);
    EXPECT_EQ(model.columnOf(text("writer")), 2);
    EXPECT_EQ(model.columnOf(QLatin1String(Attr_Words)), 5);
    EXPECT_EQ(model.columnOf(text("nothing")), -1);
    EXPECT_EQ(model.columns().at(2).source, StoryColumn::Field);
}

TEST_F(QueueModelTest, TheHostChoosesTheColumnsOfTheHeader)
{
    QueueModel model;
    model.setHeaderColumns({QLatin1String(Attr_Rate)});
    open(model, "Q.SHORT");
    ASSERT_EQ(model.columnCount(), 5);
    EXPECT_EQ(model.headerData(4, Qt::Horizontal), text("Rate"));
}

TEST_F(QueueModelTest, WithoutAFormThereAreNameAndHeader)
{
    server->faults().failEvery(text("ISignon4::GetSystemForm"), Fault::hresult(E_FAIL));
    QueueModel model;
    open(model, "Q.SHORT");
    EXPECT_EQ(model.columnCount(), 9);
    EXPECT_EQ(model.rowCount(), 5);
    EXPECT_EQ(model.error(), 0);
}

TEST_F(QueueModelTest, TheFirstChunkIsThereBeforeTheSecondIsRead)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    QueueModel model;
    SignalLog signals(model);
    model.setPollInterval(5);
    model.open(text("Q.MANY"));
    ASSERT_TRUE(server->faults().waitForHang(patience));
    ASSERT_TRUE(comes([&] { return model.rowCount() == 20; }));
    EXPECT_TRUE(model.isLoading());
    EXPECT_EQ(signals.takeRows(), texts({"reset", "columns 0-11", "inserted . 0-19"}));
    EXPECT_EQ(model.index(19, 0).data(), text("Story 19"));
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.takeRows(), texts({"inserted . 20-49"}));
}

TEST_F(QueueModelTest, FetchingMoreGoesOnBehindWhatIsThere)
{
    QueueModel model;
    SignalLog signals(model);
    open(model, "Q.LONG");
    EXPECT_EQ(model.rowCount(), 200);
    ASSERT_TRUE(model.canFetchMore(QModelIndex()));
    signals.take();
    model.fetchMore(QModelIndex());
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.takeRows(), texts({"inserted . 200-399"}));
    EXPECT_TRUE(model.canFetchMore(QModelIndex()));
    EXPECT_FALSE(model.canFetchMore(model.index(0, 0)));
    EXPECT_EQ(model.index(399, 1).data(), text("Story 399"));
}

TEST_F(QueueModelTest, ProgressIsTheNumberOfRowsSinceTheLoadBegan)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    QueueModel model;
    SignalLog signals(model);
    const auto lastProgress = [&] {
        const QStringList lines = signals.take().filter(text("progress"));
        return lines.isEmpty() ? QString() : lines.last();
    };
    model.setPollInterval(5);
    model.open(text("Q.LONG"));
    ASSERT_TRUE(comes([&] { return model.rowCount() > 0; }));
    const int first = model.rowCount();
    EXPECT_EQ(lastProgress(), text("progress %1").arg(first));
    server->faults().clear();
    ASSERT_TRUE(comes([&] { return model.rowCount() > first; }));
    EXPECT_EQ(lastProgress(), text("progress %1").arg(model.rowCount()));
    ASSERT_TRUE(settles(model));
    const int before = model.rowCount();
    signals.take();
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(comes([&] { return model.rowCount() > before; }));
    EXPECT_EQ(lastProgress(), text("progress %1").arg(model.rowCount() - before));
}

TEST_F(QueueModelTest, ItsListIsLookedAtAsOftenAsToldWhileItIsOpen)
{
    QueueModel model;
    model.setPollInterval(0);
    model.setPollInterval(-1);
    EXPECT_EQ(model.pollInterval(), 100);
    model.setPollInterval(50);
    EXPECT_EQ(intervals(model), QVector<int>());
    model.open(text("Q.SHORT"));
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(comes([&] { return intervals(model) == QVector<int>{50}; })); // what looked sooner goes
    model.setPollInterval(60);
    EXPECT_EQ(intervals(model), QVector<int>{60});
    model.close();
    EXPECT_EQ(intervals(model), QVector<int>());
}

TEST_F(QueueModelTest, ItsListIsLookedAtMoreOftenOnlyWhileItIsEmpty)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience));
    QueueModel model;
    model.setPollInterval(1000);
    model.open(text("Q.SHORT"));
    ASSERT_TRUE(comes([&] { return intervals(model) == QVector<int>{5, 1000}; }));
    model.setPollInterval(1);
    const TimerCount fired(model);
    ASSERT_TRUE(comes([&] { return fired.count >= 20; }));
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(comes([&] { return intervals(model) == QVector<int>{1}; }));
}

TEST_F(QueueModelTest, ALiveQueueIsReadWhole)
{
    Queue::setLoadIncrement(20);
    QueueModel model;
    open(model, "Q.LIVE");
    EXPECT_EQ(model.rowCount(), 45);
    EXPECT_TRUE(model.isLive());
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
    Queue::setLoadIncrement(200);
}

TEST_F(QueueModelTest, CellsShowFieldsAndHeader)
{
    ASSERT_EQ(newsroom->addDirectory(text("D")), Newsroom::Refusal::None);
    ASSERT_TRUE(Newsroom::NewsroomText::addTo(newsroom.get(), text("D"),
                                              text("queue X form=STORY number=30\n"
                                                   "  story id=5:6:7 hold=H rate=170 wire=W\n"
                                                   "    title[urgency=2]: Rain\n"
                                                   "    writer[urgency=3]: ann\n"
                                                   "    note[aready=1]: seen\n"
                                                   "\n"
                                                   "    Two words\n"
                                                   "  story id=8:6:7 locked=desk\n"
                                                   "    title: Sun\n"),
                                              nullptr));
    QueueModel model;
    open(model, "D.X");
    const auto cell = [&](int row, const char *key) { return model.index(row, model.columnOf(text(key))); };
    EXPECT_EQ(cell(0, "").data(UrgencyRole), 2); // before anything else was asked
    EXPECT_EQ(cell(0, "").data(), text("Rain"));
    EXPECT_EQ(cell(0, "title").data(), text("Rain"));
    EXPECT_EQ(cell(0, "Writer").data(), text("ann")); // the form writes it in another letter case
    EXPECT_EQ(cell(0, Attr_Hold).data(), text("H"));
    EXPECT_EQ(cell(0, Attr_Rate).data(), text("170"));
    EXPECT_EQ(cell(0, Attr_Words).data(), text("2"));
    EXPECT_EQ(cell(0, Attr_Wire).data(), text("W"));
    EXPECT_EQ(cell(0, Attr_Mail).data(), QString());
    EXPECT_EQ(cell(0, "title").data(UrgencyRole), 1);
    EXPECT_EQ(cell(0, "writer").data(UrgencyRole), 2);
    EXPECT_EQ(cell(0, "note").data(UrgencyRole), 0);
    EXPECT_EQ(cell(0, "note").data(FlagsRole), 8);
    EXPECT_EQ(cell(0, "note").data(NameRole), text("Rain"));
    EXPECT_EQ(cell(0, "note").data(IdentifierRole), text("5:6"));
    EXPECT_EQ(cell(0, "note").data(PathRole), text("D.X"));
    EXPECT_EQ(cell(0, "note").data(TypeRole), int{Item_Story});
    EXPECT_FALSE(cell(0, "note").data(LockRole).isValid());
    EXPECT_EQ(cell(1, "note").data(LockRole), text("desk"));
    EXPECT_EQ(cell(1, "writer").data(Qt::TextAlignmentRole), int{Qt::AlignRight | Qt::AlignVCenter});
    EXPECT_FALSE(cell(1, "writer").data(Qt::DecorationRole).isValid());
}

TEST_F(QueueModelTest, AStoryWithoutHeaderCountsAsLocked)
{
    server->faults().failNext(text("IStory2::get_SectionXml"), Fault::nullResult());
    QueueModel model;
    open(model, "Q.SHORT");
    EXPECT_TRUE(model.index(0, 0).data(LockRole).isValid());
    EXPECT_FALSE(model.index(0, 0).data(LockRole).isNull()); // which would be no lock for many a host
    EXPECT_EQ(model.index(0, 0).data(LockRole), QString());
    EXPECT_FALSE(model.index(1, 0).data(LockRole).isValid());
}

TEST_F(QueueModelTest, HostsAskByIndexAndByIdentifier)
{
    QueueModel model;
    open(model, "Q.SHORT");
    const QModelIndex third = model.indexOf(text("110002:1"));
    EXPECT_EQ(third.row(), 2);
    EXPECT_EQ(model.identifier(third), text("110002:1"));
    EXPECT_EQ(model.storyID(third).part1, 110002);
    EXPECT_EQ(model.storyID(third).part2, 1);
    EXPECT_FALSE(model.indexOf(text("110002:2")).isValid());
    EXPECT_EQ(model.identifier(QModelIndex()), QString());
    EXPECT_EQ(model.storyID(QModelIndex()).part1, 0);
}

TEST_F(QueueModelTest, AnotherQueueTakesThePlaceOfTheFirst)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    QueueModel model;
    model.setPollInterval(5);
    model.open(text("Q.MANY"));
    ASSERT_TRUE(server->faults().waitForHang(patience));
    SignalLog signals(model);
    model.open(text("Q.SHORT"));
    EXPECT_EQ(model.rowCount(), 0);
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.takeRows(), texts({"reset", "columns 0-11", "inserted . 0-4"}));
}

TEST_F(QueueModelTest, ARefreshOfTheFirstDoesNotReachTheQueueInItsPlace)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    QueueModel model;
    model.setPollInterval(5);
    model.open(text("Q.MANY"));
    ASSERT_TRUE(comes([&] { return model.rowCount() == 20; }));
    model.refresh(); // for when the load has ended
    model.open(text("Q.SHORT"));
    SignalLog signals(model);
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take().filter(text("finished")).size(), 1);
}

TEST_F(QueueModelTest, TheSamePathOnceMoreIsNoOtherPath)
{
    QueueModel model;
    open(model, "Q.SHORT");
    int told = 0;
    QObject::connect(&model, &QueueModel::pathChanged, [&told] { ++told; });
    open(model, "Q.SHORT");
    EXPECT_EQ(told, 0);
    open(model, "Q.NONE");
    EXPECT_EQ(told, 1);
}

TEST_F(QueueModelTest, OpeningNoPathOpensNothing)
{
    QueueModel model;
    open(model, "Q.SHORT");
    SignalLog signals(model);
    model.open(QString());
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(signals.take(), texts({"reset"}));
}

TEST_F(QueueModelTest, ARefreshByWhoHearsOfThePathOpensTheQueueOnce)
{
    QueueModel model;
    QObject::connect(&model, &QueueModel::pathChanged, [&model] { model.refresh(); });
    SignalLog signals(model);
    open(model, "Q.SHORT");
    EXPECT_EQ(signals.take().filter(text("columns")), texts({"columns 0-11"}));
}

TEST_F(QueueModelTest, ClosingShowsNothing)
{
    QueueModel model;
    open(model, "Q.SHORT");
    model.close();
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 0);
    EXPECT_EQ(model.path(), QString());
    EXPECT_FALSE(model.isLoading());
}

TEST_F(QueueModelTest, ServerCallsAreMadeOffTheModelsThread)
{
    {
        QueueModel model;
        open(model, "Q.LONG");
        model.fetchMore(QModelIndex());
        ASSERT_TRUE(settles(model));
        model.refresh();
        ASSERT_TRUE(settles(model));
    }
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    const DWORD own = GetCurrentThreadId();
    for (const Newsroom::Call &call : server->calls().take())
        ASSERT_NE(call.threadId, own) << call.text().toStdString();
}
