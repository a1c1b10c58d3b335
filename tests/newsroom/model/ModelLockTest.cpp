#include "EditingFixture.h"

using namespace Newsroom;

using ModelLockTest = EditingFixture;

TEST_F(ModelLockTest, ALockIsSeenByEverybodyByItsTypeBits)
{
    EXPECT_FALSE(model->isLocked(10, 0).value);
    EXPECT_EQ(model->lock(nora, 10, 4).refusal, Refusal::None);
    EXPECT_TRUE(model->isLocked(10, 0).value);
    EXPECT_TRUE(model->isLocked(10, 4).value);
    EXPECT_TRUE(model->isLocked(10, 6).value);
    EXPECT_FALSE(model->isLocked(10, 1).value);
    EXPECT_EQ(model->lockHolder(10).value, QStringLiteral("nora"));
}

TEST_F(ModelLockTest, OwnLockAgainAddsTheTypeBit)
{
    model->lock(nora, 10, 1);
    EXPECT_EQ(model->lock(nora, 10, 2).refusal, Refusal::None);
    EXPECT_TRUE(model->isLocked(10, 1).value);
    EXPECT_TRUE(model->isLocked(10, 2).value);
}

TEST_F(ModelLockTest, AnotherSessionIsToldTheHolderInThreeWords)
{
    model->lock(nora, 10, 1);
    const LockAnswer answer = model->lock(omar, 10, 2);
    EXPECT_EQ(answer.refusal, Refusal::StoryBeingEdited);
    EXPECT_EQ(answer.holder, QStringLiteral("user nora editing"));
    EXPECT_FALSE(model->isLocked(10, 2).value);
}

TEST_F(ModelLockTest, TheSameUsersOtherSessionIsAnotherSession)
{
    model->lock(nora, 10, 1);
    EXPECT_EQ(model->lock(signOn("nora"), 10, 1).refusal, Refusal::StoryBeingEdited);
}

TEST_F(ModelLockTest, UnlockReleasesWhateverTypesWereLocked)
{
    model->lock(nora, 10, 1);
    model->lock(nora, 10, 2);
    EXPECT_EQ(model->unlock(nora, 10), Refusal::None);
    EXPECT_FALSE(model->isLocked(10, 0).value);
    EXPECT_EQ(model->lockHolder(10).value, QString());
    EXPECT_EQ(model->lock(omar, 10, 1).refusal, Refusal::None);
}

TEST_F(ModelLockTest, UnlockOfAnUnlockedStoryIsFine)
{
    EXPECT_EQ(model->unlock(nora, 10), Refusal::None);
    EXPECT_EQ(model->unlock(intern, 10), Refusal::None);
}

TEST_F(ModelLockTest, UnlockByAnotherSessionIsRefused)
{
    model->lock(nora, 10, 1);
    EXPECT_EQ(model->unlock(omar, 10), Refusal::Locked);
    EXPECT_TRUE(model->isLocked(10, 1).value);
}

TEST_F(ModelLockTest, SigningOffReleasesTheSessionsLocks)
{
    model->lock(nora, 10, 1);
    model->lock(nora, 11, 1);
    model->lock(omar, 30, 1);
    model->signOff(nora);
    EXPECT_FALSE(model->isLocked(10, 0).value);
    EXPECT_FALSE(model->isLocked(11, 0).value);
    EXPECT_TRUE(model->isLocked(30, 0).value);
}

TEST_F(ModelLockTest, GoneStoriesCannotBeLocked)
{
    EXPECT_EQ(model->lock(nora, 99, 1).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->unlock(nora, 99), Refusal::EntryGone);
    EXPECT_EQ(model->isLocked(99, 0).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->lockHolder(99).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->lockElsewhere(99, QStringLiteral("x"), 1), Refusal::EntryGone);
    EXPECT_EQ(model->breakLock(99), Refusal::EntryGone);
}

TEST_F(ModelLockTest, LockingNeedsTheRightToWriteAndASession)
{
    EXPECT_EQ(model->lock(intern, 10, 1).refusal, Refusal::NotAuthorized);
    model->signOff(nora);
    EXPECT_EQ(model->lock(nora, 10, 1).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->unlock(nora, 10), Refusal::NotSignedOn);
}

TEST_F(ModelLockTest, ALockElsewhereIsNobodysToRelease)
{
    EXPECT_TRUE(model->isLocked(13, 1).value);
    EXPECT_EQ(model->lock(nora, 13, 1).holder, QStringLiteral("user anna editing"));
    EXPECT_EQ(model->unlock(nora, 13), Refusal::Locked);
    EXPECT_EQ(model->breakLock(13), Refusal::None);
    EXPECT_EQ(model->lock(nora, 13, 1).refusal, Refusal::None);
}

TEST_F(ModelLockTest, DeletingALockedStoryForgetsItsLock)
{
    model->lock(nora, 10, 1);
    EXPECT_EQ(model->deleteStory(nora, 10), Refusal::None);
    model->signOff(nora);
    EXPECT_EQ(model->story(10).refusal, Refusal::EntryGone);
}

TEST_F(ModelLockTest, SavingKeepsTheLock)
{
    model->lock(nora, 10, 1);
    EXPECT_EQ(retitle(nora, 10, "X"), Refusal::None);
    EXPECT_TRUE(model->isLocked(10, 1).value);
}

TEST_F(ModelLockTest, ALockWithoutTypeBitsIsALock)
{
    EXPECT_EQ(model->lock(nora, 10, 0).refusal, Refusal::None);
    EXPECT_TRUE(model->isLocked(10, 0).value);
    EXPECT_FALSE(model->isLocked(10, 1).value);
    EXPECT_EQ(model->lock(omar, 10, 1).refusal, Refusal::StoryBeingEdited);
}
