// QuireCOM::registerCOM runs the system's regsvr32, and the session finds what it registered.

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <quire/Quire.h>

#include "windows/ServerFolder.h"

#include <tlhelp32.h> // after the system's own types

using Quire::QuireCOM;

namespace {

constexpr auto notRegistered = static_cast<HRESULT>(0x80040154);

int runningRegistrations()
{
    PROCESSENTRY32W process{};
    process.dwSize = sizeof process;
    const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    int count = 0;
    for (BOOL more = Process32FirstW(list, &process); more; more = Process32NextW(list, &process))
        count += QString::fromWCharArray(process.szExeFile).startsWith(QLatin1String("regsvr32"), Qt::CaseInsensitive);
    CloseHandle(list);
    return count;
}

/// A process that was told to go needs a moment.
bool registrationsEnd()
{
    QElapsedTimer timer;
    timer.start();
    while (runningRegistrations() > 0 && timer.elapsed() < 10000)
        Sleep(20);
    return runningRegistrations() == 0;
}

class Registration : public testing::Test
{
protected:
    void SetUp() override { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }

    void TearDown() override
    {
        QuireCOM::UnloadCOM();
        QuireCOM::SetUnicode(true);
        CoFreeUnusedLibrariesEx(0, 0);
        CoUninitialize();
    }
};

/// Registers through the system and signs on through the registry; a failure names the step.
testing::AssertionResult registersAndSignsOn(const ServerFolder &folder)
{
    if (!QuireCOM::registerCOM(folder.path()))
        return testing::AssertionFailure() << "the registration did not end in time";
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    if (!session->IsLoaded())
        return testing::AssertionFailure() << "not loaded: " << std::hex << session->GetCOMError();
    const long result = session->Connect(QString(), QStringLiteral("journalist"), QStringLiteral("news"), 0);
    if (result != S_OK)
        return testing::AssertionFailure() << qPrintable(Quire::getErrorString(result, true));
    return testing::AssertionSuccess();
}

} // namespace

TEST_F(Registration, LeavesTheSessionUnloadedWhenNothingIsRegistered)
{
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    EXPECT_FALSE(session->IsLoaded());
    EXPECT_EQ(static_cast<HRESULT>(session->GetCOMError()), notRegistered);
    EXPECT_EQ(session->Connect(QStringLiteral("S"), QStringLiteral("journalist"), QStringLiteral("news"), 0), -1);
}

TEST_F(Registration, OfAFolderWithoutTheDllIsTrueAndStartsNoProcess)
{
    const QTemporaryDir empty;
    EXPECT_TRUE(QuireCOM::registerCOM(empty.path()));
    EXPECT_EQ(runningRegistrations(), 0);
    EXPECT_FALSE(QuireCOM::GetQuireCOM(true)->IsLoaded());
}

TEST_F(Registration, MakesTheServerKnownToTheSession)
{
    const ServerFolder folder;
    EXPECT_TRUE(registersAndSignsOn(folder));
}

TEST_F(Registration, OfTheOtherDllWorksToo)
{
    QuireCOM::SetUnicode(false);
    const ServerFolder folder;
    EXPECT_TRUE(folder.dll().endsWith(QLatin1String("/OrvexCOM.dll")));
    EXPECT_TRUE(registersAndSignsOn(folder));
}

TEST_F(Registration, TakesAFolderWithBlanks)
{
    const ServerFolder folder(QStringLiteral("a folder with blanks"));
    EXPECT_TRUE(registersAndSignsOn(folder));
}

TEST_F(Registration, TakesAFolderWithLettersOfEveryKind)
{
    const ServerFolder folder(QStringLiteral("R\u00E9daction \u65B0\u805E \u0631\u0627\u062F\u064A\u0648"));
    EXPECT_TRUE(registersAndSignsOn(folder));
}

TEST_F(Registration, TakesAFolderWithBackslashes)
{
    const ServerFolder folder;
    QString path = folder.path();
    EXPECT_TRUE(QuireCOM::registerCOM(path.replace(QLatin1Char('/'), QLatin1Char('\\'))));
    EXPECT_TRUE(QuireCOM::GetQuireCOM(true)->IsLoaded());
}

TEST_F(Registration, ThatDoesNotEndInItsSecondIsFalseAndItsProcessIsGone)
{
    const ServerFolder folder(QStringLiteral("slow"), QStringLiteral(QUIRE_SLOW_SERVER));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(QuireCOM::registerCOM(folder.path()));
    EXPECT_GE(timer.elapsed(), 1000);
    EXPECT_LT(timer.elapsed(), 15000); // the registration itself would take 20 s
    EXPECT_TRUE(registrationsEnd());
}

TEST_F(Registration, IsTakenBackByTheDllsOwnEntryPoint)
{
    const ServerFolder folder;
    ASSERT_TRUE(QuireCOM::registerCOM(folder.path()));
    EXPECT_EQ(folder.call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(static_cast<HRESULT>(QuireCOM::GetQuireCOM(true)->GetCOMError()), notRegistered);
    EXPECT_EQ(folder.call("DllUnregisterServer"), S_OK);
}

TEST_F(Registration, OfAnotherDllIsNotTakenBack)
{
    const ServerFolder first(QStringLiteral("first"));
    const ServerFolder second(QStringLiteral("second"));
    ASSERT_TRUE(QuireCOM::registerCOM(first.path()));
    ASSERT_TRUE(QuireCOM::registerCOM(second.path()));
    EXPECT_EQ(first.call("DllUnregisterServer"), S_OK);
    EXPECT_TRUE(QuireCOM::GetQuireCOM(true)->IsLoaded());
}

TEST_F(Registration, LetsTheDllGoOnceNobodyHoldsAnything)
{
    const ServerFolder folder;
    ASSERT_TRUE(registersAndSignsOn(folder));
    EXPECT_NE(GetModuleHandleW(L"OrvexCOMU_64.dll"), nullptr);
    QuireCOM::UnloadCOM();
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(GetModuleHandleW(L"OrvexCOMU_64.dll"), nullptr);
}

TEST_F(Registration, KeepsTheDllWhileASessionHoldsIt)
{
    const ServerFolder folder;
    ASSERT_TRUE(registersAndSignsOn(folder));
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(L"OrvexCOMU_64.dll"), nullptr);
    EXPECT_TRUE(QuireCOM::TheQuireCOM->IsConnected());
}
