#include "models/StoryFieldsModelFixture.h"

// Two people edit a story: what somebody else has saved meanwhile.

using namespace Quire;
using Newsroom::Fault;

namespace {

class StoryFieldsModelTogetherTest : public EditedStoryFixture
{};

} // namespace

// ---- what is read under the lock ------------------------------------------------------------------------------------

TEST_F(StoryFieldsModelTogetherTest, TheLockComesWithWhatHasBeenSavedSince)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList changes;
    noteChanges(model, changes);
    benWrites("Ben: three dead.");
    benSaves("title", "Flood");
    QString bodyWithLock;
    QString titleWithLock;
    QObject::connect(&model, &StoryFieldsModel::lockedChanged, [&] {
        bodyWithLock = model.body();
        titleWithLock = value(model, "title");
    });
    lock(model);
    EXPECT_TRUE(model.isLocked());
    EXPECT_TRUE(bodyWithLock.contains(text("Ben: three dead."))) << bodyWithLock.toStdString();
    EXPECT_EQ(titleWithLock, text("Flood"));
    EXPECT_EQ(changes, QStringList()); // nothing was being edited
}

TEST_F(StoryFieldsModelTogetherTest, WhatIsReadWithTheLockIsReadUnderIt)
{
    StoryFieldsModel model;
    openToEdit(model);
    server->calls().take();
    lock(model);
    const QStringList calls = storyCalls();
    ASSERT_FALSE(calls.isEmpty());
    EXPECT_EQ(calls.first(), text("Lock(1)"));
    EXPECT_EQ(calls.last(), text("get_SectionXml(8)"));
}

TEST_F(StoryFieldsModelTogetherTest, AnEditThatBeganBeforeTheLockStaysAndIsTold)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList told;
    noteLocks(model, told);
    noteChanges(model, told);
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(model.setBody(written("It hails.")));
    benSaves("title", "Flood");
    benSaves("note", "heard");
    benWrites("Ben: three dead.");
    lock(model);
    EXPECT_EQ(told, texts({"title and text", "locked"}));
    EXPECT_EQ(value(model, "title"), text("Hail"));
    EXPECT_EQ(model.body(), written("It hails."));
    EXPECT_EQ(value(model, "note"), text("heard"));
    EXPECT_TRUE(model.isModified());
    EXPECT_EQ(onServer("title"), text("Flood"));
    save(model); // now that it is known
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_TRUE(bodyOnServer().contains(text("It hails.")));
    EXPECT_EQ(told.size(), 2);
}

TEST_F(StoryFieldsModelTogetherTest, DiscardingAnEditShowsWhatHasBeenSavedSince)
{
    StoryFieldsModel model;
    openToEdit(model);
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(model.setBody(written("It hails.")));
    benSaves("title", "Flood");
    benWrites("Ben: three dead.");
    lock(model);
    model.discard();
    EXPECT_EQ(value(model, "title"), text("Flood"));
    EXPECT_TRUE(model.body().contains(text("Ben: three dead.")));
}

TEST_F(StoryFieldsModelTogetherTest, WhatSomebodyElseHasSetToTheSameIsNotTold)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList told;
    noteChanges(model, told);
    ASSERT_TRUE(set(model, "title", "Flood"));
    benSaves("title", "Flood");
    lock(model);
    EXPECT_EQ(told, QStringList());
}

TEST_F(StoryFieldsModelTogetherTest, RefreshingTellsOfEditsThatAreOutdated)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList told;
    noteChanges(model, told);
    ASSERT_TRUE(set(model, "title", "Hail"));
    benSaves("title", "Flood");
    refresh(model);
    EXPECT_EQ(told, texts({"title"}));
    refresh(model);
    lock(model);
    EXPECT_EQ(told, texts({"title"})); // once
    EXPECT_EQ(value(model, "title"), text("Hail"));
}

TEST_F(StoryFieldsModelTogetherTest, ALockWithoutWhatIsThereIsGivenBack)
{
    StoryFieldsModel model;
    openToEdit(model);
    server->faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL));
    lock(model);
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(holder(), QString());
    lock(model);
    EXPECT_TRUE(model.isLocked());
    EXPECT_EQ(holder(), text("ann"));
}

// ---- what is saved without a lock of one's own ----------------------------------------------------------------------

TEST_F(StoryFieldsModelTogetherTest, SavingWithoutALockLeavesWhatHasBeenSavedSinceUntilTheNextSave)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList told;
    noteChanges(model, told);
    QObject::connect(&model, &StoryFieldsModel::storySaved, [&] { told.append(text("saved")); });
    QObject::connect(&model, &StoryFieldsModel::failed, [&] { told.append(text("failed")); });
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(model.setBody(written("It hails.")));
    benWrites("Ben: three dead.");
    save(model);
    EXPECT_EQ(told, texts({" and text", "failed"}));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_EQ(model.errorText(), getErrorString(changedState, false));
    EXPECT_EQ(onServer("title"), text("Rain"));
    EXPECT_TRUE(bodyOnServer().contains(text("Ben: three dead.")));
    EXPECT_EQ(value(model, "title"), text("Hail"));
    EXPECT_EQ(model.body(), written("It hails."));
    EXPECT_TRUE(model.isModified());
    EXPECT_EQ(holder(), QString());
    save(model); // now that it is known
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_TRUE(bodyOnServer().contains(text("It hails.")));
    EXPECT_FALSE(model.isModified());
}

TEST_F(StoryFieldsModelTogetherTest, OtherFieldsThatHaveBeenSavedSinceStay)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList told;
    noteChanges(model, told);
    ASSERT_TRUE(set(model, "title", "Hail"));
    benSaves("note", "heard");
    benWrites("Ben: three dead.");
    save(model);
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(told, QStringList());
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_EQ(onServer("note"), text("heard"));
    EXPECT_TRUE(bodyOnServer().contains(text("Ben: three dead.")));
    EXPECT_EQ(value(model, "note"), text("heard"));
    EXPECT_TRUE(model.body().contains(text("Ben: three dead.")));
}

TEST_F(StoryFieldsModelTogetherTest, ATextSavedAtOnceDoesNotReplaceANewerOne)
{
    StoryFieldsModel model;
    openAtOnce(model);
    QStringList told;
    noteChanges(model, told);
    benWrites("Ben: three dead.");
    ASSERT_TRUE(model.setBody(written("It hails.")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(told, texts({" and text"}));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_TRUE(bodyOnServer().contains(text("Ben: three dead.")));
    EXPECT_TRUE(model.body().contains(text("Ben: three dead.")));
    EXPECT_FALSE(model.isModified());
    EXPECT_EQ(holder(), QString());
    ASSERT_TRUE(model.setBody(written("It hails, and three are dead.")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), 0);
    EXPECT_TRUE(bodyOnServer().contains(text("It hails, and three are dead.")));
}

TEST_F(StoryFieldsModelTogetherTest, AValueSavedAtOnceDoesNotReplaceANewerOne)
{
    StoryFieldsModel model;
    openAtOnce(model);
    QStringList told;
    noteChanges(model, told);
    benSaves("title", "Flood");
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(told, texts({"title"}));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_EQ(onServer("title"), text("Flood"));
    EXPECT_EQ(value(model, "title"), text("Flood"));
    EXPECT_EQ(cell(model, "title").data(PendingRole), false);
}

TEST_F(StoryFieldsModelTogetherTest, AnEmptiedFieldIsAChangeToo)
{
    StoryFieldsModel model;
    openAtOnce(model);
    benSaves("title", "");
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_EQ(onServer("title"), QString());
}

TEST_F(StoryFieldsModelTogetherTest, WhatCannotBeLookedAtIsNotReplaced)
{
    StoryFieldsModel model;
    openAtOnce(model);
    server->faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL));
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), E_FAIL);
    EXPECT_EQ(onServer("title"), text("Rain"));
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelTogetherTest, WhatIsSetWhileTheOneBeforeIsSavedFollowsIt)
{
    StoryFieldsModel model;
    openAtOnce(model);
    QStringList told;
    noteChanges(model, told);
    ASSERT_TRUE(set(model, "audio-time", "65")); // which the server has as 1:05
    ASSERT_TRUE(set(model, "audio-time", "2:05"));
    ASSERT_TRUE(model.setBody(written("It hails.")));
    ASSERT_TRUE(model.setBody(written("It sleets.")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(told, QStringList());
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(value(model, "audio-time"), text("2:05"));
    EXPECT_TRUE(bodyOnServer().contains(text("It sleets.")));
}

TEST_F(StoryFieldsModelTogetherTest, NoneOfSeveralChangesReplacesANewerText)
{
    StoryFieldsModel model;
    openAtOnce(model);
    benWrites("Ben: three dead.");
    ASSERT_TRUE(model.setBody(written("It hails.")));
    ASSERT_TRUE(model.setBody(written("It sleets.")));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_TRUE(bodyOnServer().contains(text("Ben: three dead.")));
    EXPECT_TRUE(model.body().contains(text("Ben: three dead.")));
}

TEST_F(StoryFieldsModelTogetherTest, WhatOneSavedOneselfIsNoNews)
{
    StoryFieldsModel model;
    openToEdit(model);
    QStringList told;
    noteChanges(model, told);
    ASSERT_TRUE(set(model, "audio-time", "65"));
    ASSERT_TRUE(model.setBody(text("<body><p>Hail</p>\n\n<p>and sleet</p></body>")));
    model.save();
    ASSERT_TRUE(set(model, "audio-time", "66"));
    ASSERT_TRUE(model.setBody(written("It sleets.")));
    ASSERT_TRUE(settles(model));
    save(model);
    EXPECT_EQ(told, QStringList());
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(value(model, "audio-time"), text("1:06"));
}

TEST_F(StoryFieldsModelTogetherTest, OneFieldSavedAtOnceIsAskedForOnceMore)
{
    StoryFieldsModel model;
    open(model);
    server->calls().take();
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(settles(model));
    const QStringList calls = storyCalls();
    ASSERT_GT(calls.size(), 5);
    EXPECT_EQ(calls.mid(0, 4),
              texts({"Lock(1)", "get_Field(\"title\")", "put_Field(\"title\", \"Hail\")", "Save(true)"}));
    EXPECT_EQ(calls.last(), text("Unlock()")); // so that what is read is what was saved
    EXPECT_EQ(calls.filter(text("get_Field(\"title\")")).size(), 2);
}

TEST_F(StoryFieldsModelTogetherTest, UnderALockItIsAskedOnlyWhetherThatIsHeldBeforeItIsWritten)
{
    StoryFieldsModel model;
    openAtOnce(model);
    lock(model);
    server->calls().take();
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(storyCalls().mid(0, 3), texts({"IsLocked(1)", "put_Field(\"title\", \"Hail\")", "Save(true)"}));
}
