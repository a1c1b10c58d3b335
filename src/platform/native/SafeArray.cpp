#include <quire/platform/native/SafeArray.h>

#include <quire/platform/Automation.h>
#include <quire/platform/System.h>
#include <quire/platform/native/Allocations.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

/// Room before the descriptor for what the features say is there: an IID fills it, a record description or a type takes
/// its end.
constexpr std::size_t hiddenPrefix = sizeof(GUID);
constexpr std::size_t maximumArray = 0x7FFFFFFF;
constexpr ULONG maximumLocks = 0xFFFF;
constexpr USHORT notOurMemory = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED;

std::atomic<__int64> arrayCount{0};

void *zeroes(std::size_t size)
{
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): an array is freed by whoever has it, with SafeArrayDestroy
    return Platform::Detail::mayAllocate() ? std::calloc(1, size) : nullptr;
}

/// The slot of type T that ends where the descriptor begins.
template<typename T>
T *hidden(SAFEARRAY *array)
{
    // NOLINTNEXTLINE(bugprone-sizeof-expression): a slot may hold a pointer
    return reinterpret_cast<T *>(reinterpret_cast<char *>(array) - sizeof(T));
}

USHORT featuresOf(VARTYPE type)
{
    switch (type) {
    case VT_BSTR:
        return FADF_BSTR | FADF_HAVEVARTYPE;
    case VT_VARIANT:
        return FADF_VARIANT | FADF_HAVEVARTYPE;
    case VT_UNKNOWN:
        return FADF_UNKNOWN | FADF_HAVEIID;
    case VT_DISPATCH:
        return FADF_DISPATCH | FADF_HAVEIID;
    case VT_RECORD:
        return FADF_RECORD;
    default:
        return FADF_HAVEVARTYPE;
    }
}

/// 0 for what cannot be an element, and for records, whose description knows.
ULONG sizeOfType(VARTYPE type)
{
    switch (type) {
    case VT_I1:
    case VT_UI1:
        return sizeof(BYTE);
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return sizeof(SHORT);
    case VT_I4:
    case VT_UI4:
    case VT_R4:
    case VT_ERROR:
    case VT_INT:
    case VT_UINT:
        return sizeof(LONG);
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return sizeof(LONGLONG);
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
    case VT_INT_PTR:
    case VT_UINT_PTR:
        return sizeof(void *);
    case VT_VARIANT:
        return sizeof(VARIANT);
    case VT_DECIMAL:
        return sizeof(DECIMAL);
    default:
        return 0;
    }
}

/// The number of elements in all dimensions; false when their bytes are more than an array may have.
bool countElements(const SAFEARRAY *array, std::size_t *count)
{
    std::size_t total = array->cDims > 0 ? 1 : 0;
    for (USHORT i = 0; i < array->cDims; ++i) {
        total *= array->rgsabound[i].cElements; // each factor below 2^32, so this cannot wrap
        if (total > maximumArray)
            return false;
    }
    *count = total;
    return total * std::max<std::size_t>(array->cbElements, 1) <= maximumArray;
}

std::size_t elementsOf(const SAFEARRAY *array)
{
    std::size_t count = 0;
    return countElements(array, &count) ? count : 0;
}

char *elementAt(const SAFEARRAY *array, std::size_t index)
{
    return static_cast<char *>(array->pvData) + index * array->cbElements;
}

bool isInterfaces(const SAFEARRAY *array)
{
    return array->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH);
}

/// Null when the array has none.
IRecordInfo *recordInfoOf(SAFEARRAY *array)
{
    return array->fFeatures & FADF_RECORD ? *hidden<IRecordInfo *>(array) : nullptr;
}

/// Frees what the element owns and leaves zeroes. Somebody may have changed the size of the elements: what then lies in
/// them is no text, object or variant.
void clearElement(SAFEARRAY *array, char *element)
{
    const bool pointers = array->cbElements == sizeof(void *);
    if (array->fFeatures & FADF_VARIANT && array->cbElements == sizeof(VARIANT)) {
        VariantClear(reinterpret_cast<VARIANT *>(element));
    } else if (array->fFeatures & FADF_BSTR && pointers) {
        SysFreeString(*reinterpret_cast<BSTR *>(element));
    } else if (isInterfaces(array) && pointers) {
        if (IUnknown *object = *reinterpret_cast<IUnknown **>(element))
            object->Release();
    } else if (IRecordInfo *info = recordInfoOf(array)) {
        info->RecordClear(element);
    }
    std::memset(element, 0, array->cbElements);
}

HRESULT copyText(BSTR source, BSTR *destination)
{
    *destination = source ? SysAllocStringByteLen(reinterpret_cast<LPCSTR>(source), SysStringByteLen(source)) : nullptr;
    return source && !*destination ? E_OUTOFMEMORY : S_OK;
}

/// Makes `to`, which owns nothing, a copy of `from`.
HRESULT copyElement(SAFEARRAY *array, const void *from, void *to)
{
    if (array->fFeatures & FADF_VARIANT) {
        VariantInit(static_cast<VARIANT *>(to));
        return VariantCopy(static_cast<VARIANT *>(to), static_cast<const VARIANT *>(from));
    }
    if (array->fFeatures & FADF_BSTR)
        return copyText(*static_cast<const BSTR *>(from), static_cast<BSTR *>(to));
    if (IRecordInfo *info = recordInfoOf(array))
        return info->RecordCopy(const_cast<void *>(from), to); // NOLINT(cppcoreguidelines-pro-type-const-cast): read
    std::memcpy(to, from, array->cbElements);
    if (isInterfaces(array)) {
        if (IUnknown *object = *static_cast<IUnknown *const *>(from))
            object->AddRef();
    }
    return S_OK;
}

/// Fills in what the type says: features, element size, and the slot before the descriptor.
HRESULT setType(SAFEARRAY *array, VARTYPE type, void *extra)
{
    array->fFeatures = featuresOf(type);
    array->cbElements = sizeOfType(type);
    if (array->fFeatures & FADF_HAVEVARTYPE)
        *hidden<DWORD>(array) = type;
    if (array->fFeatures & FADF_HAVEIID)
        *hidden<GUID>(array) = extra ? *static_cast<GUID *>(extra) : type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    if (type != VT_RECORD || !extra)
        return S_OK;
    const HRESULT result = static_cast<IRecordInfo *>(extra)->GetSize(&array->cbElements);
    return FAILED(result) ? result : SafeArraySetRecordInfo(array, static_cast<IRecordInfo *>(extra));
}

} // namespace

// ---- creating -------------------------------------------------------------------------------------------------------

HRESULT SafeArrayAllocDescriptor(UINT dimensions, SAFEARRAY **array)
{
    if (!array)
        return E_POINTER;
    *array = nullptr;
    if (dimensions == 0 || dimensions > 0xFFFF)
        return E_INVALIDARG;
    const std::size_t size = hiddenPrefix + sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND);
    char *memory = static_cast<char *>(zeroes(size));
    if (!memory)
        return E_OUTOFMEMORY;
    *array = reinterpret_cast<SAFEARRAY *>(memory + hiddenPrefix);
    (*array)->cDims = static_cast<USHORT>(dimensions);
    arrayCount.fetch_add(1, std::memory_order_relaxed);
    return S_OK;
}

HRESULT SafeArrayAllocDescriptorEx(VARTYPE type, UINT dimensions, SAFEARRAY **array)
{
    const HRESULT result = SafeArrayAllocDescriptor(dimensions, array);
    return FAILED(result) ? result : setType(*array, type, nullptr);
}

HRESULT SafeArrayAllocData(SAFEARRAY *array)
{
    if (!array)
        return E_INVALIDARG;
    std::size_t count = 0;
    if (!countElements(array, &count))
        return E_OUTOFMEMORY;
    array->pvData = zeroes(std::max<std::size_t>(count * array->cbElements, 1));
    return array->pvData ? S_OK : E_OUTOFMEMORY;
}

SAFEARRAY *SafeArrayCreateEx(VARTYPE type, UINT dimensions, SAFEARRAYBOUND *bounds, PVOID extra)
{
    SAFEARRAY *array = nullptr;
    const bool known = type == VT_RECORD ? extra != nullptr : sizeOfType(type) > 0;
    if (!known || !bounds || FAILED(SafeArrayAllocDescriptor(dimensions, &array)))
        return nullptr;
    std::reverse_copy(bounds, bounds + dimensions, array->rgsabound);
    if (SUCCEEDED(setType(array, type, extra)) && SUCCEEDED(SafeArrayAllocData(array)))
        return array;
    SafeArrayDestroyDescriptor(array);
    return nullptr; // NOLINT(clang-analyzer-unix.Malloc): a new descriptor is not locked, so it went
}

SAFEARRAY *SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND *bounds)
{
    return SafeArrayCreateEx(type, dimensions, bounds, nullptr);
}

SAFEARRAY *SafeArrayCreateVectorEx(VARTYPE type, LONG lowerBound, ULONG count, PVOID extra)
{
    SAFEARRAYBOUND bound = {count, lowerBound};
    return SafeArrayCreateEx(type, 1, &bound, extra);
}

SAFEARRAY *SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG count)
{
    return SafeArrayCreateVectorEx(type, lowerBound, count, nullptr);
}

// ---- destroying -----------------------------------------------------------------------------------------------------

HRESULT SafeArrayDestroyData(SAFEARRAY *array)
{
    if (!array)
        return E_INVALIDARG;
    if (array->cLocks > 0)
        return DISP_E_ARRAYISLOCKED;
    if (!array->pvData)
        return S_OK;
    const std::size_t count = elementsOf(array);
    for (std::size_t i = 0; i < count; ++i)
        clearElement(array, elementAt(array, i));
    if (!(array->fFeatures & notOurMemory)) {
        std::free(array->pvData); // NOLINT(cppcoreguidelines-no-malloc): from zeroes
        array->pvData = nullptr;
    }
    return S_OK;
}

HRESULT SafeArrayDestroyDescriptor(SAFEARRAY *array)
{
    if (!array)
        return S_OK;
    if (array->cLocks > 0)
        return DISP_E_ARRAYISLOCKED;
    if (array->fFeatures & notOurMemory)
        return S_OK;
    if (IRecordInfo *info = recordInfoOf(array))
        info->Release();
    arrayCount.fetch_sub(1, std::memory_order_relaxed);
    std::free(reinterpret_cast<char *>(array) - hiddenPrefix); // NOLINT(cppcoreguidelines-no-malloc): from zeroes
    return S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY *array)
{
    if (!array)
        return S_OK;
    const HRESULT result = SafeArrayDestroyData(array);
    return FAILED(result) ? result : SafeArrayDestroyDescriptor(array);
}

// ---- asking ---------------------------------------------------------------------------------------------------------

UINT SafeArrayGetDim(SAFEARRAY *array)
{
    return array ? array->cDims : 0;
}

UINT SafeArrayGetElemsize(SAFEARRAY *array)
{
    return array ? array->cbElements : 0;
}

HRESULT SafeArrayGetLBound(SAFEARRAY *array, UINT dimension, LONG *bound)
{
    if (!array || !bound)
        return E_INVALIDARG;
    if (dimension == 0 || dimension > array->cDims)
        return DISP_E_BADINDEX;
    *bound = array->rgsabound[array->cDims - dimension].lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY *array, UINT dimension, LONG *bound)
{
    if (!array || !bound)
        return E_INVALIDARG;
    if (dimension == 0 || dimension > array->cDims)
        return DISP_E_BADINDEX;
    const SAFEARRAYBOUND &found = array->rgsabound[array->cDims - dimension];
    *bound = static_cast<LONG>(static_cast<ULONG>(found.lLbound) + found.cElements - 1);
    return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY *array, VARTYPE *type)
{
    if (!array || !type)
        return E_INVALIDARG;
    if (array->fFeatures & FADF_RECORD)
        *type = VT_RECORD;
    else if (array->fFeatures & FADF_HAVEVARTYPE)
        *type = static_cast<VARTYPE>(*hidden<DWORD>(array));
    else if (array->fFeatures & FADF_BSTR)
        *type = VT_BSTR;
    else if (array->fFeatures & FADF_UNKNOWN)
        *type = VT_UNKNOWN;
    else if (array->fFeatures & FADF_DISPATCH)
        *type = VT_DISPATCH;
    else if (array->fFeatures & FADF_VARIANT)
        *type = VT_VARIANT;
    else
        return E_INVALIDARG;
    return S_OK;
}

HRESULT SafeArraySetRecordInfo(SAFEARRAY *array, IRecordInfo *info)
{
    if (!array || !(array->fFeatures & FADF_RECORD))
        return E_INVALIDARG;
    if (info)
        info->AddRef();
    IRecordInfo *const old = *hidden<IRecordInfo *>(array);
    *hidden<IRecordInfo *>(array) = info;
    if (old)
        old->Release();
    return S_OK;
}

HRESULT SafeArrayGetRecordInfo(SAFEARRAY *array, IRecordInfo **info)
{
    if (!array || !info || !(array->fFeatures & FADF_RECORD))
        return E_INVALIDARG;
    *info = recordInfoOf(array);
    if (*info)
        (*info)->AddRef();
    return S_OK;
}

// ---- locking --------------------------------------------------------------------------------------------------------

HRESULT SafeArrayLock(SAFEARRAY *array)
{
    if (!array)
        return E_INVALIDARG;
    if (InterlockedIncrement(&array->cLocks) <= maximumLocks)
        return S_OK;
    InterlockedDecrement(&array->cLocks);
    return E_UNEXPECTED;
}

HRESULT SafeArrayUnlock(SAFEARRAY *array)
{
    if (!array)
        return E_INVALIDARG;
    if (static_cast<LONG>(InterlockedDecrement(&array->cLocks)) >= 0)
        return S_OK;
    InterlockedIncrement(&array->cLocks);
    return E_UNEXPECTED;
}

HRESULT SafeArrayAccessData(SAFEARRAY *array, void **data)
{
    if (!array || !data)
        return E_INVALIDARG;
    const HRESULT result = SafeArrayLock(array);
    *data = SUCCEEDED(result) ? array->pvData : nullptr;
    return result;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY *array)
{
    return SafeArrayUnlock(array);
}

// ---- elements -------------------------------------------------------------------------------------------------------

HRESULT SafeArrayPtrOfIndex(SAFEARRAY *array, LONG *indices, void **data)
{
    if (!array || !indices || !data)
        return E_INVALIDARG;
    std::size_t index = 0;
    std::size_t stride = 1;
    for (USHORT i = 0; i < array->cDims; ++i) {
        const SAFEARRAYBOUND &bound = array->rgsabound[array->cDims - 1 - i];
        const __int64 offset = static_cast<__int64>(indices[i]) - bound.lLbound;
        if (offset < 0 || offset >= bound.cElements)
            return DISP_E_BADINDEX;
        index += static_cast<std::size_t>(offset) * stride;
        stride *= bound.cElements;
    }
    *data = array->pvData ? elementAt(array, index) : nullptr;
    return S_OK;
}

namespace {

/// Calls `use` with the element while the array is locked.
template<typename Use>
HRESULT withElement(SAFEARRAY *array, LONG *indices, Use use)
{
    HRESULT result = SafeArrayLock(array);
    if (FAILED(result))
        return result;
    void *element = nullptr;
    result = SafeArrayPtrOfIndex(array, indices, &element);
    if (SUCCEEDED(result))
        result = element ? use(static_cast<char *>(element)) : E_INVALIDARG;
    SafeArrayUnlock(array);
    return result;
}

} // namespace

HRESULT SafeArrayGetElement(SAFEARRAY *array, LONG *indices, void *data)
{
    if (!array || !indices || !data)
        return E_INVALIDARG;
    return withElement(array, indices, [&](char *element) { return copyElement(array, element, data); });
}

HRESULT SafeArrayPutElement(SAFEARRAY *array, LONG *indices, void *data)
{
    if (!array || !indices)
        return E_INVALIDARG;
    // Texts and interfaces are passed themselves and may be null.
    const bool passedItself = array->fFeatures & (FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH);
    if (!data && !passedItself)
        return E_INVALIDARG;
    const void *source = passedItself ? &data : data;
    return withElement(array, indices, [&](char *element) {
        if (array->fFeatures & FADF_VARIANT)
            return VariantCopy(reinterpret_cast<VARIANT *>(element), static_cast<const VARIANT *>(source));
        if (IRecordInfo *info = recordInfoOf(array))
            return info->RecordCopy(data, element);
        if (!passedItself)
            return copyElement(array, source, element);
        // What is there goes last: it may be what is put there.
        void *replacement = nullptr;
        const HRESULT result = copyElement(array, source, &replacement);
        if (SUCCEEDED(result)) {
            clearElement(array, element);
            std::memcpy(element, &replacement, sizeof replacement);
        }
        return result;
    });
}

// ---- copying, resizing ----------------------------------------------------------------------------------------------

namespace {

/// A descriptor like another's, without data.
HRESULT copyDescriptor(SAFEARRAY *array, SAFEARRAY **copy)
{
    const HRESULT result = SafeArrayAllocDescriptor(array->cDims, copy);
    if (FAILED(result))
        return result;
    (*copy)->fFeatures = static_cast<USHORT>(array->fFeatures & ~(notOurMemory | FADF_FIXEDSIZE | FADF_RESERVED));
    (*copy)->cbElements = array->cbElements;
    std::copy_n(array->rgsabound, array->cDims, (*copy)->rgsabound);
    if (array->fFeatures & FADF_RECORD)
        return SafeArraySetRecordInfo(*copy, recordInfoOf(array));
    if (array->fFeatures & FADF_HAVEIID)
        *hidden<GUID>(*copy) = *hidden<GUID>(array);
    if (array->fFeatures & FADF_HAVEVARTYPE)
        *hidden<DWORD>(*copy) = *hidden<DWORD>(array);
    return S_OK;
}

HRESULT copyElements(SAFEARRAY *array, SAFEARRAY *copy)
{
    HRESULT result = SafeArrayAllocData(copy);
    const std::size_t count = elementsOf(array);
    for (std::size_t i = 0; i < count && SUCCEEDED(result); ++i)
        result = copyElement(array, elementAt(array, i), elementAt(copy, i));
    return result;
}

} // namespace

HRESULT SafeArrayCopy(SAFEARRAY *array, SAFEARRAY **copy)
{
    if (!copy)
        return E_INVALIDARG;
    *copy = nullptr;
    if (!array)
        return S_OK;
    if (array->cbElements == 0)
        return E_INVALIDARG;
    HRESULT result = SafeArrayLock(array);
    if (FAILED(result))
        return result;
    result = copyDescriptor(array, copy);
    if (SUCCEEDED(result) && array->pvData)
        result = copyElements(array, *copy);
    SafeArrayUnlock(array);
    if (FAILED(result)) {
        SafeArrayDestroy(*copy);
        *copy = nullptr;
    }
    return result;
}

HRESULT SafeArrayRedim(SAFEARRAY *array, SAFEARRAYBOUND *bound)
{
    if (!array || !bound || array->fFeatures & FADF_FIXEDSIZE)
        return E_INVALIDARG;
    if (array->cLocks > 0)
        return DISP_E_ARRAYISLOCKED;
    const std::size_t before = elementsOf(array);
    const SAFEARRAYBOUND old = array->rgsabound[0];
    array->rgsabound[0] = *bound;
    std::size_t after = 0;
    void *memory = nullptr;
    if (countElements(array, &after))
        memory = zeroes(std::max<std::size_t>(after * array->cbElements, 1));
    if (!memory) {
        array->rgsabound[0] = old;
        return E_OUTOFMEMORY;
    }
    if (array->pvData) {
        for (std::size_t i = after; i < before; ++i)
            clearElement(array, elementAt(array, i));
        std::memcpy(memory, array->pvData, std::min(before, after) * array->cbElements);
        if (!(array->fFeatures & notOurMemory))
            std::free(array->pvData); // NOLINT(cppcoreguidelines-no-malloc): from zeroes
    }
    array->pvData = memory;
    return S_OK;
}

namespace Platform {

__int64 liveArrays()
{
    return arrayCount.load(std::memory_order_relaxed);
}

} // namespace Platform
