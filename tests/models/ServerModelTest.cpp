// What all models have in common.

#include <quire/models/DirectoryModel.h>
#include <quire/models/QueueModel.h>
#include <quire/models/SearchModel.h>
#include <quire/models/StoryFieldsModel.h>

#include <QPointer>
#include <QRegularExpression>

#include <utility>

#include "models/Interruption.h"
#include "models/ModelFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

class ServerModelTest : public ModelTest
{
protected:
    void SetUp() override
    {
        start(text("form STORY\n"
                   "  <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell></zeko:row></zeko:form>\n"
                   "directory Q\n"
                   "  queue X number=12 form=STORY\n"
                   "    story id=5:12:1\n"
                   "      title: Rain\n"
                   "    story id=6:12:1\n"
                   "      title: Sun\n"));
    }

    void failNextDirectory(quint32 code)
    {
        server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(static_cast<HRESULT>(code)));
    }

    /// Shows two directories of which either can be read.
    void openTwoDirectories(DirectoryModel &model)
    {
        ASSERT_EQ(newsroom->addDirectory(text("R")), Newsroom::Refusal::None);
        ASSERT_EQ(newsroom->addDirectory(text("R.S")), Newsroom::Refusal::None);
        model.fetchMore(QModelIndex());
        ASSERT_TRUE(settles(model));
        ASSERT_EQ(model.rowCount(), 2);
    }

    static void open(StoryFieldsModel &model, int part1)
    {
        model.open(text("Q.X"), StoryID{part1, 0, 0});
        ASSERT_TRUE(settles(model));
    }
    static QModelIndex title(const StoryFieldsModel &model) { return model.index(0, StoryFieldsModel::ValueColumn); }
};

} // namespace

TEST_F(ServerModelTest, AFailureIsNeverWithoutWords)
{
    DirectoryModel model;
    SignalLog signals(model);
    for (const quint32 code : {0x80040403U, 0x80040439U, 0x80040801U}) {
        ASSERT_EQ(getErrorString(static_cast<qint32>(code), false), QString());
        failNextDirectory(code);
        model.refresh();
        model.fetchMore(QModelIndex());
        ASSERT_TRUE(settles(model));
        const QString sentence = text("Unexpected error, code = x%1.").arg(code, 0, 16);
        EXPECT_EQ(model.errorText(), sentence);
        EXPECT_EQ(signals.take().last(), text("failed ") + sentence);
    }
}

TEST_F(ServerModelTest, AFailureIsToldInTheWordsOfACommandNotOfASignOn)
{
    const auto code = static_cast<qint32>(0x8007274D); // connection refused
    ASSERT_NE(getErrorString(code, true), getErrorString(code, false));
    DirectoryModel model;
    failNextDirectory(static_cast<quint32>(code));
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), getErrorString(code, false));
}

TEST_F(ServerModelTest, OfSeveralFailuresTheFirstIsTold)
{
    DirectoryModel model;
    openTwoDirectories(model);
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(static_cast<HRESULT>(0x80040405)));
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hresult(E_FAIL), 2);
    model.fetchMore(model.index(0, 0));
    model.fetchMore(model.index(1, 0));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), static_cast<qint32>(0x80040405));
}

TEST_F(ServerModelTest, WhatArrivesWhileASlotWaitsIsShownAfterIt)
{
    DirectoryModel model;
    openTwoDirectories(model);
    const Interruption wait(model, "rowsAboutToBeInserted", [&] {
        ASSERT_TRUE(ServerModel::waitForServer(patience));
        QCoreApplication::processEvents();
        EXPECT_EQ(model.rowCount(model.index(1, 0)), 0);
    });
    model.fetchMore(model.index(0, 0));
    model.fetchMore(model.index(1, 0));
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(wait.happened());
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 1);
    EXPECT_EQ(model.rowCount(model.index(1, 0)), 1);
}

TEST_F(ServerModelTest, AChangeThatIsSavedWhileASlotWaitsEndsAfterIt)
{
    StoryFieldsModel model;
    open(model, 5);
    const Interruption wait(model, "dataChanged", [&] {
        ASSERT_TRUE(ServerModel::waitForServer(patience));
        QCoreApplication::processEvents();
    });
    ASSERT_TRUE(model.setData(title(model), text("Hail")));
    EXPECT_TRUE(wait.happened());
    EXPECT_TRUE(model.isLoading());
    EXPECT_TRUE(settles(model));
    EXPECT_EQ(title(model).data(), text("Hail"));
}

TEST_F(ServerModelTest, WhatNobodyWaitsForAnyMoreIsNotAskedFor)
{
    server->faults().failNext(text("IDirectory2::GetList"), Fault::hang(patience));
    DirectoryModel hanging;
    hanging.fetchMore(QModelIndex());
    ASSERT_TRUE(server->faults().waitForHang(patience));
    {
        QueueModel gone;
        gone.open(text("Q.X"));
        StoryFieldsModel alsoGone;
        alsoGone.open(text("Q.X"), StoryID{5, 0, 0});
    }
    server->calls().takeTexts();
    server->faults().clear();
    ASSERT_TRUE(settles(hanging));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(server->calls().takeTexts().filter(QRegularExpression(text("Queue|Story"))), QStringList());
}

TEST_F(ServerModelTest, TheWordsOfAFailureAreTold)
{
    DirectoryModel model;
    QStringList told;
    QObject::connect(&model, &ServerModel::errorTextChanged, [&](const QString &words) {
        EXPECT_EQ(words, model.errorText());
        told.append(words);
    });
    failNextDirectory(0x80040405);
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(told, texts({"Command is not authorized.", ""}));
}

TEST_F(ServerModelTest, AnEmptiedModelHasNotFailed)
{
    QueueModel queue;
    SearchModel search;
    StoryFieldsModel story;
    DirectoryModel directory;
    queue.open(text("Q.NOWHERE"));
    search.start(text("Q"), Item_Directory, text("rain")); // without notices
    story.open(text("Q.X"), StoryID{99, 0, 0});
    directory.setRootPath(text("NOWHERE"));
    directory.fetchMore(QModelIndex());
    ServerModel *const models[] = {&queue, &search, &story, &directory};
    int told = 0;
    for (ServerModel *model : models) {
        ASSERT_TRUE(settles(*model));
        EXPECT_LT(model->error(), 0);
        QObject::connect(model, &ServerModel::errorTextChanged, [&](const QString &words) {
            EXPECT_EQ(words, QString());
            ++told;
        });
    }
    queue.close();
    search.clear();
    story.close();
    directory.setRootPath(QString());
    for (const ServerModel *model : models) {
        EXPECT_EQ(model->error(), 0);
        EXPECT_EQ(model->errorText(), QString());
    }
    EXPECT_EQ(told, 4);
}

TEST_F(ServerModelTest, AnEmptiedModelIsToldNotToLoadWhenItIsEmpty)
{
    QueueModel model;
    model.open(text("Q.X"));
    QObject::connect(&model, &ServerModel::loadingChanged, [&](bool loading) {
        EXPECT_FALSE(loading);
        EXPECT_EQ(model.path(), QString());
    });
    const Interruption told(model, "loadingChanged", [] {});
    model.close();
    EXPECT_TRUE(told.happened());
}

TEST_F(ServerModelTest, ALoadThatBeginsAsAnotherEndsIsToldAfterIt)
{
    QueueModel model;
    SignalLog signals(model);
    model.open(text("Q.X"));
    QObject::connect(&model, &ServerModel::loadingChanged, [again = true, &model](bool loading) mutable {
        if (!loading && std::exchange(again, false))
            model.refresh();
    });
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take().filter(QRegularExpression(text("loading|finished|failed"))),
              texts({"loading", "finished", "loading", "finished"}));
}

TEST_F(ServerModelTest, TheEndOfALoadThatASlotTurnsAwayFromIsNotTold)
{
    QueueModel model;
    SignalLog signals(model);
    model.open(text("Q.X"));
    QObject::connect(&model, &ServerModel::loadingChanged, [again = true, &model](bool loading) mutable {
        if (!loading && std::exchange(again, false))
            model.open(text("Q.X"));
    });
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.take().filter(QRegularExpression(text("loading|finished|failed"))),
              texts({"loading", "loading", "finished"}));
}

TEST_F(ServerModelTest, AModelThatIsClosedAsTheNextLoadBeginsStaysClosed)
{
    QueueModel model;
    model.open(text("Q.X"));
    QObject::connect(&model, &ServerModel::loadingChanged, [again = true, &model](bool loading) mutable {
        if (!loading && std::exchange(again, false))
            model.refresh(); // before the end of the first load was told
    });
    const Interruption close(model, "finished", [&] { model.close(); });
    ASSERT_TRUE(comes([&] { return close.happened(); }));
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    QCoreApplication::processEvents();
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(ServerModelTest, AModelMayGoWhenItIsToldThatItLoadsNoMore)
{
    QPointer<QueueModel> model = new QueueModel;
    model->open(text("Q.X"));
    QObject::connect(model, &ServerModel::loadingChanged, [&](bool loading) {
        if (!loading)
            delete model;
    });
    EXPECT_TRUE(comes([&] { return !model; }));
}

TEST_F(ServerModelTest, TheNextStoryIsOpenedWhenOneIsSaved)
{
    for (const bool isWhole : {false, true}) {
        StoryFieldsModel model;
        open(model, 5);
        SignalLog signals(model);
        const auto next = [&] {
            model.open(text("Q.X"), StoryID{6, 0, 0});
            EXPECT_TRUE(model.isLoading());
        };
        if (isWhole)
            QObject::connect(&model, &StoryFieldsModel::storySaved, next);
        else
            QObject::connect(&model, &StoryFieldsModel::saved, next);
        ASSERT_TRUE(model.setData(title(model), text(isWhole ? "Hail" : "Snow")));
        ASSERT_TRUE(comes([&] { return !model.isLoading() && model.storyID().part1 == 6; }));
        EXPECT_EQ(title(model).data(), text("Sun"));
        const QStringList lines = signals.take();
        EXPECT_EQ(lines.filter(text("finished")).size(), 1) << lines.join(text(", ")).toStdString();
        EXPECT_TRUE(isOrderly(lines));
        model.refresh();
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(signals.take(), texts({"loading", "finished"}));
    }
}

TEST_F(ServerModelTest, AStoryModelMayGoWhenAStoryIsSaved)
{
    QPointer<StoryFieldsModel> model = new StoryFieldsModel;
    open(*model, 5);
    QObject::connect(model, &StoryFieldsModel::storySaved, [&] { delete model; });
    ASSERT_TRUE(model->setData(title(*model), text("Hail")));
    EXPECT_TRUE(comes([&] { return !model; }));
}

TEST_F(ServerModelTest, AStoryThatIsClosedAsItIsChangedIsSaved)
{
    for (const char *signal : {"dataChanged", "loadingStarted", "loadingChanged"}) {
        StoryFieldsModel model;
        open(model, 5);
        const Interruption close(model, signal, [&] { model.close(); });
        ASSERT_TRUE(model.setData(title(model), text(signal)));
        EXPECT_TRUE(close.happened());
        EXPECT_FALSE(model.isLoading());
        ASSERT_TRUE(ServerModel::waitForServer(patience));
        QCoreApplication::processEvents();
        EXPECT_EQ(newsroom->story(5).value->text().fieldValue(text("title")), text(signal));
        EXPECT_EQ(model.rowCount(), 0);
    }
}
