#include <quire/platform/native/Variant.h>

#include <quire/platform/Automation.h>

#include <cstring>

namespace {

/// Whether there can be a variant of the type at all.
bool isValidType(VARTYPE type)
{
    if (type & (VT_VECTOR | VT_RESERVED))
        return false;
    const VARTYPE base = type & VT_TYPEMASK;
    if ((type & (VT_BYREF | VT_ARRAY)) && base <= VT_NULL)
        return false;
    return (base < VT_VOID && base != 15) || base == VT_RECORD || base == VT_CLSID;
}

HRESULT copyText(VARIANT *value, BSTR text)
{
    V_BSTR(value) = text ? SysAllocStringByteLen(reinterpret_cast<LPCSTR>(text), SysStringByteLen(text)) : nullptr;
    return text && !V_BSTR(value) ? E_OUTOFMEMORY : S_OK;
}

HRESULT copyRecord(VARIANT *value)
{
    IRecordInfo *const info = V_RECORDINFO(value);
    void *const record = V_RECORD(value);
    V_RECORD(value) = nullptr;
    if (!info)
        return record ? E_INVALIDARG : S_OK;
    const HRESULT result = record ? info->RecordCreateCopy(record, &V_RECORD(value)) : S_OK;
    if (SUCCEEDED(result))
        info->AddRef();
    return result;
}

/// Turns the shallow copy of a value, which is not a reference, into one of its own. VT_EMPTY after a failure.
HRESULT ownCopy(VARIANT *value)
{
    HRESULT result = S_OK;
    if (V_ISARRAY(value)) {
        result = SafeArrayCopy(V_ARRAY(value), &V_ARRAY(value));
    } else if (V_VT(value) == VT_BSTR) {
        result = copyText(value, V_BSTR(value));
    } else if (V_VT(value) == VT_RECORD) {
        result = copyRecord(value);
    } else if (V_VT(value) == VT_DISPATCH || V_VT(value) == VT_UNKNOWN) {
        if (V_UNKNOWN(value))
            V_UNKNOWN(value)->AddRef();
    }
    if (FAILED(result))
        VariantInit(value);
    return result;
}

/// The number of bytes that a reference to the type points to; 0 for what is not a plain value or a pointer.
std::size_t sizeOfReferred(VARTYPE type)
{
    if (type & VT_ARRAY)
        return sizeof(SAFEARRAY *);
    switch (type & VT_TYPEMASK) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_R4:
    case VT_ERROR:
    case VT_INT:
    case VT_UINT:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return 8;
    default:
        return 0;
    }
}

/// Makes `value`, which owns nothing, the shallow copy of what a reference points to.
HRESULT followReference(const VARIANT &reference, VARIANT *value)
{
    const VARTYPE type = static_cast<VARTYPE>(V_VT(&reference) & ~VT_BYREF);
    if (!V_BYREF(&reference))
        return E_INVALIDARG;
    if (type == VT_RECORD) {
        *value = reference;
    } else if (type == VT_DECIMAL) {
        V_DECIMAL(value) = *V_DECIMALREF(&reference);
    } else {
        const std::size_t size = sizeOfReferred(type);
        if (size == 0)
            return DISP_E_BADVARTYPE;
        std::memcpy(&V_I8(value), V_BYREF(&reference), size);
    }
    V_VT(value) = type;
    return S_OK;
}

/// Gives `*destination` the value that `value` holds, and frees what was there.
HRESULT replace(VARIANT *destination, VARIANT value)
{
    const HRESULT result = VariantClear(destination);
    if (FAILED(result)) {
        VariantClear(&value);
        return result;
    }
    *destination = value;
    return S_OK;
}

} // namespace

void VariantInit(VARIANTARG *variant)
{
    if (variant)
        *variant = VARIANT{};
}

HRESULT VariantClear(VARIANTARG *variant)
{
    if (!variant || !isValidType(V_VT(variant)))
        return variant ? DISP_E_BADVARTYPE : E_INVALIDARG;
    if (!V_ISBYREF(variant)) {
        if (V_ISARRAY(variant)) {
            const HRESULT result = SafeArrayDestroy(V_ARRAY(variant));
            if (FAILED(result))
                return result;
        } else if (V_VT(variant) == VT_BSTR) {
            SysFreeString(V_BSTR(variant));
        } else if (V_VT(variant) == VT_RECORD && V_RECORDINFO(variant)) {
            if (V_RECORD(variant))
                V_RECORDINFO(variant)->RecordDestroy(V_RECORD(variant));
            V_RECORDINFO(variant)->Release();
        } else if ((V_VT(variant) == VT_DISPATCH || V_VT(variant) == VT_UNKNOWN) && V_UNKNOWN(variant)) {
            V_UNKNOWN(variant)->Release();
        }
    }
    VariantInit(variant);
    return S_OK;
}

HRESULT VariantCopy(VARIANTARG *destination, const VARIANTARG *source)
{
    if (!destination || !source)
        return E_INVALIDARG;
    if (!isValidType(V_VT(source)) || V_VT(source) == VT_CLSID)
        return DISP_E_BADVARTYPE;
    if (destination == source)
        return S_OK;
    const HRESULT result = VariantClear(destination);
    if (FAILED(result))
        return result;
    *destination = *source;
    return V_ISBYREF(source) ? S_OK : ownCopy(destination);
}

HRESULT VariantCopyInd(VARIANT *destination, const VARIANTARG *source)
{
    if (!destination || !source)
        return E_INVALIDARG;
    if (!V_ISBYREF(source))
        return VariantCopy(destination, source);
    if (!isValidType(V_VT(source)))
        return DISP_E_BADVARTYPE;
    if (V_VT(source) == (VT_BYREF | VT_VARIANT)) {
        const VARIANT *referred = V_VARIANTREF(source);
        // One reference to another is followed, more are not.
        if (!referred || V_VT(referred) == (VT_BYREF | VT_VARIANT))
            return E_INVALIDARG;
        if (destination != source)
            return VariantCopyInd(destination, referred);
        VARIANT value = {};
        const HRESULT result = VariantCopyInd(&value, referred);
        return FAILED(result) ? result : replace(destination, value);
    }
    VARIANT value = {};
    HRESULT result = followReference(*source, &value);
    if (SUCCEEDED(result))
        result = ownCopy(&value);
    return FAILED(result) ? result : replace(destination, value);
}
