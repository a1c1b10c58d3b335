#pragma once

#include <quire/models/QueueModel.h>

#include "TablePane.h"
#include "UpdateMarks.h"

namespace Desk {

class RowChoice;

/// The stories of a queue, while they arrive. What changes by itself in a live queue is marked.
class QueuePane : public TablePane
{
    Q_OBJECT

public:
    explicit QueuePane(QWidget *parent = nullptr);

    Quire::QueueModel &model() { return m_model; }
    const UpdateMarks &marks() const { return m_marks; }

    /// Shows the queue \a path.
    void open(const QString &path);
    void refresh();
    /// Reads all stories of the queue, however many.
    void loadAll();
    /// Selects the story with that identifier, without choosing it; nothing is selected when there is none.
    void select(const QString &identifier);

Q_SIGNALS:
    /// A story of the queue has changed on the server.
    void storyChanged(const QString &identifier);
    /// The queue has been read, or read again, as far as was asked for.
    void read();

private:
    void arrange();
    void takeChosen(const QModelIndex &index);
    void noteChanged(const QModelIndex &from, const QModelIndex &to);
    void noteInserted(int first, int last);
    void endLoad();
    void showState();
    QString countText() const;
    QString emptyText() const;

    Quire::QueueModel m_model;
    UpdateMarks m_marks;
    RowChoice *m_choice;
    bool m_wasRead = false;  // the queue has been read once
    bool m_loadsAll = false; // and is to be read to its end
};

} // namespace Desk
