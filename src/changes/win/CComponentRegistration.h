#pragma once

#include "foundation/HVString.h"

// The three ways a module is registered: directly (load it, call its DllRegisterServer,
// unload it; only ".dll" and ".ocx" files), through the product's package installer, which
// also installs the audio driver, and through the system's RegSvr32. Every program started
// here is waited for with the window messages flowing.
class CComponentRegistration
{
public:
    // The module exports DllRegisterServer. Looked up without running the module's own start-up
    // code, so asking about a file never runs it.
    static bool IsSelfRegistering(const HVString& path);
    // False for another file type, a module that can't be loaded, a missing export or a
    // failing result (logged).
    static bool RegisterServer(const HVString& path);
    // The same through DllUnregisterServer, before the module's file goes.
    static bool UnregisterServer(const HVString& path);

    // The product's "PackageInstaller.exe" of `installFolder` run with a switch ("/RegDLL",
    // "/UnRegDLL", "/InstallWDMDriver", ...) and a quoted path, waited for with the window
    // messages flowing. True when it ran and ended with 0.
    static bool RunPackageInstaller(const HVString& installFolder, const HVString& switchText, const HVString& path);
    static bool RegisterWithPackageInstaller(const HVString& installFolder, const HVString& dllPath, bool unregister)
    {
        return RunPackageInstaller(installFolder, unregister ? u"/UnRegDLL" : u"/RegDLL", dllPath);
    }
    // The server's control program run with "/Install" or "/Uninstall". True when it ran and
    // ended with 0.
    static bool RunServiceControl(const HVString& control, bool uninstall);
    // The system's "system32\RegSvr32.exe" (under the Windows folder), silent, with an extra
    // switch ("/u" to unregister) or none. True when it ran and ended with 0.
    static bool RegisterWithRegSvr32(const HVString& dllPath, const HVString& extraSwitch = HVString());

    // A program of ours may take this long before it counts as hung and is ended.
    static constexpr int kHelperTimeoutMs = 120000;

private:
    static bool CallServerExport(const HVString& path, const char* exportName);
};
