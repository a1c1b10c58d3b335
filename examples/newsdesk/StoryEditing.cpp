#include "StoryEditing.h"

#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace Desk {

using Quire::StoryFieldsModel;

StoryEditing::StoryEditing(StoryFieldsModel &model, QWidget &window)
    : QObject(&window)
    , m_model(model)
    , m_window(window)
{
    connect(&m_model, &StoryFieldsModel::storySaved, this, [this] { goOn(true); });
    connect(&m_model, &StoryFieldsModel::failed, this, [this] { goOn(false); });
}

void StoryEditing::begin()
{
    m_model.lock();
}

void StoryEditing::save()
{
    m_model.save();
}

void StoryEditing::finish()
{
    leave([this] { m_model.unlock(); }, [] {});
}

void StoryEditing::leave(const std::function<void()> &go, const std::function<void()> &stay)
{
    if (m_go)
        return stay(); // a save of somebody who is leaving is running
    if (!m_model.isModified())
        return go();
    switch (ask()) {
    case Save:
        m_go = go;
        m_stay = stay;
        m_model.save();
        return;
    case Discard:
        m_model.discard();
        return go();
    case Stay:
        return stay();
    }
}

/// What was to come after a save.
void StoryEditing::goOn(bool saved)
{
    const std::function<void()> go = std::exchange(m_go, nullptr);
    const std::function<void()> stay = std::exchange(m_stay, nullptr);
    if (!go)
        return;
    if (saved && !m_model.isModified())
        go();
    else
        stay();
}

StoryEditing::Answer StoryEditing::ask()
{
    QMessageBox box(QMessageBox::Question, tr("Unsaved changes"), tr("This story has changes that are not saved."),
                    QMessageBox::NoButton, &m_window);
    box.setInformativeText(tr("Save them before you go on?"));
    const QPushButton *const save = box.addButton(tr("&Save"), QMessageBox::AcceptRole);
    const QPushButton *const discard = box.addButton(tr("&Discard"), QMessageBox::DestructiveRole);
    box.addButton(tr("&Keep editing"), QMessageBox::RejectRole);
    box.exec();
    if (box.clickedButton() == save)
        return Save;
    return box.clickedButton() == discard ? Discard : Stay;
}

void StoryEditing::resume()
{
    const bool wasEditing = m_model.isLocked() || m_model.isModified();
    m_model.unlock();
    m_model.refresh();
    if (wasEditing)
        m_model.lock();
}

} // namespace Desk
