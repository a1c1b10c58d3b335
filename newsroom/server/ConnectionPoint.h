#pragma once

#include <quire/newsroom/server/CallScope.h>
#include <quire/newsroom/server/Connections.h>

namespace Newsroom {

/// One connection point of a sign-on object: a part of it with an identity of its own. A reference to it is one to the
/// sign-on object, so that the container lives as long as its points.
class ConnectionPoint final : public IConnectionPoint
{
public:
    ConnectionPoint(IConnectionPointContainer &container, std::shared_ptr<ServerCore> core,
                    std::shared_ptr<Connections> connections, Connections::Point point);

    STDMETHODIMP QueryInterface(REFIID iid, void **object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return m_container.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return m_container.Release(); }

    STDMETHODIMP GetConnectionInterface(IID *iid) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer **container) override;
    STDMETHODIMP Advise(IUnknown *sink, DWORD *cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections **connections) override;

private:
    CallScope call(const char *operation) const;

    IConnectionPointContainer &m_container;
    const std::shared_ptr<ServerCore> m_core;
    const std::shared_ptr<Connections> m_connections;
    const Connections::Point m_point;
};

} // namespace Newsroom
