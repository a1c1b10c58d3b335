#pragma once

/// \file
/// Connection points: how an object calls its clients back, and the enumerators that list points and connections.

#include <quire/platform/native/Unknown.h>

struct IConnectionPoint;
struct IConnectionPointContainer;
struct IEnumConnections;
struct IEnumConnectionPoints;

typedef struct tagCONNECTDATA
{
    IUnknown *pUnk;
    DWORD dwCookie;
} CONNECTDATA;
typedef CONNECTDATA *LPCONNECTDATA;

typedef IConnectionPoint *LPCONNECTIONPOINT;

struct QUIRE_PLATFORM_EXPORT IConnectionPointContainer : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints **points) = 0;
    virtual HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid, IConnectionPoint **point) = 0;
};

struct QUIRE_PLATFORM_EXPORT IConnectionPoint : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID *iid) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer **container) = 0;
    virtual HRESULT STDMETHODCALLTYPE Advise(IUnknown *sink, DWORD *cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections **connections) = 0;
};

struct QUIRE_PLATFORM_EXPORT IEnumConnections : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, LPCONNECTDATA connections, ULONG *fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnections **clone) = 0;
};

struct QUIRE_PLATFORM_EXPORT IEnumConnectionPoints : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, LPCONNECTIONPOINT *points, ULONG *fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints **clone) = 0;
};

// clang-format off
__CRT_UUID_DECL(IConnectionPointContainer, 0xb196b284, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IEnumConnectionPoints,     0xb196b285, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IConnectionPoint,          0xb196b286, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IEnumConnections,          0xb196b287, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)

DEFINE_GUID(IID_IConnectionPointContainer, 0xb196b284, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07);
DEFINE_GUID(IID_IEnumConnectionPoints,     0xb196b285, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07);
DEFINE_GUID(IID_IConnectionPoint,          0xb196b286, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07);
DEFINE_GUID(IID_IEnumConnections,          0xb196b287, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07);
// clang-format on
