#include "ObjectArray.h"

#include <algorithm>
#include <limits>

namespace Quire {

namespace {

bool holdsObjects(VARTYPE type)
{
    return type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_VARIANT;
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
    return row && holdsObjects(*type) ? array : nullptr;
}

} // namespace

ObjectArray::ObjectArray(const Platform::Variant &value)
    : m_access(rowOfObjects(value.get(), &m_type))
    , m_size(static_cast<int>(std::min<ULONG>(m_access.size(), std::numeric_limits<int>::max())))
{}

ObjectArray::Element ObjectArray::at(int index) const
{
    switch (m_type) {
    case VT_DISPATCH:
        return Element(m_access.as<IDispatch *>()[index]);
    case VT_UNKNOWN:
        return Element(Platform::toDispatch(m_access.as<IUnknown *>()[index]));
    default:
        return Element(Platform::toDispatch(m_access.as<VARIANT>()[index]));
    }
}

} // namespace Quire
