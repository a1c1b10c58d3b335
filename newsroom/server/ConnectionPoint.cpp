#include <quire/newsroom/server/ConnectionPoint.h>

#include <quire/newsroom/server/Enumerator.h>

namespace Newsroom {

namespace {

const CallInterface PointInterface{"IConnectionPoint", IID_IConnectionPoint};
const CallInterface ConnectionsInterface{"IEnumConnections", IID_IEnumConnections};

} // namespace

ConnectionPoint::ConnectionPoint(IConnectionPointContainer &container, std::shared_ptr<ServerCore> core,
                                 std::shared_ptr<Connections> connections, Connections::Point point)
    : m_container(container)
    , m_core(std::move(core))
    , m_connections(std::move(connections))
    , m_point(point)
{}

CallScope ConnectionPoint::call(const char *operation) const
{
    return CallScope(m_core, PointInterface, operation);
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void **object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    const HRESULT fault = m_core->queryFault(PointInterface.name);
    if (FAILED(fault))
        return fault;
    if (iid != IID_IUnknown && iid != IID_IConnectionPoint)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IConnectionPoint *>(this);
    return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID *iid)
{
    return call("GetConnectionInterface").out(iid).run([&] {
        *iid = Connections::eventInterface(m_point);
        return S_OK;
    });
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer **container)
{
    return call("GetConnectionPointContainer").out(container).run([&] {
        *container = share(&m_container).release();
        return S_OK;
    });
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown *sink, DWORD *cookie)
{
    return call("Advise").in(Connections::eventInterface(m_point)).in(sink).out(cookie).run([&] {
        return sink ? m_connections->advise(m_point, sink, cookie) : E_POINTER;
    });
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie)
{
    return call("Unadvise").in(Connections::eventInterface(m_point)).run([&] {
        return m_connections->unadvise(m_point, cookie);
    });
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections **connections)
{
    return call("EnumConnections").out(connections).run([&] {
        using Connected = Enumerator<IEnumConnections, CONNECTDATA>;
        *connections = makeOwned<Connected>(m_core, ConnectionsInterface, m_connections->list(m_point)).release();
        return S_OK;
    });
}

} // namespace Newsroom
