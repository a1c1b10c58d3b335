#include "trace/Tracing.h"

#include <quire/platform/SafeArray.h>

#include "trace/TracedDirectory.h"
#include "trace/TracedFactory.h"
#include "trace/TracedQueue.h"
#include "trace/TracedStory.h"

namespace Tool {

namespace {

/// Puts \a object behind a \a Wrapper when it has its interface. The reference passes to the wrapper.
template<class Wrapper, class Interface, class Place>
bool replace(Place *&object, const CallTracePtr &trace)
{
    Interface *found = nullptr;
    if (FAILED(object->QueryInterface(__uuidof(Interface), reinterpret_cast<void **>(&found))) || !found)
        return false;
    const _com_ptr_t<_com_IIID<Interface, &__uuidof(Interface)>> kept(found, false);
    IDispatch *const wrapper = new Wrapper(found, trace);
    object->Release();
    object = wrapper;
    return true;
}

/// What a place holds when there is no memory for more, or when the object raises, is the object itself.
template<class Place>
void replaceAny(Place *&object, const CallTracePtr &trace) noexcept
try {
    if (object && !replace<TracedStory, Orvex::IStory2>(object, trace) &&
        !replace<TracedQueue, Orvex::IQueue2>(object, trace))
        replace<TracedDirectory, Orvex::IDirectory2>(object, trace);
} catch (...) {
    return;
}

void replaceIn(VARIANT &value, const CallTracePtr &trace) noexcept
{
    if (V_VT(&value) == VT_DISPATCH)
        replaceAny(V_DISPATCH(&value), trace);
    else if (V_VT(&value) == VT_UNKNOWN)
        replaceAny(V_UNKNOWN(&value), trace);
}

/// What the array itself says of its elements counts, as for the library: the value that it came in may say anything.
void replaceElements(SAFEARRAY *array, const CallTracePtr &trace) noexcept
{
    VARTYPE type = VT_EMPTY;
    if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type)))
        return;
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an element is a pointer
    const UINT size = type == VT_VARIANT ? sizeof(VARIANT) : sizeof(IUnknown *);
    if (SafeArrayGetElemsize(array) != size)
        return;
    const Platform::SafeArrayAccess access(array);
    for (ULONG i = 0; i < access.size(); ++i) {
        if (type == VT_DISPATCH)
            replaceAny(access.as<IDispatch *>()[i], trace);
        else if (type == VT_UNKNOWN)
            replaceAny(access.as<IUnknown *>()[i], trace);
        else if (type == VT_VARIANT)
            replaceIn(access.as<VARIANT>()[i], trace);
    }
}

} // namespace

IClassFactoryPtr tracedFactory(const IClassFactoryPtr &factory, const CallTracePtr &trace)
{
    return IClassFactoryPtr(new TracedFactory(factory.GetInterfacePtr(), trace), false);
}

HRESULT traced(HRESULT result, IDispatch **object, const CallTracePtr &trace) noexcept
{
    if (SUCCEEDED(result) && object)
        replaceAny(*object, trace);
    return result;
}

HRESULT traced(HRESULT result, VARIANT *value, const CallTracePtr &trace) noexcept
{
    if (FAILED(result) || !value)
        return result;
    if (V_VT(value) & VT_ARRAY) {
        SAFEARRAY *const array = (V_VT(value) & VT_BYREF) ? nullptr : V_ARRAY(value);
        if (array)
            replaceElements(array, trace);
    } else {
        replaceIn(*value, trace);
    }
    return result;
}

} // namespace Tool
