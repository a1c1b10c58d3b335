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
    connect(&m_model, &StoryFieldsModel::storySaved, this, [this] { takeSaved(true); });
    connect(&m_model, &StoryFieldsModel::failed, this, [this] { takeSaved(false); });
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
        return stay(); // somebody is leaving already
    if (!m_model.isModified())
        return go();
    m_go = go;
    m_stay = stay;
    ask();
}

/// What asks may be a signal of a model that is changing just now: no event may be handled before that has returned.
void StoryEditing::ask()
{
    auto *const box =
        new QMessageBox(QMessageBox::Question, tr("Unsaved changes"), tr("This story has changes that are not saved."),
                        QMessageBox::NoButton, &m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(tr("Save them before you go on?"));
    const QPushButton *const save = box->addButton(tr("&Save"), QMessageBox::AcceptRole);
    const QPushButton *const discard = box->addButton(tr("&Discard"), QMessageBox::DestructiveRole);
    box->addButton(tr("&Keep editing"), QMessageBox::RejectRole);
    connect(box, &QMessageBox::finished, this, [this, box, save, discard] {
        if (box->clickedButton() == save && m_model.isModified()) {
            m_saving = true;
            m_model.save();
            return;
        }
        if (box->clickedButton() == discard)
            m_model.discard();
        end(!m_model.isModified());
    });
    box->open();
}

void StoryEditing::takeSaved(bool saved)
{
    if (std::exchange(m_saving, false))
        end(saved && !m_model.isModified());
}

void StoryEditing::end(bool goes)
{
    const std::function<void()> go = std::exchange(m_go, nullptr);
    const std::function<void()> stay = std::exchange(m_stay, nullptr);
    if (goes)
        go();
    else
        stay();
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
