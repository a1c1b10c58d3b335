#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <quire/newsroom/server/Owned.h>
#include <quire/orvex/Orvex.h>

namespace Newsroom {

class Census;

/// The sinks that are advised at the two connection points of one sign-on object.
///
/// Events are told to the sinks one after the other, with no lock held. A sink that is advised at both points, as told
/// by its identity, is told each event once. A sink holds up its own events only: an exception that it throws is
/// dropped.
///
/// Shared by the sign-on object and the events under way; any thread may call any operation.
class Connections
{
public:
    /// Which point a sink is advised at.
    enum class Point { Fast, Fast2 };

    explicit Connections(std::shared_ptr<Census> census);
    ~Connections();

    Connections(const Connections &) = delete;
    Connections &operator=(const Connections &) = delete;

    /// The event interface of a point.
    static const IID &eventInterface(Point point);

    /// Takes a sink on, with a reference, and answers its cookie (above 0, unique in the process). Refused with
    /// CONNECT_E_CANNOTCONNECT when the sink does not have the point's interface, with RPC_E_DISCONNECTED after
    /// close().
    HRESULT advise(Point point, IUnknown *sink, DWORD *cookie);

    /// Lets a sink go: when this returns, no event runs in it and none will, unless the caller is itself inside an
    /// event. CONNECT_E_NOCONNECTION for an unknown cookie.
    HRESULT unadvise(Point point, DWORD cookie);

    /// The connections of a point, oldest first; each pUnk holds a reference that the caller gives back.
    std::vector<CONNECTDATA> list(Point point);

    /// Lets all sinks go without waiting for the events that run.
    void close();

    // ---- telling events; on any thread

    void tellLogout();
    void tellSearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished);
    void tellQueueChange(LONG number);

private:
    struct References;
    struct Connection;
    using ConnectionPointer = std::shared_ptr<Connection>;

    References takeIfUnused(Connection &connection);
    bool enter(Connection &connection);
    void leave(Connection &connection);
    template<class Event>
    void tell(const std::vector<ConnectionPointer> &receivers, const Event &event);
    std::vector<ConnectionPointer> receiversOnce() const;
    std::vector<ConnectionPointer> receiversAt(Point point) const;

    const std::shared_ptr<Census> m_census;

    mutable std::mutex m_mutex; // guards what follows; never held while a sink is called or released
    std::vector<ConnectionPointer> m_connections;
    bool m_closed = false;
};

} // namespace Newsroom
