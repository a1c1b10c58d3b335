#include "notify/FakePoint.h"

HRESULT FakePoint::QueryInterface(REFIID iid, void **object)
{
    *object = nullptr;
    if (!IsEqualGUID(iid, __uuidof(IUnknown)) && !IsEqualGUID(iid, __uuidof(IConnectionPoint)))
        return E_NOINTERFACE;
    *object = static_cast<IConnectionPoint *>(this);
    AddRef();
    return S_OK;
}

HRESULT FakePoint::GetConnectionInterface(IID *iid)
{
    *iid = m_events;
    return S_OK;
}

HRESULT FakePoint::GetConnectionPointContainer(IConnectionPointContainer **container)
{
    *container = nullptr;
    return E_NOTIMPL;
}

HRESULT FakePoint::Advise(IUnknown *newSink, DWORD *newCookie)
{
    ++advised;
    *newCookie = ++cookie;
    if (raises)
        throw _com_error(E_FAIL);
    if (FAILED(answer))
        return answer;
    void *queried = nullptr;
    const HRESULT result = newSink->QueryInterface(m_events, &queried);
    if (FAILED(result))
        return result;
    // Both event interfaces begin with the older one.
    sink.Attach(static_cast<Orvex::_IAnNotifyFast *>(queried), false);
    m_sinkCookie = *newCookie;
    if (onAdvise)
        onAdvise();
    return answer;
}

HRESULT FakePoint::Unadvise(DWORD oldCookie)
{
    unadvised.append(oldCookie);
    if (raises)
        throw _com_error(E_FAIL);
    if (onUnadvise)
        onUnadvise();
    if (oldCookie == m_sinkCookie)
        sink = nullptr;
    return S_OK;
}

HRESULT FakePoint::EnumConnections(IEnumConnections **connections)
{
    *connections = nullptr;
    return E_NOTIMPL;
}
