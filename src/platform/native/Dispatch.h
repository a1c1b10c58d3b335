#pragma once

/// \file
/// IDispatch and the type information it may hand out.

#include <quire/platform/native/Unknown.h>
#include <quire/platform/native/Variant.h>

/// Opaque here: nothing makes one, nothing looks into it.
struct QUIRE_PLATFORM_EXPORT ITypeInfo : public IUnknown
{};

typedef struct tagDISPPARAMS
{
    VARIANTARG *rgvarg;
    DISPID *rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
} DISPPARAMS;

typedef struct tagEXCEPINFO
{
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    PVOID pvReserved;
    HRESULT(STDMETHODCALLTYPE *pfnDeferredFillIn)(tagEXCEPINFO *);
    SCODE scode;
} EXCEPINFO, *LPEXCEPINFO;

#define DISPATCH_METHOD 0x1
#define DISPATCH_PROPERTYGET 0x2
#define DISPATCH_PROPERTYPUT 0x4
#define DISPATCH_PROPERTYPUTREF 0x8

#define DISPID_UNKNOWN ((DISPID)-1)
#define DISPID_VALUE ((DISPID)0)
#define DISPID_PROPERTYPUT ((DISPID)-3)
#define DISPID_NEWENUM ((DISPID)-4)

struct QUIRE_PLATFORM_EXPORT IDispatch : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo **info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR *names, UINT count, LCID locale,
                                                    DISPID *ids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID locale, WORD flags,
                                             DISPPARAMS *parameters, VARIANT *result, EXCEPINFO *exception,
                                             UINT *badArgument) = 0;
};
typedef IDispatch *LPDISPATCH;

__CRT_UUID_DECL(IDispatch, 0x00020400, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(ITypeInfo, 0x00020401, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

DEFINE_GUID(IID_IDispatch, 0x00020400, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
DEFINE_GUID(IID_ITypeInfo, 0x00020401, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
