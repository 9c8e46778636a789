#pragma once

#include "foundation/HVString.h"

class IInstallProgress;

// Registers what the copy step put in place: self-registering modules, input plug-ins, and the
// plug-in step (shell extensions, plug-ins, packages, the audio driver, the server service).
class IComponentInstaller
{
public:
    virtual ~IComponentInstaller() = default;
    // Calls the module's DllRegisterServer; false when that fails.
    virtual bool RegisterServer(const HVString& path) = 0;
    // A copied "in_" module handed over to the player as an input plug-in.
    virtual bool InstallInputPlugin(const HVString& path) = 0;
    virtual void RunPluginStep(IInstallProgress& progress) = 0;
};
