// What slots do to the tree that tells them something.

#include <quire/models/DirectoryModel.h>

#include <QPersistentModelIndex>
#include <QPointer>
#include <QSortFilterProxyModel>

#include "models/Interruption.h"
#include "models/ModelFixture.h"

using namespace Quire;
using Newsroom::Refusal;

namespace {

class DirectoryModelSlotsTest : public ModelTest, public ::testing::WithParamInterface<Moment>
{
protected:
    void SetUp() override
    {
        start(text("directory NEWS\n"
                   "  directory SPORT\n"
                   "    queue SCORES number=12\n"
                   "  queue WORLD number=14\n"
                   "directory OTHER\n"
                   "  queue ONE number=15\n"
                   "queue MAIL number=16\n"
                   "queue NOTES number=17\n"));
    }

    /// Each kind of change: a row goes, one comes, one moves and one is another.
    void changeAll()
    {
        ASSERT_EQ(newsroom->removeEntry(text("MAIL")), Refusal::None);
        ASSERT_EQ(newsroom->removeEntry(text("OTHER.ONE")), Refusal::None);
        ASSERT_EQ(newsroom->removeEntry(text("OTHER")), Refusal::None);
        ASSERT_EQ(newsroom->addDirectory(text("ARCHIVE")), Refusal::None);
        ASSERT_EQ(newsroom->addDirectory(text("OTHER")), Refusal::None);
        ASSERT_TRUE(newsroom->addQueue(text("NEWS.LOCAL")).ok());
    }

    static void act(DirectoryModel *model, const Moment &moment)
    {
        moment.act([&] {
            if (moment.does("ShowAnother")) {
                model->setRootPath(text("NEWS"));
                model->fetchMore(QModelIndex());
            } else if (moment.does("Refresh")) {
                model->refresh();
            } else {
                delete model;
            }
        });
    }

    static QStringList names(const DirectoryModel &model, const QModelIndex &parent = QModelIndex())
    {
        QStringList all;
        for (int row = 0; row < model.rowCount(parent); ++row)
            all.append(model.index(row, 0, parent).data().toString());
        return all;
    }
};

} // namespace

TEST_P(DirectoryModelSlotsTest, LeaveItInOrder)
{
    const Moment &moment = GetParam();
    QPointer<DirectoryModel> model = new DirectoryModel;
    model->fetchMore(QModelIndex());
    ASSERT_TRUE(settles(*model));
    model->fetchMore(model->indexOf(text("NEWS")));
    ASSERT_TRUE(settles(*model));
    SignalLog signals(*model);
    const QPersistentModelIndex notes = model->indexOf(text("NOTES"));
    QSortFilterProxyModel view;
    view.setSourceModel(model);
    view.sort(0);
    const Interruption interruption(*model, moment.signal, [&] { act(model, moment); });
    changeAll();
    model->refresh();
    ASSERT_TRUE(comes([&] { return !model || (interruption.happened() && !model->isLoading()); }));
    EXPECT_EQ(model.isNull(), moment.does("Destroy"));
    if (moment.does("ShowAnother")) {
        EXPECT_EQ(names(*model), texts({"SPORT", "WORLD", "LOCAL"}));
    } else if (model) {
        EXPECT_EQ(names(*model), texts({"NEWS", "NOTES", "ARCHIVE", "OTHER"}));
        EXPECT_EQ(names(*model, model->indexOf(text("NEWS"))), texts({"SPORT", "WORLD", "LOCAL"}));
        EXPECT_EQ(notes.row(), 1);
    }
    EXPECT_TRUE(isOrderly(signals.take()));
    delete model;
}

INSTANTIATE_TEST_SUITE_P(Moments, DirectoryModelSlotsTest,
                         ::testing::ValuesIn(moments({"rowsAboutToBeRemoved", "rowsRemoved", "rowsAboutToBeInserted",
                                                      "rowsInserted", "dataChanged", "progress", "loadingStarted",
                                                      "loadingChanged", "finished"},
                                                     {"ShowAnother", "Refresh", "Destroy"})),
                         momentName);

TEST_F(DirectoryModelSlotsTest, ADirectoryMayGoWhileASlotHearsOfItsRows)
{
    DirectoryModel model;
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    const Moment refresh{"rowsInserted", "Refresh", true};
    const Interruption interruption(model, refresh.signal, [&] {
        ASSERT_EQ(newsroom->removeEntry(text("NEWS")), Refusal::None);
        act(&model, refresh);
        EXPECT_TRUE(model.indexOf(text("NEWS")).isValid());
    });
    model.fetchMore(model.indexOf(text("NEWS")));
    ASSERT_TRUE(comes([&] { return interruption.happened() && !model.isLoading(); }));
    EXPECT_EQ(names(model), texts({"OTHER", "MAIL", "NOTES"}));
}
