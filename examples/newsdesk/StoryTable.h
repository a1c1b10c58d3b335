#pragma once

#include <QHash>
#include <QList>
#include <QTableView>

namespace Desk {

class StoryDelegate;
class UpdateMarks;

/// A table of stories, whole rows of which are chosen.
class StoryTable : public QTableView
{
    Q_OBJECT

public:
    /// \a marks may be null and outlives this otherwise.
    explicit StoryTable(const UpdateMarks *marks, QWidget *parent = nullptr);

    /// For a column of which the model tells no width, in pixels; to be said before the columns are arranged.
    void setLeastWidth(int column, int width);
    /// Which of the model's columns is the title, which is as wide as there is room, and which, by their names, are not
    /// shown. Gives all others the width that the model tells of them.
    void arrangeColumns(int title, const QList<int> &hidden);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitColumns();
    void stretchTitle();
    int widthOf(int column, int letterWidth) const;

    StoryDelegate *m_delegate;
    int m_title = -1;
    QHash<int, int> m_leastWidths; // of columns
    QList<int> m_shown;            // the columns
    int m_letterWidth = 0;         // that their widths were made for; 0: none yet
};

} // namespace Desk
