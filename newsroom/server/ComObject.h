#pragma once

#include <atomic>

#include <quire/newsroom/server/CallScope.h>
#include <quire/newsroom/server/ServerCore.h>

namespace Newsroom {

/// The reference count and the interface table of the server's objects.
///
/// `Base` brings the interfaces into the class; `First` and `Others` are the identifiers that QueryInterface answers
/// to, beside IUnknown, whose pointer is that of `First`. An object is made with one reference (makeOwned()) and
/// counted by the census; any thread may call it.
template<class Base, class First, class... Others>
class ComObject : public Base
{
public:
    ComObject(const ComObject &) = delete;
    ComObject &operator=(const ComObject &) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void **object) override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        const HRESULT fault = m_core->queryFault(m_answering.name);
        if (FAILED(fault))
            return fault;
        void *found = find<First, Others...>(iid);
        if (!found)
            return E_NOINTERFACE;
        AddRef();
        *object = found;
        return S_OK;
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
    ComObject(std::shared_ptr<ServerCore> core, ObjectKind kind, const CallInterface &answering)
        : m_core(std::move(core))
        , m_kind(kind)
        , m_answering(answering)
    {
        m_core->census().born(m_kind);
    }

    virtual ~ComObject() { m_core->census().gone(m_kind); }

    const std::shared_ptr<ServerCore> &core() const { return m_core; }
    const CallInterface &answering() const { return m_answering; }

    /// The scope of a call of one of this object's operations.
    CallScope call(const char *operation) const { return CallScope(m_core, m_answering, operation); }

private:
    template<class Interface, class... Rest>
    void *find(REFIID iid)
    {
        if (iid == __uuidof(Interface))
            return static_cast<Interface *>(this);
        if constexpr (sizeof...(Rest) > 0)
            return find<Rest...>(iid);
        else
            return iid == IID_IUnknown ? static_cast<IUnknown *>(static_cast<First *>(this)) : nullptr;
    }

    const std::shared_ptr<ServerCore> m_core;
    const ObjectKind m_kind;
    const CallInterface &m_answering;
    std::atomic<ULONG> m_references{1};
};

} // namespace Newsroom
