#pragma once

#include <quire/models/SearchModel.h>

#include "TablePane.h"

class QPushButton;

namespace Desk {

class RowChoice;

/// The hits of a search, while they arrive.
class SearchPane : public TablePane
{
    Q_OBJECT

public:
    explicit SearchPane(QWidget *parent = nullptr);

    Quire::SearchModel &model() { return m_model; }

    /// Searches the directory or queue \a path, which \a type says, and all below.
    void search(const QString &path, Quire::ItemType type, const QString &words);
    /// Selects the hit with that identifier, without choosing it.
    void select(const QString &identifier);

Q_SIGNALS:
    /// The way back to the queue.
    void closed();

private:
    void arrange();
    void takeChosen(const QModelIndex &index);
    void showState();
    QString countText() const;

    Quire::SearchModel m_model;
    QString m_words;
    QString m_path;
    RowChoice *m_choice;
    QPushButton *m_stop;
};

} // namespace Desk
