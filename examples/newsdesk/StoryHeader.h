#pragma once

#include <QHeaderView>

namespace Desk {

/// The titles of a StoryTable's columns, the first one as far from the edge as the texts below it.
class StoryHeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit StoryHeader(QWidget *parent = nullptr);

    /// The width that the signs of the rows take, in pixels.
    static constexpr int signWidth = 24;

protected:
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;

private:
    bool isFirst(int section) const;
};

} // namespace Desk
