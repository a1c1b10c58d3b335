#include <quire/newsroom/server/ObjectList.h>

#include <new>

#include <quire/platform/SafeArray.h>

namespace Newsroom {
namespace ObjectList {

void setObject(VARIANT *value, Owned<IDispatch> object)
{
    value->pdispVal = object.release();
    value->vt = VT_DISPATCH;
}

Platform::Variant make(const std::vector<Owned<IDispatch>> &objects, VARTYPE elements)
{
    Platform::SafeArray array(SafeArrayCreateVector(elements, 0, static_cast<ULONG>(objects.size())));
    if (!array)
        throw std::bad_alloc();
    LONG place = 0;
    for (const Owned<IDispatch> &object : objects) {
        // The array takes references of its own.
        VARIANT wrapped;
        VariantInit(&wrapped);
        wrapped.vt = VT_DISPATCH;
        wrapped.pdispVal = object.get();
        void *element = object.get();
        if (elements == VT_VARIANT)
            element = &wrapped;
        if (FAILED(SafeArrayPutElement(array.get(), &place, element)))
            throw std::bad_alloc();
        ++place;
    }
    Platform::Variant list;
    VARIANT *value = list.out();
    value->parray = array.release();
    value->vt = static_cast<VARTYPE>(VT_ARRAY | elements);
    return list;
}

} // namespace ObjectList
} // namespace Newsroom
