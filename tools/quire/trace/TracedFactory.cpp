#include "trace/TracedFactory.h"

#include "trace/TracedSignon.h"

namespace Tool {

STDMETHODIMP TracedFactory::CreateInstance(IUnknown *outer, REFIID iid, void **object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    Orvex::ISignon4 *made = nullptr;
    HRESULT result = pass("IClassFactory::CreateInstance", &IClassFactory::CreateInstance, outer,
                          __uuidof(Orvex::ISignon4), reinterpret_cast<void **>(&made));
    result = tracedAs<TracedSignon>(result, &made, trace());
    if (FAILED(result))
        return result;
    const Orvex::ISignon4Ptr signon(made, false);
    return signon->QueryInterface(iid, object);
}

STDMETHODIMP TracedFactory::LockServer(BOOL lock)
{
    return pass("IClassFactory::LockServer", &IClassFactory::LockServer, lock);
}

} // namespace Tool
