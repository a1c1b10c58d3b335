#include <quire/platform/native/Variant.h>

#include <quire/platform/Automation.h>

#include <cmath>
#include <cstring>

#include <QString>

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

// ---- converting -----------------------------------------------------------------------------------------------------

namespace {

/// A number on its way from one type to another.
struct Number
{
    bool whole;
    __int64 integer;
    double floating;
};

Number wholeNumber(__int64 value)
{
    return {true, value, static_cast<double>(value)};
}

Number floatingNumber(double value)
{
    return {false, 0, value};
}

HRESULT readText(BSTR text, Number *number)
{
    const QString trimmed =
        QString(reinterpret_cast<const QChar *>(text), static_cast<int>(SysStringLen(text))).trimmed();
    bool ok = false;
    *number = wholeNumber(trimmed.toLongLong(&ok));
    if (ok)
        return S_OK;
    *number = floatingNumber(trimmed.toDouble(&ok));
    return ok ? S_OK : DISP_E_TYPEMISMATCH;
}

HRESULT readNumber(const VARIANT &source, Number *number)
{
    switch (V_VT(&source)) {
    case VT_EMPTY:
        *number = wholeNumber(0);
        return S_OK;
    case VT_I1:
        *number = wholeNumber(static_cast<signed char>(V_I1(&source)));
        return S_OK;
    case VT_UI1:
        *number = wholeNumber(V_UI1(&source));
        return S_OK;
    case VT_I2:
    case VT_BOOL:
        *number = wholeNumber(V_I2(&source));
        return S_OK;
    case VT_UI2:
        *number = wholeNumber(V_UI2(&source));
        return S_OK;
    case VT_I4:
    case VT_INT:
        *number = wholeNumber(V_I4(&source));
        return S_OK;
    case VT_UI4:
    case VT_UINT:
        *number = wholeNumber(V_UI4(&source));
        return S_OK;
    case VT_I8:
        *number = wholeNumber(V_I8(&source));
        return S_OK;
    case VT_R4:
        *number = floatingNumber(V_R4(&source));
        return S_OK;
    case VT_R8:
        *number = floatingNumber(V_R8(&source));
        return S_OK;
    case VT_BSTR:
        return readText(V_BSTR(&source), number);
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

/// Rounds to the nearest whole number, halves to the even one.
HRESULT toWhole(const Number &number, __int64 lowest, __int64 highest, __int64 *value)
{
    constexpr double limit = 9223372036854775808.0;
    if (!number.whole) {
        const double rounded = std::nearbyint(number.floating);
        if (!(rounded >= -limit && rounded < limit))
            return DISP_E_OVERFLOW;
        *value = static_cast<__int64>(rounded);
    } else {
        *value = number.integer;
    }
    return *value < lowest || *value > highest ? DISP_E_OVERFLOW : S_OK;
}

struct WholeType
{
    VARTYPE type;
    __int64 lowest;
    __int64 highest;
};

constexpr WholeType wholeTypes[] = {
    {VT_I1, INT8_MIN, INT8_MAX}, {VT_UI1, 0, UINT8_MAX},        {VT_I2, INT16_MIN, INT16_MAX},
    {VT_UI2, 0, UINT16_MAX},     {VT_I4, INT32_MIN, INT32_MAX}, {VT_INT, INT32_MIN, INT32_MAX},
    {VT_UI4, 0, UINT32_MAX},     {VT_UINT, 0, UINT32_MAX},      {VT_I8, INT64_MIN, INT64_MAX},
};

HRESULT toText(const VARIANT &source, const Number &number, VARIANT *value)
{
    QString text;
    if (V_VT(&source) == VT_BOOL)
        text = V_BOOL(&source) ? QStringLiteral("-1") : QStringLiteral("0");
    else if (V_VT(&source) != VT_EMPTY)
        text = number.whole ? QString::number(number.integer) : QString::number(number.floating, 'g', 15);
    V_BSTR(value) = SysAllocStringLen(reinterpret_cast<const OLECHAR *>(text.utf16()), static_cast<UINT>(text.size()));
    return V_BSTR(value) ? S_OK : E_OUTOFMEMORY;
}

HRESULT toBool(const VARIANT &source, VARIANT *value)
{
    if (V_VT(&source) == VT_BSTR) {
        const QString text =
            QString(reinterpret_cast<const QChar *>(V_BSTR(&source)), static_cast<int>(SysStringLen(V_BSTR(&source))));
        for (const auto &[word, meaning] :
             {std::pair(QLatin1String("true"), VARIANT_TRUE), std::pair(QLatin1String("false"), VARIANT_FALSE)}) {
            if (text.compare(word, Qt::CaseInsensitive) == 0) {
                V_BOOL(value) = meaning;
                return S_OK;
            }
        }
    }
    Number number = {};
    const HRESULT result = readNumber(source, &number);
    V_BOOL(value) = number.floating != 0.0 ? VARIANT_TRUE : VARIANT_FALSE;
    return result;
}

HRESULT toInterface(const VARIANT &source, VARTYPE type, VARIANT *value)
{
    if (V_VT(&source) != VT_DISPATCH && V_VT(&source) != VT_UNKNOWN)
        return DISP_E_TYPEMISMATCH;
    if (!V_UNKNOWN(&source))
        return S_OK;
    const HRESULT result = V_UNKNOWN(&source)->QueryInterface(type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown,
                                                              reinterpret_cast<void **>(&V_UNKNOWN(value)));
    return FAILED(result) ? DISP_E_TYPEMISMATCH : S_OK;
}

/// Fills in the data of `value`, whose type the caller sets.
HRESULT convert(const VARIANT &source, VARTYPE type, VARIANT *value)
{
    if (type == VT_DISPATCH || type == VT_UNKNOWN)
        return toInterface(source, type, value);
    if (type == VT_BOOL)
        return toBool(source, value);
    if (type == VT_EMPTY)
        return S_OK;
    Number number = {};
    const HRESULT result = readNumber(source, &number);
    if (FAILED(result))
        return result;
    if (type == VT_BSTR)
        return toText(source, number, value);
    if (type == VT_R8) {
        V_R8(value) = number.floating;
        return S_OK;
    }
    if (type == VT_R4) {
        V_R4(value) = static_cast<float>(number.floating);
        return std::isinf(V_R4(value)) && !std::isinf(number.floating) ? DISP_E_OVERFLOW : S_OK;
    }
    for (const WholeType &each : wholeTypes) {
        if (each.type == type)
            return toWhole(number, each.lowest, each.highest, &V_I8(value));
    }
    return DISP_E_TYPEMISMATCH;
}

} // namespace

HRESULT VariantChangeType(VARIANTARG *destination, const VARIANTARG *source, USHORT, VARTYPE type)
{
    if (!destination || !source)
        return E_INVALIDARG;
    if (!isValidType(V_VT(source)) || !isValidType(type))
        return DISP_E_BADVARTYPE;
    VARIANT direct = {};
    HRESULT result = VariantCopyInd(&direct, source);
    if (FAILED(result))
        return result;
    if (V_VT(&direct) == type)
        return replace(destination, direct);
    VARIANT value = {};
    result = V_ISARRAY(&direct) ? DISP_E_TYPEMISMATCH : convert(direct, type, &value);
    VariantClear(&direct);
    if (FAILED(result))
        return result;
    V_VT(&value) = type;
    return replace(destination, value);
}

HRESULT VariantChangeTypeEx(VARIANTARG *destination, const VARIANTARG *source, LCID, USHORT flags, VARTYPE type)
{
    return VariantChangeType(destination, source, flags, type);
}
