#pragma once

/// \file
/// IUnknown, the class factory, and what a running object may offer.

#include <quire/platform/Export.h>
#include <quire/platform/native/Guid.h>
#include <quire/platform/native/Results.h>

struct QUIRE_PLATFORM_EXPORT IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void **object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

    template<typename T>
    HRESULT STDMETHODCALLTYPE QueryInterface(T **object)
    {
        return QueryInterface(__uuidof(T), reinterpret_cast<void **>(object));
    }
};
typedef IUnknown *LPUNKNOWN;

struct QUIRE_PLATFORM_EXPORT IClassFactory : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, REFIID riid, void **object) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};
typedef IClassFactory *LPCLASSFACTORY;

struct IBindCtx;
typedef IBindCtx *LPBINDCTX;

struct QUIRE_PLATFORM_EXPORT IRunnableObject : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetRunningClass(LPCLSID clsid) = 0;
    virtual HRESULT STDMETHODCALLTYPE Run(LPBINDCTX context) = 0;
    virtual BOOL STDMETHODCALLTYPE IsRunning() = 0;
    virtual HRESULT STDMETHODCALLTYPE LockRunning(BOOL lock, BOOL lastUnlockCloses) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetContainedObject(BOOL contained) = 0;
};

__CRT_UUID_DECL(IUnknown, 0x00000000, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(IClassFactory, 0x00000001, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(IRunnableObject, 0x00000126, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

DEFINE_GUID(IID_IUnknown, 0x00000000, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
DEFINE_GUID(IID_IClassFactory, 0x00000001, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
DEFINE_GUID(IID_IRunnableObject, 0x00000126, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);

template<typename T>
void **IID_PPV_ARGS_Helper(T **object)
{
    static_cast<void>(static_cast<IUnknown *>(*object)); // only interfaces
    return reinterpret_cast<void **>(object);
}
#define IID_PPV_ARGS(object) __uuidof(**(object)), IID_PPV_ARGS_Helper(object)
