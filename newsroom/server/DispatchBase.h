#pragma once

#include <type_traits>

#include <quire/orvex/Orvex.h>

namespace Newsroom {

/// The IDispatch half of the server's objects, and that they give error information.
///
/// Without a type library at hand there is nothing to call late: no type information, no names, no members. This is the
/// one place to put it.
template<class Interface>
class DispatchBase : public Interface, public ISupportErrorInfo
{
public:
    STDMETHODIMP GetTypeInfoCount(UINT *count) override
    {
        if (!count)
            return E_POINTER;
        *count = 0;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **info) override
    {
        if (!info)
            return E_POINTER;
        *info = nullptr;
        return E_NOTIMPL;
    }

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *names, UINT count, LCID, DISPID *ids) override
    {
        if (!names || !ids)
            return E_POINTER;
        for (UINT i = 0; i < count; ++i)
            ids[i] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }

    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *result, EXCEPINFO *, UINT *) override
    {
        if (result)
            VariantInit(result);
        return DISP_E_MEMBERNOTFOUND;
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override
    {
        if (iid == __uuidof(Interface))
            return S_OK;
        if constexpr (std::is_base_of_v<Orvex::IQueue, Interface>)
            return iid == __uuidof(Orvex::IQueue) ? S_OK : S_FALSE;
        return S_FALSE;
    }

protected:
    DispatchBase() = default;
    ~DispatchBase() = default;
};

} // namespace Newsroom
