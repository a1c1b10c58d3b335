#include "TablePane.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "StoryTable.h"

namespace Desk {

TablePane::TablePane(const UpdateMarks *marks, QWidget *parent)
    : QWidget(parent)
    , m_head(new QHBoxLayout)
    , m_heading(new QLabel(this))
    , m_count(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_stack(new QStackedLayout)
    , m_table(new StoryTable(marks, this))
    , m_empty(new QLabel(this))
{
    m_heading->setObjectName(QStringLiteral("heading"));
    m_heading->setTextFormat(Qt::PlainText);
    m_count->setObjectName(QStringLiteral("count"));
    m_progress->setTextVisible(false);
    m_empty->setObjectName(QStringLiteral("empty"));
    m_empty->setAlignment(Qt::AlignCenter);

    m_head->addWidget(m_heading);
    m_head->addStretch(1);
    m_head->addWidget(m_count);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_table);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(m_head);
    layout->addWidget(m_progress);
    layout->addLayout(m_stack, 1);
}

void TablePane::showHead(const QString &heading, const QString &count)
{
    m_heading->setText(heading);
    m_count->setText(count);
}

void TablePane::showRows(int rows, bool loading, const QString &empty)
{
    // It keeps its place: rows must not jump when a load begins. Nor does the server tell how many there are going to
    // be.
    m_progress->setRange(0, loading ? 0 : 1);
    m_empty->setText(empty);
    m_stack->setCurrentIndex(rows > 0 ? 1 : 0);
}

} // namespace Desk
