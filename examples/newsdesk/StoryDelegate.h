#pragma once

#include <QStyledItemDelegate>

namespace Desk {

class UpdateMarks;

/// Draws the cells of stories: who is locked and what has changed in the first column, urgent ones in colour.
class StoryDelegate : public QStyledItemDelegate
{
public:
    /// \a marks may be null and outlives this otherwise.
    explicit StoryDelegate(const UpdateMarks *marks, QObject *parent = nullptr);

    /// The column that has room for the signs of a row; -1 for none.
    void setSignColumn(int column) { m_signColumn = column; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    void addSign(QStyleOptionViewItem *option, const QModelIndex &index, bool marked) const;

    const UpdateMarks *const m_marks;
    int m_signColumn = -1;
};

} // namespace Desk
