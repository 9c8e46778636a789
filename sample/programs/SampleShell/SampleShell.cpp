// A self-registering component of the product. Registering it leaves a marker that tests can
// read: under HKEY_CURRENT_USER "Software\Halvard\Sonora 32\Registered", a value named by the
// DLL's file name whose data is the DLL's full path. Unregistering removes the value.
#include "../SampleLog.h"

#include "foundation/win/HVRegKey.h"

namespace
{
HMODULE g_module = nullptr;
constexpr const char16_t* kMarkerKey = u"Software\\Halvard\\Sonora 32\\Registered";

std::wstring FileName(const std::wstring& path)
{
    return path.substr(path.find_last_of(L'\\') + 1);
}
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
    {
        g_module = instance;
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

extern "C" __declspec(dllexport) HRESULT __stdcall DllRegisterServer()
{
    const std::wstring path = sample::ModulePath(g_module);
    HVRegKey key;
    if (!key.Create(HKEY_CURRENT_USER, kMarkerKey))
        return E_FAIL;
    return key.SetString(HVString(FileName(path).c_str()), HVString(path.c_str())) ? S_OK : E_FAIL;
}

extern "C" __declspec(dllexport) HRESULT __stdcall DllUnregisterServer()
{
    HVRegKey key;
    if (!key.Open(HKEY_CURRENT_USER, kMarkerKey, KEY_READ | KEY_WRITE))
        return S_OK;
    const HVString name(FileName(sample::ModulePath(g_module)).c_str());
    return !key.HasValue(name) || key.DeleteValue(name) ? S_OK : E_FAIL;
}
