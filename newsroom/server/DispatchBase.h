#pragma once

#include <type_traits>

#include <quire/newsroom/server/LateBinding.h>
#include <quire/orvex/Orvex.h>

namespace Newsroom {

/// The IDispatch half of the server's objects, and that they give error information.
template<class Interface>
class DispatchBase : public Interface, public ISupportErrorInfo
{
public:
    STDMETHODIMP GetTypeInfoCount(UINT *count) override
    {
        if (!count)
            return E_POINTER;
        *count = canBindLate(__uuidof(Interface)) ? 1 : 0;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo **info) override
    {
        if (!info)
            return E_POINTER;
        *info = nullptr;
        return index == 0 ? lateTypeInfo(__uuidof(Interface), info) : DISP_E_BADINDEX;
    }

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *names, UINT count, LCID, DISPID *ids) override
    {
        if (!names || !ids)
            return E_POINTER;
        for (UINT i = 0; i < count; ++i)
            ids[i] = DISPID_UNKNOWN;
        return lateNames(__uuidof(Interface), names, count, ids);
    }

    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS *parameters, VARIANT *result,
                        EXCEPINFO *exception, UINT *wrongArgument) override
    {
        if (result)
            VariantInit(result);
        return lateInvoke(__uuidof(Interface), static_cast<Interface *>(this), member, flags, parameters, result,
                          exception, wrongArgument);
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
