#pragma once

/// \file
/// Error information: what an object tells about the failure it just returned. One slot per thread.

#include <quire/platform/native/Bstr.h>
#include <quire/platform/native/Unknown.h>

struct QUIRE_PLATFORM_EXPORT IErrorInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID *guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR *source) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR *description) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR *helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD *helpContext) = 0;
};

struct QUIRE_PLATFORM_EXPORT ICreateErrorInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR source) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR description) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) = 0;
};

struct QUIRE_PLATFORM_EXPORT ISupportErrorInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) = 0;
};

// clang-format off
__CRT_UUID_DECL(IErrorInfo,        0x1cf2b120, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)
__CRT_UUID_DECL(ICreateErrorInfo,  0x22f03340, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)
__CRT_UUID_DECL(ISupportErrorInfo, 0xdf0b3d60, 0x548f, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)

DEFINE_GUID(IID_IErrorInfo,        0x1cf2b120, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19);
DEFINE_GUID(IID_ICreateErrorInfo,  0x22f03340, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19);
DEFINE_GUID(IID_ISupportErrorInfo, 0xdf0b3d60, 0x548f, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19);
// clang-format on

/// Puts the information into the calling thread's slot, or empties the slot. E_INVALIDARG unless `reserved` is 0.
QUIRE_PLATFORM_EXPORT HRESULT SetErrorInfo(ULONG reserved, IErrorInfo *info);

/// Takes the information out of the calling thread's slot. S_FALSE and null when there is none.
QUIRE_PLATFORM_EXPORT HRESULT GetErrorInfo(ULONG reserved, IErrorInfo **info);

/// A new, empty piece of information; it also offers IErrorInfo.
QUIRE_PLATFORM_EXPORT HRESULT CreateErrorInfo(ICreateErrorInfo **info);
