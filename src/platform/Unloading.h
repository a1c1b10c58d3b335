#pragma once

/// \file
/// The library's own end. Not part of the public surface.

#include <cstdlib>

#include <quire/platform/Automation.h>

namespace Platform {

/// Keeps the library in memory until the process ends, whoever lets go of it: called before anything gets to know
/// addresses in it that the host cannot take back, like a worker or the server's notices. Any thread.
///
/// Natively there is nothing to do: the library is linked so that it never leaves.
inline void stayLoaded()
{
#if defined(_WIN32)
    static const char here = 0;
    HMODULE library = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN, &here, &library);
#endif
}

/// Whether the process is so far in its end that this is its only thread, and any lock may have been lost with another.
inline bool isEndingProcess()
{
#if defined(_WIN32)
    using Question = BOOLEAN(WINAPI *)();
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    const FARPROC address = system ? GetProcAddress(system, "RtlDllShutdownInProgress") : nullptr;
    return address && reinterpret_cast<Question>(reinterpret_cast<void *>(address))();
#else
    return false;
#endif
}

/// Has \a Action done when the process ends by exit() or by the return of main(), while its other threads still run.
/// Not when it ends otherwise. To be called once, by what stays loaded. Any thread.
///
/// What a library on Windows gives its own runtime's atexit() is done when it is unloaded, and at the end of a process
/// the system has ended all other threads by then: hence the runtimes' tables of the program itself. A host that has
/// its runtime linked in has no such table to find.
template<void (*Action)()>
void beforeProcessEnds()
{
#if defined(_WIN32)
    using OnExit = int(__cdecl *)();
    using AddOnExit = OnExit(__cdecl *)(OnExit);
    using AddAtExit = int(__cdecl *)(void(__cdecl *)());
    const auto find = [](const char *runtime, const char *function) {
        const HMODULE module = GetModuleHandleA(runtime);
        return reinterpret_cast<void *>(module ? GetProcAddress(module, function) : nullptr);
    };
    if (void *const add = find("msvcrt.dll", "_onexit")) {
        reinterpret_cast<AddOnExit>(add)([]() -> int {
            Action();
            return 0;
        });
    }
    if (void *const add = find("ucrtbase.dll", "_crt_atexit"))
        reinterpret_cast<AddAtExit>(add)([] { Action(); });
#else
    std::atexit([] { Action(); });
#endif
}

} // namespace Platform
