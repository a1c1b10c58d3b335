#include "models/StoryFieldsModelFixture.h"

// A lock whose session ends.

using namespace Quire;
using Newsroom::Fault;
using Newsroom::Refusal;

namespace {

class StoryFieldsModelSessionTest : public EditedStoryFixture
{
protected:
    /// Has the title set under a lock, not saved; notes from then on what is told of the lock and of others' changes.
    static void editUnderLock(StoryFieldsModel &model, QStringList &told)
    {
        openToEdit(model);
        lock(model);
        noteLocks(model, told);
        noteChanges(model, told);
        ASSERT_TRUE(set(model, "title", "Hail"));
    }
};

} // namespace

TEST_F(StoryFieldsModelSessionTest, ALockGoesWithItsSession)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    QStringList told;
    noteLocks(model, told);
    signOnAnew();
    refresh(model);
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(told, texts({"free"}));
    EXPECT_EQ(model.error(), 0);
    benWrites("Ben: three dead.");
    lock(model);
    EXPECT_TRUE(model.isLocked());
    EXPECT_EQ(holder(), text("ann"));
    EXPECT_TRUE(model.body().contains(text("Ben: three dead.")));
}

TEST_F(StoryFieldsModelSessionTest, AfterSigningOnAnewASaveTakesALockOfItsOwn)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    ASSERT_TRUE(set(model, "title", "Hail"));
    signOnAnew();
    refresh(model);
    ASSERT_EQ(newsroom->lock(ben, 5, 1).refusal, Refusal::None);
    QString who;
    QObject::connect(&model, &StoryFieldsModel::lockRefused, [&](const QString &by) { who = by; });
    save(model);
    EXPECT_EQ(who, text("ben"));
    EXPECT_TRUE(model.isModified());
    ASSERT_EQ(newsroom->unlock(ben, 5), Refusal::None);
    server->calls().take();
    save(model);
    const QStringList calls = storyCalls();
    EXPECT_EQ(calls.filter(text("Lock(1)")), texts({"Lock(1)"}));
    EXPECT_EQ(calls.filter(text("Unlock")), texts({"Unlock()"}));
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelSessionTest, ASaveOnALockOfAnotherSessionTakesOneOfItsOwnAndTellsThatItIsGone)
{
    StoryFieldsModel model;
    QStringList told;
    ASSERT_NO_FATAL_FAILURE(editUnderLock(model, told));
    signOnAnew();
    save(model); // without a refresh
    EXPECT_EQ(model.error(), 0);
    EXPECT_EQ(told, texts({"free"}));
    EXPECT_FALSE(model.isModified());
    EXPECT_EQ(onServer("title"), text("Hail"));
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelSessionTest, ASaveOnALockOfAnotherSessionReplacesNothingNew)
{
    StoryFieldsModel model;
    QStringList told;
    ASSERT_NO_FATAL_FAILURE(editUnderLock(model, told));
    signOnAnew();
    benSaves("title", "Flood");
    save(model);
    EXPECT_EQ(told, texts({"title", "free"}));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_EQ(onServer("title"), text("Flood"));
    EXPECT_EQ(value(model, "title"), text("Hail"));
    save(model); // now that it is known
    EXPECT_EQ(onServer("title"), text("Hail"));
}

TEST_F(StoryFieldsModelSessionTest, ASaveWithoutASessionFailsInWordsAndTellsThatTheLockIsGone)
{
    StoryFieldsModel model;
    QStringList told;
    ASSERT_NO_FATAL_FAILURE(editUnderLock(model, told));
    session->Disconnect();
    save(model);
    EXPECT_EQ(model.errorText(), text("User not logged in."));
    EXPECT_EQ(told, texts({"free"}));
    EXPECT_EQ(value(model, "title"), text("Hail"));
    EXPECT_EQ(onServer("title"), text("Rain"));
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("a"), 0), 0);
    save(model);
    EXPECT_EQ(onServer("title"), text("Hail"));
}

TEST_F(StoryFieldsModelSessionTest, RefreshingAndLockingInOneGoHoldsALockOfTheNewSession)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    QStringList told;
    noteLocks(model, told);
    signOnAnew();
    model.refresh();
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(told, texts({"free", "locked"}));
    EXPECT_EQ(holder(), text("ann"));
}

TEST_F(StoryFieldsModelSessionTest, RefreshingWithoutASessionTellsThatTheLockIsGone)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    session->Disconnect();
    refresh(model);
    EXPECT_EQ(model.errorText(), text("User not logged in."));
    EXPECT_FALSE(model.isLocked());
}

TEST_F(StoryFieldsModelSessionTest, RefreshingInTheSameSessionKeepsTheLock)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    QStringList told;
    noteLocks(model, told);
    refresh(model);
    model.refresh();
    model.lock();
    ASSERT_TRUE(settles(model));
    EXPECT_TRUE(model.isLocked());
    EXPECT_EQ(told, QStringList());
    EXPECT_EQ(holder(), text("ann"));
}

TEST_F(StoryFieldsModelSessionTest, ALockThatTheServerHasBrokenIsTold)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    ASSERT_EQ(newsroom->breakLock(5), Refusal::None);
    refresh(model);
    EXPECT_FALSE(model.isLocked());
}

TEST_F(StoryFieldsModelSessionTest, ASaveOnALockThatTheServerHasBrokenReplacesNothingNew)
{
    StoryFieldsModel model;
    QStringList told;
    ASSERT_NO_FATAL_FAILURE(editUnderLock(model, told));
    ASSERT_EQ(newsroom->breakLock(5), Refusal::None);
    benSaves("title", "Flood");
    save(model); // without a refresh
    EXPECT_EQ(told, texts({"title", "free"}));
    EXPECT_EQ(model.error(), changedState);
    EXPECT_EQ(onServer("title"), text("Flood"));
    EXPECT_EQ(value(model, "title"), text("Hail"));
    EXPECT_EQ(holder(), QString());
}

TEST_F(StoryFieldsModelSessionTest, ASaveOnALockThatTheServerHasBrokenIsRefusedWhileSomebodyElseEdits)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    ASSERT_TRUE(set(model, "title", "Hail"));
    ASSERT_EQ(newsroom->breakLock(5), Refusal::None);
    ASSERT_EQ(newsroom->lock(ben, 5, 1).refusal, Refusal::None);
    save(model);
    EXPECT_NE(model.error(), 0);
    EXPECT_EQ(onServer("title"), text("Rain"));
    EXPECT_EQ(value(model, "title"), text("Hail"));
    EXPECT_EQ(holder(), text("ben"));
}

TEST_F(StoryFieldsModelSessionTest, ALockOfAStoryThatIsNotFoundAnyMoreIsGivenBack)
{
    StoryFieldsModel model;
    openToEdit(model);
    lock(model);
    server->faults().failNext(text("ISignon4::GetStory"), Fault::hresult(E_FAIL));
    refresh(model);
    EXPECT_NE(model.error(), 0);
    EXPECT_FALSE(model.isLocked());
    EXPECT_EQ(holder(), QString());
}
