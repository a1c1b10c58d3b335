#pragma once

/// \file
/// The library's own end. Not part of the public surface.

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

} // namespace Platform
