#pragma once

/// \file
/// The objects in a server's answer. Not part of the public surface.

#include <QtGlobal>

#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>

namespace Quire {

/// Reads the row of objects that a server handed out in a VARIANT: an array of VT_DISPATCH, VT_UNKNOWN or VT_VARIANT
/// elements of one dimension. Any other value counts as an empty row. It refers to the value, which must outlive it.
class ObjectArray
{
public:
    /// An object of the row, good for as long as the row. Uses the array's own reference where it can: there may be a
    /// hundred thousand of them.
    class Element
    {
    public:
        ~Element()
        {
            if (m_borrowed)
                m_object.Detach();
        }

        const IDispatchPtr &object() const { return m_object; }

    private:
        Q_DISABLE_COPY(Element)
        friend class ObjectArray;

        explicit Element(IDispatch *borrowed)
            : m_object(borrowed, false)
            , m_borrowed(true)
        {}
        explicit Element(const IDispatchPtr &own)
            : m_object(own)
            , m_borrowed(false)
        {}

        IDispatchPtr m_object;
        const bool m_borrowed;
    };

    explicit ObjectArray(const Platform::Variant &value);

    int size() const { return m_size; }
    /// The object at \a index, from 0 to size() - 1; empty where there is none. Raises `_com_error` when asking an
    /// object for IDispatch fails for any reason but E_NOINTERFACE.
    Element at(int index) const;

private:
    VARTYPE m_type = VT_EMPTY;
    Platform::SafeArrayAccess m_access;
    int m_size;
};

} // namespace Quire
