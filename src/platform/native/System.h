#pragma once

/// \file
/// What is taken from the system itself: threads, memory, counters that several threads change, the user, messages.

#include <quire/platform/Export.h>
#include <quire/platform/native/Results.h>

#include <type_traits>

namespace Platform {
/// The calling thread's number, 0 until it has asked once. Read in place: this library is there from the start of the
/// process, so that a thread's number costs one load, as it does on Windows.
extern QUIRE_PLATFORM_EXPORT __thread DWORD threadNumber __attribute__((tls_model("initial-exec")));
/// Asks the system, and remembers.
QUIRE_PLATFORM_EXPORT DWORD askThreadNumber();
} // namespace Platform

/// The calling thread's number; never 0, the same for the thread's whole life.
inline DWORD GetCurrentThreadId()
{
    const DWORD known = Platform::threadNumber;
    return known ? known : Platform::askThreadNumber();
}

QUIRE_PLATFORM_EXPORT void Sleep(DWORD milliseconds);

/// The calling thread's last error number; set by GetUserNameA and FormatMessageA when they fail.
QUIRE_PLATFORM_EXPORT DWORD GetLastError();
QUIRE_PLATFORM_EXPORT void SetLastError(DWORD error);

/// Gives the text to the debugger: the handler of Platform::setDebugOutputHandler, or else the standard error output.
QUIRE_PLATFORM_EXPORT void OutputDebugStringA(LPCSTR text);

/// The name of the user that the process runs as. `*size` is the room in `name`, afterwards the length, both with the
/// NUL. FALSE and ERROR_INSUFFICIENT_BUFFER, with the room needed in `*size`, when it does not fit.
QUIRE_PLATFORM_EXPORT BOOL GetUserNameA(LPSTR name, LPDWORD size);

// ---- memory ---------------------------------------------------------------------------------------------------------

QUIRE_PLATFORM_EXPORT LPVOID CoTaskMemAlloc(SIZE_T size);
QUIRE_PLATFORM_EXPORT void CoTaskMemFree(LPVOID memory);

#define LMEM_FIXED 0x0000
#define LMEM_ZEROINIT 0x0040
#define LPTR (LMEM_FIXED | LMEM_ZEROINIT)

QUIRE_PLATFORM_EXPORT HLOCAL LocalAlloc(UINT flags, SIZE_T size);
/// Frees; null is allowed. Returns null.
QUIRE_PLATFORM_EXPORT HLOCAL LocalFree(HLOCAL memory);

// ---- counters that several threads change: the result is the new value, for the last two the one before -------------

template<typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
T InterlockedIncrement(T volatile *value)
{
    return __atomic_add_fetch(value, T(1), __ATOMIC_SEQ_CST);
}
template<typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
T InterlockedDecrement(T volatile *value)
{
    return __atomic_sub_fetch(value, T(1), __ATOMIC_SEQ_CST);
}
inline LONG InterlockedExchange(LONG volatile *value, LONG newValue)
{
    return __atomic_exchange_n(value, newValue, __ATOMIC_SEQ_CST);
}
inline LONG InterlockedExchangeAdd(LONG volatile *value, LONG addend)
{
    return __atomic_fetch_add(value, addend, __ATOMIC_SEQ_CST);
}
inline LONG InterlockedCompareExchange(LONG volatile *value, LONG newValue, LONG expected)
{
    __atomic_compare_exchange_n(value, &expected, newValue, false, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);
    return expected;
}

// ---- messages -------------------------------------------------------------------------------------------------------

#define FORMAT_MESSAGE_MAX_WIDTH_MASK 0x000000FF
#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x00000100
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_STRING 0x00000400
#define FORMAT_MESSAGE_FROM_HMODULE 0x00000800
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000
#define FORMAT_MESSAGE_ARGUMENT_ARRAY 0x00002000

/// The system's message, in English, for an error number or an HRESULT, ended by "\r\n". Returns its length in
/// characters without the NUL, or 0 when there is none (or when `flags` do not say FORMAT_MESSAGE_FROM_SYSTEM, the only
/// source). With FORMAT_MESSAGE_ALLOCATE_BUFFER `buffer` is the address of a pointer to memory that the caller frees
/// with LocalFree, at least `size` characters; otherwise the room is `size` characters and a message that does not fit
/// fails.
QUIRE_PLATFORM_EXPORT DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD message, DWORD language, LPSTR buffer,
                                           DWORD size, void *arguments);
QUIRE_PLATFORM_EXPORT DWORD FormatMessageW(DWORD flags, LPCVOID source, DWORD message, DWORD language, LPWSTR buffer,
                                           DWORD size, void *arguments);
#define FormatMessage FormatMessageW
