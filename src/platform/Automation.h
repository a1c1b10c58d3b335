#pragma once

/// \file
/// The automation types (BSTR, VARIANT, SAFEARRAY, interfaces, counted pointers, `_com_error`), with the system's own
/// names and rules: on Windows the system's headers, elsewhere those in native/.

#if defined(_WIN32)

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wconversion"
#endif

#include <windows.h>

#include <ole2.h>

#include <oleauto.h>

#include <ocidl.h>
#include <olectl.h>

#include <comdef.h>

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#if defined(__MINGW32__)
/// MinGW declares this but has no library that defines it: raises with the thread's error information when `object`
/// supports it for that interface, else without.
inline void WINAPI _com_issue_errorex(HRESULT result, IUnknown *object, REFIID riid)
{
    IErrorInfo *info = nullptr;
    ISupportErrorInfo *support = nullptr;
    if (object && SUCCEEDED(object->QueryInterface(__uuidof(ISupportErrorInfo), reinterpret_cast<void **>(&support)))) {
        const bool supported = support->InterfaceSupportsErrorInfo(riid) == S_OK;
        support->Release();
        if (!supported || GetErrorInfo(0, &info) != S_OK)
            info = nullptr;
    }
    __mingw_com_error_handler(result, info);
}
#endif

#else

#include <quire/platform/native/Bstr.h>
#include <quire/platform/native/Classes.h>
#include <quire/platform/native/ComError.h>
#include <quire/platform/native/ComPtr.h>
#include <quire/platform/native/ComString.h>
#include <quire/platform/native/ConnectionPoint.h>
#include <quire/platform/native/Dispatch.h>
#include <quire/platform/native/ErrorInfo.h>
#include <quire/platform/native/Guid.h>
#include <quire/platform/native/RecordInfo.h>
#include <quire/platform/native/Results.h>
#include <quire/platform/native/SafeArray.h>
#include <quire/platform/native/System.h>
#include <quire/platform/native/Types.h>
#include <quire/platform/native/Unknown.h>
#include <quire/platform/native/Variant.h>

#endif

#if !defined(_MSC_VER)
_COM_SMARTPTR_TYPEDEF(IUnknown, __uuidof(IUnknown));
_COM_SMARTPTR_TYPEDEF(IDispatch, __uuidof(IDispatch));
_COM_SMARTPTR_TYPEDEF(IClassFactory, __uuidof(IClassFactory));
_COM_SMARTPTR_TYPEDEF(IConnectionPointContainer, __uuidof(IConnectionPointContainer));
_COM_SMARTPTR_TYPEDEF(IConnectionPoint, __uuidof(IConnectionPoint));
_COM_SMARTPTR_TYPEDEF(IEnumConnectionPoints, __uuidof(IEnumConnectionPoints));
_COM_SMARTPTR_TYPEDEF(IEnumConnections, __uuidof(IEnumConnections));
_COM_SMARTPTR_TYPEDEF(IErrorInfo, __uuidof(IErrorInfo));
_COM_SMARTPTR_TYPEDEF(ICreateErrorInfo, __uuidof(ICreateErrorInfo));
_COM_SMARTPTR_TYPEDEF(ISupportErrorInfo, __uuidof(ISupportErrorInfo));
_COM_SMARTPTR_TYPEDEF(IRecordInfo, __uuidof(IRecordInfo));
#endif
