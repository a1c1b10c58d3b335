#pragma once

#include <QObject>

#include <functional>

#include <quire/models/StoryFieldsModel.h>

class QWidget;

namespace Desk {

/// What becomes of somebody's edits of a story: nothing that was typed goes without a question. Belongs to the story's
/// pane.
class StoryEditing : public QObject
{
    Q_OBJECT

public:
    /// The model and the window, over which questions are asked, outlive this.
    StoryEditing(Quire::StoryFieldsModel &model, QWidget &window);

    /// Asks the server for the story's lock.
    void begin();
    /// Saves and goes on editing.
    void save();
    /// Gives the lock back, after asking what is to become of unsaved changes.
    void finish();
    /// Calls \a go when nothing unsaved is left: at once, or after the person has discarded it or it has been saved;
    /// calls \a stay when it is to be kept as it is. Returns at once: the question stands over the window until it is
    /// answered, and meanwhile nobody else may leave.
    void leave(const std::function<void()> &go, const std::function<void()> &stay);
    /// After signing on anew: what was typed is still there, and gets a lock again.
    void resume();

    bool isEditing() const { return m_model.isLocked(); }

private:
    void ask();
    void takeSaved(bool saved);
    void end(bool goes);

    Quire::StoryFieldsModel &m_model;
    QWidget &m_window;
    std::function<void()> m_go; // once the question has been answered and the save that it asks for has ended
    std::function<void()> m_stay;
    bool m_saving = false; // by that answer
};

} // namespace Desk
