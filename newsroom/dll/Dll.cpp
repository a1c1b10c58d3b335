// The entry points of OrvexCOMU_64.dll and OrvexCOM.dll: the stand-in newsroom as an in-process server.

#include <array>

#include <QString>

#include <quire/platform/Automation.h>

#include "DllServer.h"
#include "SelfRegistration.h"

namespace {

HINSTANCE thisModule = nullptr;

QString modulePath()
{
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(thisModule, path.data(), static_cast<DWORD>(path.size()));
    return length < path.size() ? QString::fromWCharArray(path.data(), static_cast<int>(length)) : QString();
}

/// No exception leaves a DLL's entry point.
template<typename Work>
HRESULT guarded(const Work &work) noexcept
{
    try {
        return work();
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void *)
{
    if (reason == DLL_PROCESS_ATTACH) {
        thisModule = module;
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void **object)
{
    return guarded([&] { return Newsroom::DllServer::instance().classObject(clsid, iid, object); });
}

extern "C" HRESULT WINAPI DllCanUnloadNow()
{
    return guarded([] { return Newsroom::DllServer::instance().canUnload() ? S_OK : S_FALSE; });
}

extern "C" HRESULT WINAPI DllRegisterServer()
{
    return guarded([] { return Newsroom::registerServer(modulePath()); });
}

extern "C" HRESULT WINAPI DllUnregisterServer()
{
    return guarded([] { return Newsroom::unregisterServer(modulePath()); });
}
