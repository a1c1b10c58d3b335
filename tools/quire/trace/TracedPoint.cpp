#include "trace/TracedPoint.h"

namespace Tool {

STDMETHODIMP TracedPointContainer::EnumConnectionPoints(IEnumConnectionPoints **points)
{
    return pass("IConnectionPointContainer::EnumConnectionPoints", &IConnectionPointContainer::EnumConnectionPoints,
                points);
}

STDMETHODIMP TracedPointContainer::FindConnectionPoint(REFIID iid, IConnectionPoint **point)
{
    return tracedAs<TracedPoint>(pass("IConnectionPointContainer::FindConnectionPoint",
                                      &IConnectionPointContainer::FindConnectionPoint, iid, point),
                                 point, trace());
}

STDMETHODIMP TracedPoint::GetConnectionInterface(IID *iid)
{
    return pass("IConnectionPoint::GetConnectionInterface", &IConnectionPoint::GetConnectionInterface, iid);
}

STDMETHODIMP TracedPoint::GetConnectionPointContainer(IConnectionPointContainer **container)
{
    return pass("IConnectionPoint::GetConnectionPointContainer", &IConnectionPoint::GetConnectionPointContainer,
                container);
}

STDMETHODIMP TracedPoint::Advise(IUnknown *sink, DWORD *cookie)
{
    return pass("IConnectionPoint::Advise", &IConnectionPoint::Advise, sink, cookie);
}

STDMETHODIMP TracedPoint::Unadvise(DWORD cookie)
{
    return pass("IConnectionPoint::Unadvise", &IConnectionPoint::Unadvise, cookie);
}

STDMETHODIMP TracedPoint::EnumConnections(IEnumConnections **connections)
{
    return pass("IConnectionPoint::EnumConnections", &IConnectionPoint::EnumConnections, connections);
}

} // namespace Tool
