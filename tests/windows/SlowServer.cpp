// A DLL that is still registering itself when its caller's patience ends.

#include <windows.h>

extern "C" __declspec(dllexport) HRESULT WINAPI DllRegisterServer()
{
    Sleep(20000);
    return S_OK;
}
