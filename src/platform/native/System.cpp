#include <quire/platform/native/System.h>

#include <quire/platform/System.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <pwd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

void writeToErrorOutput(const char *text)
{
    std::fputs(text, stderr);
}

std::atomic<void (*)(const char *)> debugOutput{writeToErrorOutput};

/// Empty when the system has no name for the user.
std::string nameOfUser()
{
    std::vector<char> room(1024);
    passwd entry = {};
    passwd *found = nullptr;
    while (getpwuid_r(geteuid(), &entry, room.data(), room.size(), &found) == ERANGE)
        room.resize(room.size() * 2);
    if (found)
        return found->pw_name;
    const char *name = std::getenv("USER");
    return name ? name : "";
}

} // namespace

__thread DWORD Platform::threadNumber = 0;

DWORD Platform::askThreadNumber()
{
    threadNumber = static_cast<DWORD>(syscall(SYS_gettid));
    return threadNumber;
}

void Sleep(DWORD milliseconds)
{
    timespec left = {static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

DWORD GetLastError()
{
    return lastError;
}

void SetLastError(DWORD error)
{
    lastError = error;
}

void OutputDebugStringA(LPCSTR text)
{
    debugOutput.load()(text ? text : "");
}

BOOL GetUserNameA(LPSTR name, LPDWORD size)
{
    const std::string user = nameOfUser();
    const DWORD needed = static_cast<DWORD>(user.size()) + 1;
    DWORD error = ERROR_SUCCESS;
    if (!size)
        error = ERROR_INVALID_PARAMETER;
    else if (user.empty())
        error = ERROR_NO_SUCH_USER;
    else if (!name || *size < needed)
        error = ERROR_INSUFFICIENT_BUFFER;
    if (error == ERROR_SUCCESS)
        std::memcpy(name, user.c_str(), needed);
    else
        SetLastError(error);
    if (error == ERROR_SUCCESS || error == ERROR_INSUFFICIENT_BUFFER)
        *size = needed;
    return error == ERROR_SUCCESS;
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): these are themselves what others own their memory with
LPVOID CoTaskMemAlloc(SIZE_T size)
{
    return std::malloc(size ? size : 1);
}

void CoTaskMemFree(LPVOID memory)
{
    std::free(memory);
}

HLOCAL LocalAlloc(UINT flags, SIZE_T size)
{
    return flags & LMEM_ZEROINIT ? std::calloc(1, size ? size : 1) : std::malloc(size ? size : 1);
}

HLOCAL LocalFree(HLOCAL memory)
{
    std::free(memory);
    return nullptr;
}
// NOLINTEND(cppcoreguidelines-no-malloc)

namespace Platform {

void setDebugOutputHandler(void (*handler)(const char *))
{
    debugOutput.store(handler ? handler : writeToErrorOutput);
}

} // namespace Platform
