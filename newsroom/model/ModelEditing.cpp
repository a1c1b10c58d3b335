// What sessions do to stories: editing, creating, deleting, locking, and the end of a session.

#include <algorithm>

#include "ModelData.h"
#include <quire/newsroom/model/Model.h>

namespace Newsroom {

namespace {

using Guard = std::lock_guard<std::mutex>;

Change storyChange(Change::Kind kind, qint32 queueNumber, const QVector<qint32> &stories)
{
    Change change;
    change.kind = kind;
    change.queueNumber = queueNumber;
    change.stories = stories;
    return change;
}

Change storyChange(Change::Kind kind, const Story &story)
{
    return storyChange(kind, story.queueNumber(), {story.id().part1});
}

void stamp(StoryText *text, const QString &what, qint32 time, const QString &userName)
{
    const QString date = what + QLatin1String("-date");
    const QString by = what + QLatin1String("-by");
    if (text->field(date) != nullptr)
        text->setField(date, QString::number(time));
    if (text->field(by) != nullptr)
        text->setField(by, userName);
}

/// The next revision of \a base with the draft's changes.
StoryPointer nextRevision(const Story &base, const StoryDraft &draft, qint32 time, const QString &userName)
{
    Story::Identity identity = base.identity();
    ++identity.revision;
    StoryText text = base.text();
    draft.applyTo(&text);
    stamp(&text, QStringLiteral("modify"), time, userName);
    text.setMeta(QStringLiteral("words"), QString::number(text.wordCount()));
    return std::make_shared<Story>(identity, text);
}

StoryText emptyText(const StoredForm &form, qint32 readRate, qint32 time, const QString &userName)
{
    StoryText text;
    for (const QString &field : form.fields)
        text.fields.append({field, QString(), {}});
    stamp(&text, QStringLiteral("create"), time, userName);
    stamp(&text, QStringLiteral("modify"), time, userName);
    text.setMeta(QStringLiteral("rate"), QString::number(readRate));
    text.setMeta(QStringLiteral("words"), QStringLiteral("0"));
    return text;
}

Story::Identity identityIn(const TreeNode &queue, const StoryId &id, qint32 revision, const QString &formName)
{
    Story::Identity identity;
    identity.id = id;
    identity.revision = revision;
    identity.formName = formName;
    identity.queueNumber = queue.settings.number;
    identity.queuePath = queue.path;
    return identity;
}

} // namespace

void Model::signOff(SessionId session)
{
    QVector<Change> released;
    {
        const Guard guard(d->mutex);
        if (d->data.sessions.remove(session) == 0)
            return;
        for (StoryRecord *record : d->data.recordsLockedBy(session)) {
            d->data.setLock(record, StoryLock());
            released.append(storyChange(Change::StoryUnlocked, *record->story));
        }
    }
    d->tell(released);
}

Refusal Model::mayEdit(SessionId session, qint32 part1) const
{
    return edit(session, part1).refusal;
}

Answer<StoryDraft> Model::edit(SessionId session, qint32 part1) const
{
    const Guard guard(d->mutex);
    const Answer<StoryRecord *> record = d->data.editable(session, part1);
    if (!record)
        return record.refusal;
    return StoryDraft(record.value->story);
}

Answer<StoryPointer> Model::save(SessionId session, const StoryDraft &draft)
{
    if (!draft.base())
        return Refusal::InvalidArgument;
    const qint32 part1 = draft.base()->id().part1;
    StoryPointer base;
    StoryPointer next;
    // The new revision is made without the mutex; when another save came between, it is made anew on top of that one.
    for (;;) {
        qint32 time = 0;
        QString userName;
        {
            const Guard guard(d->mutex);
            const Answer<StoryRecord *> record = d->data.editable(session, part1);
            if (!record)
                return record.refusal;
            if (draft.isEmpty())
                return record.value->story;
            if (next && record.value->story == base) {
                record.value->story = next;
                break;
            }
            base = record.value->story;
            time = d->data.clock();
            userName = d->data.userOf(session)->name;
        }
        next = nextRevision(*base, draft, time, userName);
    }
    d->tell(storyChange(Change::StorySaved, *next));
    return next;
}

Answer<StoryPointer> Model::createStory(SessionId session, qint32 queueNumber, int position)
{
    StoryPointer story;
    {
        const Guard guard(d->mutex);
        const Refusal unwritable = d->data.mayWrite(session);
        if (unwritable != Refusal::None)
            return unwritable;
        TreeNode *queue = d->data.queue(queueNumber);
        if (queue == nullptr)
            return Refusal::EntryGone;
        if (queue->settings.readOnly)
            return Refusal::ReadOnlyWire;
        const Refusal refusal = d->data.mayChangeQueue(session, *queue);
        if (refusal != Refusal::None)
            return refusal;
        const StoredForm *form = d->data.form(queue->settings.formName);
        if (form == nullptr)
            return Refusal::NoForm;
        const StoryText text =
            emptyText(*form, d->data.system.readRate, d->data.clock(), d->data.userOf(session)->name);
        const StoryId id{d->data.newStoryNumber(), queue->settings.number, 0};
        story = std::make_shared<Story>(identityIn(*queue, id, 1, queue->settings.formName), text);
        d->data.insertStory(queue, position, story);
    }
    d->tell(storyChange(Change::StoryCreated, *story));
    return story;
}

Refusal Model::deleteStory(SessionId session, qint32 part1)
{
    StoryPointer gone;
    {
        const Guard guard(d->mutex);
        const Refusal refusal = d->data.removeFor(session, d->data.record(part1), &gone);
        if (refusal != Refusal::None)
            return refusal;
    }
    d->tell(storyChange(Change::StoryDeleted, *gone));
    return Refusal::None;
}

Refusal Model::deleteStoryAt(SessionId session, qint32 queueNumber, int position)
{
    StoryPointer gone;
    {
        const Guard guard(d->mutex);
        const Refusal refusal = d->data.removeFor(session, d->data.recordAt(queueNumber, position), &gone);
        if (refusal != Refusal::None)
            return refusal;
    }
    d->tell(storyChange(Change::StoryDeleted, *gone));
    return Refusal::None;
}

Refusal Model::deleteAll(SessionId session, qint32 queueNumber)
{
    QVector<qint32> gone;
    bool someStayed = false;
    {
        const Guard guard(d->mutex);
        TreeNode *queue = d->data.queue(queueNumber);
        const Refusal refusal = d->data.mayDeleteFrom(session, queue);
        if (refusal != Refusal::None)
            return refusal;
        std::vector<StoryRecord *> kept;
        for (StoryRecord *record : queue->stories) {
            if (d->data.isLockedFor(session, *record)) {
                kept.push_back(record);
                continue;
            }
            gone.append(record->story->id().part1);
            d->data.forgetStory(record);
        }
        someStayed = !kept.empty();
        queue->stories = std::move(kept);
    }
    if (!gone.isEmpty())
        d->tell(storyChange(Change::StoryDeleted, queueNumber, gone));
    return someStayed ? Refusal::PartialFailure : Refusal::None;
}

LockAnswer Model::lock(SessionId session, qint32 part1, qint32 type)
{
    StoryPointer story;
    {
        const Guard guard(d->mutex);
        const Refusal refusal = d->data.mayWrite(session);
        if (refusal != Refusal::None)
            return {refusal, {}};
        StoryRecord *record = d->data.record(part1);
        if (record == nullptr)
            return {Refusal::EntryGone, {}};
        if (record->lock.isHeldByOther(session))
            return {Refusal::StoryBeingEdited, QStringLiteral("user %1 editing").arg(record->lock.userName)};
        StoryLock lock = record->lock;
        lock.held = true;
        lock.session = session;
        lock.userName = d->data.userOf(session)->name;
        lock.types |= type;
        d->data.setLock(record, lock);
        story = record->story;
    }
    d->tell(storyChange(Change::StoryLocked, *story));
    return {};
}

Refusal Model::unlock(SessionId session, qint32 part1)
{
    StoryPointer story;
    {
        const Guard guard(d->mutex);
        if (d->data.userOf(session) == nullptr)
            return Refusal::NotSignedOn;
        StoryRecord *record = d->data.record(part1);
        if (record == nullptr)
            return Refusal::EntryGone;
        if (record->lock.isHeldByOther(session))
            return Refusal::Locked;
        if (!record->lock.held)
            return Refusal::None;
        d->data.setLock(record, StoryLock());
        story = record->story;
    }
    d->tell(storyChange(Change::StoryUnlocked, *story));
    return Refusal::None;
}

Answer<bool> Model::isLocked(qint32 part1, qint32 type) const
{
    const Guard guard(d->mutex);
    const StoryRecord *record = d->data.record(part1);
    if (record == nullptr)
        return Refusal::EntryGone;
    return record->lock.held && (type == 0 || (record->lock.types & type) != 0);
}

Answer<QString> Model::lockHolder(qint32 part1) const
{
    const Guard guard(d->mutex);
    const StoryRecord *record = d->data.record(part1);
    if (record == nullptr)
        return Refusal::EntryGone;
    return record->lock.userName;
}

Refusal Model::lockElsewhere(qint32 part1, const QString &userName, qint32 type)
{
    StoryPointer story;
    {
        const Guard guard(d->mutex);
        StoryRecord *record = d->data.record(part1);
        if (record == nullptr)
            return Refusal::EntryGone;
        StoryLock lock;
        lock.held = true;
        lock.userName = userName;
        lock.types = type;
        d->data.setLock(record, lock);
        story = record->story;
    }
    d->tell(storyChange(Change::StoryLocked, *story));
    return Refusal::None;
}

Refusal Model::breakLock(qint32 part1)
{
    StoryPointer story;
    {
        const Guard guard(d->mutex);
        StoryRecord *record = d->data.record(part1);
        if (record == nullptr)
            return Refusal::EntryGone;
        d->data.setLock(record, StoryLock());
        story = record->story;
    }
    d->tell(storyChange(Change::StoryUnlocked, *story));
    return Refusal::None;
}

Answer<StoryPointer> Model::addStory(const NewStory &story)
{
    StoryPointer added;
    {
        const Guard guard(d->mutex);
        TreeNode *queue = d->data.queue(story.queueNumber);
        if (queue == nullptr)
            return Refusal::EntryGone;
        StoryId id = story.id;
        if (id.part1 == 0)
            id = StoryId{d->data.newStoryNumber(), queue->settings.number, 0};
        if (d->data.record(id.part1) != nullptr)
            return Refusal::EntryExists;
        const QString form = story.formName.isEmpty() ? queue->settings.formName : story.formName;
        added = std::make_shared<Story>(identityIn(*queue, id, story.revision, form), story.text);
        d->data.insertStory(queue, -1, added);
    }
    d->tell(storyChange(Change::StoryCreated, *added));
    return added;
}

Refusal Model::putQueue(qint32 queueNumber, const QVector<NewStory> &stories, const QVector<qint32> &order)
{
    Change created = storyChange(Change::StoryCreated, queueNumber, {});
    Change saved = storyChange(Change::StorySaved, queueNumber, {});
    Change deleted = storyChange(Change::StoryDeleted, queueNumber, {});
    {
        const Guard guard(d->mutex);
        TreeNode *queue = d->data.queue(queueNumber);
        if (queue == nullptr)
            return Refusal::EntryGone;
        for (const NewStory &story : stories) {
            const StoryRecord *record = d->data.record(story.id.part1);
            if (record != nullptr && record->queue != queue)
                return Refusal::EntryExists;
        }
        for (const NewStory &story : stories) {
            const auto revision =
                std::make_shared<Story>(identityIn(*queue, story.id, story.revision, story.formName), story.text);
            StoryRecord *record = d->data.record(story.id.part1);
            if (record == nullptr)
                d->data.insertStory(queue, -1, revision);
            else if (record->story->markup(Section::Whole) == revision->markup(Section::Whole))
                continue;
            else
                record->story = revision;
            (record == nullptr ? created : saved).stories.append(story.id.part1);
        }
        deleted.stories = d->data.keepStories(queue, order);
    }
    for (const Change &change : {created, saved, deleted}) {
        if (!change.stories.isEmpty())
            d->tell(change);
    }
    return Refusal::None;
}

} // namespace Newsroom
