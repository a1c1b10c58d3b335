#pragma once

/// \file
/// The owner of a VARIANT.

#include <quire/platform/Automation.h>

namespace Platform {

/// \a unknown as an IDispatch, with a reference of its own. Empty for null and for an object that is none
/// (E_NOINTERFACE); any other failure of the question raises `_com_error`.
inline IDispatchPtr toDispatch(IUnknown *unknown)
{
    return unknown ? IDispatchPtr(unknown) : IDispatchPtr();
}

/// The object in \a value, with a reference of its own: VT_DISPATCH as it is, VT_UNKNOWN asked for IDispatch as above,
/// and either by reference. Empty for any other type and for a null object.
inline IDispatchPtr toDispatch(const VARIANT &value)
{
    switch (V_VT(&value)) {
    case VT_DISPATCH:
        return IDispatchPtr(V_DISPATCH(&value));
    case VT_UNKNOWN:
        return toDispatch(V_UNKNOWN(&value));
    case VT_DISPATCH | VT_BYREF:
        return V_DISPATCHREF(&value) ? IDispatchPtr(*V_DISPATCHREF(&value)) : IDispatchPtr();
    case VT_UNKNOWN | VT_BYREF:
        return V_UNKNOWNREF(&value) ? toDispatch(*V_UNKNOWNREF(&value)) : IDispatchPtr();
    default:
        return IDispatchPtr();
    }
}

/// The one owner of a VARIANT: an index on its way to a server, or the value a server hands out. One thread at a time.
class Variant
{
public:
    /// VT_EMPTY.
    Variant() noexcept { VariantInit(&m_variant); }
    /// VT_I4.
    explicit Variant(LONG value) noexcept
        : Variant()
    {
        V_VT(&m_variant) = VT_I4;
        V_I4(&m_variant) = value;
    }
    /// VT_INT.
    static Variant ofInt(int value) noexcept
    {
        Variant variant;
        V_VT(&variant.m_variant) = VT_INT;
        V_INT(&variant.m_variant) = value;
        return variant;
    }
    /// Takes over what \a other holds, which is VT_EMPTY afterwards.
    Variant(Variant &&other) noexcept
        : m_variant(other.release())
    {}
    /// Frees what is held and takes over what \a other holds.
    Variant &operator=(Variant &&other) noexcept
    {
        if (this != &other) {
            clear();
            m_variant = other.release();
        }
        return *this;
    }
    Variant(const Variant &) = delete;
    Variant &operator=(const Variant &) = delete;
    ~Variant() { VariantClear(&m_variant); }

    /// The value, still owned here. A server takes it by value and does not free it.
    const VARIANT &get() const noexcept { return m_variant; }
    /// Frees what is owned and hands out the place, for an out-parameter.
    VARIANT *out() noexcept
    {
        clear();
        return &m_variant;
    }
    /// Hands the value over to the caller and is VT_EMPTY afterwards.
    VARIANT release() noexcept
    {
        const VARIANT variant = m_variant;
        VariantInit(&m_variant);
        return variant;
    }

    /// The type of the value.
    VARTYPE type() const noexcept { return V_VT(&m_variant); }

    /// The object in the value, see toDispatch below.
    IDispatchPtr toDispatch() const;

private:
    /// An array that somebody left locked cannot be freed; the value goes all the same, so that no one meets it again.
    void clear() noexcept
    {
        VariantClear(&m_variant);
        VariantInit(&m_variant);
    }

    VARIANT m_variant{};
};

inline IDispatchPtr Variant::toDispatch() const
{
    return Platform::toDispatch(m_variant);
}

} // namespace Platform
