// What slots do to the search that tells them something.

#include <QPersistentModelIndex>
#include <QPointer>
#include <QSortFilterProxyModel>

#include "models/Interruption.h"
#include "models/SearchModelFixture.h"

using namespace Quire;

namespace {

class SearchModelSlotsTest : public SearchModelTest, public ::testing::WithParamInterface<Moment>
{
protected:
    static void act(SearchModel *model, const Moment &moment)
    {
        moment.act([&] {
            if (moment.does("Clear"))
                model->clear();
            else if (moment.does("StartAnother"))
                model->start(text("NEWS.LOCAL"), Item_Queue, text("storm"));
            else if (moment.does("Stop"))
                model->stop();
            else
                delete model;
        });
    }

    /// Has the search find double hits in the wrong order, and then end with others among them.
    void runSearch(const QPointer<SearchModel> &model, const Interruption &interruption)
    {
        startSilently(*model);
        for (const char *key : {"z", "z", "y", "A"})
            addHit(key, key);
        ASSERT_TRUE(comes([&] { return !model || interruption.happened() || model->rowCount() == 4; }));
        server->delivery().resume();
    }
};

} // namespace

TEST_P(SearchModelSlotsTest, LeaveItInOrder)
{
    const Moment &moment = GetParam();
    server->options().searchBatch = 100;
    QPointer<SearchModel> model = new SearchModel;
    SignalLog signals(*model);
    QSortFilterProxyModel view;
    view.setSourceModel(model);
    view.sort(0);
    const Interruption interruption(*model, moment.signal, [&] { act(model, moment); });
    runSearch(model, interruption);
    ASSERT_TRUE(comes([&] { return !model || (interruption.happened() && !model->isLoading()); }));
    EXPECT_EQ(model.isNull(), moment.does("Destroy"));
    if (moment.does("Clear")) {
        EXPECT_EQ(names(*model), QStringList());
    } else if (moment.does("StartAnother")) {
        EXPECT_EQ(names(*model), texts({"Storm three"}));
    } else if (model) {
        for (const char *name : {"A", "y", "z"}) // one that was stopped may end unsorted
            EXPECT_TRUE(names(*model).contains(text(name))) << names(*model).join(text(", ")).toStdString();
    }
    EXPECT_TRUE(isOrderly(signals.take()));
    delete model;
}

INSTANTIATE_TEST_SUITE_P(Moments, SearchModelSlotsTest,
                         ::testing::ValuesIn(moments({"rowsAboutToBeInserted", "rowsInserted", "progress",
                                                      "rowsAboutToBeRemoved", "rowsRemoved", "layoutAboutToBeChanged",
                                                      "layoutChanged", "finished"},
                                                     {"Clear", "StartAnother", "Stop", "Destroy"})),
                         momentName);
