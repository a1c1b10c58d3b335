#include "QueuePane.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <quire/tree/AttributeKeys.h>
#include <quire/tree/Queue.h>

#include "StoryTable.h"

namespace Desk {

namespace {

constexpr int pageOfStories = 200;      // read at a time
constexpr int allStories = 1000 * 1000; // when the whole queue is wanted

QString shownPath(const QString &path)
{
    return path.split(QLatin1Char('.')).join(QStringLiteral(" › "));
}

} // namespace

QueuePane::QueuePane(QWidget *parent)
    : QWidget(parent)
    , m_heading(new QLabel(this))
    , m_count(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_stack(new QStackedLayout)
    , m_table(new StoryTable(&m_marks, this))
    , m_empty(new QLabel(this))
{
    m_heading->setObjectName(QStringLiteral("heading"));
    m_heading->setTextFormat(Qt::PlainText);
    m_count->setObjectName(QStringLiteral("count"));
    m_progress->setObjectName(QStringLiteral("progress"));
    m_progress->setAccessibleName(tr("Loading the queue"));
    m_progress->setTextVisible(false);
    m_progress->setRange(0, 0); // the server does not tell how long a queue is
    m_empty->setObjectName(QStringLiteral("empty"));
    m_empty->setAlignment(Qt::AlignCenter);
    m_table->setObjectName(QStringLiteral("queue"));
    m_table->setAccessibleName(tr("Stories of the queue"));
    m_model.setHeaderColumns({QLatin1String(Quire::Attr_Words)});
    m_table->setModel(&m_model);

    auto *const head = new QHBoxLayout;
    head->setContentsMargins(12, 9, 12, 7);
    head->addWidget(m_heading);
    head->addStretch(1);
    head->addWidget(m_count);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_table);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(head);
    layout->addWidget(m_progress);
    layout->addLayout(m_stack, 1);

    using Quire::QueueModel;
    connect(&m_model, &QueueModel::columnsInserted, this, &QueuePane::arrange);
    connect(&m_model, &QueueModel::dataChanged, this, &QueuePane::noteChanged);
    connect(&m_model, &QueueModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { noteInserted(first, last); });
    connect(&m_model, &QueueModel::rowsRemoved, this, &QueuePane::showState);
    connect(&m_model, &QueueModel::loadingChanged, this, &QueuePane::showState);
    connect(&m_model, &QueueModel::finished, this, &QueuePane::endLoad);
    connect(&m_model, &QueueModel::failed, this, &QueuePane::failed);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &QueuePane::takeCurrent);
    connect(&m_marks, &UpdateMarks::changed, m_table->viewport(), QOverload<>::of(&QWidget::update));
    showState();
}

void QueuePane::open(const QString &path)
{
    m_wasRead = false;
    m_loadsAll = false;
    Quire::Queue::setLoadIncrement(pageOfStories);
    m_marks.clear();
    m_model.open(path);
    m_table->scrollToTop();
    showState();
}

void QueuePane::refresh()
{
    m_model.refresh();
}

void QueuePane::loadAll()
{
    m_loadsAll = true;
    Quire::Queue::setLoadIncrement(allStories);
    m_model.fetchMore(QModelIndex());
}

void QueuePane::select(const QString &identifier)
{
    const QModelIndex index = m_model.indexOf(identifier);
    m_selecting = true;
    if (index.isValid())
        m_table->setCurrentIndex(index.siblingAtColumn(m_table->columnAt(0)));
    else
        m_table->setCurrentIndex(QModelIndex());
    m_selecting = false;
}

/// The name stands for the story; where the form has a title, it is the same, at the form's own place.
void QueuePane::arrange()
{
    const int title = m_model.columnOf(QStringLiteral("title"));
    m_table->arrangeColumns(title < 0 ? 0 : title, title < 0 ? QList<int>() : QList<int>{0});
}

void QueuePane::takeCurrent(const QModelIndex &index)
{
    if (m_selecting || !index.isValid())
        return;
    const QString identifier = m_model.identifier(index);
    m_marks.see(identifier);
    Q_EMIT storyChosen(m_model.path(), identifier);
}

void QueuePane::noteChanged(const QModelIndex &from, const QModelIndex &to)
{
    for (int row = from.row(); row <= to.row(); ++row) {
        const QString identifier = m_model.identifier(m_model.index(row, 0));
        m_marks.mark(identifier);
        Q_EMIT storyChanged(identifier);
    }
}

void QueuePane::noteInserted(int first, int last)
{
    // Otherwise they are only more of what was there before.
    if (m_wasRead && m_model.isLive()) {
        for (int row = first; row <= last; ++row)
            m_marks.mark(m_model.identifier(m_model.index(row, 0)));
    }
    showState();
}

void QueuePane::endLoad()
{
    m_wasRead = true;
    if (m_loadsAll && m_model.canFetchMore(QModelIndex()))
        m_model.fetchMore(QModelIndex());
}

void QueuePane::showState()
{
    m_heading->setText(m_model.path().isEmpty() ? tr("No queue") : shownPath(m_model.path()));
    m_count->setText(countText());
    // It keeps its place: rows must not jump when a load begins.
    m_progress->setRange(0, m_model.isLoading() ? 0 : 1);
    m_progress->setProperty("loading", m_model.isLoading());
    m_empty->setText(emptyText());
    const bool hasRows = m_model.rowCount() > 0;
    m_stack->setCurrentIndex(hasRows ? 1 : 0);
}

QString QueuePane::countText() const
{
    if (m_model.path().isEmpty())
        return QString();
    const QString count = QLocale().toString(m_model.rowCount());
    if (m_model.isLoading())
        return tr("loading, %1 so far").arg(count);
    const QString stories = m_model.rowCount() == 1 ? tr("1 story") : tr("%1 stories").arg(count);
    if (!m_model.errorText().isEmpty())
        return tr("%1, not up to date: %2").arg(stories, m_model.errorText());
    if (m_model.isLive())
        return tr("%1, live").arg(stories);
    return m_model.canFetchMore(QModelIndex()) ? tr("first %1").arg(stories) : stories;
}

QString QueuePane::emptyText() const
{
    if (m_model.path().isEmpty())
        return tr("Choose a queue in the newsroom on the left.");
    if (m_model.isLoading())
        return tr("Loading…");
    const QString error = m_model.errorText();
    return error.isEmpty() ? tr("There are no stories in this queue.") : error;
}

} // namespace Desk
