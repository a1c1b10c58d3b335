#pragma once

/// \file
/// The newsroom: tree, stories, locks, sessions, users, blobs, forms and system values.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>

#include <quire/newsroom/model/Answer.h>
#include <quire/newsroom/model/Clock.h>
#include <quire/newsroom/model/Entry.h>
#include <quire/newsroom/model/Observer.h>
#include <quire/newsroom/model/Query.h>
#include <quire/newsroom/model/Story.h>
#include <quire/newsroom/model/StoryDraft.h>
#include <quire/newsroom/model/User.h>

namespace Newsroom {

/// Who is signed on; a number above 0, never used twice.
using SessionId = qint32;

/// A named block of bytes and the small number kept with it (its size).
struct Blob
{
    QByteArray data;  ///< What was saved.
    qint32 value = 0; ///< The number kept with it.
};

/// What is set for the newsroom as a whole.
struct SystemValues
{
    QString serverName = QStringLiteral("NEWSROOM-A"); ///< The server's name.
    QStringList aliases;                               ///< Further names that sign-ons may give.
    qint32 readRate = 180;                             ///< Words a minute.
    qint32 wordLength = 6;                             ///< Characters a word.
    bool offline = false;                              ///< Sign-ons are refused.
    int sessionLimit = 0;                              ///< Sessions at a time; 0: no limit.
};

/// A system form: its markup as it is given to clients.
struct Form
{
    QString name;   ///< The form's name.
    QString markup; ///< What the server hands out.
};

/// What Model::lock() answers.
struct LockAnswer
{
    Refusal refusal = Refusal::None; ///< Why not; None when the lock was got.
    QString holder;                  ///< "user NAME editing" when StoryBeingEdited; else empty.
};

/// One newsroom, shared by any number of sign-ons; held by std::shared_ptr.
///
/// Every operation may be called from any thread; each is atomic. Stories are handed out as revisions that never change
/// (StoryPointer), so reading one needs no lock. Observers are called after the operation with no lock held.
///
/// Paths are full dotted paths, compared ignoring letter case; "." and the empty text are the root. Positions count
/// from 0. What is not there is refused with EntryGone. Operations that take a session are a client's and are refused
/// with NotSignedOn when the session is over, with NotAuthorized when its user may not write; those without one are the
/// newsroom's own and know no rights.
class Model
{
public:
    Model();
    ~Model();
    Model(const Model &) = delete;
    Model &operator=(const Model &) = delete;

    /// A newsroom from indented text, see NewsroomText.h; null, with \a error (may be null) naming the line, when the
    /// text is wrong.
    static std::shared_ptr<Model> fromText(const QString &text, QString *error = nullptr);

    /// The time that stamps new and saved stories; the machine's clock unless set.
    void setClock(Clock clock);

    // ---- system values, users, forms

    /// The values that hold for the whole newsroom.
    SystemValues system() const;
    /// Replaces those values.
    void setSystem(const SystemValues &values);

    /// Adds a user, or replaces the one of that name. InvalidArgument for a name that is empty or has blanks.
    Refusal setUser(const User &user);
    /// All users.
    QVector<User> users() const;

    /// Adds a form, or replaces the one of exactly that name. InvalidArgument for an empty name, MarkupSyntax for
    /// markup that is not well-formed.
    Refusal setForm(const Form &form);
    /// The markup of the form \a name, letter case ignored when none has exactly that name.
    Answer<QString> form(const QString &name) const;
    /// All forms.
    QVector<Form> forms() const;

    // ---- sessions

    /// Signs a user on. \a server is empty, the newsroom's name or an alias, letter case ignored. Refused in this
    /// order: ServerNotFound, Offline, BadPassword, OutOfSessions.
    Answer<SessionId> signOn(const QString &user, const QString &password, const QString &server);
    /// Ends a session and releases its locks; nothing happens when it is over already.
    void signOff(SessionId session);
    /// Whether a session is not over.
    bool isSignedOn(SessionId session) const;
    /// The user of a session as it is now; NotSignedOn when it is over.
    Answer<User> user(SessionId session) const;
    /// How many sessions are signed on.
    int sessionCount() const;

    // ---- the tree

    /// The directory or queue at \a path.
    Answer<Entry> entry(const QString &path) const;
    /// The queue of that number.
    Answer<Entry> queue(qint32 number) const;
    /// Up to \a count entries of a directory from \a first on, in its order; fewer or none at its end. A negative count
    /// means all. EntryGone when the path is no directory, InvalidArgument for a negative \a first.
    Answer<QVector<Entry>> children(const QString &path, int first = 0, int count = -1) const;
    /// Entry \a index of a directory; EntryGone when the index is outside.
    Answer<Entry> child(const QString &path, int index) const;
    /// The paths of all queues, in tree order.
    QVector<Entry> queues() const;

    /// Adds a directory at the end of its parent, which must be there. EntryExists when the path is taken,
    /// InvalidArgument for a name that is none (isComponentName()).
    Refusal addDirectory(const QString &path, const Flags &flags = {});
    /// Adds a queue likewise and answers its number. EntryExists also when the number is taken.
    Answer<qint32> addQueue(const QString &path, const QueueSettings &settings = {});
    /// Replaces the flags of a directory or queue.
    Refusal setFlags(const QString &path, const Flags &flags);
    /// Replaces the settings of a queue, flags included; its number stays.
    Refusal setQueueSettings(qint32 number, const QueueSettings &settings);
    /// Removes a directory or queue with all that is below; InvalidArgument for the root. Its stories are gone.
    Refusal removeEntry(const QString &path);

    // ---- reading stories

    /// How many stories the newsroom has.
    int storyCount() const;
    /// The present revision of the story whose identifier starts with \a part1.
    Answer<StoryPointer> story(qint32 part1) const;
    /// The same, only when it is in that queue.
    Answer<StoryPointer> story(const QString &queuePath, qint32 part1) const;
    /// The story at a position of a queue; EntryGone when the position is outside or the queue is gone.
    Answer<StoryPointer> storyAt(qint32 queueNumber, int position) const;
    /// Up to \a count stories of a queue from \a first on; fewer or none at its end. A negative count means all.
    /// InvalidArgument for a negative \a first.
    Answer<QVector<StoryPointer>> stories(qint32 queueNumber, int first = 0, int count = -1) const;
    /// The position of a story in its queue.
    Answer<int> positionOf(qint32 part1) const;

    /// The stories that a search has to look at, in tree order: match each with Query::matches(), at leisure, and stop
    /// at Query::maxFound(). ServerNotFound when the query names another server, EntryGone when its path is not there.
    Answer<QVector<StoryPointer>> scope(const Query &query) const;

    // ---- editing

    /// Whether a session may put to and save a story at all: EntryGone, NotAuthorized, ReadOnlyWire, Locked (key-locked
    /// and the user no superuser), StoryBeingEdited (another session holds the lock), in this order. Ask before each
    /// put.
    Refusal mayEdit(SessionId session, qint32 part1) const;
    /// A draft to put to; refused as mayEdit().
    Answer<StoryDraft> edit(SessionId session, qint32 part1) const;
    /// Commits a draft: what was put goes over the present revision, "modify-date" and "modify-by" are stamped when the
    /// story has these fields, the header's "words" is counted anew, and the revision grows. Refused as mayEdit(). An
    /// empty draft changes nothing.
    Answer<StoryPointer> save(SessionId session, const StoryDraft &draft);
    /// Makes a new, empty story with the fields of the queue's form, before the story at \a position; at the end when
    /// the position is negative or past it. NotAuthorized, ReadOnlyWire, Locked (a locked queue), NoForm.
    Answer<StoryPointer> createStory(SessionId session, qint32 queueNumber, int position);
    /// Deletes a story: NotAuthorized, PurgeLocked (the queue), Locked (the queue is locked, or another session holds
    /// the story's lock, or it is key-locked and the user no superuser).
    Refusal deleteStory(SessionId session, qint32 part1);
    /// The same by position in a queue.
    Refusal deleteStoryAt(SessionId session, qint32 queueNumber, int position);
    /// Deletes all stories of a queue that can be deleted; PartialFailure when some stayed. Otherwise as deleteStory().
    Refusal deleteAll(SessionId session, qint32 queueNumber);

    // ---- locks

    /// Locks a story for a session, or adds the bits of \a type to its lock. StoryBeingEdited, with the holder's text,
    /// while another session holds it; NotAuthorized when the user may not write.
    LockAnswer lock(SessionId session, qint32 part1, qint32 type);
    /// Releases a story's lock; also fine when it is not locked. Locked when another session holds it.
    Refusal unlock(SessionId session, qint32 part1);
    /// Whether anybody holds a lock with any bit of \a type; type 0 asks for any lock at all.
    Answer<bool> isLocked(qint32 part1, qint32 type) const;
    /// The name of the user that holds a story's lock; empty when nobody does.
    Answer<QString> lockHolder(qint32 part1) const;
    /// Locks a story for somebody who works elsewhere: no session of this newsroom holds or releases it.
    Refusal lockElsewhere(qint32 part1, const QString &userName, qint32 type);
    /// Takes a story's lock away, whoever holds it.
    Refusal breakLock(qint32 part1);

    // ---- blobs

    /// The blob \a name, exactly.
    Answer<Blob> blob(SessionId session, const QString &name) const;
    /// Keeps \a data under \a name (exact, not empty: InvalidArgument) and answers the number kept with it.
    Answer<qint32> saveBlob(SessionId session, const QString &name, const QByteArray &data);
    /// Removes the blob \a name.
    Refusal deleteBlob(SessionId session, const QString &name);
    /// The names of all blobs that have one.
    QStringList blobNames() const;
    /// The one blob of the session's user. Everybody may save it.
    Answer<Blob> userBlob(SessionId session) const;
    /// Keeps \a data as that blob and answers the number kept with it.
    Answer<qint32> saveUserBlob(SessionId session, const QByteArray &data);

    // ---- building, for loaders and tests

    /// Where and as what a story is to be added.
    struct NewStory
    {
        qint32 queueNumber = 0; ///< The queue.
        StoryId id;             ///< part1 0 lets the newsroom choose all three parts.
        qint32 revision = 1;    ///< The revision.
        QString formName;       ///< Empty: the queue's.
        StoryText text;         ///< What it says.
    };
    /// Adds a story at the end of a queue, as it is. EntryGone without the queue, EntryExists when part1 is taken.
    Answer<StoryPointer> addStory(const NewStory &story);
    /// Makes a queue as somebody else has left it: \a stories are new or take the places of those of their numbers,
    /// without regard to locks and as they are unless they are the same; then the queue has the stories that \a order
    /// names, in its order, and no others. Numbers of stories that are not there are passed over. EntryGone without the
    /// queue, EntryExists when one of \a stories is in another queue; nothing is changed then.
    Refusal putQueue(qint32 queueNumber, const QVector<NewStory> &stories, const QVector<qint32> &order);
    /// Keeps \a data under \a name.
    void setBlob(const QString &name, const QByteArray &data);
    /// Keeps \a data as the one blob of a user.
    void setUserBlob(const QString &userName, const QByteArray &data);
    /// The blob \a name.
    Answer<Blob> blobOf(const QString &name) const;
    /// The one blob of a user.
    Answer<Blob> userBlobOf(const QString &userName) const;

    // ---- being told

    /// Adds an observer for as long as somebody else keeps it alive.
    void addObserver(const std::weak_ptr<Observer> &observer);
    /// Removes an observer; a notice that runs at this moment on another thread may still finish.
    void removeObserver(const Observer *observer);

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Newsroom
