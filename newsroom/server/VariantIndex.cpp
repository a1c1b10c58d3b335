#include <quire/newsroom/server/VariantIndex.h>

#include <algorithm>
#include <limits>

namespace Newsroom {

namespace {

/// The number in a VARIANT that is no reference, or behind one.
HRESULT readNumber(const VARIANT &value, long long *number)
{
    const bool byReference = (value.vt & VT_BYREF) != 0;
    if (byReference && !value.byref)
        return E_INVALIDARG;
    switch (value.vt & ~VT_BYREF) {
    case VT_I4:
        *number = byReference ? *value.plVal : value.lVal;
        return S_OK;
    case VT_INT:
        *number = byReference ? *value.pintVal : value.intVal;
        return S_OK;
    case VT_I2:
        *number = byReference ? *value.piVal : value.iVal;
        return S_OK;
    case VT_UI4:
        *number = byReference ? *value.pulVal : value.ulVal;
        return S_OK;
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

} // namespace

HRESULT readIndex(const VARIANT &value, LONG *index)
{
    const bool isWrapped = value.vt == (VT_VARIANT | VT_BYREF);
    if (isWrapped && !value.pvarVal)
        return E_INVALIDARG;
    long long number = 0;
    const HRESULT result = readNumber(isWrapped ? *value.pvarVal : value, &number);
    if (FAILED(result))
        return result;
    if (number < 0)
        return E_INVALIDARG;
    *index = static_cast<LONG>(std::min<long long>(number, std::numeric_limits<LONG>::max()));
    return S_OK;
}

} // namespace Newsroom
