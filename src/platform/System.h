#pragma once

/// \file
/// Time, the user, and what the native automation layer counts. Any thread may use any of these functions.

#include <quire/platform/Automation.h>
#include <quire/platform/Export.h>

#include <QString>

#include <ctime>

namespace Platform {

/// The local time zone's standard difference in seconds west of UTC, without daylight saving; 32 bits.
inline LONG timeZoneDifference()
{
#if defined(_WIN32)
    _tzset();
    return static_cast<LONG>(_timezone);
#else
    tzset();
    return static_cast<LONG>(timezone);
#endif
}

/// The seconds since 1970 UTC of a local calendar time, whose fields are brought into their ranges; -1 when it has
/// none.
inline __int64 makeTime(std::tm &calendar)
{
#if defined(_WIN32)
    return _mktime64(&calendar);
#else
    return std::mktime(&calendar);
#endif
}

/// The local calendar time of `seconds` since 1970 UTC. False, with `calendar` as it was, for a time that the run-time
/// library cannot convert.
inline bool localTime(__int64 seconds, std::tm &calendar)
{
    std::tm converted = {};
#if defined(_WIN32)
    if (_localtime64_s(&converted, &seconds) != 0)
        return false;
#else
    const std::time_t time = seconds;
    tzset(); // localtime_r need not look at TZ by itself
    if (!localtime_r(&time, &converted))
        return false;
#endif
    calendar = converted;
    return true;
}

/// Seconds since 1970 UTC.
inline __int64 now()
{
#if defined(_WIN32)
    return _time64(nullptr);
#else
    return std::time(nullptr);
#endif
}

/// The name of the user that the process runs as, at most 255 characters. Null when the query fails.
inline QString userName()
{
    char name[256];
    DWORD size = sizeof name;
    if (!GetUserNameA(name, &size))
        return QString();
    return QString::fromLocal8Bit(name);
}

#if defined(_WIN32)
/// Nobody counts here: -1.
inline __int64 liveBstrs()
{
    return -1;
}
/// Nobody counts here: -1.
inline __int64 liveArrays()
{
    return -1;
}
#else
/// Where OutputDebugStringA goes from now on; null stands for the standard error output. The handler is called on any
/// thread, by several at once.
QUIRE_PLATFORM_EXPORT void setDebugOutputHandler(void (*handler)(const char *));

/// How many BSTRs were allocated and not freed yet, in the whole process.
QUIRE_PLATFORM_EXPORT __int64 liveBstrs();
/// How many array descriptors were.
QUIRE_PLATFORM_EXPORT __int64 liveArrays();

/// Lets the n-th allocation from now on that a text or an array needs find no memory, in the whole process: 1 is the
/// next one, 0 none. For tests of what happens then.
QUIRE_PLATFORM_EXPORT void failAllocation(int n);
/// Whether that allocation has been tried since.
QUIRE_PLATFORM_EXPORT bool hasAllocationFailed();
#endif

} // namespace Platform
