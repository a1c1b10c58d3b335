#pragma once

#include <atomic>

#include <quire/orvex/Orvex.h>

/// A client's event sink that counts what it is told. Lives on the stack: connection points must let it go before it
/// goes, which references() shows.
class EventSink final : public Orvex::_IAnNotifyFast2
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void **object) override
    {
        const bool known =
            iid == IID_IUnknown || iid == __uuidof(Orvex::_IAnNotifyFast) || iid == __uuidof(Orvex::_IAnNotifyFast2);
        *object = known ? this : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override { return --m_references; }

    STDMETHODIMP GetTypeInfoCount(UINT *) override { return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **) override { return S_OK; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return S_OK; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return S_OK;
    }

    STDMETHODIMP raw_OnNotifyLogout() override
    {
        ++logouts;
        return S_OK;
    }

    STDMETHODIMP raw_OnNotifySearchResults(LONG searchId, SAFEARRAY *results, LONG, LONG end) override
    {
        search = searchId;
        LONG last = -1;
        if (results && SafeArrayGetElemsize(results) == sizeof(Orvex::SearchHit) &&
            SUCCEEDED(SafeArrayGetUBound(results, 1, &last)))
            hits += last + 1;
        finished = end != 0;
        return S_OK;
    }

    STDMETHODIMP raw_OnNotifySpecial(LONG queueId) override
    {
        queue = queueId;
        thread = GetCurrentThreadId();
        ++queueNotices;
        return S_OK;
    }

    ULONG references() const { return m_references; }

    std::atomic<int> logouts{0};
    std::atomic<int> hits{0};
    std::atomic<int> queueNotices{0};
    std::atomic<LONG> search{0};
    std::atomic<LONG> queue{0};
    std::atomic<DWORD> thread{0};
    std::atomic<bool> finished{false};

private:
    std::atomic<ULONG> m_references{0};
};
