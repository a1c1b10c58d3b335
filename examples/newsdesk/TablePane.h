#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QProgressBar;
class QStackedLayout;

namespace Desk {

class StoryTable;
class UpdateMarks;

/// A table of stories under a line that says what they are and how many, with a bar between the two while they arrive.
/// Without stories a text stands in the table's place.
class TablePane : public QWidget
{
    Q_OBJECT

public:
    StoryTable &table() { return *m_table; }

Q_SIGNALS:
    void storyChosen(const QString &queue, const QString &identifier);
    void failed(const QString &text);

protected:
    /// The table shows \a marks where there are any.
    TablePane(const UpdateMarks *marks, QWidget *parent);

    /// The line at the top, for what else belongs there.
    QHBoxLayout &head() { return *m_head; }
    QProgressBar &progress() { return *m_progress; }
    void showHead(const QString &heading, const QString &count);
    /// The bar runs while it is \a loading; \a empty stands where there are no \a rows.
    void showRows(int rows, bool loading, const QString &empty);

private:
    QHBoxLayout *m_head;
    QLabel *m_heading;
    QLabel *m_count;
    QProgressBar *m_progress;
    QStackedLayout *m_stack;
    StoryTable *m_table;
    QLabel *m_empty;
};

} // namespace Desk
