#pragma once

/// \file
/// SAFEARRAY: an array that knows its bounds, its element type and how often it is locked. One thread at a time may
/// change an array; lock counts may be changed by several.

#include <quire/platform/Export.h>
#include <quire/platform/native/Guid.h>
#include <quire/platform/native/Types.h>

struct IRecordInfo;

typedef struct tagSAFEARRAYBOUND
{
    ULONG cElements;
    LONG lLbound;
} SAFEARRAYBOUND;
typedef SAFEARRAYBOUND *LPSAFEARRAYBOUND;

/// `rgsabound` holds one bound per dimension, the last dimension first.
typedef struct tagSAFEARRAY
{
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    PVOID pvData;
    SAFEARRAYBOUND rgsabound[1];
} SAFEARRAY;
typedef SAFEARRAY *LPSAFEARRAY;

#define FADF_AUTO 0x0001
#define FADF_STATIC 0x0002
#define FADF_EMBEDDED 0x0004
#define FADF_FIXEDSIZE 0x0010
#define FADF_RECORD 0x0020
#define FADF_HAVEIID 0x0040
#define FADF_HAVEVARTYPE 0x0080
#define FADF_BSTR 0x0100
#define FADF_UNKNOWN 0x0200
#define FADF_DISPATCH 0x0400
#define FADF_VARIANT 0x0800
#define FADF_RESERVED 0xF008

// ---- creating: null when the type or a size is not supported or memory runs out -------------------------------------

QUIRE_PLATFORM_EXPORT SAFEARRAY *SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND *bounds);
/// `extra`: the IRecordInfo of VT_RECORD, the IID (may be null) of VT_UNKNOWN and VT_DISPATCH.
QUIRE_PLATFORM_EXPORT SAFEARRAY *SafeArrayCreateEx(VARTYPE type, UINT dimensions, SAFEARRAYBOUND *bounds, PVOID extra);
QUIRE_PLATFORM_EXPORT SAFEARRAY *SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG count);
QUIRE_PLATFORM_EXPORT SAFEARRAY *SafeArrayCreateVectorEx(VARTYPE type, LONG lowerBound, ULONG count, PVOID extra);

/// A descriptor without a type; the caller fills in cbElements and the bounds and calls SafeArrayAllocData.
/// `*array` is null after a failure.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayAllocDescriptor(UINT dimensions, SAFEARRAY **array);
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayAllocDescriptorEx(VARTYPE type, UINT dimensions, SAFEARRAY **array);
/// Memory for all elements, zeroed.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayAllocData(SAFEARRAY *array);

// ---- destroying: DISP_E_ARRAYISLOCKED, and nothing done, while the array is locked ----------------------------------

QUIRE_PLATFORM_EXPORT HRESULT SafeArrayDestroy(SAFEARRAY *array);
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayDestroyData(SAFEARRAY *array);
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayDestroyDescriptor(SAFEARRAY *array);

// ---- asking ---------------------------------------------------------------------------------------------------------

QUIRE_PLATFORM_EXPORT UINT SafeArrayGetDim(SAFEARRAY *array);
QUIRE_PLATFORM_EXPORT UINT SafeArrayGetElemsize(SAFEARRAY *array);
/// Dimensions count from 1; DISP_E_BADINDEX for one that is not there.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayGetLBound(SAFEARRAY *array, UINT dimension, LONG *bound);
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayGetUBound(SAFEARRAY *array, UINT dimension, LONG *bound);
/// E_INVALIDARG when the array has no type.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayGetVartype(SAFEARRAY *array, VARTYPE *type);
QUIRE_PLATFORM_EXPORT HRESULT SafeArraySetRecordInfo(SAFEARRAY *array, IRecordInfo *info);
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayGetRecordInfo(SAFEARRAY *array, IRecordInfo **info);

// ---- locking --------------------------------------------------------------------------------------------------------

QUIRE_PLATFORM_EXPORT HRESULT SafeArrayLock(SAFEARRAY *array);
/// E_UNEXPECTED when the array is not locked.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayUnlock(SAFEARRAY *array);
/// Locks and hands out the first element.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayAccessData(SAFEARRAY *array, void **data);
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayUnaccessData(SAFEARRAY *array);

// ---- elements: DISP_E_BADINDEX outside of the bounds ----------------------------------------------------------------

/// `*data` is where the element lies.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayPtrOfIndex(SAFEARRAY *array, LONG *indices, void **data);
/// Copies the element out; texts, variants, records and references become the caller's.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayGetElement(SAFEARRAY *array, LONG *indices, void *data);
/// Copies `data` in. A BSTR and an interface are passed themselves, everything else by its address.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayPutElement(SAFEARRAY *array, LONG *indices, void *data);

// ---- copying, resizing ----------------------------------------------------------------------------------------------

/// A deep copy, unlocked. A null array gives null and S_OK.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayCopy(SAFEARRAY *array, SAFEARRAY **copy);
/// Changes the bounds of the last dimension; elements cut off are freed, new ones are zero.
QUIRE_PLATFORM_EXPORT HRESULT SafeArrayRedim(SAFEARRAY *array, SAFEARRAYBOUND *bound);
