#include <quire/models/DirectoryModel.h>

#include <QPersistentModelIndex>

#include "models/ModelFixture.h"

using namespace Quire;
using Newsroom::Fault;
using Newsroom::Flags;

namespace {

class DirectoryModelTest : public ModelTest
{
protected:
    void SetUp() override
    {
        start(text("directory NEWS indexed\n"
                   "  directory SPORT\n"
                   "    queue SCORES number=12\n"
                   "    queue TABLES number=13\n"
                   "  queue WORLD number=14 locked-e\n"
                   "directory EMPTY\n"
                   "queue MAIL number=15 locked sorted\n"));
    }

    /// Reads the entries of a directory.
    static void open(DirectoryModel &model, const char *path = nullptr)
    {
        model.fetchMore(path ? model.indexOf(text(path)) : QModelIndex());
        ASSERT_TRUE(settles(model));
    }
    static void refresh(DirectoryModel &model, const char *path = nullptr)
    {
        model.refresh(path ? model.indexOf(text(path)) : QModelIndex());
        ASSERT_TRUE(settles(model));
    }

    /// Begins to refresh a directory, of which all but the end of its list is read when the server hangs.
    void beginRefresh(DirectoryModel &model, const QModelIndex &directory = QModelIndex())
    {
        server->faults().failNext(text("IDirectory2::GetList"), Fault::hang(hangTime), 1);
        model.refresh(directory);
        ASSERT_TRUE(server->faults().waitForHang(patience));
    }

    /// What a view with everything open that has been read would show, one word a row, indented by dots.
    static QString shown(const DirectoryModel &model, const QModelIndex &parent = QModelIndex(), int depth = 0)
    {
        QString all;
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex index = model.index(row, 0, parent);
            all += QString(depth, QLatin1Char('.')) + index.data().toString() + QLatin1Char(' ');
            all += shown(model, index, depth + 1);
        }
        return all;
    }
};

} // namespace

TEST_F(DirectoryModelTest, NothingIsReadBeforeSomebodyAsks)
{
    DirectoryModel model;
    const SignalLog signals(model);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_TRUE(model.hasChildren());
    EXPECT_TRUE(model.canFetchMore(QModelIndex()));
    EXPECT_EQ(server->calls().takeTexts(), QStringList());
}

TEST_F(DirectoryModelTest, TheTopRowsArriveInOnePiece)
{
    DirectoryModel model;
    SignalLog signals(model);
    model.fetchMore(QModelIndex());
    EXPECT_EQ(signals.take(), texts({"loading"}));
    EXPECT_EQ(model.rowCount(), 0); // not on the caller's time
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"inserted . 0-2", "progress 3", "finished"}));
    EXPECT_EQ(shown(model), text("NEWS EMPTY MAIL "));
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
}

TEST_F(DirectoryModelTest, ADirectoryIsReadWhenItIsOpened)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    EXPECT_TRUE(model.canFetchMore(model.indexOf(text("NEWS"))));
    open(model, "NEWS");
    EXPECT_EQ(signals.takeRows(), texts({"inserted NEWS 0-1"}));
    EXPECT_EQ(shown(model), text("NEWS .SPORT .WORLD EMPTY MAIL "));
    EXPECT_FALSE(model.canFetchMore(model.indexOf(text("NEWS"))));
}

TEST_F(DirectoryModelTest, QueuesAndEmptyDirectoriesHaveNothingToOpen)
{
    DirectoryModel model;
    open(model);
    for (const char *path : {"MAIL", "EMPTY"}) {
        EXPECT_FALSE(model.hasChildren(model.indexOf(text(path)))) << path;
        EXPECT_FALSE(model.canFetchMore(model.indexOf(text(path)))) << path;
    }
}

TEST_F(DirectoryModelTest, ADirectoryThatTurnsOutEmptyIsShownAnew)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    ASSERT_EQ(newsroom->removeEntry(text("NEWS.SPORT")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->removeEntry(text("NEWS.WORLD")), Newsroom::Refusal::None);
    open(model, "NEWS");
    EXPECT_EQ(signals.takeRows(), texts({"changed . 0-0"}));
    EXPECT_FALSE(model.hasChildren(model.indexOf(text("NEWS"))));
}

TEST_F(DirectoryModelTest, RolesTellWhatTheServerTells)
{
    NotificationInit(nullptr, nullptr, nullptr); // without searches nothing counts as indexed
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    const QModelIndex news = model.indexOf(text("NEWS"));
    EXPECT_EQ(news.data(PathRole), text("NEWS"));
    EXPECT_EQ(news.data(IdentifierRole), text("NEWS"));
    EXPECT_EQ(news.data(NameRole), text("NEWS"));
    EXPECT_EQ(news.data(TypeRole), int{Item_Directory});
    EXPECT_EQ(news.data(CountRole), 2);
    EXPECT_EQ(news.data(IndexedRole), true);
    EXPECT_FALSE(news.data(LockRole).isValid());
    EXPECT_FALSE(news.data(UrgencyRole).isValid());
    const QModelIndex mail = model.indexOf(text("MAIL"));
    EXPECT_EQ(mail.data(TypeRole), int{Item_Queue});
    EXPECT_EQ(mail.data(LockRole), QVariant(QString()));
    EXPECT_TRUE(mail.data(LockRole).isValid());
    EXPECT_EQ(mail.data(SortedRole), true);
    EXPECT_EQ(mail.data(InvertedRole), false);
    EXPECT_EQ(mail.data(ConfirmEditRole), false);
    EXPECT_FALSE(mail.data(CountRole).isValid());
    const QModelIndex world = model.indexOf(text("news.world"));
    EXPECT_EQ(world.data(LockRole), text("E"));
    EXPECT_EQ(world.data(), text("WORLD"));
    EXPECT_EQ(world.data(PathRole), text("NEWS.WORLD"));
    EXPECT_EQ(model.headerData(0, Qt::Horizontal), text("Name"));
}

TEST_F(DirectoryModelTest, HostsAskByIndexAndByPath)
{
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    const QModelIndex world = model.indexOf(text("News.World"));
    EXPECT_EQ(model.path(world), text("NEWS.WORLD"));
    EXPECT_TRUE(model.isQueue(world));
    EXPECT_FALSE(model.isQueue(world.parent()));
    EXPECT_EQ(model.path(QModelIndex()), text("."));
    EXPECT_FALSE(model.isQueue(QModelIndex()));
    EXPECT_FALSE(model.indexOf(text("NEWS.SPORT.SCORES")).isValid()); // not read
    EXPECT_FALSE(model.indexOf(text("NEWSX")).isValid());
}

TEST_F(DirectoryModelTest, ANameThatBeginsLikeAnotherIsAnother)
{
    ASSERT_EQ(newsroom->addDirectory(text("NEWSDESK")), Newsroom::Refusal::None);
    ASSERT_TRUE(newsroom->addQueue(text("NEWSDESK.WIRE")).ok());
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    open(model, "NEWSDESK");
    EXPECT_EQ(model.path(model.indexOf(text("NEWSDESK.WIRE"))), text("NEWSDESK.WIRE"));
}

TEST_F(DirectoryModelTest, RefreshingWhatHasNotChangedEmitsNothing)
{
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    SignalLog signals(model);
    refresh(model);
    EXPECT_EQ(signals.take(), texts({"loading", "finished"}));
}

TEST_F(DirectoryModelTest, RefreshingChangesTheRowsThatDiffer)
{
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    const QPersistentModelIndex world = model.indexOf(text("NEWS.WORLD"));
    const QPersistentModelIndex mail = model.indexOf(text("MAIL"));
    const QPersistentModelIndex empty = model.indexOf(text("EMPTY"));
    SignalLog signals(model);
    ASSERT_EQ(newsroom->removeEntry(text("EMPTY")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->addDirectory(text("ARCHIVE")), Newsroom::Refusal::None);
    ASSERT_TRUE(newsroom->addQueue(text("NEWS.LOCAL")).ok());
    refresh(model);
    EXPECT_EQ(signals.takeRows(),
              texts({"removed . 1-1", "inserted . 2-2", "changed . 0-0", "inserted NEWS 2-2"})); // NEWS has 3 entries
    EXPECT_EQ(shown(model), text("NEWS .SPORT .WORLD .LOCAL MAIL ARCHIVE "));
    EXPECT_EQ(world.data(PathRole), text("NEWS.WORLD"));
    EXPECT_EQ(mail.row(), 1);
    EXPECT_FALSE(empty.isValid());
}

TEST_F(DirectoryModelTest, RefreshingReadsAllThatIsOpenBelow)
{
    DirectoryModel model;
    for (const char *path : {"", "NEWS", "NEWS.SPORT"})
        open(model, *path ? path : nullptr);
    const QPersistentModelIndex tables = model.indexOf(text("NEWS.SPORT.TABLES"));
    SignalLog signals(model);
    Flags locked;
    locked.set(text("locked"));
    ASSERT_EQ(newsroom->setFlags(text("NEWS.SPORT.TABLES"), locked), Newsroom::Refusal::None);
    refresh(model, "NEWS");
    EXPECT_EQ(signals.takeRows(), texts({"changed NEWS.SPORT 1-1"}));
    EXPECT_TRUE(tables.data(LockRole).isValid());
}

TEST_F(DirectoryModelTest, RefreshingLeavesUnreadDirectoriesUnread)
{
    DirectoryModel model;
    open(model);
    server->calls().take();
    refresh(model, "NEWS");
    EXPECT_EQ(server->calls().takeTexts(), QStringList());
    EXPECT_TRUE(model.canFetchMore(model.indexOf(text("NEWS"))));
}

TEST_F(DirectoryModelTest, RefreshingReadsATopThatCouldNotBeRead)
{
    DirectoryModel model;
    SignalLog signals(model);
    model.refresh(); // nobody has asked for the rows yet
    EXPECT_EQ(signals.take(), QStringList());
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL));
    open(model);
    EXPECT_EQ(model.error(), E_FAIL);
    signals.take();
    refresh(model);
    EXPECT_EQ(signals.take(), texts({"loading", "inserted . 0-2", "progress 3", "finished"}));
    EXPECT_EQ(model.error(), 0);
}

TEST_F(DirectoryModelTest, RefreshingReadsWhatCouldNotBeOpenedBelow)
{
    DirectoryModel model;
    open(model);
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL));
    open(model, "NEWS");
    EXPECT_EQ(shown(model), text("NEWS EMPTY MAIL "));
    refresh(model);
    EXPECT_EQ(shown(model), text("NEWS .SPORT .WORLD EMPTY MAIL "));
}

TEST_F(DirectoryModelTest, ARefreshDuringAFirstReadingThatFailsTriesAgain)
{
    DirectoryModel model;
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL));
    model.fetchMore(QModelIndex());
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(shown(model), text("NEWS EMPTY MAIL "));
}

TEST_F(DirectoryModelTest, AnEntryThatBecomesAnotherKindIsAnotherEntry)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    ASSERT_EQ(newsroom->removeEntry(text("MAIL")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->addDirectory(text("MAIL")), Newsroom::Refusal::None);
    refresh(model);
    EXPECT_EQ(signals.takeRows(), texts({"removed . 2-2", "inserted . 2-2"}));
}

TEST_F(DirectoryModelTest, ARefreshDuringAReadingReadsOnceMore)
{
    DirectoryModel model;
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hang(hangTime), 1); // all but its end has been read
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(server->faults().waitForHang(patience));
    server->calls().take();
    model.refresh();
    model.refresh();
    server->faults().clear();
    SignalLog signals(model);
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take(), texts({"inserted . 0-2", "progress 3", "finished"}));
    // What was asked for first has been answered already.
    EXPECT_EQ(server->calls().takeTexts().filter(text("GetDirectory(")).size(), 1);
}

TEST_F(DirectoryModelTest, ARefreshDuringARefreshShowsWhatChangedMeanwhile)
{
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    beginRefresh(model);
    ASSERT_EQ(newsroom->addDirectory(text("ARCHIVE")), Newsroom::Refusal::None);
    ASSERT_TRUE(newsroom->addQueue(text("NEWS.LOCAL")).ok());
    model.refresh();
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(shown(model), text("NEWS .SPORT .WORLD .LOCAL EMPTY MAIL ARCHIVE "));
}

TEST_F(DirectoryModelTest, ARefreshDuringAReadingThatFailsTriesAgainWhatHadBeenRead)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL));
    model.refresh();
    ASSERT_EQ(newsroom->addDirectory(text("ARCHIVE")), Newsroom::Refusal::None);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(shown(model), text("NEWS EMPTY MAIL ARCHIVE "));
    EXPECT_EQ(model.error(), E_FAIL);
}

TEST_F(DirectoryModelTest, ADirectoryThatGoesWhileItIsReadIsForgotten)
{
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    open(model, "NEWS.SPORT");
    beginRefresh(model, model.indexOf(text("NEWS.SPORT")));
    ASSERT_EQ(newsroom->removeEntry(text("NEWS.SPORT")), Newsroom::Refusal::None);
    model.refresh(model.indexOf(text("NEWS")));
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(shown(model), text("NEWS .WORLD EMPTY MAIL "));
}

TEST_F(DirectoryModelTest, WhatIsReadBelowADirectoryThatGoesIsForgottenWithIt)
{
    DirectoryModel model;
    open(model);
    open(model, "NEWS");
    beginRefresh(model);
    model.fetchMore(model.indexOf(text("NEWS.SPORT"))); // comes after the refresh
    ASSERT_EQ(newsroom->removeEntry(text("NEWS.SPORT")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->removeEntry(text("NEWS.WORLD")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->removeEntry(text("NEWS")), Newsroom::Refusal::None);
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(shown(model), text("EMPTY MAIL "));
}

TEST_F(DirectoryModelTest, EntriesThatMoveUpAreFoundInTheirRows)
{
    DirectoryModel model;
    open(model);
    for (const char *const name : {"NEWS", "EMPTY"}) { // which makes them the last ones
        newsroom->removeEntry(text("NEWS.SPORT"));
        newsroom->removeEntry(text("NEWS.WORLD"));
        ASSERT_EQ(newsroom->removeEntry(text(name)), Newsroom::Refusal::None);
        ASSERT_EQ(newsroom->addDirectory(text(name)), Newsroom::Refusal::None);
    }
    SignalLog signals(model);
    refresh(model);
    EXPECT_EQ(signals.takeRows().first(), text("moved . 2-2 to 0"));
    EXPECT_EQ(shown(model), text("MAIL NEWS EMPTY "));
    int row = 0;
    for (const char *const name : {"MAIL", "NEWS", "EMPTY"})
        EXPECT_EQ(model.indexOf(text(name)).row(), row++);
}

TEST_F(DirectoryModelTest, ARootThatTurnsOutEmptyIsNoRowThatChanges)
{
    DirectoryModel model;
    model.setRootPath(text("EMPTY"));
    SignalLog signals(model);
    open(model);
    EXPECT_EQ(signals.takeRows(), QStringList());
}

TEST_F(DirectoryModelTest, AFailureIsToldInWordsAndTheDirectoryCanBeOpenedAgain)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    const auto refused = static_cast<HRESULT>(0x80040405);
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(refused));
    open(model, "NEWS");
    EXPECT_EQ(signals.take(), texts({"loading", "failed Command is not authorized."}));
    EXPECT_EQ(model.error(), refused);
    EXPECT_EQ(model.errorText(), text("Command is not authorized."));
    EXPECT_TRUE(model.canFetchMore(model.indexOf(text("NEWS"))));
    open(model, "NEWS");
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(model.errorText(), QString());
    EXPECT_EQ(model.rowCount(model.indexOf(text("NEWS"))), 2);
}

TEST_F(DirectoryModelTest, ARefreshThatFailsLeavesTheRows)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL));
    refresh(model);
    EXPECT_EQ(signals.takeRows(), QStringList());
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(shown(model), text("NEWS EMPTY MAIL "));
    EXPECT_FALSE(model.canFetchMore(QModelIndex()));
}

TEST_F(DirectoryModelTest, WhatIsGoneOnTheServerIsToldSo)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    ASSERT_EQ(newsroom->removeEntry(text("NEWS")), Newsroom::Refusal::None);
    open(model, "NEWS");
    EXPECT_EQ(signals.take(), texts({"loading", "failed Entry no longer exists."}));
}

TEST_F(DirectoryModelTest, AfterDisconnectingTheUserIsNotLoggedIn)
{
    DirectoryModel model;
    SignalLog signals(model);
    session->Disconnect();
    open(model);
    EXPECT_EQ(signals.take(), texts({"loading", "failed User not logged in."}));
}

TEST_F(DirectoryModelTest, AfterALogoutByTheServerTheRowsStay)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    ASSERT_EQ(server->triggerLogout(), 1);
    refresh(model);
    EXPECT_EQ(signals.take(), texts({"loading", "failed User not logged in."}));
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(DirectoryModelTest, AModelGoesWhileTheServerHangs)
{
    auto model = std::make_unique<DirectoryModel>();
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hang(hangTime));
    model->fetchMore(QModelIndex());
    ASSERT_TRUE(server->faults().waitForHang(patience));
    QElapsedTimer timer;
    timer.start();
    model.reset();
    EXPECT_LT(timer.elapsed(), hangTime / 2);
    EXPECT_EQ(server->faults().hanging(), 1);
    EXPECT_FALSE(ServerModel::waitForServer(0));
}

TEST_F(DirectoryModelTest, AModelGoesWithAResultOnItsWay)
{
    {
        DirectoryModel model;
        model.fetchMore(QModelIndex());
        ASSERT_TRUE(ServerModel::waitForServer(patience)); // the result waits in the event loop
    }
    QCoreApplication::processEvents();
}

TEST_F(DirectoryModelTest, AnotherRootShowsWhatIsBelowIt)
{
    DirectoryModel model;
    open(model);
    SignalLog signals(model);
    model.setRootPath(text("NEWS.SPORT"));
    EXPECT_EQ(signals.take(), texts({"reset"}));
    EXPECT_EQ(model.rootPath(), text("NEWS.SPORT"));
    open(model);
    EXPECT_EQ(shown(model), text("SCORES TABLES "));
    model.setRootPath(QString());
    EXPECT_EQ(model.rootPath(), text("."));
}

TEST_F(DirectoryModelTest, AnotherRootForgetsWhatIsBeingRead)
{
    DirectoryModel model;
    SignalLog signals(model);
    model.fetchMore(QModelIndex());
    model.setRootPath(text("NEWS"));
    EXPECT_FALSE(model.isLoading());
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    QCoreApplication::processEvents();
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(signals.take(), texts({"loading", "reset"}));
}

TEST_F(DirectoryModelTest, ARootThatIsAQueueIsNoDirectory)
{
    DirectoryModel model;
    SignalLog signals(model);
    model.setRootPath(text("MAIL"));
    open(model);
    EXPECT_EQ(signals.take(), texts({"reset", "loading", "failed Entry no longer exists."}));
}

TEST_F(DirectoryModelTest, ServerCallsAreMadeOffTheModelsThread)
{
    DirectoryModel model;
    open(model);
    const DWORD own = GetCurrentThreadId();
    for (const Newsroom::Call &call : server->calls().take())
        EXPECT_NE(call.threadId, own) << call.text().toStdString();
}

TEST_F(DirectoryModelTest, ADeepTreeIsOpenedAndGoesWithoutRecursion)
{
    QString path = text("NEWS");
    for (int depth = 0; depth < 60; ++depth) {
        path += text(".D");
        ASSERT_EQ(newsroom->addDirectory(path), Newsroom::Refusal::None);
    }
    DirectoryModel model;
    open(model);
    for (int dot = 0; dot >= 0; dot = path.indexOf(QLatin1Char('.'), dot + 1))
        open(model, path.left(path.indexOf(QLatin1Char('.'), dot + 1)).toUtf8().constData());
    EXPECT_TRUE(model.indexOf(path).isValid());
    refresh(model);
    EXPECT_TRUE(model.indexOf(path).isValid());
}

TEST_F(DirectoryModelTest, PassesQtsOwnCheck)
{
    DirectoryModel model;
    const ModelCheck check(model);
    open(model); // where there is no check, nobody else does
    for (const char *path : {"NEWS", "NEWS.SPORT"})
        open(model, path);
    ASSERT_EQ(newsroom->removeEntry(text("NEWS.SPORT.SCORES")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->removeEntry(text("EMPTY")), Newsroom::Refusal::None);
    ASSERT_EQ(newsroom->addDirectory(text("NEWS.SPORT.MORE")), Newsroom::Refusal::None);
    refresh(model);
    EXPECT_EQ(shown(model), text("NEWS .SPORT ..TABLES ..MORE .WORLD MAIL "));
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL));
    refresh(model);
    model.setRootPath(text("NEWS"));
    open(model);
    EXPECT_EQ(model.rowCount(), 2);
}
