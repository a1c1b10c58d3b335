#include "ObjectArray.h"

#include <algorithm>
#include <limits>

#include <quire/session/QuireCOMMutex.h>

namespace Quire {

namespace {

/// The size of an element of that type, 0 for what is no object.
UINT sizeOfObject(VARTYPE type)
{
    switch (type) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return sizeof(IUnknown *); // NOLINT(bugprone-sizeof-expression): an element is a pointer
    case VT_VARIANT:
        return sizeof(VARIANT);
    default:
        return 0;
    }
}

bool holdsObjects(SAFEARRAY *array, VARTYPE type)
{
    const UINT size = sizeOfObject(type);
    return size > 0 && SafeArrayGetElemsize(array) == size;
}

/// The array in the value, null when there is none or when it is not one row of objects.
SAFEARRAY *rowOfObjects(const VARIANT &value, VARTYPE *type)
{
    SAFEARRAY *array = nullptr;
    if ((V_VT(&value) & VT_ARRAY) == 0)
        return nullptr;
    if ((V_VT(&value) & VT_BYREF) == 0)
        array = V_ARRAY(&value);
    else if (V_ARRAYREF(&value))
        array = *V_ARRAYREF(&value);
    const bool row = array && SafeArrayGetDim(array) == 1 && SUCCEEDED(SafeArrayGetVartype(array, type));
    return row && holdsObjects(array, *type) ? array : nullptr;
}

} // namespace

ObjectArray::ObjectArray(const Platform::Variant &value)
    : m_access(rowOfObjects(value.get(), &m_type))
    , m_size(static_cast<int>(std::min<ULONG>(m_access.size(), std::numeric_limits<int>::max())))
{}

ObjectArray::Element ObjectArray::at(int index) const
{
    if (m_type == VT_DISPATCH)
        return Element(m_access.as<IDispatch *>()[index]);
    const QuireCOMMutex lock("ObjectArray::at"); // to ask is to call the server
    if (m_type == VT_UNKNOWN)
        return Element(Platform::toDispatch(m_access.as<IUnknown *>()[index]));
    return Element(Platform::toDispatch(m_access.as<VARIANT>()[index]));
}

} // namespace Quire
