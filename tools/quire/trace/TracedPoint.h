#pragma once

#include "trace/TracedObject.h"

namespace Tool {

/// The container of the server's connection points, whose calls are recorded, and those of the points that are found.
class TracedPointContainer final : public TracedUnknown<IConnectionPointContainer>
{
public:
    using TracedUnknown::TracedUnknown;

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints **points) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint **point) override;
};

/// A connection point whose calls are recorded.
class TracedPoint final : public TracedUnknown<IConnectionPoint>
{
public:
    using TracedUnknown::TracedUnknown;

    STDMETHODIMP GetConnectionInterface(IID *iid) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer **container) override;
    STDMETHODIMP Advise(IUnknown *sink, DWORD *cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections **connections) override;
};

} // namespace Tool
