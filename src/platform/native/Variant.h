#pragma once

/// \file
/// VARIANT: a value with its type.

#include <quire/platform/Export.h>
#include <quire/platform/native/Bstr.h>
#include <quire/platform/native/Results.h>
#include <quire/platform/native/SafeArray.h>
#include <quire/platform/native/Types.h>

struct IUnknown;
struct IDispatch;
struct IRecordInfo;

enum VARENUM {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_SAFEARRAY = 27,
    VT_CARRAY = 28,
    VT_USERDEFINED = 29,
    VT_LPSTR = 30,
    VT_LPWSTR = 31,
    VT_RECORD = 36,
    VT_INT_PTR = 37,
    VT_UINT_PTR = 38,
    VT_FILETIME = 64,
    VT_BLOB = 65,
    VT_CLSID = 72,
    VT_VECTOR = 0x1000,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_RESERVED = 0x8000,
    VT_ILLEGAL = 0xffff,
    VT_ILLEGALMASKED = 0xfff,
    VT_TYPEMASK = 0xfff
};

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wnested-anon-types"
#endif

typedef union tagCY {
    __extension__ struct
    {
        ULONG Lo;
        LONG Hi;
    };
    LONGLONG int64;
} CY;

typedef struct tagDEC
{
    USHORT wReserved;
    BYTE scale;
    BYTE sign;
    ULONG Hi32;
    ULONGLONG Lo64;
} DECIMAL;

struct tagVARIANT;
typedef tagVARIANT VARIANT;

struct tagVARIANT
{
    union {
        __extension__ struct
        {
            VARTYPE vt;
            WORD wReserved1;
            WORD wReserved2;
            WORD wReserved3;
            union {
                LONGLONG llVal;
                LONG lVal;
                BYTE bVal;
                SHORT iVal;
                FLOAT fltVal;
                DOUBLE dblVal;
                VARIANT_BOOL boolVal;
                SCODE scode;
                CY cyVal;
                DATE date;
                BSTR bstrVal;
                IUnknown *punkVal;
                IDispatch *pdispVal;
                SAFEARRAY *parray;
                BYTE *pbVal;
                SHORT *piVal;
                LONG *plVal;
                LONGLONG *pllVal;
                FLOAT *pfltVal;
                DOUBLE *pdblVal;
                VARIANT_BOOL *pboolVal;
                SCODE *pscode;
                CY *pcyVal;
                DATE *pdate;
                BSTR *pbstrVal;
                IUnknown **ppunkVal;
                IDispatch **ppdispVal;
                SAFEARRAY **pparray;
                VARIANT *pvarVal;
                PVOID byref;
                CHAR cVal;
                USHORT uiVal;
                ULONG ulVal;
                ULONGLONG ullVal;
                INT intVal;
                UINT uintVal;
                DECIMAL *pdecVal;
                CHAR *pcVal;
                USHORT *puiVal;
                ULONG *pulVal;
                ULONGLONG *pullVal;
                INT *pintVal;
                UINT *puintVal;
                __extension__ struct
                {
                    PVOID pvRecord;
                    IRecordInfo *pRecInfo;
                };
            };
        };
        DECIMAL decVal;
    };
};

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

typedef VARIANT *LPVARIANT;
typedef VARIANT VARIANTARG;
typedef VARIANT *LPVARIANTARG;

static_assert(sizeof(VARIANT) == 24 && sizeof(DECIMAL) == 16 && sizeof(CY) == 8);

#define V_VT(variant) ((variant)->vt)
#define V_ISBYREF(variant) (V_VT(variant) & VT_BYREF)
#define V_ISARRAY(variant) (V_VT(variant) & VT_ARRAY)
#define V_ISVECTOR(variant) (V_VT(variant) & VT_VECTOR)
#define V_NONE(variant) V_I2(variant)
#define V_UNION(variant, field) ((variant)->field)
#define V_UI1(variant) ((variant)->bVal)
#define V_UI1REF(variant) ((variant)->pbVal)
#define V_I1(variant) ((variant)->cVal)
#define V_I1REF(variant) ((variant)->pcVal)
#define V_UI2(variant) ((variant)->uiVal)
#define V_UI2REF(variant) ((variant)->puiVal)
#define V_I2(variant) ((variant)->iVal)
#define V_I2REF(variant) ((variant)->piVal)
#define V_UI4(variant) ((variant)->ulVal)
#define V_UI4REF(variant) ((variant)->pulVal)
#define V_I4(variant) ((variant)->lVal)
#define V_I4REF(variant) ((variant)->plVal)
#define V_I8(variant) ((variant)->llVal)
#define V_I8REF(variant) ((variant)->pllVal)
#define V_UI8(variant) ((variant)->ullVal)
#define V_UI8REF(variant) ((variant)->pullVal)
#define V_INT(variant) ((variant)->intVal)
#define V_INTREF(variant) ((variant)->pintVal)
#define V_UINT(variant) ((variant)->uintVal)
#define V_UINTREF(variant) ((variant)->puintVal)
#define V_R4(variant) ((variant)->fltVal)
#define V_R4REF(variant) ((variant)->pfltVal)
#define V_R8(variant) ((variant)->dblVal)
#define V_R8REF(variant) ((variant)->pdblVal)
#define V_CY(variant) ((variant)->cyVal)
#define V_CYREF(variant) ((variant)->pcyVal)
#define V_DATE(variant) ((variant)->date)
#define V_DATEREF(variant) ((variant)->pdate)
#define V_BSTR(variant) ((variant)->bstrVal)
#define V_BSTRREF(variant) ((variant)->pbstrVal)
#define V_DISPATCH(variant) ((variant)->pdispVal)
#define V_DISPATCHREF(variant) ((variant)->ppdispVal)
#define V_ERROR(variant) ((variant)->scode)
#define V_ERRORREF(variant) ((variant)->pscode)
#define V_BOOL(variant) ((variant)->boolVal)
#define V_BOOLREF(variant) ((variant)->pboolVal)
#define V_UNKNOWN(variant) ((variant)->punkVal)
#define V_UNKNOWNREF(variant) ((variant)->ppunkVal)
#define V_VARIANTREF(variant) ((variant)->pvarVal)
#define V_ARRAY(variant) ((variant)->parray)
#define V_ARRAYREF(variant) ((variant)->pparray)
#define V_BYREF(variant) ((variant)->byref)
#define V_DECIMAL(variant) ((variant)->decVal)
#define V_DECIMALREF(variant) ((variant)->pdecVal)
#define V_RECORD(variant) ((variant)->pvRecord)
#define V_RECORDINFO(variant) ((variant)->pRecInfo)

/// Makes the variant VT_EMPTY without freeing anything.
QUIRE_PLATFORM_EXPORT void VariantInit(VARIANTARG *variant);

/// Frees what the variant owns and makes it VT_EMPTY. What a VT_BYREF variant points to is not touched. The result of
/// destroying an array is passed on, and then the variant stays; DISP_E_BADVARTYPE for a type that no variant has.
QUIRE_PLATFORM_EXPORT HRESULT VariantClear(VARIANTARG *variant);

/// Clears the destination and makes it a deep copy of the source; VT_BYREF stays a reference. A variant may be copied
/// to itself.
QUIRE_PLATFORM_EXPORT HRESULT VariantCopy(VARIANTARG *destination, const VARIANTARG *source);

/// The same, but copies what a VT_BYREF source points to.
QUIRE_PLATFORM_EXPORT HRESULT VariantCopyInd(VARIANT *destination, const VARIANTARG *source);
