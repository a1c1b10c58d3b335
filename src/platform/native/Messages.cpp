#include <quire/platform/native/System.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

struct Message
{
    DWORD code;
    std::string_view text;
};

/// In ascending order of the codes. The system's own wording, without its line break.
constexpr Message messages[] = {
    {0x00000000, "The operation completed successfully."},
    {0x00000001, "Incorrect function."},
    {0x00000002, "The system cannot find the file specified."},
    {0x00000003, "The system cannot find the path specified."},
    {0x00000004, "The system cannot open the file."},
    {0x00000005, "Access is denied."},
    {0x00000006, "The handle is invalid."},
    {0x00000008, "Not enough memory resources are available to process this command."},
    {0x0000000B, "An attempt was made to load a program with an incorrect format."},
    {0x0000000C, "The access code is invalid."},
    {0x0000000D, "The data is invalid."},
    {0x0000000E, "Not enough memory resources are available to complete this operation."},
    {0x0000000F, "The system cannot find the drive specified."},
    {0x00000013, "The media is write protected."},
    {0x00000015, "The device is not ready."},
    {0x00000018, "The program issued a command but the command length is incorrect."},
    {0x0000001F, "A device attached to the system is not functioning."},
    {0x00000020, "The process cannot access the file because it is being used by another process."},
    {0x00000021, "The process cannot access the file because another process has locked a portion of the file."},
    {0x00000026, "Reached the end of the file."},
    {0x00000032, "The request is not supported."},
    {0x00000035, "The network path was not found."},
    {0x00000036, "The network is busy."},
    {0x00000040, "The specified network name is no longer available."},
    {0x00000041, "Network access is denied."},
    {0x00000043, "The network name cannot be found."},
    {0x00000050, "The file exists."},
    {0x00000056, "The specified network password is not correct."},
    {0x00000057, "The parameter is incorrect."},
    {0x0000006D, "The pipe has been ended."},
    {0x0000006E, "The system cannot open the device or file specified."},
    {0x0000006F, "The file name is too long."},
    {0x00000070, "There is not enough space on the disk."},
    {0x00000078, "This function is not supported on this system."},
    {0x00000079, "The semaphore timeout period has expired."},
    {0x0000007A, "The data area passed to a system call is too small."},
    {0x0000007B, "The filename, directory name, or volume label syntax is incorrect."},
    {0x0000007E, "The specified module could not be found."},
    {0x0000007F, "The specified procedure could not be found."},
    {0x00000091, "The directory is not empty."},
    {0x000000AA, "The requested resource is in use."},
    {0x000000B7, "Cannot create a file when that file already exists."},
    {0x000000EA, "More data is available."},
    {0x00000102, "The wait operation timed out."},
    {0x00000103, "No more data is available."},
    {0x000003E3, "The I/O operation has been aborted because of either a thread exit or an application request."},
    {0x000003F0, "An attempt was made to reference a token that does not exist."},
    {0x00000421, "The account name is invalid or does not exist, or the password is invalid for the account name "
                 "specified."},
    {0x00000423, "Circular service dependency was specified."},
    {0x0000048F, "The device is not connected."},
    {0x00000490, "Element not found."},
    {0x000004C7, "The operation was canceled by the user."},
    {0x000004C9, "The remote computer refused the network connection."},
    {0x000004CF, "The network location cannot be reached. For information about network troubleshooting, see Windows "
                 "Help."},
    {0x000004D4, "The network connection was aborted by the local system."},
    {0x00000525, "The specified account does not exist."},
    {0x0000052E, "The user name or password is incorrect."},
    {0x00000533, "This user can't sign in because this account is currently disabled."},
    {0x000005AF, "The paging file is too small for this operation to complete."},
    {0x000005B4, "This operation returned because the timeout period expired."},
    {0x000006BA, "The RPC server is unavailable."},
    {0x000006BB, "The RPC server is too busy to complete this operation."},
    {0x000006BE, "The remote procedure call failed."},
    {0x000006BF, "The remote procedure call failed and did not execute."},
    {0x000006D9, "There are no more endpoints available from the endpoint mapper."},
    {0x0000271D, "An attempt was made to access a socket in a way forbidden by its access permissions."},
    {0x00002740, "Only one usage of each socket address (protocol/network address/port) is normally permitted."},
    {0x00002746, "An existing connection was forcibly closed by the remote host."},
    {0x0000274C, "A connection attempt failed because the connected party did not properly respond after a period of "
                 "time, or established connection failed because connected host has failed to respond."},
    {0x0000274D, "No connection could be made because the target machine actively refused it."},
    {0x00002AF9, "No such host is known."},
    {0x8000000A, "The data necessary to complete this operation is not yet available."},
    {0x8000000B, "The operation attempted to access data outside the valid range"},
    {0x8000000C, "A concurrent or interleaved operation changed the state of the object, invalidating this operation."},
    {0x80004001, "Not implemented"},
    {0x80004002, "No such interface supported"},
    {0x80004003, "Invalid pointer"},
    {0x80004004, "Operation aborted"},
    {0x80004005, "Unspecified error"},
    {0x8000FFFF, "Catastrophic failure"},
    {0x80010001, "Call was rejected by callee."},
    {0x80010002, "Call was canceled by the message filter."},
    {0x80010006,
     "The connection terminated or is in a bogus state and can no longer be used. Other connections are still "
     "valid."},
    {0x80010007, "The callee (server [not server application]) is not available and disappeared; all connections are "
                 "invalid. The call may have executed."},
    {0x80010012, "The callee (server [not server application]) is not available and disappeared; all connections are "
                 "invalid. The call did not execute."},
    {0x80010100, "System call failed."},
    {0x80010105, "The server threw an exception."},
    {0x80010106, "Cannot change thread mode after it is set."},
    {0x80010108, "The object invoked has disconnected from its clients."},
    {0x8001010A, "The message filter indicated that the application is busy."},
    {0x8001010B, "The message filter rejected the call."},
    {0x8001010E, "The application called an interface that was marshalled for a different thread."},
    {0x80010119,
     "Security must be initialized before any interfaces are marshalled or unmarshalled. It cannot be changed "
     "once initialized."},
    {0x8001011F, "This operation returned because the timeout period expired."},
    {0x8001FFFF, "An internal error occurred."},
    {0x80020001, "Unknown interface."},
    {0x80020003, "Member not found."},
    {0x80020004, "Parameter not found."},
    {0x80020005, "Type mismatch."},
    {0x80020006, "Unknown name."},
    {0x80020007, "No named arguments."},
    {0x80020008, "Bad variable type."},
    {0x80020009, "Exception occurred."},
    {0x8002000A, "Out of present range."},
    {0x8002000B, "Invalid index."},
    {0x8002000C, "Unknown language."},
    {0x8002000D, "Memory is locked."},
    {0x8002000E, "Invalid number of parameters."},
    {0x8002000F, "Parameter not optional."},
    {0x80020010, "Invalid callee."},
    {0x80020011, "Does not support a collection."},
    {0x80020012, "Division by zero."},
    {0x80020013, "Buffer too small."},
    {0x8002801D, "Library not registered."},
    {0x8002802B, "Element not found."},
    {0x80029C4A, "Error loading type library/DLL."},
    {0x80040003, "Object does not support advises"}, // lines without a full stop are the system's too
    {0x80040004, "There is no connection for this connection ID"},
    {0x80040005, "Need to run the object to perform this operation"},
    {0x80040110, "Class does not support aggregation (or class object is remote)"},
    {0x80040111, "ClassFactory cannot supply requested class"},
    {0x80040112, "Class is not licensed for use"},
    {0x80040154, "Class not registered"},
    {0x80040155, "Interface not registered"},
    {0x800401E3, "Operation unavailable"},
    {0x800401F0, "CoInitialize has not been called."},
    {0x800401F1, "CoInitialize has already been called."},
    {0x800401F3, "Invalid class string"},
    {0x800401F4, "Invalid interface string"},
    {0x800401F5, "Application not found"},
    {0x800401F8, "DLL for class not found"},
    {0x800401FB, "Object is not registered"},
    {0x800401FC, "Object is already registered"},
    {0x800401FD, "Object is not connected to server"},
    {0x800401FF, "Object has been released"},
    {0x80080005, "Server execution failed"},
};

/// Empty when the system has no message for the code.
std::string_view messageOf(DWORD code)
{
    // An HRESULT that wraps an error number has that number's message.
    if ((code & 0xFFFF0000) == 0x80070000)
        code &= 0xFFFF;
    const Message *found = std::lower_bound(std::begin(messages), std::end(messages), code,
                                            [](const Message &each, DWORD wanted) { return each.code < wanted; });
    return found != std::end(messages) && found->code == code ? found->text : std::string_view();
}

/// Both forms of FormatMessage; the texts are plain ASCII.
template<typename Char>
DWORD formatMessage(DWORD flags, DWORD code, Char *buffer, DWORD size)
{
    if (!buffer || !(flags & FORMAT_MESSAGE_FROM_SYSTEM)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const std::string_view text = messageOf(code);
    if (text.empty()) {
        SetLastError(ERROR_MR_MID_NOT_FOUND);
        return 0;
    }
    constexpr std::string_view lineBreak = "\r\n";
    const auto length = static_cast<DWORD>(text.size() + lineBreak.size());
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) {
        Char *const allocated = static_cast<Char *>(LocalAlloc(LPTR, std::max(length + 1, size) * sizeof(Char)));
        std::memcpy(static_cast<void *>(buffer), &allocated, sizeof allocated);
        buffer = allocated;
    } else if (size <= length) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    if (!buffer) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    Char *end = std::copy(text.begin(), text.end(), buffer);
    end = std::copy(lineBreak.begin(), lineBreak.end(), end);
    *end = 0;
    return length;
}

} // namespace

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD message, DWORD, LPSTR buffer, DWORD size, void *)
{
    return formatMessage(flags, message, buffer, size);
}

DWORD FormatMessageW(DWORD flags, LPCVOID, DWORD message, DWORD, LPWSTR buffer, DWORD size, void *)
{
    return formatMessage(flags, message, buffer, size);
}
