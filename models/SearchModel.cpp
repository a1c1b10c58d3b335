#include <quire/models/SearchModel.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "RowSteps.h"
#include "ServerReading.h"
#include "ServerThread.h"
#include "ServerWork.h"
#include "StoryCells.h"
#include <quire/notify/Search.h>
#include <quire/session/QuireCOM.h>
#include <quire/tree/SearchList.h>

namespace Quire {

/// A search of the server's, which ends with this.
class SearchModel::Running
{
public:
    Running(int id, quint32 signOn)
        : m_id(id)
        , m_signOn(signOn)
    {}
    ~Running() { Search::GetSearcher()->DeleteSearch(m_id); }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

    int id() const { return m_id; }
    quint32 signOn() const { return m_signOn; } // to which it belongs

private:
    const int m_id;
    const quint32 m_signOn;
};

namespace {

std::vector<QString> sortKeys(const std::vector<Item> &hits)
{
    std::vector<QString> keys;
    keys.reserve(hits.size());
    for (const Item &hit : hits)
        keys.push_back(hit.sortKey);
    return keys;
}

constexpr int checkInterval = 500; // ms

QString queueOf(const Item &hit)
{
    Attribute queue;
    return hit.FindAttr(QLatin1String(Attr_Queue), queue) ? queue.value : QString();
}

} // namespace

SearchModel::SearchModel(QObject *parent)
    : ServerTable(parent)
{
    showNothing();
}

SearchModel::~SearchModel() = default;

// ---- which search ---------------------------------------------------------------------------------------------------

void SearchModel::setFieldColumns(const QStringList &names)
{
    m_fieldColumns = names;
}

void SearchModel::showNothing()
{
    m_search.reset();
    m_hits.clear();
    m_totalHits = 0;
    m_stopWhenStarted = false;
    m_columns = QVector<StoryColumn>{nameColumn()} + headerColumns({QLatin1String(Attr_Queue)});
    for (const QString &name : qAsConst(m_fieldColumns))
        m_columns.append({StoryColumn::Field, name, name, 0, 0, 0});
}

void SearchModel::start(const QString &path, ItemType type, const QString &query)
{
    if (!turnAway([this] { showNothing(); }) || !beginLoad())
        return;
    work().run(
        [this, path, type, query]() -> ServerWork::Delivery {
            const quint32 signOn = QuireCOM::SignOnCount(); // before: one in between is found to be another one
            auto search = std::make_unique<Running>(startSearch(path, type, query), signOn);
            return [this, search = ServerThread::own(std::move(search))] { follow(search); };
        },
        [this](HRESULT error) { endLoad(error); });
}

void SearchModel::follow(const std::shared_ptr<Running> &search)
{
    m_search = search;
    m_nextCheck.setRemainingTime(checkInterval);
    if (m_stopWhenStarted)
        stop();
    startPolling();
    poll();
}

void SearchModel::stop()
{
    m_stopWhenStarted = isLoading();
    if (!m_search)
        return;
    work().run(
        [search = m_search]() -> ServerWork::Delivery {
            Search::GetSearcher()->StopSearch(search->id());
            return [] {}; // polling finds it stopped
        },
        [](HRESULT) {});
}

void SearchModel::clear()
{
    turnAway([this] { showNothing(); });
}

int SearchModel::totalHits() const
{
    return m_totalHits;
}

// ---- hits -----------------------------------------------------------------------------------------------------------

void SearchModel::poll()
{
    if (!m_search || work().isHeld())
        return;
    Search *const searcher = Search::GetSearcher();
    ItemList *const list = searcher->AccessSearchResults(m_search->id());
    std::vector<Item> arrived;
    const bool ended = !list || searcher->IsSearchDone(m_search->id());
    if (list) {
        // Of a search that has ended, all: they have been sorted. Copies share their texts with the list's.
        for (int index = ended ? 0 : static_cast<int>(m_hits.size()); index < list->u_Size(); ++index)
            arrived.push_back(*list->u_Nth(index));
        m_totalHits = static_cast<int>(static_cast<SearchList *>(list)->GetTotalHits());
        searcher->EndAccessSearchResults(m_search->id());
    }
    if (!ended) {
        if (m_nextCheck.hasExpired())
            checkSession();
        append(std::move(arrived));
        return;
    }
    stopPolling();
    m_search.reset();
    if (!list || arrange(arrived))
        endLoad(0);
}

/// A server that ends the session tells nobody that its searches have ended with it.
void SearchModel::checkSession()
{
    m_nextCheck = QDeadlineTimer(QDeadlineTimer::Forever);
    work().run(
        [this, signOn = m_search->signOn()]() -> ServerWork::Delivery {
            requireSession(signOn);
            return [this] { m_nextCheck.setRemainingTime(checkInterval); };
        },
        [this, id = m_search->id()](HRESULT error) {
            if (error == E_OUTOFMEMORY) // it has not been asked
                m_nextCheck.setRemainingTime(checkInterval);
            else
                giveUp(id, error);
        });
}

void SearchModel::giveUp(int search, qint32 error)
{
    if (!m_search || m_search->id() != search)
        return; // it has ended after all
    stopPolling();
    m_search.reset();
    endLoad(error);
}

void SearchModel::append(std::vector<Item> hits)
{
    if (hits.empty())
        return;
    const ServerWork::Hold hold(work());
    const int count = static_cast<int>(hits.size());
    const auto add = [&] { std::move(hits.begin(), hits.end(), std::back_inserter(m_hits)); };
    if (changeRows(QModelIndex(), {RowStep::Insert, rowCount(), count, 0, 0}, add))
        countRows(count);
}

/// Makes the rows those of the sorted list: double ones go, the rest is sorted, what has not been seen yet comes. False
/// when there is nothing left to do for the search.
bool SearchModel::arrange(const std::vector<Item> &hits)
{
    const ServerWork::Hold hold(work());
    std::vector<int> targets = matchRows(sortKeys(m_hits), sortKeys(hits));
    return removeMissing(targets) && sortByTarget(targets) && insertNew(targets, hits);
}

bool SearchModel::removeMissing(std::vector<int> &targets)
{
    for (int end = rowCount(); end > 0;) {
        int first = end;
        while (first > 0 && targets[static_cast<std::size_t>(first - 1)] < 0)
            --first;
        const auto remove = [&] { m_hits.erase(m_hits.begin() + first, m_hits.begin() + end); };
        if (first < end && !changeRows(QModelIndex(), {RowStep::Remove, first, end - first, 0, 0}, remove))
            return false;
        end = first < end ? first : end - 1;
    }
    targets.erase(std::remove(targets.begin(), targets.end(), -1), targets.end());
    return true;
}

bool SearchModel::sortByTarget(std::vector<int> &targets)
{
    if (std::is_sorted(targets.begin(), targets.end()))
        return true;
    const ServerWork::Turn turn(work());
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    if (turn.isOver())
        return false;
    std::vector<std::size_t> order(targets.size()); // by new row, the old one
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return targets[a] < targets[b]; });
    std::vector<int> newRows(order.size()); // by old row
    std::vector<Item> sorted;
    sorted.reserve(order.size());
    for (const std::size_t old : order) {
        newRows[old] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(m_hits[old]));
    }
    m_hits = std::move(sorted);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &index : before)
        after.append(this->index(newRows[static_cast<std::size_t>(index.row())], index.column()));
    changePersistentIndexList(before, after);
    std::sort(targets.begin(), targets.end());
    Q_EMIT layoutChanged({}, VerticalSortHint);
    return !turn.isOver();
}

bool SearchModel::insertNew(const std::vector<int> &targets, const std::vector<Item> &hits)
{
    const ServerWork::Turn turn(work());
    int arrived = 0;
    for (const RowStep &step : rowSteps(targets, static_cast<int>(hits.size()))) {
        const auto source = hits.begin() + step.source;
        const auto add = [&] { m_hits.insert(m_hits.begin() + step.first, source, source + step.count); };
        if (!changeRows(QModelIndex(), step, add))
            return false;
        arrived += step.count;
    }
    countRows(arrived);
    return !turn.isOver();
}

// ---- what is shown --------------------------------------------------------------------------------------------------

int SearchModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_hits.size());
}

int SearchModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant SearchModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    Item &hit = m_hits[static_cast<std::size_t>(index.row())];
    return storyCell(hit, queueOf(hit), m_columns.at(index.column()), role);
}

QVariant SearchModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return ServerTable::headerData(section, orientation, role);
    return storyHeader(m_columns.at(section), role);
}

QVector<StoryColumn> SearchModel::columns() const
{
    return m_columns;
}

int SearchModel::columnOf(const QString &key) const
{
    return findColumn(m_columns, key);
}

} // namespace Quire
