#include <quire/newsroom/server/Session.h>

#include <quire/newsroom/server/Connections.h>
#include <quire/newsroom/server/SearchJob.h>

namespace Newsroom {

Session::Session(std::shared_ptr<ServerCore> core, std::shared_ptr<Connections> connections, SessionId id, QString user)
    : m_core(std::move(core))
    , m_connections(std::move(connections))
    , m_id(id)
    , m_user(std::move(user))
{}

Session::~Session()
{
    end();
}

void Session::end()
{
    if (!m_open.exchange(false))
        return;
    std::map<LONG, std::shared_ptr<SearchJob>> searches;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        searches.swap(m_searches);
    }
    for (const auto &search : searches)
        search.second->stop();
    m_core->model().signOff(m_id);
}

void Session::logOut()
{
    if (m_core->options().deliverAtOnce)
        m_connections->tellLogout();
    else
        m_core->delivery().post([connections = m_connections] { connections->tellLogout(); });
    end();
}

void Session::watch(LONG queueNumber, bool on)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (on)
        m_watched.insert(queueNumber);
    else
        m_watched.erase(queueNumber);
}

bool Session::isWatching(LONG queueNumber) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_watched.count(queueNumber) > 0;
}

void Session::tellQueueChange(LONG queueNumber)
{
    if (m_core->options().deliverAtOnce)
        m_connections->tellQueueChange(queueNumber);
    else
        m_core->delivery().post(
            [connections = m_connections, queueNumber] { connections->tellQueueChange(queueNumber); });
}

void Session::add(const std::shared_ptr<SearchJob> &search)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_searches[search->id()] = search;
}

void Session::forgetSearch(LONG id)
{
    std::shared_ptr<SearchJob> forgotten; // goes after the mutex is released
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_searches.find(id);
    if (found == m_searches.end())
        return;
    forgotten = found->second; // cppcheck-suppress unreadVariable; it is kept for a while, not read
    m_searches.erase(found);
}

bool Session::stopSearch(LONG id)
{
    std::shared_ptr<SearchJob> stopped;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_searches.find(id);
        if (found == m_searches.end())
            return false;
        stopped = found->second;
        m_searches.erase(found);
    }
    stopped->stop();
    return true;
}

} // namespace Newsroom
