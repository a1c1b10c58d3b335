#include <gtest/gtest.h>

#include <quire/platform/Automation.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/System.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <thread>

namespace {

constexpr DWORD allocating = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;

/// The message of a code, as somebody gets it who has it allocated; empty when there is none.
std::string systemMessage(DWORD code)
{
    char *text = nullptr;
    const DWORD length = FormatMessageA(allocating, nullptr, code, 0, reinterpret_cast<LPSTR>(&text), 0, nullptr);
    std::string message(text ? text : "", length);
    LocalFree(text);
    return message;
}

std::string debugOutput;

void keepDebugOutput(const char *text)
{
    debugOutput += text;
}

/// Sends the debug output to `debugOutput`.
class DebugOutput
{
public:
    DebugOutput()
    {
        debugOutput.clear();
        Platform::setDebugOutputHandler(keepDebugOutput);
    }
    DebugOutput(const DebugOutput &) = delete;
    DebugOutput &operator=(const DebugOutput &) = delete;
    ~DebugOutput() { Platform::setDebugOutputHandler(nullptr); }
};

/// Does something on a thread that did not take part in the automation before.
template<typename Action>
void onFreshThread(const Action &action)
{
    std::thread(action).join();
}

/// Sets the environment's time zone for the length of a test.
class TimeZone
{
public:
    explicit TimeZone(const char *zone)
    {
        if (const char *before = getenv("TZ")) {
            m_hadOne = true;
            m_before = before;
        }
        setenv("TZ", zone, 1);
    }
    TimeZone(const TimeZone &) = delete;
    TimeZone &operator=(const TimeZone &) = delete;
    ~TimeZone()
    {
        if (m_hadOne)
            setenv("TZ", m_before.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

private:
    bool m_hadOne = false;
    std::string m_before;
};

} // namespace

TEST(SystemNative, MessageOfAnErrorNumberEndsWithALineBreak)
{
    EXPECT_EQ(systemMessage(5), "Access is denied.\r\n");
}

TEST(SystemNative, MessageOfAResultIsTheSystems)
{
    EXPECT_EQ(systemMessage(0x80040154), "Class not registered\r\n");
}

TEST(SystemNative, MessageOfAResultThatWrapsAnErrorNumberIsThatNumbers)
{
    EXPECT_EQ(systemMessage(0x80070005), "Access is denied.\r\n");
}

TEST(SystemNative, UnknownCodeHasNoMessageAndNoMemory)
{
    char *text = nullptr;
    EXPECT_EQ(FormatMessageA(allocating, nullptr, 0x8ABCDEF0, 0, reinterpret_cast<LPSTR>(&text), 0, nullptr), 0u);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_MR_MID_NOT_FOUND));
}

TEST(SystemNative, MessageFitsIntoARoomWithItsNul)
{
    char room[20];
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, room, sizeof room, nullptr), 19u);
    EXPECT_STREQ(room, "Access is denied.\r\n");
}

TEST(SystemNative, MessageThatDoesNotFitFails)
{
    char room[19];
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, room, sizeof room, nullptr), 0u);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INSUFFICIENT_BUFFER));
}

TEST(SystemNative, MessageFromElsewhereThanTheSystemFails)
{
    char room[64];
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_STRING, nullptr, 5, 0, room, sizeof room, nullptr), 0u);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_PARAMETER));
}

TEST(SystemNative, FreeingNoLocalMemoryGivesNull)
{
    EXPECT_EQ(LocalFree(nullptr), nullptr);
}

TEST(SystemNative, DebugOutputGoesToTheHandler)
{
    const DebugOutput output;
    OutputDebugStringA("first\n");
    OutputDebugStringA("second");
    EXPECT_EQ(debugOutput, "first\nsecond");
}

TEST(SystemNative, DebugOutputOfNothingIsAnEmptyText)
{
    const DebugOutput output;
    OutputDebugStringA(nullptr);
    EXPECT_EQ(debugOutput, "");
}

TEST(SystemNative, DebugOutputWithoutAHandlerGoesToTheErrorOutput)
{
    Platform::setDebugOutputHandler(nullptr);
    testing::internal::CaptureStderr();
    OutputDebugStringA("to the error output");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "to the error output");
}

TEST(SystemNative, ThreadNumberIsNotZeroAndStaysTheSame)
{
    const DWORD number = GetCurrentThreadId();
    EXPECT_NE(number, 0u);
    EXPECT_EQ(GetCurrentThreadId(), number);
}

TEST(SystemNative, ThreadNumbersOfTwoThreadsDiffer)
{
    DWORD elsewhere = 0;
    onFreshThread([&elsewhere] { elsewhere = GetCurrentThreadId(); });
    EXPECT_NE(elsewhere, 0u);
    EXPECT_NE(elsewhere, GetCurrentThreadId());
}

TEST(SystemNative, UserNameTellsItsLengthWithTheNul)
{
    char name[256];
    DWORD size = sizeof name;
    ASSERT_TRUE(GetUserNameA(name, &size));
    EXPECT_EQ(size, std::string(name).size() + 1);
}

TEST(SystemNative, UserNameFitsExactly)
{
    char name[256];
    DWORD size = sizeof name;
    ASSERT_TRUE(GetUserNameA(name, &size));
    EXPECT_TRUE(GetUserNameA(name, &size));
}

TEST(SystemNative, UserNameThatDoesNotFitTellsTheRoomItNeeds)
{
    char name[256];
    DWORD needed = sizeof name;
    ASSERT_TRUE(GetUserNameA(name, &needed));
    DWORD size = needed - 1;
    EXPECT_FALSE(GetUserNameA(name, &size));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(size, needed);
}

TEST(SystemNative, UserNameWithoutAPlaceForTheLengthIsRefused)
{
    char name[256];
    EXPECT_FALSE(GetUserNameA(name, nullptr));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_PARAMETER));
}

TEST(SystemNative, TakingPartAgainIsFalse)
{
    onFreshThread([] {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE);
        CoUninitialize();
        CoUninitialize();
    });
}

TEST(SystemNative, TakingPartInTheOtherKindIsRefused)
{
    onFreshThread([] {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), RPC_E_CHANGED_MODE);
        CoUninitialize();
    });
}

TEST(SystemNative, RefusedKindIsNotCounted)
{
    onFreshThread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        CoUninitialize();
    });
}

TEST(SystemNative, LeavingMoreOftenThanEnteringDoesNothing)
{
    onFreshThread([] {
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        CoUninitialize();
    });
}

TEST(SystemNative, LiveTextsAreCounted)
{
    const __int64 before = Platform::liveBstrs();
    {
        const Platform::Bstr text(QStringLiteral("counted"));
        EXPECT_EQ(Platform::liveBstrs(), before + 1);
    }
    EXPECT_EQ(Platform::liveBstrs(), before);
}

TEST(SystemNative, LiveArraysAreCounted)
{
    const __int64 before = Platform::liveArrays();
    SAFEARRAY *array = SafeArrayCreateVector(VT_UI1, 0, 4);
    EXPECT_EQ(Platform::liveArrays(), before + 1);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    EXPECT_EQ(Platform::liveArrays(), before);
}

TEST(SystemNative, LocalTimeFollowsTheZoneThatWasSetLast)
{
    std::tm calendar = {};
    {
        const TimeZone west("WST+3");
        ASSERT_TRUE(Platform::localTime(86400, calendar));
        EXPECT_EQ(calendar.tm_hour, 21);
    }
    const TimeZone east("EST-5");
    ASSERT_TRUE(Platform::localTime(86400, calendar));
    EXPECT_EQ(calendar.tm_hour, 5);
}

TEST(SystemNative, SleepsAtLeastAsLongAsAsked)
{
    timespec before = {};
    timespec after = {};
    clock_gettime(CLOCK_MONOTONIC, &before);
    Sleep(20);
    clock_gettime(CLOCK_MONOTONIC, &after);
    EXPECT_GE((after.tv_sec - before.tv_sec) * 1000 + (after.tv_nsec - before.tv_nsec) / 1000000, 20);
}

TEST(SystemNative, MessageNeedsAPlace)
{
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, nullptr, 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, nullptr, 0, nullptr), 0u);
}

TEST(SystemNative, WideMessageThatDoesNotFitFails)
{
    WCHAR room[19];
    SetLastError(0);
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, room, 19, nullptr), 0u);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INSUFFICIENT_BUFFER));
}

TEST(SystemNative, MemoryOfNoBytesIsStillMemory)
{
    void *const task = CoTaskMemAlloc(0);
    void *const local = LocalAlloc(0, 0);
    void *const zeroed = LocalAlloc(LMEM_ZEROINIT, 0);
    EXPECT_NE(task, nullptr);
    EXPECT_NE(local, nullptr);
    EXPECT_NE(zeroed, nullptr);
    CoTaskMemFree(task);
    LocalFree(local);
    LocalFree(zeroed);
}

TEST(SystemNative, LocalMemoryIsZeroedWhenAsked)
{
    auto *const memory = static_cast<char *>(LocalAlloc(LMEM_ZEROINIT, 64));
    EXPECT_TRUE(std::all_of(memory, memory + 64, [](char byte) { return byte == 0; }));
    LocalFree(memory);
}
