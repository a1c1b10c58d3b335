#pragma once

#include <atomic>
#include <new>
#include <type_traits>
#include <utility>

#include <quire/orvex/Orvex.h>

#include "trace/CallTrace.h"

namespace Tool {

/// Stands before an object of a server, passes every call of one interface on, and records it.
///
/// It answers QueryInterface as the object itself does, and gives itself out for the interfaces that it records. Made
/// with one reference; any thread may call it, as far as the object allows that.
template<class Interface>
class TracedUnknown : public Interface
{
public:
    TracedUnknown(Interface *object, CallTracePtr trace)
        : m_object(object)
        , m_trace(std::move(trace))
    {
        m_object->AddRef();
    }
    TracedUnknown(const TracedUnknown &) = delete;
    TracedUnknown &operator=(const TracedUnknown &) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void **object) override
    {
        const HRESULT result = m_object->QueryInterface(iid, object);
        if (FAILED(result) || !*object || !isRecorded(iid))
            return result;
        static_cast<IUnknown *>(*object)->Release();
        this->AddRef();
        *object = static_cast<Interface *>(this);
        return result;
    }

    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }

    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    virtual ~TracedUnknown() { m_object->Release(); }

    /// Calls \a method of the object.
    template<class Method, class... Arguments>
    HRESULT pass(const char *operation, Method method, Arguments... arguments)
    {
        return m_trace->record(operation, [&] { return (m_object->*method)(arguments...); });
    }

    Interface *object() const { return m_object; }
    const CallTracePtr &trace() const { return m_trace; }

private:
    static bool isRecorded(REFIID iid)
    {
        if constexpr (std::is_base_of_v<IDispatch, Interface>) {
            if (iid == IID_IDispatch)
                return true;
        }
        if constexpr (std::is_base_of_v<Orvex::IQueue, Interface>) {
            if (iid == __uuidof(Orvex::IQueue))
                return true;
        }
        return iid == IID_IUnknown || iid == __uuidof(Interface);
    }

    Interface *const m_object;
    const CallTracePtr m_trace;
    std::atomic<ULONG> m_references{1};
};

/// The same for an interface for script hosts. What such a host gets by name is not recorded any further.
template<class Interface>
class TracedDispatch : public TracedUnknown<Interface>
{
public:
    using TracedUnknown<Interface>::TracedUnknown;

    STDMETHODIMP GetTypeInfoCount(UINT *count) override
    {
        return this->pass("IDispatch::GetTypeInfoCount", &Interface::GetTypeInfoCount, count);
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo **info) override
    {
        return this->pass("IDispatch::GetTypeInfo", &Interface::GetTypeInfo, index, locale, info);
    }

    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR *names, UINT count, LCID locale, DISPID *ids) override
    {
        return this->trace()->record("IDispatch::GetIDsOfNames",
                                     [&] { return this->object()->GetIDsOfNames(iid, names, count, locale, ids); });
    }

    STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS *parameters, VARIANT *result,
                        EXCEPINFO *exception, UINT *wrongArgument) override
    {
        return this->trace()->record("IDispatch::Invoke", [&] {
            return this->object()->Invoke(member, iid, locale, flags, parameters, result, exception, wrongArgument);
        });
    }
};

/// Puts \a object, which a call with \a result gave, behind a \a Wrapper. Without memory for that it stays as it is.
/// Returns \a result.
template<class Wrapper, class Interface>
HRESULT tracedAs(HRESULT result, Interface **object, const CallTracePtr &trace) noexcept
{
    if (FAILED(result) || !object || !*object)
        return result;
    if (Interface *const wrapper = new (std::nothrow) Wrapper(*object, trace)) {
        (*object)->Release();
        *object = wrapper;
    }
    return result;
}

} // namespace Tool
