#pragma once

#include <QWidget>

#include <quire/models/DirectoryModel.h>

class QLabel;
class QTreeView;

namespace Desk {

class RowChoice;

/// The newsroom's tree of directories and queues.
class TreePane : public QWidget
{
    Q_OBJECT

public:
    explicit TreePane(QWidget *parent = nullptr);

    Quire::DirectoryModel &model() { return m_model; }
    QTreeView &view() { return *m_view; }

    /// Reads the tree, as after signing on: the top, or again all that has been read.
    void open();
    /// Reads again what has been read.
    void refresh();
    /// Selects \a path if it has been read, without choosing it.
    void select(const QString &path);

Q_SIGNALS:
    void queueChosen(const QString &path);
    void failed(const QString &text);

private:
    void takeChosen(const QModelIndex &index);

    Quire::DirectoryModel m_model;
    QTreeView *m_view;
    RowChoice *m_choice = nullptr; // from the first signing on
};

} // namespace Desk
