#pragma once

/// \file
/// The process's class table, and the threads' part in the automation. Any thread may use any of these functions.

#include <quire/platform/native/Unknown.h>

enum CLSCTX : unsigned {
    CLSCTX_INPROC_SERVER = 0x1,
    CLSCTX_INPROC_HANDLER = 0x2,
    CLSCTX_LOCAL_SERVER = 0x4,
    CLSCTX_REMOTE_SERVER = 0x10
};
#define CLSCTX_INPROC (CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER)
#define CLSCTX_SERVER (CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER)
#define CLSCTX_ALL (CLSCTX_INPROC_HANDLER | CLSCTX_SERVER)

typedef enum tagREGCLS {
    REGCLS_SINGLEUSE = 0,
    REGCLS_MULTIPLEUSE = 1,
    REGCLS_MULTI_SEPARATE = 2,
    REGCLS_SUSPENDED = 4,
    REGCLS_SURROGATE = 8
} REGCLS;

typedef enum tagCOINIT {
    COINIT_MULTITHREADED = 0x0,
    COINIT_APARTMENTTHREADED = 0x2,
    COINIT_DISABLE_OLE1DDE = 0x4,
    COINIT_SPEED_OVER_MEMORY = 0x8
} COINIT;

struct COSERVERINFO;

/// Puts a class object into the table. `*cookie` is what CoRevokeClassObject takes; never 0. CO_E_OBJISREG when the
/// class is there for this context already and `flags` ask for neither multiple use.
QUIRE_PLATFORM_EXPORT HRESULT CoRegisterClassObject(REFCLSID clsid, LPUNKNOWN factory, DWORD context, DWORD flags,
                                                    LPDWORD cookie);

/// Takes it out again and releases it. CO_E_OBJNOTREG for a cookie that is not in the table.
QUIRE_PLATFORM_EXPORT HRESULT CoRevokeClassObject(DWORD cookie);

/// The class object that was registered first for the class and one of the contexts. REGDB_E_CLASSNOTREG when there is
/// none. `*object` is null after any failure.
QUIRE_PLATFORM_EXPORT HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID server, REFIID riid,
                                               LPVOID *object);

/// A new object of the class, made by its class object outside of the table's lock. `*object` is null after any
/// failure.
QUIRE_PLATFORM_EXPORT HRESULT CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID riid,
                                               LPVOID *object);

/// Runs the object if it is one that must be run (IRunnableObject); S_OK for all others.
QUIRE_PLATFORM_EXPORT HRESULT OleRun(LPUNKNOWN object);

/// Counts per thread. S_OK the first time, S_FALSE each time after, RPC_E_CHANGED_MODE (not counted) when the thread
/// already is of the other kind. Nothing else in this layer asks whether a thread did so.
QUIRE_PLATFORM_EXPORT HRESULT CoInitializeEx(LPVOID reserved, DWORD mode);
QUIRE_PLATFORM_EXPORT HRESULT CoInitialize(LPVOID reserved);
QUIRE_PLATFORM_EXPORT void CoUninitialize();
