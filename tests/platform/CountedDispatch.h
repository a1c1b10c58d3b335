#pragma once

#include <quire/platform/Automation.h>

/// An object that lies on the test's stack and only counts the references to it, which begin at none.
class CountedDispatch final : public IDispatch
{
public:
    /// What the question for IDispatch answers; S_OK hands out a reference.
    HRESULT dispatchResult = S_OK;
    LONG references = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void **object) override
    {
        *object = nullptr;
        const bool dispatch = IsEqualGUID(riid, __uuidof(IDispatch));
        if (dispatch && FAILED(dispatchResult))
            return dispatchResult;
        if (!dispatch && !IsEqualGUID(riid, __uuidof(IUnknown)))
            return E_NOINTERFACE;
        *object = static_cast<IDispatch *>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return E_NOTIMPL;
    }
};
