#include <quire/models/QueueModel.h>

#include <utility>

#include "QueueRows.h"
#include "ServerReading.h"
#include "ServerWork.h"
#include "StoryCells.h"
#include "WatchedQueue.h"
#include <quire/tree/ListMutexLocker.h>

namespace Quire {

namespace {

QStringList usualHeaderColumns()
{
    QStringList keys;
    for (const char *key : {Attr_Lock, Attr_Words, Attr_Rate, Attr_Break, Attr_Float, Attr_Hold, Attr_Wire, Attr_Mail})
        keys.append(QLatin1String(key));
    return keys;
}

} // namespace

QueueModel::QueueModel(QObject *parent)
    : ServerTable(parent)
    , m_headerColumns(usualHeaderColumns())
    , m_rows(std::make_unique<QueueRows>())
{}

QueueModel::~QueueModel() = default;

// ---- which queue ----------------------------------------------------------------------------------------------------

QString QueueModel::path() const
{
    return m_path;
}

bool QueueModel::isLive() const
{
    return m_queue && m_queue->GetLiveRefresh();
}

void QueueModel::open(const QString &path)
{
    if (reset(path) && !path.isEmpty())
        ask();
}

void QueueModel::close()
{
    reset(QString());
}

/// False when there is nothing left to do for the path.
bool QueueModel::reset(const QString &path)
{
    QString before;
    const bool stays = turnAway([&] {
        before = std::exchange(m_path, path);
        m_columns.clear();
        m_rows->clear();
        m_queue.reset();
        m_asking = m_running = m_outdated = false;
    });
    if (!stays)
        return false;
    const ServerWork::Turn turn(work());
    if (m_path != before)
        Q_EMIT pathChanged(m_path);
    return !turn.isOver();
}

/// Has the server open the queue, unless a slot that has heard of its path has done so already.
void QueueModel::ask()
{
    if (m_asking || m_queue)
        return;
    m_asking = true;
    if (!beginLoad())
        return;
    work().run(
        [this, path = m_path]() -> ServerWork::Delivery {
            const IDispatchPtr handle = findQueue(path);
            const std::vector<Field> fields = readFormFields(handle);
            return [this, fields, queue = WatchedQueue::open(handle)] { start(queue, fields); };
        },
        [this](HRESULT error) { fail(error); });
}

void QueueModel::start(const std::shared_ptr<WatchedQueue> &queue, const std::vector<Field> &fields)
{
    const QVector<StoryColumn> columns =
        QVector<StoryColumn>{nameColumn()} + fieldColumns(fields) + headerColumns(m_headerColumns);
    const ServerWork::Turn turn(work());
    {
        const ServerWork::Hold hold(work());
        beginInsertColumns(QModelIndex(), 0, columns.size() - 1);
        if (turn.isOver())
            return;
        m_columns = columns;
        endInsertColumns();
        if (turn.isOver())
            return;
    }
    m_queue = queue;
    m_changes = queue->changesAtFirst();
    m_asking = false;
    m_running = true;
    startPolling();
    poll();
}

/// What the ServerThread was to do could not be done.
void QueueModel::fail(qint32 error)
{
    m_asking = false;
    endLoad(error);
}

// ---- loading --------------------------------------------------------------------------------------------------------

void QueueModel::poll()
{
    if (!m_queue || m_asking || work().isHeld())
        return;
    const ServerWork::Turn turn(work());
    if (m_running) {
        const bool ended = m_queue->IsFinished();
        takeArrived(); // all of it when it has ended
        if (turn.isOver())
            return;
        if (ended)
            endReading(static_cast<qint32>(m_queue->GetError()));
        else if (m_rows->size() == 0)
            pollSoon(); // somebody waits in front of nothing
        if (turn.isOver() || m_asking)
            return; // a slot, which may have had the queue read again
    }
    m_queue->takeReport();
    const int changes = m_queue->changes();
    if (std::exchange(m_changes, changes) != changes)
        m_outdated = true;
    if (m_outdated && !m_running)
        readAnew();
}

void QueueModel::takeArrived()
{
    const int count = m_rows->arrived(*m_queue);
    if (count <= 0)
        return;
    const ServerWork::Hold hold(work());
    const auto add = [&] { m_rows->add(*m_queue, count); };
    bool stays = true;
    if (m_rows->showsOld())
        add();
    else
        stays = changeRows(QModelIndex(), {RowStep::Insert, m_rows->size(), count, 0, 0}, add);
    if (stays)
        countRows(count);
}

void QueueModel::endReading(qint32 error)
{
    m_running = false;
    const ServerWork::Turn turn(work());
    if (error >= 0 && m_rows->showsOld()) {
        // As many as there were, or all that there are.
        if (m_rows->newSize() < m_rows->size() && m_queue->MoreStoriesAvailable()) {
            m_asking = true;
            loadMore();
            return;
        }
        showNew();
    }
    if (!turn.isOver())
        endLoad(error);
}

bool QueueModel::canFetchMore(const QModelIndex &parent) const
{
    const bool idle = m_queue && !m_asking && !m_running && !m_outdated;
    return !parent.isValid() && idle && !m_rows->showsOld() && m_queue->MoreStoriesAvailable();
}

void QueueModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    m_asking = true;
    if (beginLoad())
        loadMore();
}

void QueueModel::loadMore()
{
    work().run(
        [this, queue = m_queue]() -> ServerWork::Delivery {
            findQueue(queue->Name()); // without it nothing would be loaded, and nothing said
            queue->LoadMore();
            return [this] {
                m_asking = false;
                m_running = true;
                poll();
            };
        },
        [this](HRESULT error) { fail(error); });
}

// ---- reading anew ---------------------------------------------------------------------------------------------------

void QueueModel::refresh()
{
    if (m_queue) {
        m_outdated = true;
        poll();
    } else if (!m_path.isEmpty()) {
        ask();
    }
}

void QueueModel::readAnew()
{
    m_outdated = false;
    m_asking = true;
    m_rows->keepOld(*m_queue);
    if (!beginLoad())
        return;
    work().run(
        [this, queue = m_queue]() -> ServerWork::Delivery {
            queue->Refresh();
            findQueue(queue->Name()); // without it the list is empty, and nothing said
            return [this] {
                m_asking = false;
                m_running = true;
                poll();
            };
        },
        [this](HRESULT error) { fail(error); });
}

void QueueModel::showNew()
{
    const ServerWork::Hold hold(work());
    for (const RowStep &step : m_rows->steps()) {
        if (!changeRows(QModelIndex(), step, [&] { m_rows->apply(step); }))
            return;
    }
    showChanged(m_rows->showNew());
}

/// Tells of changed rows, neighbours together.
void QueueModel::showChanged(const std::vector<int> &rows)
{
    const ServerWork::Turn turn(work());
    for (std::size_t first = 0; first < rows.size() && !turn.isOver();) {
        std::size_t behind = first + 1;
        while (behind < rows.size() && rows[behind] == rows[behind - 1] + 1)
            ++behind;
        Q_EMIT dataChanged(index(rows[first], 0), index(rows[behind - 1], columnCount() - 1));
        first = behind;
    }
}

// ---- what is shown --------------------------------------------------------------------------------------------------

int QueueModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows->size();
}

int QueueModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant QueueModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || !m_queue)
        return QVariant();
    const ListMutexLocker lock("QueueModel::data()", m_queue->mutex());
    Item *const item = m_rows->item(*m_queue, index.row());
    return item ? storyCell(*item, m_path, m_columns.at(index.column()), role) : QVariant();
}

QVariant QueueModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return ServerTable::headerData(section, orientation, role);
    return storyHeader(m_columns.at(section), role);
}

QVector<StoryColumn> QueueModel::columns() const
{
    return m_columns;
}

int QueueModel::columnOf(const QString &key) const
{
    return findColumn(m_columns, key);
}

void QueueModel::setHeaderColumns(const QStringList &keys)
{
    m_headerColumns = keys;
}

QString QueueModel::identifier(const QModelIndex &index) const
{
    return index.data(IdentifierRole).toString();
}

StoryID QueueModel::storyID(const QModelIndex &index) const
{
    StoryID id{};
    String2StoryID(identifier(index), &id, 10);
    return id;
}

QModelIndex QueueModel::indexOf(const QString &identifier) const
{
    const int row = m_rows->find(storyKey(identifier));
    return row < 0 ? QModelIndex() : index(row, 0);
}

} // namespace Quire
