#include "EditingFixture.h"

using namespace Newsroom;

using ModelEditingTest = EditingFixture;

TEST_F(ModelEditingTest, SaveCommitsADraft)
{
    const StoryPointer before = model->story(10).value;
    Answer<StoryDraft> draft = model->edit(nora, 10);
    ASSERT_TRUE(draft.ok());
    ASSERT_EQ(draft.value.putPlain(Section::Body, QStringLiteral("four five")), Refusal::None);
    EXPECT_EQ(model->story(10).value, before) << "others see the old text until it is saved";
    const Answer<StoryPointer> saved = model->save(nora, draft.value);
    ASSERT_TRUE(saved.ok());
    EXPECT_EQ(model->story(10).value, saved.value);
    EXPECT_EQ(saved.value->plain(Section::Body), QStringLiteral("four five"));
    EXPECT_EQ(before->plain(Section::Body), QStringLiteral("One two three")) << "a revision never changes";
}

TEST_F(ModelEditingTest, SaveGrowsTheRevisionAndKeepsTheIdentifier)
{
    const StoryPointer before = model->story(10).value;
    EXPECT_EQ(retitle(nora, 10, "New"), Refusal::None);
    const StoryPointer after = model->story(10).value;
    EXPECT_EQ(after->revision(), before->revision() + 1);
    EXPECT_TRUE(after->id() == before->id());
    EXPECT_NE(after->headerId(), before->headerId());
    EXPECT_EQ(after->queuePath(), before->queuePath());
    EXPECT_EQ(after->formName(), before->formName());
}

TEST_F(ModelEditingTest, SaveStampsWhoAndWhen)
{
    EXPECT_EQ(retitle(nora, 10, "New"), Refusal::None);
    const StoryPointer story = model->story(10).value;
    EXPECT_EQ(story->text().fieldValue(QStringLiteral("modify-date")), QStringLiteral("1000"));
    EXPECT_EQ(story->text().fieldValue(QStringLiteral("modify-by")), QStringLiteral("nora"));
}

TEST_F(ModelEditingTest, SaveStampsOnlyFieldsThatAreThere)
{
    EXPECT_EQ(retitle(nora, 11, "New"), Refusal::None);
    EXPECT_EQ(model->story(11).value->text().fields.size(), 1);
}

TEST_F(ModelEditingTest, SaveCountsWords)
{
    Answer<StoryDraft> draft = model->edit(nora, 10);
    draft.value.putPlain(Section::Body, QStringLiteral("one two"));
    const Answer<StoryPointer> saved = model->save(nora, draft.value);
    EXPECT_EQ(saved.value->text().metaValue(QStringLiteral("words")), QStringLiteral("2"));
}

TEST_F(ModelEditingTest, AnEmptyDraftChangesNothing)
{
    const StoryPointer before = model->story(10).value;
    const Answer<StoryPointer> saved = model->save(nora, model->edit(nora, 10).value);
    EXPECT_TRUE(saved.ok());
    EXPECT_EQ(model->story(10).value, before);
    EXPECT_EQ(model->save(nora, StoryDraft()).refusal, Refusal::InvalidArgument);
}

TEST_F(ModelEditingTest, ADroppedDraftLeavesNoTrace)
{
    const StoryPointer before = model->story(10).value;
    {
        Answer<StoryDraft> draft = model->edit(nora, 10);
        draft.value.putField(QStringLiteral("title"), QStringLiteral("X"));
    }
    EXPECT_EQ(model->story(10).value, before);
}

TEST_F(ModelEditingTest, TwoEditorsOfDifferentFieldsDoNotUndoEachOther)
{
    Answer<StoryDraft> first = model->edit(nora, 11);
    Answer<StoryDraft> second = model->edit(omar, 11);
    first.value.putField(QStringLiteral("title"), QStringLiteral("Nora's"));
    second.value.putPlain(Section::Body, QStringLiteral("Omar's"));
    EXPECT_TRUE(model->save(nora, first.value).ok());
    EXPECT_TRUE(model->save(omar, second.value).ok());
    EXPECT_EQ(model->story(11).value->name(), QStringLiteral("Nora's"));
    EXPECT_EQ(model->story(11).value->plain(Section::Body), QStringLiteral("Omar's"));
}

TEST_F(ModelEditingTest, EditingAGoneStoryIsRefused)
{
    EXPECT_EQ(model->mayEdit(nora, 999), Refusal::EntryGone);
    Answer<StoryDraft> draft = model->edit(nora, 10);
    draft.value.putField(QStringLiteral("title"), QStringLiteral("X"));
    EXPECT_EQ(model->deleteStory(omar, 10), Refusal::None);
    EXPECT_EQ(model->save(nora, draft.value).refusal, Refusal::EntryGone);
}

TEST_F(ModelEditingTest, EditingWithoutRightIsRefused)
{
    EXPECT_EQ(model->mayEdit(intern, 10), Refusal::NotAuthorized);
    EXPECT_EQ(model->edit(intern, 10).refusal, Refusal::NotAuthorized);
    EXPECT_EQ(model->createStory(intern, 1, 0).refusal, Refusal::NotAuthorized);
    EXPECT_EQ(model->deleteStory(intern, 10), Refusal::NotAuthorized);
    EXPECT_EQ(model->deleteStoryAt(intern, 1, 0), Refusal::NotAuthorized);
    EXPECT_EQ(model->deleteAll(intern, 1), Refusal::NotAuthorized);
}

TEST_F(ModelEditingTest, ASuperuserMayWriteWhateverElseIsSaid)
{
    EXPECT_EQ(model->mayEdit(chief, 10), Refusal::None);
}

TEST_F(ModelEditingTest, WireStoriesAreReadOnly)
{
    EXPECT_EQ(model->mayEdit(nora, 20), Refusal::ReadOnlyWire);
    EXPECT_EQ(model->mayEdit(chief, 20), Refusal::ReadOnlyWire);
    EXPECT_EQ(model->createStory(nora, 2, 0).refusal, Refusal::ReadOnlyWire);
    EXPECT_EQ(model->deleteStory(nora, 20), Refusal::None) << "a wire may be tidied up";
}

TEST_F(ModelEditingTest, KeyLockedStoriesAreForSuperusers)
{
    EXPECT_EQ(model->mayEdit(nora, 12), Refusal::Locked);
    EXPECT_EQ(retitle(chief, 12, "Chief's"), Refusal::None);
    EXPECT_EQ(model->deleteStory(nora, 12), Refusal::Locked);
    EXPECT_EQ(model->deleteStory(chief, 12), Refusal::None);
}

TEST_F(ModelEditingTest, AStoryThatAnotherSessionHasLockedIsBeingEdited)
{
    Answer<StoryDraft> draft = model->edit(nora, 10);
    draft.value.putField(QStringLiteral("title"), QStringLiteral("X"));
    ASSERT_EQ(model->lock(omar, 10, 1).refusal, Refusal::None);
    EXPECT_EQ(model->mayEdit(nora, 10), Refusal::StoryBeingEdited);
    EXPECT_EQ(model->save(nora, draft.value).refusal, Refusal::StoryBeingEdited);
    EXPECT_EQ(model->mayEdit(omar, 10), Refusal::None);
    EXPECT_EQ(model->mayEdit(nora, 13), Refusal::StoryBeingEdited);
}

TEST_F(ModelEditingTest, AnEndedSessionEditsNothing)
{
    Answer<StoryDraft> draft = model->edit(nora, 10);
    draft.value.putField(QStringLiteral("title"), QStringLiteral("X"));
    model->signOff(nora);
    EXPECT_EQ(model->mayEdit(nora, 10), Refusal::NotSignedOn);
    EXPECT_EQ(model->save(nora, draft.value).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->createStory(nora, 1, 0).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->deleteStory(nora, 10), Refusal::NotSignedOn);
    EXPECT_EQ(model->deleteAll(nora, 1), Refusal::NotSignedOn);
}

TEST_F(ModelEditingTest, CreateMakesAStoryWithTheFieldsOfTheForm)
{
    const Answer<StoryPointer> created = model->createStory(nora, 1, 0);
    ASSERT_TRUE(created.ok());
    QStringList fields;
    for (const StoryField &field : created.value->text().fields)
        fields.append(field.id + QLatin1Char('=') + field.value);
    EXPECT_EQ(fields, (QStringList{QStringLiteral("title="), QStringLiteral("create-date=1000"),
                                   QStringLiteral("create-by=nora"), QStringLiteral("modify-date=1000"),
                                   QStringLiteral("modify-by=nora")}));
    EXPECT_EQ(created.value->formName(), QStringLiteral("STORY"));
    EXPECT_EQ(created.value->revision(), 1);
    EXPECT_EQ(created.value->text().metaValue(QStringLiteral("rate")), QStringLiteral("180"));
    EXPECT_EQ(created.value->text().metaValue(QStringLiteral("words")), QStringLiteral("0"));
    EXPECT_EQ(created.value->id().part2, 1);
    EXPECT_EQ(model->story(created.value->id().part1).value, created.value);
}

TEST_F(ModelEditingTest, CreateInsertsAtThePosition)
{
    const qint32 first = model->createStory(nora, 1, 0).value->id().part1;
    EXPECT_EQ(model->positionOf(first).value, 0);
    const qint32 second = model->createStory(nora, 1, 2).value->id().part1;
    EXPECT_EQ(model->positionOf(second).value, 2);
    const qint32 last = model->createStory(nora, 1, -1).value->id().part1;
    EXPECT_EQ(model->positionOf(last).value, 6);
    const qint32 beyond = model->createStory(nora, 1, 1000).value->id().part1;
    EXPECT_EQ(model->positionOf(beyond).value, 7);
}

TEST_F(ModelEditingTest, CreateNeedsAForm)
{
    EXPECT_EQ(model->createStory(nora, 4, 0).refusal, Refusal::NoForm);
    EXPECT_EQ(model->createStory(nora, 5, 0).refusal, Refusal::NoForm);
    EXPECT_EQ(model->createStory(nora, 99, 0).refusal, Refusal::EntryGone);
}

TEST_F(ModelEditingTest, ALockedQueueIsForSuperusers)
{
    EXPECT_EQ(model->createStory(nora, 6, 0).refusal, Refusal::Locked);
    EXPECT_EQ(model->deleteStory(nora, 60), Refusal::Locked);
    EXPECT_EQ(model->deleteAll(nora, 6), Refusal::Locked);
    EXPECT_TRUE(model->createStory(chief, 6, 0).ok());
    EXPECT_EQ(model->deleteStory(chief, 60), Refusal::None);
}

TEST_F(ModelEditingTest, DeleteByPositionAndByIdentifier)
{
    EXPECT_EQ(model->deleteStoryAt(nora, 1, 1), Refusal::None);
    EXPECT_EQ(names(1),
              (QStringList{QStringLiteral("One"), QStringLiteral("Key-locked"), QStringLiteral("Locked elsewhere")}));
    EXPECT_EQ(model->deleteStory(nora, 10), Refusal::None);
    EXPECT_EQ(model->story(10).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->deleteStory(nora, 10), Refusal::EntryGone);
    EXPECT_EQ(model->deleteStoryAt(nora, 1, 2), Refusal::EntryGone);
    EXPECT_EQ(model->deleteStoryAt(nora, 1, -1), Refusal::EntryGone);
    EXPECT_EQ(model->deleteStoryAt(nora, 99, 0), Refusal::EntryGone);
}

TEST_F(ModelEditingTest, ALockedStoryIsNotDeletedByOthers)
{
    ASSERT_EQ(model->lock(omar, 10, 1).refusal, Refusal::None);
    EXPECT_EQ(model->deleteStory(nora, 10), Refusal::Locked);
    EXPECT_EQ(model->deleteStory(nora, 13), Refusal::Locked);
    EXPECT_EQ(model->deleteStory(omar, 10), Refusal::None) << "its own lock is in nobody's way";
}

TEST_F(ModelEditingTest, APurgeLockedQueueKeepsItsStories)
{
    EXPECT_EQ(model->deleteStory(nora, 30), Refusal::PurgeLocked);
    EXPECT_EQ(model->deleteStoryAt(nora, 3, 0), Refusal::PurgeLocked);
    EXPECT_EQ(model->deleteAll(nora, 3), Refusal::PurgeLocked);
    EXPECT_EQ(model->deleteStory(chief, 30), Refusal::PurgeLocked);
    EXPECT_TRUE(model->createStory(nora, 3, 0).ok());
}

TEST_F(ModelEditingTest, DeleteAllLeavesWhatIsLocked)
{
    EXPECT_EQ(model->deleteAll(nora, 1), Refusal::PartialFailure);
    EXPECT_EQ(names(1), (QStringList{QStringLiteral("Key-locked"), QStringLiteral("Locked elsewhere")}));
    EXPECT_EQ(model->story(10).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->deleteAll(chief, 1), Refusal::PartialFailure);
    EXPECT_EQ(names(1), QStringList{QStringLiteral("Locked elsewhere")});
    model->breakLock(13);
    EXPECT_EQ(model->deleteAll(nora, 1), Refusal::None);
    EXPECT_EQ(model->deleteAll(nora, 1), Refusal::None) << "an empty queue is fine";
    EXPECT_EQ(model->deleteAll(nora, 99), Refusal::EntryGone);
}

TEST_F(ModelEditingTest, AnEditInProgressOutlivesTheQueue)
{
    Answer<StoryDraft> draft = model->edit(nora, 10);
    draft.value.putField(QStringLiteral("title"), QStringLiteral("X"));
    ASSERT_EQ(model->lock(nora, 10, 1).refusal, Refusal::None);
    EXPECT_EQ(model->removeEntry(QStringLiteral("NEWS")), Refusal::None);
    EXPECT_EQ(model->save(nora, draft.value).refusal, Refusal::EntryGone);
    model->signOff(nora);
}

// ---- a queue as somebody else has left it
// -----------------------------------------------------------------------------

namespace {

Model::NewStory titled(qint32 part1, const char *title)
{
    Model::NewStory story;
    story.id = {part1, 1, 0};
    story.formName = QStringLiteral("STORY");
    story.text.setField(QStringLiteral("title"), QLatin1String(title));
    return story;
}

} // namespace

TEST_F(ModelEditingTest, PutQueueReplacesAddsOrdersAndRemoves)
{
    ASSERT_EQ(model->putQueue(1, {titled(11, "Deux"), titled(70, "New")}, {70, 11, 10}), Refusal::None);
    EXPECT_EQ(names(1), (QStringList{QStringLiteral("New"), QStringLiteral("Deux"), QStringLiteral("One")}));
    EXPECT_EQ(model->story(12).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->createStory(nora, 1, 0).value->id().part1, 71) << "numbers that came along are taken";
}

TEST_F(ModelEditingTest, PutQueuePassesOverNumbersThatAreNotThereAndRepeated)
{
    ASSERT_EQ(model->putQueue(1, {}, {11, 999, 11, 20, 10}), Refusal::None);
    EXPECT_EQ(names(1), (QStringList{QStringLiteral("Two"), QStringLiteral("One")}));
    EXPECT_EQ(names(2), QStringList{QStringLiteral("Wire")});
}

TEST_F(ModelEditingTest, PutQueueKeepsTheLocksOfStoriesThatStay)
{
    ASSERT_EQ(model->lock(nora, 10, 1).refusal, Refusal::None);
    ASSERT_EQ(model->putQueue(1, {titled(10, "Un")}, {10}), Refusal::None);
    EXPECT_EQ(model->lockHolder(10).value, QStringLiteral("nora"));
}

TEST_F(ModelEditingTest, PutQueueIsRefusedWithoutTheQueueAndForStoriesOfOthers)
{
    EXPECT_EQ(model->putQueue(99, {}, {}), Refusal::EntryGone);
    EXPECT_EQ(model->putQueue(1, {titled(70, "New"), titled(20, "Theft")}, {70, 20}), Refusal::EntryExists);
    EXPECT_EQ(model->story(70).refusal, Refusal::EntryGone);
    EXPECT_EQ(names(1).size(), 4);
}
