#pragma once

/// \file
/// The objects in a server's answer. Not part of the public surface.

#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>

namespace Quire {

/// Reads the row of objects that a server handed out in a VARIANT: an array of VT_DISPATCH, VT_UNKNOWN or VT_VARIANT
/// elements of one dimension. Any other value counts as an empty row. It refers to the value, which must outlive it.
class ObjectArray
{
public:
    explicit ObjectArray(const Platform::Variant &value);

    int size() const { return m_size; }
    /// The object at \a index, from 0 to size() - 1, with a reference of its own; empty where there is none. Raises
    /// `_com_error` when asking an object for IDispatch fails for any reason but E_NOINTERFACE.
    IDispatchPtr at(int index) const;

private:
    VARTYPE m_type = VT_EMPTY;
    Platform::SafeArrayAccess m_access;
    int m_size;
};

} // namespace Quire
