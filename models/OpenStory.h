#pragma once

/// \file
/// A story whose fields a model shows. Not part of the public surface.

#include <QString>

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

/// What is to be written of a story. A plain value.
struct StoryChange
{
    std::vector<std::pair<QString, QString>> fields; ///< Names and values.
    QString body;                                    ///< Null: it stays as it is.
};

/// What a model wants to see of a story. A plain value.
struct StoryWish
{
    std::vector<QString> fields; ///< Their names.
    bool body = false;
};

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
    /// that has ended. Raises when there is no such story any more.
    void find();

    /// Asks for the lock. When that is refused because of somebody, \a holder names who. Raises any refusal.
    void lock(int type, QString *holder);
    /// Gives it back if it was got; what the server refuses is dropped.
    void unlock();
    bool isLocked() const { return m_locked; }

    /// Writes and saves all of \a change at once, under the story's lock: one that is not held is got, as by lock, and
    /// given back. Raises what the server refuses; then nothing is left of the change.
    void change(const StoryChange &change, int lockType, QString *holder);

private:
    void write(const StoryChange &change);
    OpenStory(const QString &queuePath, const StoryID &id);
    QString totalTime();
    void raiseError();
    static void end(OpenStory *story);

    bool m_locked = false;
};

} // namespace Quire
