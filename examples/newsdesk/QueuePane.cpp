#include "QueuePane.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QProgressBar>

#include <quire/tree/AttributeKeys.h>
#include <quire/tree/Queue.h>

#include "RowChoice.h"
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
    : TablePane(&m_marks, parent)
    , m_choice(new RowChoice(table(), m_model))
{
    head().setContentsMargins(12, 9, 12, 7);
    progress().setObjectName(QStringLiteral("progress"));
    progress().setAccessibleName(tr("Loading the queue"));
    table().setObjectName(QStringLiteral("queue"));
    table().setAccessibleName(tr("Stories of the queue"));
    m_model.setHeaderColumns({QLatin1String(Quire::Attr_Words)});

    using Quire::QueueModel;
    connect(&m_model, &QueueModel::columnsInserted, this, &QueuePane::arrange);
    connect(&m_model, &QueueModel::dataChanged, this, &QueuePane::noteChanged);
    connect(&m_model, &QueueModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { noteInserted(first, last); });
    connect(&m_model, &QueueModel::rowsRemoved, this, &QueuePane::showState);
    connect(&m_model, &QueueModel::loadingChanged, this, &QueuePane::showState);
    connect(&m_model, &QueueModel::finished, this, &QueuePane::endLoad);
    connect(&m_model, &QueueModel::failed, this, &QueuePane::failed);
    connect(m_choice, &RowChoice::chosen, this, &QueuePane::takeChosen);
    connect(&m_marks, &UpdateMarks::changed, table().viewport(), QOverload<>::of(&QWidget::update));
    showState();
}

void QueuePane::open(const QString &path)
{
    m_wasRead = false;
    m_loadsAll = false;
    Quire::Queue::setLoadIncrement(pageOfStories);
    m_marks.clear();
    m_model.open(path);
    table().scrollToTop();
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
    m_choice->select(index.isValid() ? index.siblingAtColumn(table().columnAt(0)) : QModelIndex());
}

/// The name stands for the story; where the form has a title, it is the same, at the form's own place.
void QueuePane::arrange()
{
    const int title = m_model.columnOf(QStringLiteral("title"));
    table().arrangeColumns(title < 0 ? 0 : title, title < 0 ? QList<int>() : QList<int>{0});
}

void QueuePane::takeChosen(const QModelIndex &index)
{
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
    Q_EMIT read();
}

void QueuePane::showState()
{
    showHead(m_model.path().isEmpty() ? tr("No queue") : shownPath(m_model.path()), countText());
    showRows(m_model.rowCount(), m_model.isLoading(), emptyText());
}

QString QueuePane::countText() const
{
    if (m_model.path().isEmpty())
        return QString();
    const QString count = QLocale().toString(m_model.rowCount());
    if (m_model.isLoading())
        return tr("loading, %1 so far").arg(count);
    const QString stories = m_model.rowCount() == 1 ? tr("1 story") : tr("%1 stories").arg(count);
    if (m_model.error() != 0)
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
    return m_model.error() == 0 ? tr("There are no stories in this queue.") : m_model.errorText();
}

} // namespace Desk
