#include <quire/newsroom/server/Connections.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>

#include <quire/newsroom/server/Census.h>

namespace Newsroom {

/// What holds a sink.
struct Connections::References
{
    Owned<IUnknown> identity;
    Owned<Orvex::_IAnNotifyFast> fast;
    Owned<Orvex::_IAnNotifyFast2> fast2; // at the point Fast2 only
};

/// One advised sink.
struct Connections::Connection
{
    Point point = Point::Fast;
    DWORD cookie = 0;
    const IUnknown *identity = nullptr; // to compare, not to call

    // Whoever is inside (see enter()) may use the references; they are taken out when it was released and nobody is.
    References references;

    // Guarded by the mutex of the Connections.
    bool released = false;
    bool awaited = false; // unadvise() waits for those inside and takes the references itself
    int inside = 0;
    std::condition_variable left;
};

namespace {

/// How many events this thread is inside of: such a thread must not wait for an event to end.
thread_local int insideEvents = 0;

DWORD nextCookie()
{
    static std::atomic<DWORD> last{0};
    return ++last;
}

template<class Interface>
Owned<Interface> query(IUnknown *object, REFIID iid)
{
    void *queried = nullptr;
    if (FAILED(object->QueryInterface(iid, &queried)))
        return nullptr;
    return Owned<Interface>(static_cast<Interface *>(queried));
}

} // namespace

Connections::Connections(std::shared_ptr<Census> census)
    : m_census(std::move(census))
{}

Connections::~Connections()
{
    close();
}

const IID &Connections::eventInterface(Point point)
{
    // cppcheck-suppress returnTempReference; these are constants
    return point == Point::Fast ? __uuidof(Orvex::_IAnNotifyFast) : __uuidof(Orvex::_IAnNotifyFast2);
}

HRESULT Connections::advise(Point point, IUnknown *sink, DWORD *cookie)
{
    const auto connection = std::make_shared<Connection>();
    References &references = connection->references;
    references.identity = query<IUnknown>(sink, IID_IUnknown);
    if (point == Point::Fast) {
        references.fast = query<Orvex::_IAnNotifyFast>(sink, eventInterface(point));
    } else {
        references.fast2 = query<Orvex::_IAnNotifyFast2>(sink, eventInterface(point));
        references.fast = share<Orvex::_IAnNotifyFast>(references.fast2.get());
    }
    if (!references.identity || !references.fast)
        return CONNECT_E_CANNOTCONNECT;
    connection->point = point;
    connection->cookie = nextCookie();
    connection->identity = references.identity.get();

    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_closed)
        return RPC_E_DISCONNECTED;
    m_connections.push_back(connection);
    m_census->born(ObjectKind::Connection);
    *cookie = connection->cookie;
    return S_OK;
}

HRESULT Connections::unadvise(Point point, DWORD cookie)
{
    References taken; // goes after the mutex is released
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto found = std::find_if(m_connections.begin(), m_connections.end(), [&](const ConnectionPointer &each) {
        return each->point == point && each->cookie == cookie;
    });
    if (found == m_connections.end())
        return CONNECT_E_NOCONNECTION;
    const ConnectionPointer connection = *found;
    connection->released = true;
    m_connections.erase(found);
    if (insideEvents == 0) {
        connection->awaited = true;
        connection->left.wait(lock, [&connection] { return connection->inside == 0; });
    }
    taken = takeIfUnused(*connection);
    lock.unlock();
    return S_OK;
}

std::vector<CONNECTDATA> Connections::list(Point point)
{
    std::vector<CONNECTDATA> list;
    for (const ConnectionPointer &connection : receiversAt(point)) {
        if (!enter(*connection))
            continue;
        CONNECTDATA data = {};
        data.pUnk = share(connection->references.identity.get()).release();
        data.dwCookie = connection->cookie;
        list.push_back(data);
        leave(*connection);
    }
    return list;
}

void Connections::close()
{
    std::vector<References> taken; // goes after the mutex is released
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    for (const ConnectionPointer &connection : m_connections) {
        connection->released = true;
        taken.push_back(takeIfUnused(*connection));
    }
    m_connections.clear();
}

void Connections::tellLogout()
{
    tell(receiversOnce(), [](const References &sink) { sink.fast->raw_OnNotifyLogout(); });
}

void Connections::tellSearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished)
{
    tell(receiversOnce(),
         [=](const References &sink) { sink.fast->raw_OnNotifySearchResults(searchId, results, totalHits, finished); });
}

void Connections::tellQueueChange(LONG number)
{
    tell(receiversAt(Point::Fast2), [number](const References &sink) { sink.fast2->raw_OnNotifySpecial(number); });
}

/// To be called under the mutex.
Connections::References Connections::takeIfUnused(Connection &connection)
{
    if (!connection.released || connection.inside > 0 || !connection.references.identity)
        return {};
    m_census->gone(ObjectKind::Connection);
    return std::move(connection.references);
}

/// False when the connection was released meanwhile.
bool Connections::enter(Connection &connection)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (connection.released)
        return false;
    ++connection.inside;
    return true;
}

void Connections::leave(Connection &connection)
{
    References taken; // goes after the mutex is released
    const std::lock_guard<std::mutex> lock(m_mutex);
    --connection.inside;
    if (!connection.awaited)
        taken = takeIfUnused(connection); // cppcheck-suppress unreadVariable; it is kept for a while, not read
    connection.left.notify_all();
}

template<class Event>
void Connections::tell(const std::vector<ConnectionPointer> &receivers, const Event &event)
{
    for (const ConnectionPointer &connection : receivers) {
        if (!enter(*connection))
            continue;
        ++insideEvents;
        try {
            event(connection->references);
        } catch (...) { // NOLINT(bugprone-empty-catch): the other sinks shall still be told
        }
        --insideEvents;
        leave(*connection);
    }
}

std::vector<Connections::ConnectionPointer> Connections::receiversOnce() const
{
    std::vector<ConnectionPointer> receivers = receiversAt(Point::Fast);
    for (const ConnectionPointer &connection : receiversAt(Point::Fast2)) {
        const bool told =
            std::any_of(receivers.begin(), receivers.end(), [&connection](const ConnectionPointer &receiver) {
                return receiver->identity == connection->identity;
            });
        if (!told)
            receivers.push_back(connection);
    }
    return receivers;
}

std::vector<Connections::ConnectionPointer> Connections::receiversAt(Point point) const
{
    std::vector<ConnectionPointer> receivers;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const ConnectionPointer &connection : m_connections) {
        if (connection->point == point)
            receivers.push_back(connection);
    }
    return receivers;
}

} // namespace Newsroom
