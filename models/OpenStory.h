#pragma once

/// \file
/// A story whose fields a model shows. Not part of the public surface.

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include <quire/forms/Field.h>
#include <quire/story/Story.h>

namespace Quire {

/// What a model shows of a story. A plain value.
struct StoryContent
{
    std::vector<QString> values; ///< Of the fields that were asked for.
    QString body;                ///< Section 8 with its markup; null when it was not asked for.
};

/// What is to be written of a story, and what somebody saw there when it was set. A plain value.
struct StoryChange
{
    struct FieldChange
    {
        QString name;
        QString value;
        QString before;
    };
    std::vector<FieldChange> fields;
    QString body; ///< Null: it stays as it is.
    QString bodyBefore;
    bool underLock = false; ///< What was seen was read under the lock, and that was held when this was set.
};

/// What a model wants to see of a story. A plain value.
struct StoryWish
{
    std::vector<QString> fields; ///< Their names.
    bool body = false;
};

/// What comes of a job for a story, whether it fails or not. A plain value.
struct StoryAnswer
{
    StoryContent content;  ///< What is there now.
    HRESULT unread = S_OK; ///< Why that could not be read, though the change has been saved.
    QString holder;        ///< Who has the lock, when it was refused because of somebody.
    QStringList fields;    ///< Those that were not written since somebody else has saved them meanwhile.
    bool body = false;     ///< The same for the text.
    bool isFree = false;   ///< The lock is not held any more.
    /// Whether that is why nothing was written.
    bool isOutdated() const { return body || !fields.isEmpty(); }
};

/// What Windows calls E_CHANGED_STATE: somebody else has changed it meanwhile.
constexpr auto changedState = static_cast<HRESULT>(0x8000000C);

/// A story that the server is asked for by its identifier: a long queue is not searched for it. On the ServerThread.
class OpenStory : public Story
{
public:
    /// The story \a id of \a queuePath; raises when there is none. Gives its lock back when it goes, on the
    /// ServerThread whoever lets go of it.
    static std::shared_ptr<OpenStory> open(const QString &queuePath, const StoryID &id);

    /// The fields of the form, the first of those with the same name; none without a form.
    std::vector<Field> formFields();
    /// What is there of it; an empty total time is computed as in lists. Raises what the server refuses.
    StoryContent content(const StoryWish &wish);
    /// Gets a handle from the server: the one from before may hold changes that could not be saved, or be of a session
    /// that has ended. A lock goes with its session, and with the story. Raises when there is no such story any more.
    void find();
    /// Finds it anew and reads what is there.
    void refresh(const StoryWish &wish, StoryAnswer *answer);

    /// Gets the lock unless it is held, and reads what is there then: it does not change any more. Raises any refusal,
    /// and does not keep a lock that it got then.
    void lock(int type, const StoryWish &wish, StoryAnswer *answer);
    /// Gives it back if it was got; what the server refuses is dropped.
    void unlock();
    bool isLocked() const { return m_locked; }

    /// Writes and saves all of \a change at once, under the story's lock: one that is not held, or not any more, is
    /// got, as by lock, and given back. Raises what the server refuses, and E_CHANGED_STATE when somebody else has
    /// saved any of it since it was seen; then nothing is left of the change.
    void change(const StoryChange &change, const StoryWish &wish, int lockType, StoryAnswer *answer);

private:
    OpenStory(const QString &queuePath, const StoryID &id);
    static void end(OpenStory *story);

    bool holdsLock();
    bool dropLostLock();
    void getLock(int type, QString *holder);
    void underLock(int type, QString *holder, const std::function<void()> &work);
    void requireUnchanged(const StoryChange &change, const StoryWish &wish, StoryAnswer *answer);
    void write(const StoryChange &change);
    void readBack(const StoryChange &change, const StoryWish &wish, StoryAnswer *answer);
    bool isForeign(const QString &name, const QString &value, const QString &before) const;
    void noteRead(const QString &name, const QString &value);
    QString totalTime();
    void raiseError();

    bool m_locked = false; // by m_handle
    int m_lockType = 0;
    std::map<QString, QString> m_own; // what is there since this saved it, by field; the text under the empty name
};

} // namespace Quire
