#include <quire/newsroom/server/ClassFactory.h>

#include <quire/newsroom/server/SignonObject.h>

namespace Newsroom {

namespace {

const CallInterface FactoryInterface{"IClassFactory", IID_IClassFactory};

} // namespace

ClassFactory::ClassFactory(const std::shared_ptr<ServerCore> &core)
    : ComObject(core, ObjectKind::ClassFactory, FactoryInterface)
{}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown *outer, REFIID iid, void **object)
{
    return call("CreateInstance").out(object).run([&] {
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return SignonObject::make(core())->QueryInterface(iid, object);
    });
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock)
{
    return call("LockServer").run([&] {
        if (lock)
            core()->census().born(ObjectKind::ClassFactory);
        else
            core()->census().gone(ObjectKind::ClassFactory);
        return S_OK;
    });
}

} // namespace Newsroom
