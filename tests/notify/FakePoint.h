#pragma once

#include <QVector>

#include <functional>

#include <quire/orvex/Orvex.h>

/// A connection point of a server that a test plays: it takes sinks in, one at a time, and can refuse. A member of the
/// test; its count of references tells who still holds it.
class FakePoint : public IConnectionPoint
{
public:
    explicit FakePoint(REFIID events)
        : m_events(events)
    {}
    virtual ~FakePoint() = default;

    HRESULT answer = S_OK;            ///< Of Advise; whatever it is, the cookie is filled in.
    bool raises = false;              ///< Advise and Unadvise raise `_com_error` E_FAIL.
    std::function<void()> onAdvise;   ///< Called in Advise once the sink is taken.
    std::function<void()> onUnadvise; ///< Called in Unadvise before the sink is let go.

    int advised = 0;               ///< Calls of Advise.
    QVector<DWORD> unadvised;      ///< The cookies of the calls of Unadvise.
    DWORD cookie = 0;              ///< The last cookie handed out.
    LONG references = 1;           ///< 1 for the test itself.
    Orvex::_IAnNotifyFastPtr sink; ///< The sink that is connected.

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID *iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer **container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown *newSink, DWORD *newCookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD oldCookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections **connections) override;

private:
    const IID m_events;
    DWORD m_sinkCookie = 0;
};
