// Stand-in for the product's package installer, which the setup program runs for
// registration jobs ("/RegDLL <dll>", "/UnRegDLL <dll>"), the audio driver
// ("/InstallWDMDriver <inf>", "/RemoveWDMDriver <inf>") and packages. It appends its whole
// command line to "PackageInstaller.log" beside itself, as a helper with a log of its own
// does, and to "%TEMP%\Sample Package Installer.log", which outlives an uninstall, so tests
// can see every call; it carries out the two registration jobs by calling the DLL's own entry
// point, and exits 0.
#include "../SampleLog.h"

#include "foundation/win/HVUniqueResource.h"

#include <shellapi.h>

namespace
{
// The path is everything after the switch: the installer may pass it quoted or not.
std::wstring PathAfterSwitch(LPWSTR* args, int count)
{
    std::wstring path;
    for (int i = 2; i < count; ++i)
        path += (path.empty() ? L"" : L" ") + std::wstring(args[i]);
    return path;
}

bool CallEntry(const std::wstring& dll, const char* entry)
{
    HVModule module(LoadLibraryW(dll.c_str()));
    if (!module)
        return false;
    using Entry = HRESULT(__stdcall*)();
    auto function = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module.Get(), entry)));
    return function && SUCCEEDED(function());
}
}

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    const std::wstring log = sample::ModuleFolder() + L"PackageInstaller.log";
    sample::WriteLine(log, GetCommandLineW());
    wchar_t temporary[MAX_PATH + 1] = {};
    if (GetTempPathW(MAX_PATH, temporary))
        sample::WriteLine(std::wstring(temporary) + L"Sample Package Installer.log", GetCommandLineW());

    int count = 0;
    LPWSTR* args = CommandLineToArgvW(GetCommandLineW(), &count);
    if (args && count >= 3)
    {
        const char* entry = nullptr;
        if (lstrcmpiW(args[1], L"/RegDLL") == 0)
            entry = "DllRegisterServer";
        else if (lstrcmpiW(args[1], L"/UnRegDLL") == 0)
            entry = "DllUnregisterServer";
        if (entry)
        {
            const std::wstring dll = PathAfterSwitch(args, count);
            if (!CallEntry(dll, entry))
                sample::WriteLine(log, L"  failed: " + std::wstring(args[1]) + L" " + dll);
        }
    }
    LocalFree(args);
    return 0;
}
