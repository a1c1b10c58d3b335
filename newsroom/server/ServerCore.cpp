#include <quire/newsroom/server/ServerCore.h>

#include <algorithm>
#include <new>

#include <quire/newsroom/server/Connections.h>
#include <quire/newsroom/server/Session.h>
#include <quire/platform/Bstr.h>

namespace Newsroom {

namespace {

/// Adds `item` and forgets those that are gone, so that the list does not grow with the sign-ons of a long day.
template<class Item>
void addWeakly(std::vector<std::weak_ptr<Item>> *list, const std::shared_ptr<Item> &item)
{
    list->erase(std::remove_if(list->begin(), list->end(), [](const auto &each) { return each.expired(); }),
                list->end());
    list->push_back(item);
}

template<class Item>
std::vector<std::shared_ptr<Item>> alive(const std::vector<std::weak_ptr<Item>> &list)
{
    std::vector<std::shared_ptr<Item>> items;
    for (const std::weak_ptr<Item> &each : list) {
        if (std::shared_ptr<Item> item = each.lock())
            items.push_back(std::move(item));
    }
    return items;
}

} // namespace

std::shared_ptr<ServerCore> ServerCore::make(std::shared_ptr<Model> model)
{
    auto core = std::make_shared<ServerCore>(std::move(model));
    core->m_model->addObserver(core);
    return core;
}

ServerCore::ServerCore(std::shared_ptr<Model> model)
    : m_model(std::move(model))
    , m_census(std::make_shared<Census>())
{}

ServerCore::~ServerCore() = default;

void ServerCore::close()
{
    if (!m_open.exchange(false))
        return;
    m_model->removeObserver(this);
    m_faults.close();
    for (const std::shared_ptr<Session> &session : sessions())
        session->end();
    m_delivery.close();

    std::vector<std::shared_ptr<Connections>> connections;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        connections = alive(m_connections);
    }
    for (const std::shared_ptr<Connections> &each : connections)
        each->close();
}

HRESULT ServerCore::queryFault(const char *interfaceName)
{
    const Fault fault = m_faults.nextUncounted(interfaceName, "QueryInterface");
    switch (fault.kind()) {
    case Fault::Kind::None:
        return S_OK;
    case Fault::Kind::Hang:
        m_faults.hang(fault.milliseconds());
        return S_OK;
    case Fault::Kind::Result:
        return fault.code();
    case Fault::Kind::Raise:
        throw _com_error(fault.code());
    case Fault::Kind::OutOfMemory:
        throw std::bad_alloc();
    default:
        return E_NOINTERFACE;
    }
}

BSTR ServerCore::toText(const QString &text) const
{
    return text.isEmpty() && m_options.nullForEmpty ? nullptr : Platform::toBstr(text);
}

void ServerCore::add(const std::shared_ptr<Connections> &connections)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    addWeakly(&m_connections, connections);
}

void ServerCore::add(const std::shared_ptr<Session> &session)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    addWeakly(&m_sessions, session);
}

std::vector<std::shared_ptr<Session>> ServerCore::sessions()
{
    // A session that ends here for want of other holders must not do so under the mutex: release the lock first.
    std::vector<std::shared_ptr<Session>> sessions;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        sessions = alive(m_sessions);
    }
    sessions.erase(std::remove_if(sessions.begin(), sessions.end(),
                                  [](const std::shared_ptr<Session> &session) { return !session->isOpen(); }),
                   sessions.end());
    return sessions;
}

void ServerCore::changed(const Change &change)
{
    if (!change.isQueueChange())
        return;
    for (const std::shared_ptr<Session> &session : sessions()) {
        if (session->isWatching(change.queueNumber))
            session->tellQueueChange(change.queueNumber);
    }
}

} // namespace Newsroom
