#include "models/StoryFieldsModelFixture.h"

using namespace Quire;
using Newsroom::Fault;
using Newsroom::Refusal;

namespace {

/// Several changes in one save, and the text.
class StoryFieldsModelSavingTest : public StoryFieldsFixture
{
protected:
    static constexpr int titleRow = 0;
    static constexpr int noteRow = 1;

    void SetUp() override
    {
        start(text("form STORY\n"
                   "  <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell>"
                   "<zeko:cell idref=note>Note</zeko:cell></zeko:row></zeko:form>\n"
                   "directory Q\n"
                   "  queue X number=12 form=STORY\n"
                   "    story id=5:12:1\n"
                   "      title: Rain\n"
                   "      note: seen\n"
                   "\n"
                   "      It rains.\n"
                   "    story id=6:12:1\n"
                   "      title: Sun\n"));
        ben = signOnBen();
    }

    static void open(StoryFieldsModel &model, int part1 = 5)
    {
        model.setSavesAtOnce(false);
        model.setReadsBody(true);
        StoryFieldsFixture::open(model, part1);
    }
    QStringList writes()
    {
        QStringList all;
        for (const QString &call : server->calls().takeTexts()) {
            if (call.contains(text("Lock(")) || call.contains(text("put_")) || call.contains(text("Save")) ||
                call.contains(text("Unlock")))
                all.append(call.section(QLatin1Char(','), 0, 0));
        }
        return all;
    }
};

} // namespace

TEST_F(StoryFieldsModelSavingTest, WhatIsSetStaysHereUntilItIsSaved)
{
    StoryFieldsModel model;
    open(model);
    QStringList told;
    QObject::connect(&model, &StoryFieldsModel::modifiedChanged,
                     [&](bool modified) { told.append(text(modified ? "modified" : "as saved")); });
    server->calls().take();
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    ASSERT_TRUE(set(model, noteRow, "heard"));
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(value(model, titleRow), text("Hail"));
    EXPECT_EQ(cell(model, titleRow).data(PendingRole), true);
    EXPECT_TRUE(model.isModified());
    EXPECT_EQ(writes(), QStringList());
    EXPECT_EQ(onServer("title"), text("Rain"));
    EXPECT_EQ(told, texts({"modified"}));
}

TEST_F(StoryFieldsModelSavingTest, SavingWritesAllInOneGo)
{
    StoryFieldsModel model;
    open(model);
    int saves = 0;
    QObject::connect(&model, &StoryFieldsModel::storySaved, [&] { ++saves; });
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    ASSERT_TRUE(set(model, noteRow, "heard"));
    ASSERT_TRUE(model.setBody(text("<body><p>It hails.</p></body>")));
    server->calls().take();
    model.save();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(writes(), texts({"IStory2::Lock(1)", "IStory2::put_Field(\"title\"", "IStory2::put_Field(\"note\"",
                               "IStory2::put_SectionXml(8", "IStory2::Save(true)", "IStory2::Unlock()"}));
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_EQ(onServer("note"), text("heard"));
    EXPECT_EQ(cell(model, titleRow).data(PendingRole), false);
    EXPECT_FALSE(model.isModified());
    EXPECT_TRUE(model.body().contains(text("It hails.")));
    EXPECT_EQ(saves, 1);
}

TEST_F(StoryFieldsModelSavingTest, WithoutAChangeNothingIsSaved)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    ASSERT_TRUE(set(model, titleRow, "Rain"));
    EXPECT_FALSE(model.isModified());
    server->calls().take();
    model.save();
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(writes(), QStringList());
}

TEST_F(StoryFieldsModelSavingTest, WhatCouldNotBeSavedStaysSet)
{
    StoryFieldsModel model;
    open(model);
    for (const char *operation : {"IStory2::put_Field", "IStory2::put_SectionXml", "IStory2::Save"}) {
        ASSERT_TRUE(set(model, titleRow, "Hail"));
        ASSERT_TRUE(model.setBody(text("<body><p>It hails.</p></body>")));
        server->faults().failNext(text(operation), Fault::hresult(static_cast<HRESULT>(0x80040405)));
        model.save();
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(model.errorText(), text("Command is not authorized.")) << operation;
        EXPECT_EQ(value(model, titleRow), text("Hail")) << operation;
        EXPECT_EQ(model.body(), text("<body><p>It hails.</p></body>")) << operation;
        EXPECT_TRUE(model.isModified()) << operation;
        EXPECT_EQ(onServer("title"), text("Rain")) << operation;
    }
    model.save();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_FALSE(model.isModified());
}

TEST_F(StoryFieldsModelSavingTest, WhatWasSavedIsSavedThoughItCannotBeReadAgain)
{
    for (const Fault &fault : {Fault::hresult(E_FAIL), Fault::raise(E_FAIL), Fault::outOfMemory()}) {
        StoryFieldsModel model;
        open(model);
        model.lock(); // so that nothing is asked before it is written
        ASSERT_TRUE(settles(model));
        ASSERT_TRUE(set(model, titleRow, "Hail"));
        ASSERT_TRUE(model.setBody(text("<body><p>It hails.</p></body>")));
        SignalLog signals(model);
        QStringList told;
        QObject::connect(&model, &StoryFieldsModel::saved, [&](const QString &field) { told.append(field); });
        QObject::connect(&model, &StoryFieldsModel::storySaved, [&] { told.append(text("story")); });
        QObject::connect(&model, &StoryFieldsModel::failed, [&] { told.append(text("failed")); });
        server->faults().failEvery(text("IStory2::get_Field"), fault);
        model.save();
        ASSERT_TRUE(settles(model));
        server->faults().clear();
        EXPECT_EQ(told, texts({"title", "story", "failed"}));
        EXPECT_LT(model.error(), 0);
        EXPECT_FALSE(model.isModified());
        EXPECT_EQ(value(model, titleRow), text("Hail"));
        EXPECT_EQ(cell(model, titleRow).data(PendingRole), false);
        EXPECT_EQ(value(model, noteRow), text("seen"));
        EXPECT_EQ(model.body(), text("<body><p>It hails.</p></body>"));
        EXPECT_EQ(onServer("title"), text("Hail"));
        model.refresh();
        ASSERT_TRUE(settles(model));
        EXPECT_EQ(model.error(), 0);
        ASSERT_TRUE(set(model, titleRow, "Rain"));
        model.save();
        ASSERT_TRUE(settles(model));
    }
}

TEST_F(StoryFieldsModelSavingTest, AValueSavedAtOnceStaysThoughItCannotBeReadAgain)
{
    StoryFieldsModel model;
    open(model);
    model.setSavesAtOnce(true);
    QStringList told;
    QObject::connect(&model, &StoryFieldsModel::saved, [&](const QString &field) { told.append(field); });
    server->faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL), 2); // the first is before the change
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(told, texts({"title"}));
    EXPECT_EQ(value(model, titleRow), text("Hail"));
    EXPECT_EQ(onServer("title"), text("Hail"));
}

TEST_F(StoryFieldsModelSavingTest, ATextThatIsDiscardedWhileItIsSavedIsShownAsSaved)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(model.setBody(text("<body><p>It hails.</p></body>")));
    server->faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL));
    model.save();
    model.discard();
    QStringList bodies;
    QObject::connect(&model, &StoryFieldsModel::bodyChanged, [&] { bodies.append(model.body()); });
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(bodies, texts({"<body><p>It hails.</p></body>"}));
}

TEST_F(StoryFieldsModelSavingTest, ARefusedLockKeepsWhatWasSet)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_EQ(newsroom->lock(ben, 5, 1).refusal, Refusal::None);
    QString who;
    QObject::connect(&model, &StoryFieldsModel::lockRefused, [&](const QString &holder) { who = holder; });
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    model.save();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(who, text("ben"));
    EXPECT_EQ(value(model, titleRow), text("Hail"));
    EXPECT_TRUE(model.isModified());
}

TEST_F(StoryFieldsModelSavingTest, WhatIsSetDuringASaveIsKeptForTheNext)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    ASSERT_TRUE(model.setBody(text("<body><p>It hails.</p></body>")));
    model.save();
    ASSERT_TRUE(set(model, titleRow, "Sleet"));
    ASSERT_TRUE(model.setBody(text("<body><p>It sleets.</p></body>")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_EQ(value(model, titleRow), text("Sleet"));
    EXPECT_EQ(model.body(), text("<body><p>It sleets.</p></body>"));
    EXPECT_TRUE(model.isModified());
    model.save();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(onServer("title"), text("Sleet"));
    EXPECT_FALSE(model.isModified());
}

TEST_F(StoryFieldsModelSavingTest, DiscardingShowsTheServersValuesAgain)
{
    StoryFieldsModel model;
    open(model);
    const QString body = model.body();
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    ASSERT_TRUE(model.setBody(text("<body></body>")));
    model.discard();
    EXPECT_EQ(value(model, titleRow), text("Rain"));
    EXPECT_EQ(cell(model, titleRow).data(PendingRole), false);
    EXPECT_EQ(model.body(), body);
    EXPECT_FALSE(model.isModified());
}

TEST_F(StoryFieldsModelSavingTest, RefreshingLeavesWhatWasSet)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    benSaves("title", "Sun");
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(value(model, titleRow), text("Hail"));
    model.discard();
    EXPECT_EQ(value(model, titleRow), text("Sun"));
}

TEST_F(StoryFieldsModelSavingTest, AnotherStoryForgetsWhatWasSet)
{
    StoryFieldsModel model;
    open(model);
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    open(model, 6);
    EXPECT_FALSE(model.isModified());
    EXPECT_EQ(value(model, titleRow), text("Sun"));
    EXPECT_EQ(onServer("title"), text("Rain"));
}

TEST_F(StoryFieldsModelSavingTest, TheTextIsReadWhenAskedFor)
{
    StoryFieldsModel model;
    server->calls().take();
    model.open(text("Q.X"), StoryID{5, 0, 0});
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(server->calls().takeTexts().filter(text("get_SectionXml(8")), QStringList());
    EXPECT_EQ(model.body(), QString());
    EXPECT_FALSE(model.setBody(text("<body></body>")));
    int bodies = 0;
    QObject::connect(&model, &StoryFieldsModel::bodyChanged, [&] { ++bodies; });
    model.setReadsBody(true);
    model.refresh();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(model.body().contains(text("<p>It rains.</p>"))) << model.body().toStdString();
    EXPECT_EQ(bodies, 1);
    EXPECT_FALSE(model.setBody(QString()));
}

TEST_F(StoryFieldsModelSavingTest, TheTextIsSavedAtOnceUnlessToldOtherwise)
{
    StoryFieldsModel model;
    open(model);
    const QString before = model.body();
    model.setSavesAtOnce(true);
    ASSERT_TRUE(model.setBody(text("<body><p>It hails.</p></body>")));
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(newsroom->story(5).value->text().body.contains(text("It hails.")));
    const QString after = model.body();
    EXPECT_NE(after, before);
    server->faults().failNext(text("IStory2::Save"), Fault::hresult(E_FAIL));
    ASSERT_TRUE(model.setBody(text("<body><p>It sleets.</p></body>")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.body(), after);
    EXPECT_FALSE(model.isModified());
}

TEST_F(StoryFieldsModelSavingTest, AfterSigningOnAnewWhatWasSetCanBeSaved)
{
    StoryFieldsModel model;
    open(model);
    model.lock();
    ASSERT_TRUE(settles(model));
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    session->Disconnect();
    model.save();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), text("User not logged in."));
    EXPECT_TRUE(model.isModified());
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("a"), 0), 0);
    model.unlock();
    model.refresh();
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(model.isLocked());
    model.save();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.errorText(), QString());
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_FALSE(model.isModified());
}

TEST_F(StoryFieldsModelSavingTest, PassesQtsOwnCheck)
{
    StoryFieldsModel model;
    const ModelCheck check(model);
    open(model);
    ASSERT_TRUE(set(model, titleRow, "Hail"));
    model.save();
    ASSERT_TRUE(settles(model));
    ASSERT_TRUE(set(model, noteRow, "heard"));
    model.discard();
    EXPECT_EQ(value(model, titleRow), text("Hail"));
}
