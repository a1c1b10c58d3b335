#pragma once

#include <QWidget>

#include <quire/models/SearchModel.h>

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedLayout;

namespace Desk {

class StoryTable;

/// The hits of a search, while they arrive.
class SearchPane : public QWidget
{
    Q_OBJECT

public:
    explicit SearchPane(QWidget *parent = nullptr);

    Quire::SearchModel &model() { return m_model; }
    StoryTable &table() { return *m_table; }

    /// Searches the directory or queue \a path, which \a type says, and all below.
    void search(const QString &path, Quire::ItemType type, const QString &words);
    /// Selects the hit with that identifier, without choosing it.
    void select(const QString &identifier);

Q_SIGNALS:
    void storyChosen(const QString &queue, const QString &identifier);
    void failed(const QString &text);
    /// The way back to the queue.
    void closed();

private:
    void arrange();
    void takeCurrent(const QModelIndex &index);
    void showState();

    Quire::SearchModel m_model;
    QString m_words;
    QString m_path;
    QLabel *m_heading;
    QLabel *m_count;
    QPushButton *m_stop;
    QProgressBar *m_progress;
    QStackedLayout *m_stack;
    StoryTable *m_table;
    QLabel *m_empty;
    bool m_selecting = false; // by the program
};

} // namespace Desk
