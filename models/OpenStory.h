#pragma once

/// \file
/// A story whose fields a model shows. Not part of the public surface.

#include <QString>

#include <memory>
#include <vector>

#include <quire/forms/Field.h>
#include <quire/story/Story.h>

namespace Quire {

/// A story that the server is asked for by its identifier: a long queue is not searched for it. On the ServerThread.
class OpenStory : public Story
{
public:
    /// The story \a id of \a queuePath; raises when there is none. Gives its lock back when it goes, on the
    /// ServerThread whoever lets go of it.
    static std::shared_ptr<OpenStory> open(const QString &queuePath, const StoryID &id);

    /// The fields of the form, the first of those with the same name; none without a form.
    std::vector<Field> formFields();
    /// The value of each of these fields. Raises what the server refuses.
    std::vector<QString> values(const std::vector<QString> &names);

    /// Asks for the lock. When that is refused because of somebody, \a holder names who. Raises any refusal.
    void lock(int type, QString *holder);
    /// Gives it back if it was got; what the server refuses is dropped.
    void unlock();
    bool isLocked() const { return m_locked; }

    /// Writes a field and saves the story, under its lock: one that is not held is got, as by lock, and given back.
    /// Returns the values of \a names then. Raises what the server refuses; then nothing is left of the change.
    std::vector<QString> change(const QString &name, const QString &value, int lockType, QString *holder,
                                const std::vector<QString> &names);

private:
    void write(const QString &name, const QString &value);
    OpenStory(const QString &queuePath, const StoryID &id);
    void find();
    void raiseError();
    static void end(OpenStory *story);

    bool m_locked = false;
};

} // namespace Quire
