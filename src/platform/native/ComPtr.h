#pragma once

/// \file
/// _com_ptr_t, the counted pointer to an interface.

#include <quire/platform/native/Classes.h>
#include <quire/platform/native/ComString.h>
#include <quire/platform/native/Unknown.h>

#include <cstddef>
#include <functional>
#include <type_traits>

template<typename T, const IID *iid>
class _com_IIID
{
public:
    typedef T Interface;
    static T *GetInterfacePtr() noexcept { return nullptr; }
    static const IID &GetIID() noexcept { return *iid; }
};

template<typename T, const IID &(*getter)()>
class _com_IIID_getter
{
public:
    typedef T Interface;
    static T *GetInterfacePtr() noexcept { return nullptr; }
    static const IID &GetIID() noexcept { return getter(); }
};

/// A counted pointer to an interface, which may be empty.
///
/// Made or assigned from a pointer to another interface it asks the object for its own: an object that does not have it
/// (E_NOINTERFACE) leaves the pointer empty, any other failure raises `_com_error`. Calling through an empty pointer
/// raises
/// `_com_error` E_POINTER. Two pointers are equal when they point to the same object, whatever their interfaces.
/// One thread at a time may use a pointer; the object is counted as its own rules say.
template<typename _IIID>
class _com_ptr_t
{
    template<typename N>
    using IfNumber = std::enable_if_t<std::is_integral_v<N>, int>;

public:
    typedef _IIID ThisIIID;
    typedef typename _IIID::Interface Interface;
    static const IID &GetIID() noexcept { return ThisIIID::GetIID(); }

    // ---- making

    _com_ptr_t() noexcept = default;
    _com_ptr_t(std::nullptr_t) noexcept {}
    /// Only 0 is allowed.
    template<typename N, IfNumber<N> = 0>
    _com_ptr_t(N null)
    {
        requireNull(null);
    }
    _com_ptr_t(const _com_ptr_t &other) noexcept
        : m_pInterface(other.m_pInterface)
    {
        addRef();
    }
    _com_ptr_t(Interface *pointer) noexcept
        : m_pInterface(pointer)
    {
        addRef();
    }
    _com_ptr_t(Interface *pointer, bool addReference) noexcept
        : m_pInterface(pointer)
    {
        if (addReference)
            addRef();
    }
    template<typename Other>
    _com_ptr_t(const _com_ptr_t<Other> &other)
    {
        raiseUnlessMissing(query(other.GetInterfacePtr()));
    }
    template<typename Other>
    _com_ptr_t(Other *pointer)
    {
        raiseUnlessMissing(query(pointer));
    }
    explicit _com_ptr_t(_com_ptr_t *other)
    {
        if (!other)
            _com_issue_error(E_POINTER);
        else {
            m_pInterface = other->m_pInterface;
            AddRef();
        }
    }
    explicit _com_ptr_t(const CLSID &clsid, IUnknown *outer = nullptr, DWORD context = CLSCTX_ALL)
    {
        raiseUnlessMissing(CreateInstance(clsid, outer, context));
    }
    ~_com_ptr_t() noexcept { release(); }

    // ---- assigning

    _com_ptr_t &operator=(const _com_ptr_t &other) noexcept
    {
        if (this != &other)
            operator=(other.m_pInterface);
        return *this;
    }
    _com_ptr_t &operator=(Interface *pointer) noexcept
    {
        if (m_pInterface != pointer) {
            Interface *const old = m_pInterface;
            m_pInterface = pointer;
            addRef();
            if (old)
                old->Release();
        }
        return *this;
    }
    _com_ptr_t &operator=(std::nullptr_t) noexcept
    {
        operator=(static_cast<Interface *>(nullptr));
        return *this;
    }
    template<typename N, IfNumber<N> = 0>
    _com_ptr_t &operator=(N null)
    {
        requireNull(null);
        operator=(nullptr);
        return *this;
    }
    template<typename Other>
    _com_ptr_t &operator=(const _com_ptr_t<Other> &other)
    {
        raiseUnlessMissing(query(other.GetInterfacePtr()));
        return *this;
    }
    template<typename Other>
    _com_ptr_t &operator=(Other *pointer)
    {
        raiseUnlessMissing(query(pointer));
        return *this;
    }

    // ---- reference by reference

    /// Releases what is held and takes over the caller's reference.
    void Attach(Interface *pointer) noexcept
    {
        release();
        m_pInterface = pointer;
    }
    /// The same, with a reference of its own when `addReference` is true.
    void Attach(Interface *pointer, bool addReference)
    {
        Attach(pointer);
        if (addReference)
            AddRef();
    }
    /// Hands the reference over and is empty afterwards.
    Interface *Detach() noexcept
    {
        Interface *const old = m_pInterface;
        m_pInterface = nullptr;
        return old;
    }
    void Release()
    {
        if (!m_pInterface)
            _com_issue_error(E_POINTER);
        else
            release();
    }
    void AddRef()
    {
        if (!m_pInterface)
            _com_issue_error(E_POINTER);
        else
            m_pInterface->AddRef();
    }

    // ---- using

    operator Interface *() const noexcept { return m_pInterface; }
    operator Interface &() const { return *required(); }
    operator bool() const noexcept { return m_pInterface != nullptr; }
    Interface &operator*() const { return *required(); }
    Interface *operator->() const { return required(); }
    /// Releases what is held and hands out the place, for an out-parameter.
    Interface **operator&() noexcept
    {
        release();
        return &m_pInterface;
    }
    Interface *GetInterfacePtr() const noexcept { return m_pInterface; }
    Interface *&GetInterfacePtr() noexcept { return m_pInterface; }

    template<typename Other>
    HRESULT QueryInterface(const IID &iid, Other *&pointer) noexcept
    {
        return m_pInterface ? m_pInterface->QueryInterface(iid, reinterpret_cast<void **>(&pointer)) : E_POINTER;
    }
    template<typename Other>
    HRESULT QueryInterface(const IID &iid, Other **pointer) noexcept
    {
        return QueryInterface(iid, *pointer);
    }

    /// Makes a new object; what is held is released first. Empty after a failure.
    HRESULT CreateInstance(const CLSID &clsid, IUnknown *outer = nullptr, DWORD context = CLSCTX_ALL) noexcept
    {
        release();
        const HRESULT result =
            context & (CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER)
                ? createRunning(clsid, outer, context) // cppcheck-suppress clarifyCalculation; reads well
                : CoCreateInstance(clsid, outer, context, GetIID(), reinterpret_cast<void **>(&m_pInterface));
        if (FAILED(result))
            m_pInterface = nullptr;
        return result;
    }

    // ---- comparing, by the identity of the objects

    bool operator==(Interface *pointer) const { return m_pInterface == pointer || identical(pointer); }
    bool operator==(const _com_ptr_t &other) const { return operator==(other.m_pInterface); }
    bool operator==(std::nullptr_t) const noexcept { return !m_pInterface; }
    template<typename N, IfNumber<N> = 0>
    bool operator==(N null) const
    {
        requireNull(null);
        return !m_pInterface;
    }
    template<typename Other>
    bool operator==(const _com_ptr_t<Other> &other) const
    {
        return identical(other.GetInterfacePtr());
    }
    template<typename Other>
    bool operator==(Other *pointer) const
    {
        return identical(pointer);
    }
    template<typename Any>
    bool operator!=(const Any &other) const
    {
        return !operator==(other);
    }
    template<typename Other>
    bool operator<(const _com_ptr_t<Other> &other) const
    {
        return std::less<>()(identity(m_pInterface), identity(other.GetInterfacePtr()));
    }
    template<typename Other>
    bool operator>(const _com_ptr_t<Other> &other) const
    {
        return other < *this;
    }
    template<typename Other>
    bool operator<=(const _com_ptr_t<Other> &other) const
    {
        return !(other < *this);
    }
    template<typename Other>
    bool operator>=(const _com_ptr_t<Other> &other) const
    {
        return !(*this < other);
    }

private:
    static void requireNull(long long null)
    {
        if (null != 0)
            _com_issue_error(E_POINTER);
    }
    static void raiseUnlessMissing(HRESULT result)
    {
        if (FAILED(result) && result != E_NOINTERFACE)
            _com_issue_error(result);
    }

    /// The one IUnknown that stands for the object. It stays valid after its Release while the object is held.
    template<typename Other>
    static IUnknown *identity(Other *pointer)
    {
        if (!pointer)
            return nullptr;
        IUnknown *unknown = nullptr;
        const HRESULT result = pointer->QueryInterface(__uuidof(IUnknown), reinterpret_cast<void **>(&unknown));
        if (FAILED(result))
            _com_issue_error(result);
        unknown->Release();
        return unknown;
    }
    template<typename Other>
    bool identical(Other *pointer) const
    {
        return identity(m_pInterface) == identity(pointer);
    }

    Interface *required() const
    {
        if (!m_pInterface)
            _com_issue_error(E_POINTER);
        return m_pInterface;
    }
    void addRef() noexcept
    {
        if (m_pInterface)
            m_pInterface->AddRef();
    }
    /// Empties the pointer before the object hears of it: its last Release may come back here.
    void release() noexcept
    {
        if (Interface *const old = Detach())
            old->Release();
    }
    template<typename Other>
    HRESULT query(Other *pointer) noexcept
    {
        Interface *found = nullptr;
        HRESULT result = E_NOINTERFACE;
        if (pointer) {
            result = pointer->QueryInterface(GetIID(), reinterpret_cast<void **>(&found));
            if (FAILED(result))
                found = nullptr;
        }
        Attach(found);
        return result;
    }
    /// An object of a server of its own is run before it is asked for anything.
    HRESULT createRunning(const CLSID &clsid, IUnknown *outer, DWORD context) noexcept
    {
        IUnknown *unknown = nullptr;
        HRESULT result =
            CoCreateInstance(clsid, outer, context, __uuidof(IUnknown), reinterpret_cast<void **>(&unknown));
        if (FAILED(result))
            return result;
        result = OleRun(unknown);
        if (SUCCEEDED(result))
            result = unknown->QueryInterface(GetIID(), reinterpret_cast<void **>(&m_pInterface));
        if (unknown) // a class object may answer S_OK without an object, which OleRun refuses
            unknown->Release();
        return result;
    }

    Interface *m_pInterface = nullptr;
};

template<typename IIID>
bool operator==(std::nullptr_t, const _com_ptr_t<IIID> &pointer)
{
    return pointer == nullptr;
}
template<typename IIID>
bool operator!=(std::nullptr_t, const _com_ptr_t<IIID> &pointer)
{
    return pointer != nullptr;
}
template<typename T, typename IIID>
bool operator==(T *left, const _com_ptr_t<IIID> &right)
{
    return right == left;
}
template<typename T, typename IIID>
bool operator!=(T *left, const _com_ptr_t<IIID> &right)
{
    return right != left;
}

/// Declares InterfacePtr, the counted pointer to Interface, in the namespace where it stands.
#define _COM_SMARTPTR_TYPEDEF(Interface, aIID)                                                                         \
    inline const IID &__##Interface##_IID_getter(void)                                                                 \
    {                                                                                                                  \
        return aIID;                                                                                                   \
    }                                                                                                                  \
    typedef _com_ptr_t<_com_IIID_getter<Interface, __##Interface##_IID_getter>> Interface##Ptr
