#pragma once

#include <QStringList>
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

    /// Which of the model's columns is the title, which is as wide as there is room, and which, by their names, are not
    /// shown. Gives all others the width that the model tells of them.
    void arrangeColumns(int title, const QList<int> &hidden);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void stretchTitle();
    int widthOf(int column) const;

    StoryDelegate *m_delegate;
    int m_title = -1;
};

} // namespace Desk
