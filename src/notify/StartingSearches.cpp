#include <quire/notify/StartingSearches.h>

#include <algorithm>
#include <utility>

namespace Quire {

quint64 StartingSearches::begin()
{
    m_running.push_back(m_lastTicket + 1);
    return ++m_lastTicket;
}

std::unique_ptr<SearchList> StartingSearches::end(quint64 ticket, qint32 id)
{
    m_running.erase(std::remove(m_running.begin(), m_running.end(), ticket), m_running.end());

    std::unique_ptr<SearchList> own;
    const quint64 oldest = m_running.empty() ? m_lastTicket + 1 : m_running.front();
    const auto isOver = [&](Early &early) {
        if (early.list->SearchID() == id)
            own = std::move(early.list);
        return !early.list || early.lastTicket < oldest;
    };
    m_early.erase(std::remove_if(m_early.begin(), m_early.end(), isOver), m_early.end());
    return own;
}

bool StartingSearches::takes(qint32 id) const
{
    if (m_running.empty())
        return false;
    SearchList *const list = find(id);
    return !list || !list->IsSearchComplete();
}

SearchList *StartingSearches::listFor(qint32 id)
{
    if (m_running.empty())
        return nullptr;
    if (SearchList *const list = find(id))
        return list;
    m_early.push_back({m_lastTicket, std::make_unique<SearchList>(id, QString())});
    return m_early.back().list.get();
}

SearchList *StartingSearches::find(qint32 id) const
{
    const auto found =
        std::find_if(m_early.begin(), m_early.end(), [id](const Early &early) { return early.list->SearchID() == id; });
    return found == m_early.end() ? nullptr : found->list.get();
}

} // namespace Quire
