#include "models/StoryFieldsModelFixture.h"

using namespace Quire;
using Newsroom::Fault;
using Newsroom::Refusal;

namespace {

class StoryFieldsModelTest : public StoryFieldsFixture
{
protected:
    static constexpr int titleRow = 0;
    static constexpr int lengthRow = 1;
    static constexpr int noteRow = 2;
    static constexpr int createdRow = 3;

    void SetUp() override
    {
        start(text("form STORY\n"
                   "  <zeko:form><zeko:row><zeko:cell idref=title length=80 llength=20 align=center style=b>Title "
                   "</zeko:cell><zeko:cell idref=audio-time length=20></zeko:cell></zeko:row>"
                   "<zeko:row><zeko:cell idref=note ro=yes>Note</zeko:cell>"
                   "<zeko:cell idref=TITLE>Once more</zeko:cell><zeko:cell idref=create-by>By</zeko:cell>"
                   "</zeko:row></zeko:form>\n"
                   "form TIMES\n"
                   "  <zeko:form><zeko:row><zeko:cell idref=audio-time>Audio</zeko:cell>"
                   "<zeko:cell idref=total-time>Total</zeko:cell></zeko:row></zeko:form>\n"
                   "directory Q\n"
                   "  queue X number=12 form=STORY\n"
                   "    story id=5:12:1\n"
                   "      title: Rain\n"
                   "      audio-time: 90\n"
                   "      note: seen\n"
                   "    story id=6:12:1 form=NONE\n"
                   "      title: Sun\n"
                   "    story id=7:12:1 form=TIMES\n"
                   "      audio-time: 90\n"
                   "      tape-time: 60\n"
                   "    story id=8:12:1 form=TIMES\n"
                   "      audio-time: 90\n"
                   "      total-time: 75\n"));
        ben = signOnBen();
    }

    QStringList writes()
    {
        QStringList all;
        for (const QString &call : server->calls().takeTexts()) {
            if (call.contains(text("Lock(")) || call.contains(text("put_")) || call.contains(text("Save")) ||
                call.contains(text("Unlock")))
                all.append(call);
        }
        return all;
    }
};

} // namespace

TEST_F(StoryFieldsModelTest, WithoutAStoryThereIsNothing)
{
    StoryFieldsModel model;
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 2);
    EXPECT_EQ(model.headerData(0, Qt::Horizontal), text("Field"));
    EXPECT_EQ(model.headerData(1, Qt::Horizontal), text("Value"));
    EXPECT_EQ(model.lockType(), 1);
    model.refresh();
    model.lock();
    model.unlock();
    EXPECT_FALSE(model.isLoading());
}

TEST_F(StoryFieldsModelTest, RowsAreTheFieldsOfTheFormEachOnce)
{
    StoryFieldsModel model;
    SignalLog signals(model);
    open(model);
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "inserted . 0-3", "progress 4", "finished"}));
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.append(model.index(row, 0).data().toString() + text("=") + value(model, row));
    EXPECT_EQ(rows, texts({"Title=Rain", "audio-time=1:30", "Note=seen", "By="}));
    EXPECT_EQ(model.rowOf(text("NOTE")), noteRow);
    EXPECT_EQ(model.rowOf(text("nothing")), -1);
    EXPECT_EQ(model.queuePath(), text("Q.X"));
    EXPECT_EQ(model.storyID().part1, 5);
}

TEST_F(StoryFieldsModelTest, RolesTellWhatTheFormTells)
{
    StoryFieldsModel model;
    open(model);
    const QModelIndex title = cell(model, titleRow);
    EXPECT_EQ(title.data(IdentifierRole), text("title"));
    EXPECT_EQ(title.data(NameRole), text("title"));
    EXPECT_EQ(title.data(PathRole), text("Q.X"));
    EXPECT_EQ(title.data(WidthRole), 20);
    EXPECT_EQ(title.data(StyleRole), 1);
    EXPECT_EQ(title.data(Qt::TextAlignmentRole), int{Qt::AlignHCenter | Qt::AlignVCenter});
    EXPECT_EQ(title.data(ReadOnlyRole), false);
    EXPECT_EQ(title.data(PendingRole), false);
    EXPECT_EQ(title.data(Qt::EditRole), text("Rain"));
    EXPECT_EQ(model.index(titleRow, 0).data(WidthRole), 5);
    EXPECT_EQ(cell(model, noteRow).data(ReadOnlyRole), true);
    EXPECT_EQ(cell(model, createdRow).data(ReadOnlyRole), true);
}

TEST_F(StoryFieldsModelTest, ValuesCanBeEditedWhereFormAndServerAllow)
{
    StoryFieldsModel model;
    open(model);
    EXPECT_TRUE(cell(model, titleRow).flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(cell(model, lengthRow).flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(cell(model, noteRow).flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(cell(model, createdRow).flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(model.index(titleRow, 0).flags() & Qt::ItemIsEditable);
    server->calls().take();
    EXPECT_FALSE(model.setData(cell(model, noteRow), text("x")));
    EXPECT_FALSE(model.setData(model.index(titleRow, 0), text("x")));
    EXPECT_FALSE(model.setData(cell(model, titleRow), text("x"), Qt::DisplayRole));
    EXPECT_FALSE(model.setData(QModelIndex(), text("x")));
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(server->calls().takeTexts(), QStringList());
}

TEST_F(StoryFieldsModelTest, SettingAValueLocksWritesSavesAndUnlocks)
{
    StoryFieldsModel model;
    open(model);
    SignalLog signals(model);
    QStringList saved;
    QObject::connect(&model, &StoryFieldsModel::saved, [&](const QString &field) { saved.append(field); });
    server->calls().take();
    ASSERT_TRUE(model.setData(cell(model, lengthRow), text("2:05")));
    EXPECT_EQ(value(model, lengthRow), text("2:05"));
    EXPECT_EQ(cell(model, lengthRow).data(PendingRole), true);
    EXPECT_EQ(signals.take(), texts({"changed . 1-1", "loading"}));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(writes(), texts({"IStory2::Lock(1)", "IStory2::put_Field(\"audio-time\", \"125\")", "IStory2::Save(true)",
                               "IStory2::Unlock()"}));
    EXPECT_EQ(onServer("audio-time"), text("125"));
    EXPECT_EQ(value(model, lengthRow), text("2:05"));
    EXPECT_EQ(cell(model, lengthRow).data(PendingRole), false);
    EXPECT_EQ(signals.take(), texts({"changed . 1-1", "finished"}));
    EXPECT_EQ(saved, texts({"audio-time"}));
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelTest, WhatTheServerMakesOfAValueIsShown)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(model.setData(cell(model, lengthRow), text("90")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(value(model, lengthRow), text("1:30"));
}

TEST_F(StoryFieldsModelTest, ATotalTimeThatIsNotStatedIsTheSumOfItsParts)
{
    StoryFieldsModel model;
    open(model, 7);
    EXPECT_EQ(value(model, "total-time"), text("2:30"));
    EXPECT_EQ(cell(model, "total-time").data(ReadOnlyRole), true);
    ASSERT_TRUE(set(model, "audio-time", "2:05"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(value(model, "total-time"), text("3:05"));
}

TEST_F(StoryFieldsModelTest, ATotalTimeThatIsStatedIsShown)
{
    StoryFieldsModel model;
    server->calls().take();
    open(model, 8);
    EXPECT_EQ(value(model, "total-time"), text("1:15"));
    EXPECT_EQ(server->calls().takeTexts().filter(text("get_SectionXml(4)")), QStringList());
}

TEST_F(StoryFieldsModelTest, TheSameValueIsNotWritten)
{
    StoryFieldsModel model;
    open(model);
    server->calls().take();
    EXPECT_TRUE(model.setData(cell(model, titleRow), text("Rain")));
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(server->calls().takeTexts(), QStringList());
}

TEST_F(StoryFieldsModelTest, ARefusedLockTellsWhoHoldsItAndTheValueComesBack)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_EQ(newsroom->lock(ben, 5, 1).refusal, Refusal::None);
    SignalLog signals(model);
    QStringList refusals;
    QObject::connect(&model, &StoryFieldsModel::lockRefused,
                     [&](const QString &who, const QString &why) { refusals.append(who + text(": ") + why); });
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
    EXPECT_EQ(value(model, titleRow), text("Hail"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(value(model, titleRow), text("Rain"));
    EXPECT_EQ(cell(model, titleRow).data(PendingRole), false);
    EXPECT_EQ(refusals, texts({"ben: Story currently being edited."}));
    EXPECT_EQ(signals.take(),
              texts({"changed . 0-0", "loading", "changed . 0-0", "failed Story currently being edited."}));
    EXPECT_EQ(onServer("title"), text("Rain"));
    EXPECT_EQ(holder(), text("ben"));
}

TEST_F(StoryFieldsModelTest, ARefusalThatIsNoLockTellsWhyOnly)
{
    StoryFieldsModel model;
    open(model);
    int refusals = 0;
    QObject::connect(&model, &StoryFieldsModel::lockRefused, [&] { ++refusals; });
    for (const char *operation : {"IStory2::Lock", "IStory2::put_Field", "IStory2::Save"}) {
        server->faults().failNext(text(operation), Fault::hresult(static_cast<HRESULT>(0x80040405)));
        ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(model.errorText(), text("Command is not authorized.")) << operation;
        EXPECT_EQ(value(model, titleRow), text("Rain")) << operation;
        EXPECT_EQ(holder(), QString()) << operation;
    }
    EXPECT_EQ(refusals, 0);
    EXPECT_EQ(onServer("title"), text("Rain"));
}

TEST_F(StoryFieldsModelTest, AChangeThatWasNotSavedIsNotSavedWithTheNext)
{
    StoryFieldsModel model;
    open(model);
    server->faults().failNext(text("IStory2::Save"), Fault::hresult(E_FAIL));
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
    ASSERT_TRUE(settles(model));
    ASSERT_TRUE(model.setData(cell(model, lengthRow), text("0:10")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(onServer("audio-time"), text("10"));
    EXPECT_EQ(onServer("title"), text("Rain"));
}

TEST_F(StoryFieldsModelTest, ALockThatIsHeldStaysOverSeveralChanges)
{
    StoryFieldsModel model;
    open(model);
    QStringList locks;
    noteLocks(model, locks);
    server->calls().take();
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(model.isLocked());
    EXPECT_EQ(holder(), text("ann"));
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
    ASSERT_TRUE(model.setData(cell(model, lengthRow), text("0:10")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(holder(), text("ann"));
    model.unlock();
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(holder(), QString());
    EXPECT_EQ(locks, texts({"locked", "free"}));
    EXPECT_EQ(writes(),
              texts({"IStory2::Lock(1)", "IStory2::put_Field(\"title\", \"Hail\")", "IStory2::Save(true)",
                     "IStory2::put_Field(\"audio-time\", \"10\")", "IStory2::Save(true)", "IStory2::Unlock()"}));
}

TEST_F(StoryFieldsModelTest, ALockThatIsRefusedIsNotHeld)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_EQ(newsroom->lock(ben, 5, 1).refusal, Refusal::None);
    QString who;
    QObject::connect(&model, &StoryFieldsModel::lockRefused, [&](const QString &by) { who = by; });
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(who, text("ben"));
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(model.errorText(), text("Story currently being edited."));
}

TEST_F(StoryFieldsModelTest, ALockGoesWithTheModelAndWithTheStory)
{
    {
        StoryFieldsModel model;
        open(model);
        model.lock();
        ASSERT_TRUE(settles(model));
        open(model, 6);
        EXPECT_FALSE(model.isLocked());
        ASSERT_TRUE(ServerModel::waitForServer(patience));
        EXPECT_EQ(holder(), QString());
        open(model);
        model.lock();
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(holder(), text("ann"));
    }
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelTest, ALockThatIsGivenBackBeforeItHasComeIsNotKept)
{
    StoryFieldsModel model;
    open(model);
    QStringList told;
    noteLocks(model, told);
    server->calls().take();
    model.lock();
    model.unlock();
    EXPECT_TRUE(model.isLoading());
    ASSERT_TRUE(settles(model));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(told, QStringList());
    EXPECT_EQ(holder(), QString());
    EXPECT_EQ(writes(), texts({"IStory2::Lock(1)", "IStory2::Unlock()"}));
}

TEST_F(StoryFieldsModelTest, TheLastWishForTheLockCounts)
{
    StoryFieldsModel model;
    open(model);
    model.lock();
    model.lock();
    model.unlock();
    model.unlock();
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(model.isLocked());
    EXPECT_EQ(holder(), text("ann"));
    model.unlock();
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelTest, ALockThatWasRefusedCanBeAskedForAgain)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_EQ(newsroom->lock(ben, 5, 1).refusal, Refusal::None);
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_FALSE(model.isLocked());
    ASSERT_EQ(newsroom->unlock(ben, 5), Refusal::None);
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(model.isLocked());
}

TEST_F(StoryFieldsModelTest, AnotherLockTypeGoesToTheServer)
{
    StoryFieldsModel model;
    model.setLockType(3);
    open(model);
    server->calls().take();
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(writes(), texts({"IStory2::Lock(3)"}));
}

TEST_F(StoryFieldsModelTest, TwoChangesOfOneFieldEndWithTheSecond)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("First")));
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Second")));
    QStringList shown;
    QObject::connect(&model, &StoryFieldsModel::dataChanged, [&] { shown.append(value(model, titleRow)); });
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(shown, texts({"Second"})); // never the first again
    EXPECT_EQ(onServer("title"), text("Second"));
}

TEST_F(StoryFieldsModelTest, AChangeIsMadeThoughTheModelGoes)
{
    {
        StoryFieldsModel model;
        open(model);
        server->faults().failNext(text("IStory2::Lock"), Fault::hang(hangTime));
        ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
        ASSERT_TRUE(model.setData(cell(model, lengthRow), text("0:10")));
        ASSERT_TRUE(server->faults().waitForHang(patience));
        QElapsedTimer timer;
        timer.start();
        model.close();
        EXPECT_LT(timer.elapsed(), hangTime / 2);
        EXPECT_EQ(server->faults().hanging(), 1);
    }
    server->faults().clear();
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_EQ(onServer("audio-time"), text("10"));
}

TEST_F(StoryFieldsModelTest, RefreshingTellsOfTheValuesThatDiffer)
{
    StoryFieldsModel model;
    open(model);
    SignalLog signals(model);
    benSaves("title", "Sun");
    benSaves("audio-time", "7");
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"loading", "changed . 0-1", "finished"}));
    EXPECT_EQ(value(model, titleRow), text("Sun"));
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"loading", "finished"}));
}

TEST_F(StoryFieldsModelTest, AStoryWithoutFormHasNoRows)
{
    StoryFieldsModel model;
    SignalLog signals(model);
    open(model, 6);
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "finished"}));
}

TEST_F(StoryFieldsModelTest, AStoryThatIsNotThereIsToldSo)
{
    StoryFieldsModel model;
    SignalLog signals(model);
    open(model, 99);
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "failed Entry no longer exists."}));
}

TEST_F(StoryFieldsModelTest, AfterDisconnectingTheValueComesBack)
{
    StoryFieldsModel model;
    open(model);
    session->Disconnect();
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), text("User not logged in."));
    EXPECT_EQ(value(model, titleRow), text("Rain"));
}

TEST_F(StoryFieldsModelTest, AReadingThatFailsLeavesTheRows)
{
    StoryFieldsModel model;
    open(model);
    server->faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL), 2);
    SignalLog signals(model);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(signals.takeRows(), QStringList());
    EXPECT_EQ(value(model, titleRow), text("Rain"));
}

TEST_F(StoryFieldsModelTest, AStoryThatCouldNotBeOpenedIsOpenedByRefresh)
{
    StoryFieldsModel model;
    server->faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL));
    open(model);
    EXPECT_EQ(model.rowCount(), 0);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 4);
}

TEST_F(StoryFieldsModelTest, ALongQueueIsNotSearchedForTheStory)
{
    StoryFieldsModel model;
    server->calls().take();
    open(model);
    EXPECT_EQ(server->calls().takeTexts().filter(text("get_Item")), QStringList());
}

TEST_F(StoryFieldsModelTest, ServerCallsAreMadeOffTheModelsThread)
{
    StoryFieldsModel model;
    server->calls().take();
    open(model);
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
    ASSERT_TRUE(settles(model));
    const DWORD own = GetCurrentThreadId();
    for (const Newsroom::Call &call : server->calls().take())
        EXPECT_NE(call.threadId, own) << call.text().toStdString();
}

TEST_F(StoryFieldsModelTest, PassesQtsOwnCheck)
{
    StoryFieldsModel model;
    const ModelCheck check(model);
    open(model);
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Hail")));
    ASSERT_TRUE(settles(model));
    server->faults().failNext(text("IStory2::Save"), Fault::hresult(E_FAIL));
    ASSERT_TRUE(model.setData(cell(model, titleRow), text("Sleet")));
    ASSERT_TRUE(settles(model));
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(value(model, titleRow), text("Hail"));
    model.close();
}
