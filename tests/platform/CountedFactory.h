#pragma once

#include <quire/platform/Automation.h>

#include "CountedObject.h"

/// A class object that hands out its one object. Its owner is the test, as that of the object is.
class CountedFactory : public IClassFactory
{
public:
    virtual ~CountedFactory() = default;

    CountedObject object;
    std::atomic<LONG> references{0};
    /// What it answers; after a success without an object when `givesNothing`.
    HRESULT result = S_OK;
    bool givesNothing = false;
    /// The interface that it was asked for last.
    IID asked = {};
    int calls = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **found) override
    {
        const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IClassFactory);
        *found = known ? static_cast<IClassFactory *>(this) : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *, REFIID iid, void **made) override
    {
        ++calls;
        asked = iid;
        *made = nullptr;
        if (FAILED(result) || givesNothing)
            return result;
        return object.QueryInterface(iid, made);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

/// A factory in the class table, for the length of a test.
class Registration
{
public:
    Registration(REFCLSID clsid, IUnknown *factory)
        : m_result(CoRegisterClassObject(clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie))
    {}
    Registration(const Registration &) = delete;
    Registration &operator=(const Registration &) = delete;
    ~Registration() { revoke(); }

    HRESULT result() const { return m_result; }
    DWORD cookie() const { return m_cookie; }
    /// What CoRevokeClassObject answers the first time; S_FALSE afterwards.
    HRESULT revoke()
    {
        if (m_cookie == 0)
            return S_FALSE;
        const DWORD cookie = m_cookie;
        m_cookie = 0;
        return CoRevokeClassObject(cookie);
    }

private:
    DWORD m_cookie = 0;
    HRESULT m_result;
};

/// A class that nobody else registers.
constexpr CLSID countedClass = {0x6f0b3d54, 0x91c2, 0x4e0a, {0x8d, 0x3b, 0x52, 0x7a, 0x10, 0xe4, 0xc9, 0x6d}};
